#include "hosts/desk/view/WrappedText.h"

#include <QResizeEvent>
#include <QStyle>
#include <QtMath>

#include <memory>

namespace NoxDesk {

namespace {

constexpr int leastCharacters = 8; // in a line

} // namespace

WrappedText::WrappedText(int maximumLines, QWidget *parent)
    : QTextEdit(parent)
    , m_maximumLines(maximumLines)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QString WrappedText::text() const
{
    return toPlainText();
}

void WrappedText::showText(const QString &text)
{
    if (text != this->text()) {
        QTextOption option = document()->defaultTextOption();
        option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute);
        document()->setDefaultTextOption(option); // on the side of the layout, whatever its language
        setPlainText(text);
        updateGeometry();
    }
}

QSize WrappedText::sizeHint() const
{
    return {minimumSizeHint().width(), heightForWidth(width())};
}

QSize WrappedText::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * leastCharacters, fontMetrics().lineSpacing()};
}

bool WrappedText::hasHeightForWidth() const
{
    return true;
}

int WrappedText::heightForWidth(int width) const
{
    const std::unique_ptr<QTextDocument> copy(
        document()->clone()); // a copy, since the layout of the original has the widget's width
    copy->setTextWidth(width);
    return qMin(qCeil(copy->size().height()), m_maximumLines * fontMetrics().lineSpacing());
}

void WrappedText::resizeEvent(QResizeEvent *event)
{
    // A scroll bar makes the lines shorter, so the text may need it only because of it. Show it only for longer text.
    const bool isCut = document()->size().height() >= height() + fontMetrics().lineSpacing() / 2.0;
    setVerticalScrollBarPolicy(isCut ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    QTextEdit::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        updateGeometry(); // the layout used the height for the old width
}

} // namespace NoxDesk
