#pragma once

#include "hosts/fetch/ItemSelection.h"

#include <nox/jobs/PlaylistJob.h>
#include <nox/jobs/ToolSetup.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace NoxFetch {

/** Lists the wanted videos of a page with several, some hundred at a time, so that memory does not grow with the page.
 */
class ItemLister : public QObject
{
    Q_OBJECT

public:
    ItemLister(const QString &url, const ItemSelection &items, const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** Lists the next ones; ended() follows. To be called while isAtEnd() is false. */
    void proceed();

    void cancel(); ///< ended() follows where a list is under way.

    const Nox::PlaylistJob &job() const { return *m_job; }          ///< The last list: whether it has failed.
    QList<Nox::PlaylistEntry> entries() const { return m_entries; } ///< The wanted ones of the last list.
    bool isAtEnd() const { return m_next == 0; }                    ///< Whether there are no more.

    /** A sentence about wanted numbers that the page does not have; empty when it has all. To be asked at the end. */
    QString missingText() const;

    /** @p number in as many digits as the largest number on the page needs, two at least. */
    QString numberText(int number) const;

Q_SIGNALS:
    void ended();

private:
    void onListed();

    QString m_url;
    ItemSelection m_items;
    Nox::ToolSetup m_tools;
    std::unique_ptr<Nox::PlaylistJob> m_job;
    QList<Nox::PlaylistEntry> m_entries;
    int m_next;      // number to go on with
    int m_found = 0; // the largest number on the page, as far as it is known
};

} // namespace NoxFetch
