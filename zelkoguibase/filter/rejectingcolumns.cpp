#include "rejectingcolumns_p.h"

#include "celltest_p.h"
#include "filterround_p.h"

#include <algorithm>

namespace ZelkoGUI::Filter {

bool RejectingColumns::contains(const QAbstractItemModel& source, int column)
{
    if (!isUsed(column)) {
        return false;
    }
    const auto known = m_known.find(column);
    if (known != m_known.end() && (!known->second.rejects || known->second.rowCell.isValid())) {
        return known->second.rejects;
    }
    const Known found = search(source, column, 0, source.rowCount() - 1);
    m_known.insert_or_assign(column, found);
    return found.rejects;
}

void RejectingColumns::take(const QAbstractItemModel& source, const FilterRound& round)
{
    m_known.clear();
    for (const auto& [column, row] : round.firstRejected()) {
        m_known.emplace(column, known(source, row));
    }
}

void RejectingColumns::cellsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    const QAbstractItemModel& source = *topLeft.model();
    auto known = m_known.lower_bound(topLeft.column());
    while (known != m_known.end() && known->first <= bottomRight.column()) {
        auto& [column, state] = *known;
        if (!state.rejects) {
            state = search(source, column, topLeft.row(), bottomRight.row());
        }
        const int row = state.rowCell.row();
        const bool isTouched = row >= topLeft.row() && row <= bottomRight.row();
        known = isTouched && !rejects(source, column, row) ? m_known.erase(known) : std::next(known);
    }
}

void RejectingColumns::rowsInserted(const QAbstractItemModel& source, int first, int last)
{
    for (auto& [column, state] : m_known) {
        if (!state.rejects) {
            state = search(source, column, first, last);
        }
    }
}

bool RejectingColumns::isUsed(int column) const
{
    return std::any_of(m_filters.begin(), m_filters.end(), [column](const AbstractFilterCondition* filter) {
        return filter->filterKeyColumn() == column && filter->filterActive();
    });
}

bool RejectingColumns::rejects(const QAbstractItemModel& source, int column, int row) const
{
    return std::any_of(m_filters.begin(), m_filters.end(), [&](const AbstractFilterCondition* filter) {
        return filter->filterKeyColumn() == column && filter->filterActive() && !passesRow(*filter, source, row);
    });
}

RejectingColumns::Known RejectingColumns::search(const QAbstractItemModel& source, int column, int first,
                                                 int last) const
{
    for (int row = first; row <= last; ++row) {
        if (rejects(source, column, row)) {
            return known(source, row);
        }
    }
    return known(source, -1);
}

RejectingColumns::Known RejectingColumns::known(const QAbstractItemModel& source, int rejectedRow)
{
    return {rejectedRow >= 0, QPersistentModelIndex(source.index(rejectedRow, 0))};
}

} // namespace ZelkoGUI::Filter
