#include "hosts/desk/view/LogDialog.h"

#include "hosts/desk/view/ElidedLabel.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace NoxDesk {

namespace {

constexpr qint64 maximumBytes = 256LL * 1024;

QString endOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(qMax<qint64>(0, file.size() - maximumBytes)))
        return {};
    return QString::fromUtf8(file.readAll());
}

} // namespace

LogDialog::LogDialog(const QString &file, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Log"));
    auto *path = new ElidedLabel(Qt::ElideMiddle);
    path->setText(file);
    m_text = new QPlainTextEdit;
    m_text->setObjectName(QStringLiteral("logText"));
    m_text->setAccessibleName(tr("Log of the download tool"));
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setTabChangesFocus(true);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setPlainText(endOf(file));
    auto *buttons = new QDialogButtonBox;
    QPushButton *closeButton = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    closeButton->setDefault(true);
    QPushButton *copyButton = buttons->addButton(tr("&Copy all"), QDialogButtonBox::ActionRole);
    copyButton->setObjectName(QStringLiteral("copyLog"));
    connect(copyButton, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_text->toPlainText()); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(path);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().lineSpacing() * 26);
}

void LogDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // The number of visible lines is known only now.
    m_text->verticalScrollBar()->setValue(m_text->verticalScrollBar()->maximum());
}

} // namespace NoxDesk
