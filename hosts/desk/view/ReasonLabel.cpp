#include "hosts/desk/view/ReasonLabel.h"

namespace NoxDesk {

ReasonLabel::ReasonLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    hide();
}

void ReasonLabel::explain(const QString &words, QWidget &field)
{
    setText(words.isEmpty() ? words : QStringLiteral("⚠ ") + words);
    setVisible(!words.isEmpty());
    field.setAccessibleDescription(words);
}

} // namespace NoxDesk
