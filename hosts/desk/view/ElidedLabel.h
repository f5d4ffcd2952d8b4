#pragma once

#include <QLabel>

namespace NoxDesk {

/** One line of plain text that shortens itself to the room there is; the whole stands in its tool tip, and can be
 * copied. */
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize sizeHint() const override { return minimumSizeHint(); } ///< The text has no say: it changes often.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode;
};

} // namespace NoxDesk
