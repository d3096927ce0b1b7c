#pragma once

#include <cstddef>

namespace ZelkoGUI::Filter {

class FilterRound;
class ShownRows;

/// What a round of filtering does to a list that is shown: the rows it hides and those it shows.
class RowChange
{
public:
    /// Both must outlive this object.
    RowChange(const ShownRows& shown, const FilterRound& round)
        : m_shown(shown)
        , m_round(round)
    {}

    /// Whether one change of the layout, which sorts the list anew, costs less than one step for each run of neighbours
    /// that comes or goes. Never true for a few runs.
    bool isForLayout() const;

private:
    std::size_t runsWorthALayout() const;
    bool isKept(int place) const;
    std::size_t keptCount() const;
    std::size_t removedRuns(std::size_t enough) const;
    std::size_t addedRuns() const;
    std::size_t addedRunsInSourceOrder() const;

    const ShownRows& m_shown;
    const FilterRound& m_round;
};

} // namespace ZelkoGUI::Filter
