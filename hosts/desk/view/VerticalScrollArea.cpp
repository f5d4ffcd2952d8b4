#include "hosts/desk/view/VerticalScrollArea.h"

#include <QResizeEvent>
#include <QScrollBar>

namespace NoxDesk {

VerticalScrollArea::VerticalScrollArea(QWidget *content, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(content);
}

int VerticalScrollArea::contentHeight() const
{
    return widget()->hasHeightForWidth() ? widget()->heightForWidth(width()) : widget()->sizeHint().height();
}

QSize VerticalScrollArea::sizeHint() const
{
    return {minimumSizeHint().width(), contentHeight()};
}

QSize VerticalScrollArea::minimumSizeHint() const
{
    constexpr int leastLines = 2; // visible at the same time
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
            qMin(contentHeight(), leastLines * fontMetrics().lineSpacing())};
}

void VerticalScrollArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    updateHint(); // the height of wrapped text depends on the width
}

bool VerticalScrollArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateHint();
    return QScrollArea::eventFilter(watched, event);
}

/** Most changes of the content do not change its size, and a new layout of the whole window costs time. */
void VerticalScrollArea::updateHint()
{
    const QSize hint = sizeHint();
    if (hint == m_hint)
        return;
    m_hint = hint;
    updateGeometry();
}

} // namespace NoxDesk
