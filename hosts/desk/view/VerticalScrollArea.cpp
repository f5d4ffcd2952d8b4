#include "hosts/desk/view/VerticalScrollArea.h"

#include <QEvent>
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

QSize VerticalScrollArea::minimumSizeHint() const
{
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
            4 * fontMetrics().lineSpacing()};
}

bool VerticalScrollArea::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

} // namespace NoxDesk
