#include "hosts/desk/view/AddressOffer.h"

#include <nox/jobs/UrlCheck.h>

#include <QUrl>

namespace NoxDesk {

namespace {

constexpr int maximumLength = 4096; // whatever is longer is text that happens to begin like an address

} // namespace

AddressOffer::AddressOffer(QClipboard &clipboard, QObject *parent)
    : QObject(parent)
    , m_clipboard(clipboard)
{
    connect(&clipboard, &QClipboard::dataChanged, this, &AddressOffer::check);
}

void AddressOffer::check()
{
    QString address = m_isEnabled ? addressIn(m_clipboard.mimeData()) : QString();
    if (address == m_known || address == m_dismissed)
        address.clear();
    if (address != m_address) {
        m_address = address;
        Q_EMIT changed(address);
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
    m_dismissed = m_address;
    check();
}

QString AddressOffer::addressIn(const QMimeData *data)
{
    if (data == nullptr)
        return {};
    QString text;
    if (data->hasUrls() && !data->urls().isEmpty()) {
        text = data->urls().constFirst().toString(QUrl::FullyEncoded);
    } else if (data->hasText()) {
        text = Nox::UrlCheck::corrected(data->text());
    }
    return text.size() <= maximumLength && Nox::UrlCheck::errorString(text).isEmpty() ? text : QString();
}

} // namespace NoxDesk
