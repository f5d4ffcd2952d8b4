#include "hosts/desk/view/LogDialog.h"

#include "hosts/desk/view/ElidedLabel.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace NoxDesk {

namespace {

constexpr qint64 maximumBytes = 256LL * 1024;

QString endOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(qMax<qint64>(0, file.size() - maximumBytes))) {
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

} // namespace

LogDialog::LogDialog(const QString &file, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Log"));
    auto *path = new ElidedLabel(Qt::ElideMiddle);
    path->setText(file);
    auto *text = new QPlainTextEdit;
    text->setObjectName(QStringLiteral("logText"));
    text->setAccessibleName(tr("Log of the download tool"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setTabChangesFocus(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlainText(endOf(file));
    text->moveCursor(QTextCursor::End);
    text->moveCursor(QTextCursor::StartOfLine);
    auto *buttons = new QDialogButtonBox;
    QPushButton *closeButton = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    closeButton->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(path);
    layout->addWidget(text, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().lineSpacing() * 26);
}

} // namespace NoxDesk
