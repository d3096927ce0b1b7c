#include "heldrows_p.h"

#include "filterround_p.h"
#include "shownrows_p.h"

#include <QItemSelectionModel>
#include <QSet>

#include <algorithm>

namespace ZelkoGUI::Filter {
namespace {

constexpr int none = -1;

// By which selections hold their rows.
QSet<QModelIndex> indexesOf(const HeldRows::Selections& selections)
{
    QSet<QModelIndex> indexes;
    for (const auto& selection : selections) {
        indexes.insert(selection->currentIndex());
        for (const QItemSelectionRange& range : selection->selection()) {
            indexes.insert(range.topLeft());
            indexes.insert(range.bottomRight());
        }
    }
    return indexes;
}

bool isFromTheFirstColumn(const QItemSelection& selection)
{
    return std::all_of(selection.begin(), selection.end(),
                       [](const QItemSelectionRange& range) { return range.left() == 0; });
}

void sortOnce(std::vector<int>& rows)
{
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

} // namespace

HeldRows::HeldRows(const ShownRows& shown, const QModelIndexList& indexes, const Selections& selections)
    : m_shown(shown)
    , m_selections(selections)
{
    m_selections.removeIf([&](const auto& selection) { return !selection || selection->model() != &shown.list(); });
    const QSet<QModelIndex> known = indexesOf(m_selections);
    for (const QModelIndex& index : indexes) {
        if (!index.parent().isValid() && (!known.contains(index) || isCorner(index))) {
            m_places.push_back(index.row());
        }
    }
    sortOnce(m_places);
}

// While the layout changes, a selection of the whole list may have nothing but its corners, which must stay then.
bool HeldRows::isCorner(const QModelIndex& index) const
{
    return index.row() == 0 || index.row() == m_shown.count() - 1;
}

std::vector<int> HeldRows::hiddenBy(const FilterRound& round) const
{
    std::vector<int> rows = heldAndBetween(round);
    for (const auto& selection : m_selections) {
        const int current = selection->currentIndex().row();
        rows.push_back(firstHidden(round, current, current + 1));
        rows.push_back(firstHidden(round, *selection));
    }
    sortOnce(rows);
    rows.erase(rows.begin(), std::upper_bound(rows.begin(), rows.end(), none));
    return rows;
}

std::vector<int> HeldRows::heldAndBetween(const FilterRound& round) const
{
    std::vector<int> rows;
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        rows.push_back(firstHidden(round, m_places[i], m_places[i] + 1));
        if (i + 1 < m_places.size()) {
            rows.push_back(firstHidden(round, m_places[i] + 1, m_places[i + 1]));
        }
    }
    return rows;
}

int HeldRows::firstHidden(const FilterRound& round, int begin, int end) const
{
    for (int place = std::max(begin, 0); place < end; ++place) {
        if (const int row = m_shown[place]; !round.accepts(row)) {
            return row;
        }
    }
    return none;
}

int HeldRows::firstHidden(const FilterRound& round, const QItemSelectionModel& selection) const
{
    for (const QItemSelectionRange& range : selection.selection()) {
        if (const int row = firstHidden(round, range.top(), range.bottom() + 1); row != none) {
            return row;
        }
    }
    return none;
}

bool HeldRows::areFromTheFirstColumn() const
{
    return !m_selections.isEmpty() && std::all_of(m_selections.begin(), m_selections.end(), [](const auto& selection) {
        return isFromTheFirstColumn(selection->selection());
    });
}

bool mayBeWhollySelected(const QModelIndexList& indexes, int rows, int columns)
{
    const auto holds = [&](int row, int column) {
        return std::any_of(indexes.begin(), indexes.end(),
                           [=](const QModelIndex& index) { return index.row() == row && index.column() == column; });
    };
    return holds(0, 0) && holds(rows - 1, columns - 1);
}

} // namespace ZelkoGUI::Filter
