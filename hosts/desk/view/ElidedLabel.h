#pragma once

#include <QLabel>

namespace NoxDesk {

/** One line of plain text, elided to the available width. The tool tip has the whole text, and it can be copied. */
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize sizeHint() const override { return minimumSizeHint(); } ///< Independent of the text, which changes often.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode;
};

} // namespace NoxDesk
