#include "shownrows_p.h"

namespace ZelkoGUI::Filter {
namespace {

// Without a column to sort by, the descending order is that of the source the other way round.
bool isSorted(const QSortFilterProxyModel& list)
{
    return list.sortColumn() >= 0 || list.sortOrder() == Qt::DescendingOrder;
}

} // namespace

ShownRows::ShownRows(const QSortFilterProxyModel& list)
    : m_list(list)
    , m_count(list.rowCount())
    , m_isSorted(Filter::isSorted(list))
    , m_isSource(!m_isSorted && m_count == list.sourceModel()->rowCount())
{}

std::vector<bool> ShownRows::bySourceRow() const
{
    std::vector<bool> shown(static_cast<std::size_t>(m_list.sourceModel()->rowCount()));
    for (int place = 0; place < m_count; ++place) {
        shown[static_cast<std::size_t>((*this)[place])] = true;
    }
    return shown;
}

} // namespace ZelkoGUI::Filter
