#pragma once

#include <QSortFilterProxyModel>

#include <vector>

namespace ZelkoGUI::Filter {

/// The rows that a list shows at present, in its order, told by the rows of its source.
class ShownRows
{
public:
    /// The list has a source.
    explicit ShownRows(const QSortFilterProxyModel& list);

    const QSortFilterProxyModel& list() const { return m_list; }

    int count() const { return m_count; }

    /// Whether the order need not be that of the source.
    bool isSorted() const { return m_isSorted; }

    /// For each row of the source whether it is shown.
    std::vector<bool> bySourceRow() const;

    /// The source row in a place of the list.
    int operator[](int place) const { return m_isSource ? place : m_list.mapToSource(m_list.index(place, 0)).row(); }

private:
    const QSortFilterProxyModel& m_list;
    const int m_count;
    const bool m_isSorted;
    const bool m_isSource; // all rows, in their order
};

} // namespace ZelkoGUI::Filter
