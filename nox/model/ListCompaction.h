#pragma once

#include <nox/model/ListRearrangement.h>

namespace Nox {

/**
 * Thins a list in the same walk that decides what stays: call keep() for each entry that does, then
 * finish(). A list that shares its entries with a copy is not detached first; only what stays is copied.
 */
class ListCompaction
{
public:
    using Index = ListRearrangement::Index;

    explicit ListCompaction(QList<MediaProfile> &list);
    Q_DISABLE_COPY_MOVE(ListCompaction)

    /**
     * Keeps the entry at @p position, which must be larger than the one before. The entry may move:
     * do not look at it any more.
     */
    void keep(Index position);

    /** Drops what has not been kept. */
    void finish();

private:
    void beginCopy();

    QList<MediaProfile> &m_list;
    QList<MediaProfile> m_copy; // of what stays of a shared list, once something does not
    bool m_isShared;
    Index m_end = 0; // number of entries that have been kept
};

} // namespace Nox
