#pragma once

#include <QScrollArea>

namespace NoxDesk {

/** Scrolls up and down only, and so is never narrower than what it holds. It asks for the height of what it holds. */
class VerticalScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit VerticalScrollArea(QWidget *content, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int contentHeight() const;
};

} // namespace NoxDesk
