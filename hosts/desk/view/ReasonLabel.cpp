#include "hosts/desk/view/ReasonLabel.h"

namespace NoxDesk {

namespace {

constexpr int maximumLines = 4;

} // namespace

ReasonLabel::ReasonLabel(QWidget *parent)
    : WrappedText(maximumLines, parent)
{
    setFocusPolicy(Qt::ClickFocus); // so that a screen reader reads it while the field has the focus
    hide();
}

void ReasonLabel::explain(const QString &message, QWidget &field)
{
    showText(message.isEmpty() ? message : QStringLiteral("⚠ ") + message);
    setVisible(!message.isEmpty());
    field.setAccessibleDescription(message);
}

} // namespace NoxDesk
