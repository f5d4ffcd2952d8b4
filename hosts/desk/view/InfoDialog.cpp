#include "hosts/desk/view/InfoDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace NoxDesk {

InfoDialog::InfoDialog(const QString &title, QWidget *parent)
    : QDialog(parent)
    , m_rows(new QFormLayout)
{
    setWindowTitle(title);
    setAttribute(Qt::WA_DeleteOnClose);
    auto *buttons = new QDialogButtonBox;
    QPushButton *closeButton = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    closeButton->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_rows->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(m_rows);
    layout->addSpacing(fontMetrics().lineSpacing() / 2);
    layout->addWidget(buttons);
}

void InfoDialog::addRow(const QString &name, const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    addRow(name, label);
}

void InfoDialog::addRow(const QString &name, QWidget *widget)
{
    m_rows->addRow(name, widget);
}

} // namespace NoxDesk
