#pragma once

#include <QWidget>

namespace NoxDesk {

class AddressOffer;
class ElidedLabel;

/** The offer to use the address on the clipboard. Takes its room also while there is none, so that nothing moves. */
class AddressOfferBar : public QWidget
{
    Q_OBJECT

public:
    /** @param offer must outlive the bar */
    explicit AddressOfferBar(AddressOffer &offer, QWidget *parent = nullptr);

Q_SIGNALS:
    void accepted(const QString &address);

private:
    void show(const QString &address);

    AddressOffer &m_offer;
    ElidedLabel *m_address;
};

} // namespace NoxDesk
