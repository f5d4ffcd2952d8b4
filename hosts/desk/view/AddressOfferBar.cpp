#include "hosts/desk/view/AddressOfferBar.h"

#include "hosts/desk/view/AddressOffer.h"
#include "hosts/desk/view/ElidedLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>

namespace NoxDesk {

AddressOfferBar::AddressOfferBar(AddressOffer &offer, QWidget *parent)
    : QWidget(parent)
    , m_offer(offer)
    , m_address(new ElidedLabel(Qt::ElideMiddle))
{
    m_address->setObjectName(QStringLiteral("offeredAddress"));
    m_address->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *useButton = new QPushButton(tr("&Use copied address"));
    useButton->setObjectName(QStringLiteral("clipboardOffer"));
    auto *dismissButton = new QToolButton;
    dismissButton->setObjectName(QStringLiteral("dismissOffer"));
    dismissButton->setText(QStringLiteral("✕"));
    dismissButton->setAutoRaise(true);
    dismissButton->setFocusPolicy(Qt::StrongFocus);
    dismissButton->setAccessibleName(tr("Dismiss the copied address"));
    dismissButton->setToolTip(dismissButton->accessibleName());

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_address, 1);
    layout->addWidget(useButton);
    layout->addWidget(dismissButton);

    connect(useButton, &QPushButton::clicked, this, [this] { Q_EMIT accepted(m_offer.address()); });
    connect(dismissButton, &QToolButton::clicked, &m_offer, &AddressOffer::dismiss);
    connect(&m_offer, &AddressOffer::changed, this, &AddressOfferBar::show);
    show(m_offer.address());
}

void AddressOfferBar::show(const QString &address)
{
    m_address->setText(address);
    setVisible(!address.isEmpty());
}

} // namespace NoxDesk
