#pragma once

#include <QScrollArea>

namespace NoxDesk {

/** A scroll area without horizontal scrolling: at least as wide as its widget, and by preference as high. */
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
    void updateHint();

    QSize m_hint; // that the layout around it knows
};

} // namespace NoxDesk
