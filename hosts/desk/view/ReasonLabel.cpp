#include "hosts/desk/view/ReasonLabel.h"

namespace NoxDesk {

namespace {

constexpr int maximumLines = 4;

} // namespace

ReasonLabel::ReasonLabel(QWidget *parent)
    : WrappedText(maximumLines, parent)
{
    setFocusPolicy(Qt::ClickFocus); // its words are read to who is in the field
    hide();
}

void ReasonLabel::explain(const QString &words, QWidget &field)
{
    setWords(words.isEmpty() ? words : QStringLiteral("⚠ ") + words);
    setVisible(!words.isEmpty());
    field.setAccessibleDescription(words);
}

} // namespace NoxDesk
