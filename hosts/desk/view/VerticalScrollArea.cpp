#include "hosts/desk/view/VerticalScrollArea.h"

#include <QResizeEvent>
#include <QScrollBar>

namespace NoxDesk {

namespace {

constexpr int leastLines = 2; // visible at the same time

} // namespace

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
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
            qMin(contentHeight(), leastLines * fontMetrics().lineSpacing())};
}

void VerticalScrollArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        updateGeometry(); // the height of wrapped text depends on the width
}

bool VerticalScrollArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

} // namespace NoxDesk
