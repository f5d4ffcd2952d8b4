#include "hosts/desk/view/WrappedText.h"

#include <QTextLayout>
#include <QtMath>

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

void WrappedText::setWords(const QString &text)
{
    if (text != this->text()) {
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
    qreal height = 0;
    int lines = 0;
    const QStringList paragraphs = text().split(QLatin1Char('\n'));
    for (const QString &paragraph : paragraphs) {
        QTextLayout layout(paragraph, font());
        layout.setTextOption(document()->defaultTextOption());
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            if (lines++ == m_maximumLines)
                return qCeil(height);
            line.setLineWidth(width);
            height += qMax<qreal>(line.height(), fontMetrics().lineSpacing());
        }
        layout.endLayout();
    }
    return qCeil(height);
}

void WrappedText::resizeEvent(QResizeEvent *event)
{
    // A bar takes room from the lines, which may then need it: only text that is too long for certain gets one.
    const bool isCut = document()->size().height() >= height() + fontMetrics().lineSpacing() / 2.0;
    setVerticalScrollBarPolicy(isCut ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    QTextEdit::resizeEvent(event);
}

} // namespace NoxDesk
