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
    , m_useButton(new QPushButton)
{
    m_address->setObjectName(QStringLiteral("offeredAddress"));
    m_address->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_useButton->setObjectName(QStringLiteral("clipboardOffer"));
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
    layout->addWidget(m_useButton);
    layout->addWidget(dismissButton);

    connect(m_useButton, &QPushButton::clicked, this, [this] { Q_EMIT accepted(m_offer.addresses()); });
    connect(dismissButton, &QToolButton::clicked, &m_offer, &AddressOffer::dismiss);
    connect(&m_offer, &AddressOffer::changed, this, &AddressOfferBar::show);
    show(m_offer.addresses());
}

void AddressOfferBar::show(const QStringList &addresses)
{
    const auto count = addresses.size();
    m_address->setText(count > 1 ? tr("%1 addresses").arg(count) : addresses.value(0));
    m_useButton->setText(count > 1 ? tr("Do&wnload all") : tr("&Use copied address"));
    setVisible(count > 0);
}

} // namespace NoxDesk
