#pragma once

#include <QWidget>

class QPushButton;

namespace NoxDesk {

class AddressOffer;
class ElidedLabel;

/** The offer to use the addresses on the clipboard. Takes its room also while there is none, so that nothing moves. */
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
