#include "hosts/desk/view/AddressOfferBar.h"

#include "hosts/desk/view/ElidedLabel.h"

#include <nox/jobs/AddressList.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>

namespace NoxDesk {

AddressOfferBar::AddressOfferBar(QWidget *parent)
    : QWidget(parent)
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

    connect(m_useButton, &QPushButton::clicked, this, [this] {
        dismiss();                                 // they are not offered again
        Q_EMIT accepted(QStringList(m_addresses)); // a copy, since the receiver may change the clipboard
    });
    connect(dismissButton, &QToolButton::clicked, this, &AddressOfferBar::dismiss);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &AddressOfferBar::check);
    hide();
}

void AddressOfferBar::check()
{
    m_addresses = m_isOffering ? Nox::AddressList::in(QGuiApplication::clipboard()->mimeData()) : QStringList();
    offer();
}

void AddressOfferBar::offer()
{
    const bool isNew = m_addresses != QStringList(m_known) && m_addresses != m_dismissed;
    const auto count = m_addresses.size();
    m_address->setText(count > 1 ? tr("%1 addresses").arg(count) : m_addresses.value(0));
    m_useButton->setText(count > 1 ? tr("Do&wnload all") : tr("&Use copied address"));
    setVisible(isNew && count > 0);
}

void AddressOfferBar::setKnown(const QString &address)
{
    m_known = address.trimmed();
    offer(); // without reading a long clipboard at each key
}

void AddressOfferBar::setOffering(bool isOffering)
{
    m_isOffering = isOffering;
    check();
}

void AddressOfferBar::dismiss()
{
    m_dismissed = m_addresses;
    offer();
}

} // namespace NoxDesk
