#pragma once

#include <QImage>
#include <QWidget>

namespace NoxDesk {

/** The picture of a page in a frame of 16 by 9; a drawn film strip if there is none. */
class ThumbnailView : public QWidget
{
    Q_OBJECT

public:
    explicit ThumbnailView(QWidget *parent = nullptr);

    void setPicture(const QImage &picture);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintPlaceholder(QPainter &painter) const;

    QImage m_picture;
};

} // namespace NoxDesk
