#include "hosts/fetch/ItemLister.h"

#include <algorithm>

namespace NoxFetch {

ItemLister::ItemLister(const QString &url, const ItemSelection &items, const Nox::ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_url(url)
    , m_items(items)
    , m_tools(tools)
    , m_next(items.next(0))
{
}

void ItemLister::proceed()
{
    m_entries.clear();
    m_job = std::make_unique<Nox::PlaylistJob>(m_url, m_tools);
    m_job->setRange(m_next);
    // Queued: this job is the sender of the signal, and the receiver may start another one.
    connect(m_job.get(), &Nox::Job::finished, this, &ItemLister::onListed, Qt::QueuedConnection);
    m_job->start();
}

void ItemLister::cancel()
{
    if (m_job != nullptr)
        m_job->cancel();
}

void ItemLister::onListed()
{
    const int begin = m_next;
    const QList<Nox::PlaylistEntry> listed = m_job->entries();
    for (const Nox::PlaylistEntry &entry : listed) {
        m_found = std::max(m_found, entry.number);
        if (m_items.contains(entry.number))
            m_entries += entry;
    }
    m_found = std::max(m_found, m_job->total());
    const bool goesOn = m_job->error() == Nox::Job::NoError && m_job->hasMore();
    m_next = goesOn ? m_items.next(begin + Nox::PlaylistJob::maximumCount - 1) : 0;
    if (m_job->total() >= 0 && m_next > m_job->total())
        m_next = 0;
    Q_EMIT ended();
}

QString ItemLister::missingText() const
{
    if (m_items.last().value_or(0) <= m_found)
        return {};
    return QStringLiteral("The page has no video %1; the last one has the number %2.")
        .arg(m_items.next(m_found))
        .arg(m_found);
}

QString ItemLister::numberText(int number) const
{
    constexpr int leastDigits = 2;
    const auto digits = static_cast<int>(QString::number(m_found).size());
    return QString::number(number).rightJustified(std::max(leastDigits, digits), QLatin1Char('0'));
}

} // namespace NoxFetch
