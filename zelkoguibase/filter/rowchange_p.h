#pragma once

#include <cstddef>
#include <vector>

namespace ZelkoGUI::Filter {

class FilterRound;

/// What a round of filtering does to a list that is shown: the rows it hides and those it shows.
class RowChange
{
public:
    /// `shown` are the source rows that the list shows, in its order; `sorted` is false if that is the source's order.
    /// The round must outlive this object.
    RowChange(std::vector<int> shown, const FilterRound& round, bool sorted);

    /// Whether one change of the layout, which sorts the list anew, costs less than one step for each run of neighbours
    /// that comes or goes. Never true for a few runs.
    bool isForLayout() const;

    /// Source rows to be hidden that somebody may know of: those that stand in one of the places `marked` of the list,
    /// and one between each two of these. Whoever selected hidden rows between two places that he knows has one of
    /// these. The places ascend.
    std::vector<int> hiddenAmong(const std::vector<int>& marked) const;

private:
    bool isKept(std::size_t place) const;
    std::size_t keptCount() const;
    std::size_t removedRuns() const;
    std::size_t addedRuns() const;
    std::size_t addedRunsInSourceOrder() const;

    const std::vector<int> m_shown;
    const FilterRound& m_round;
    const bool m_sorted;
};

} // namespace ZelkoGUI::Filter
