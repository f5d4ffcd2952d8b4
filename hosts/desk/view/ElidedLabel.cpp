#include "hosts/desk/view/ElidedLabel.h"

#include "hosts/desk/view/ShownText.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace NoxDesk {

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent)
    : QLabel(parent)
    , m_mode(mode)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto *copy = new QAction(tr("Copy"), this);
    connect(copy, &QAction::triggered, this, [this] { QGuiApplication::clipboard()->setText(text()); });
    addAction(copy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 8, fontMetrics().height()};
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const bool isCut = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
        const QPoint place = static_cast<QHelpEvent *>(event)->globalPos();
        QToolTip::showText(place, isCut ? ShownText::breakable(text()) : QString(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    const QRect area = contentsRect();
    const Qt::Alignment place = QStyle::visualAlignment(layoutDirection(), alignment());
    QString shown = fontMetrics().elidedText(text(), m_mode, area.width());
    if (!text().isRightToLeft()) // keeps the last character of an address at its end in a right-to-left layout
        shown = QChar(0x200e) + shown + QChar(0x200e);
    style()->drawItemText(&painter, area, static_cast<int>(place), palette(), isEnabled(), shown, foregroundRole());
}

} // namespace NoxDesk
