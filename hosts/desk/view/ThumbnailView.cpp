#include "hosts/desk/view/ThumbnailView.h"

#include <QPainter>
#include <QPainterPath>

namespace NoxDesk {

namespace {

constexpr int linesHigh = 5;

} // namespace

ThumbnailView::ThumbnailView(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setPicture({});
}

void ThumbnailView::setPicture(const QImage &picture)
{
    m_picture = picture;
    setAccessibleName(picture.isNull() ? tr("No picture of the page") : tr("Picture of the page"));
    update();
}

QSize ThumbnailView::sizeHint() const
{
    const int height = linesHigh * fontMetrics().lineSpacing();
    return {height * 16 / 9, height};
}

void ThumbnailView::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (m_picture.isNull()) {
        paintPlaceholder(painter);
        return;
    }
    // Scaled here in device pixels, with smooth transformation: the painter's own scaling is of lower quality.
    const QSize size = m_picture.size().scaled(this->size(), Qt::KeepAspectRatio);
    QRect area(QPoint(), size);
    area.moveCenter(rect().center());
    const QSize pixels = (QSizeF(size) * devicePixelRatioF()).toSize();
    painter.drawImage(area, m_picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void ThumbnailView::paintPlaceholder(QPainter &painter) const
{
    QColor colour = palette().color(QPalette::WindowText);
    painter.setPen(Qt::NoPen);
    colour.setAlpha(20);
    painter.setBrush(colour);
    const qreal unit = height() / 20.0;
    painter.drawRoundedRect(QRectF(rect()), unit, unit);

    const QPointF centre = QRectF(rect()).center();
    QPainterPath triangle;
    triangle.addPolygon(
        QPolygonF({centre + QPointF(-3, -4) * unit, centre + QPointF(-3, 4) * unit, centre + QPointF(4, 0) * unit}));
    colour.setAlpha(90);
    painter.fillPath(triangle, colour);
}

} // namespace NoxDesk
