#pragma once

#include "hosts/fetch/ItemSelection.h"

#include <nox/jobs/PlaylistJob.h>
#include <nox/jobs/ToolSetup.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace NoxFetch {

/** Lists the requested videos of a page, at most some hundred at a time, so that the memory does not depend on the
 * page.
 */
class ItemLister : public QObject
{
    Q_OBJECT

public:
    ItemLister(const QString &url, const ItemSelection &items, const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** Lists the next videos; ended() follows. To be called while isAtEnd() is false. */
    void proceed();

    void cancel(); ///< If a list is being read, ended() follows.

    const Nox::PlaylistJob &job() const { return *m_job; }          ///< The last list, to see whether it failed.
    QList<Nox::PlaylistEntry> entries() const { return m_entries; } ///< The requested entries of the last list.
    bool isAtEnd() const { return m_next == 0; }                    ///< Whether there are no more.

    /** A message about requested numbers that the page does not have; may be empty. To be called at the end. */
    QString missingText() const;

    /** @p number with as many digits as the largest number on the page, at least two. */
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
    int m_next;      // first number of the next list
    int m_found = 0; // the largest known number on the page
};

} // namespace NoxFetch
