#include "hosts/desk/view/AddressOffer.h"

#include <nox/jobs/AddressList.h>

namespace NoxDesk {

AddressOffer::AddressOffer(QClipboard &clipboard, QObject *parent)
    : QObject(parent)
    , m_clipboard(clipboard)
{
    connect(&clipboard, &QClipboard::dataChanged, this, &AddressOffer::check);
}

void AddressOffer::check()
{
    QStringList addresses = m_isEnabled ? Nox::AddressList::in(m_clipboard.mimeData()) : QStringList();
    if (addresses == QStringList(m_known) || addresses == m_dismissed)
        addresses.clear();
    if (addresses != m_addresses) {
        m_addresses = addresses;
        Q_EMIT changed(addresses);
    }
}

void AddressOffer::setKnown(const QString &address)
{
    m_known = address.trimmed();
    check();
}

void AddressOffer::setEnabled(bool isEnabled)
{
    m_isEnabled = isEnabled;
    check();
}

void AddressOffer::dismiss()
{
    m_dismissed = m_addresses;
    check();
}

} // namespace NoxDesk
