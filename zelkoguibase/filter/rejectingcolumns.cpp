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
    const auto entry = m_known.find(column);
    if (entry == m_known.end() || !entry->second.isUpToDate()) {
        return m_known.insert_or_assign(column, bringUpToDate(source, column)).first->second.rejects;
    }
    return entry->second.rejects;
}

RejectingColumns::Known RejectingColumns::bringUpToDate(const QAbstractItemModel& source, int column)
{
    const auto entry = m_known.find(column);
    const bool isPartlyKnown = entry != m_known.end() && !entry->second.rejects;
    return search(source, column, isPartlyKnown ? entry->second.unread : std::vector{Rows{0, source.rowCount() - 1}});
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
    const auto isTouched = [&](const QModelIndex& cell) {
        return cell.isValid() && cell.row() >= topLeft.row() && cell.row() <= bottomRight.row();
    };
    auto entry = m_known.lower_bound(topLeft.column());
    while (entry != m_known.end() && entry->first <= bottomRight.column()) {
        const auto& [column, known] = *entry;
        if (!known.rejects) {
            entry = addUnread(entry, {topLeft.row(), bottomRight.row()});
        } else if (isTouched(known.rowCell) && !rejects(source, column, known.rowCell.row())) {
            entry = m_known.erase(entry);
        } else {
            ++entry;
        }
    }
}

void RejectingColumns::rowsInserted(const QAbstractItemModel& source, int first, int last)
{
    if (last + 1 < source.rowCount()) {
        forgetUnread();
    }
    for (auto entry = m_known.begin(); entry != m_known.end();) {
        entry = entry->second.rejects ? std::next(entry) : addUnread(entry, {first, last});
    }
}

// Rows that stand elsewhere now.
void RejectingColumns::forgetUnread()
{
    std::erase_if(m_known, [](const auto& entry) { return !entry.second.unread.empty(); });
}

// Many changes cost no more than the pass over the rows that forgetting them costs.
RejectingColumns::Entry RejectingColumns::addUnread(Entry entry, Rows rows)
{
    constexpr std::size_t most = 64;
    std::vector<Rows>& unread = entry->second.unread;
    if (unread.size() == most) {
        return m_known.erase(entry);
    }
    unread.push_back(rows);
    return std::next(entry);
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

RejectingColumns::Known RejectingColumns::search(const QAbstractItemModel& source, int column,
                                                 const std::vector<Rows>& spans) const
{
    for (const Rows& rows : spans) {
        for (int row = rows.first; row <= rows.last; ++row) {
            if (rejects(source, column, row)) {
                return known(source, row);
            }
        }
    }
    return known(source, -1);
}

RejectingColumns::Known RejectingColumns::known(const QAbstractItemModel& source, int rejectedRow)
{
    return {rejectedRow >= 0, QPersistentModelIndex(source.index(rejectedRow, 0)), {}};
}

} // namespace ZelkoGUI::Filter
