#include <nox/model/ListCompaction.h>

#include <utility>

namespace Nox {

ListCompaction::ListCompaction(QList<MediaProfile> &list)
    : m_list(list)
    , m_isShared(!list.isDetached())
{
}

void ListCompaction::keep(Index position)
{
    if (position != m_end) {
        if (m_isShared) {
            beginCopy();
            m_copy.append(std::as_const(m_list).at(position));
        } else if constexpr (ListRearrangement::isArray) {
            m_list[m_end] = std::move(m_list[position]);
        } else {
            m_list.swapItemsAt(m_end, position);
        }
    }
    ++m_end;
}

void ListCompaction::finish()
{
    if (m_end == m_list.size())
        return;
    if (m_isShared) {
        beginCopy();
        m_list = m_copy;
    } else {
        m_list.erase(m_list.begin() + m_end, m_list.end());
    }
}

void ListCompaction::beginCopy()
{
    if (!m_copy.isEmpty())
        return;
    m_copy.reserve(m_list.size());
    for (Index i = 0; i < m_end; ++i)
        m_copy.append(std::as_const(m_list).at(i));
}

} // namespace Nox
