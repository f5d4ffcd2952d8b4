#pragma once

#include <QWidget>

class QPushButton;

namespace NoxDesk {

class AddressOffer;
class ElidedLabel;

/** A bar that offers the addresses on the clipboard. It keeps its height while empty, so that nothing moves. */
class AddressOfferBar : public QWidget
{
    Q_OBJECT

public:
    /** @param offer must outlive the bar */
    explicit AddressOfferBar(AddressOffer &offer, QWidget *parent = nullptr);

Q_SIGNALS:
    void accepted(const QStringList &addresses);

private:
    void show(const QStringList &addresses);

    AddressOffer &m_offer;
    ElidedLabel *m_address;
    QPushButton *m_useButton;
};

} // namespace NoxDesk
