#pragma once

#include <QList>
#include <QModelIndexList>
#include <QPointer>

#include <vector>

class QItemSelectionModel;
class QItemSelectionRange;

namespace ZelkoGUI::Filter {

class FilterRound;
class ShownRows;

/// The rows of a list that somebody holds by persistent indexes: selections, current rows, open editors.
///
/// A change of the layout lets hidden rows vanish from selections without a word, and takes the current row away
/// without giving another. Those rows by which that would be noticed must go by a removal.
class HeldRows
{
public:
    using Selections = QList<QPointer<const QItemSelectionModel>>;

    /// `indexes` are all persistent indexes of the list. Of those by which `selections` hold their ranges nothing more
    /// need be known; a selection of another list is none.
    HeldRows(const ShownRows& shown, const QModelIndexList& indexes, const Selections& selections);

    /// Source rows that the round hides and that must go by a removal: the current row and a selected one of each
    /// selection that is given; of the others each held row, and one between each two of these, for whoever selected
    /// hidden rows between two places that he holds has one of those. Each row once, in no order.
    std::vector<int> hiddenBy(const FilterRound& round) const;

    /// Whether selections are given and hold nothing but ranges from the first column on. These are remembered row by
    /// row over a change of the layout that says to be one of rows, otherwise cell by cell.
    bool areFromTheFirstColumn() const;

private:
    bool isCorner(const QModelIndex& index) const;
    std::vector<int> heldAndBetween(const FilterRound& round) const;
    int firstHidden(const FilterRound& round, int begin, int end) const;
    int firstHidden(const FilterRound& round, const QItemSelectionModel& selection) const;

    const ShownRows& m_shown;
    Selections m_selections;
    std::vector<int> m_places; // of indexes that nothing is known of, ascending
};

/// Whether a selection may cover the whole list, by which such a selection is known: its two corners.
bool mayBeWhollySelected(const QModelIndexList& indexes, int rows, int columns);

} // namespace ZelkoGUI::Filter
