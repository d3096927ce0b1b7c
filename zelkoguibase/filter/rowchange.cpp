#include "rowchange_p.h"

#include "filterround_p.h"

#include <algorithm>
#include <cmath>

namespace ZelkoGUI::Filter {
namespace {

// Up to here single steps take less than the pass over the rows that found them.
constexpr std::size_t fewRuns = 64;

// Measured on lists of 10,000 to 1,000,000 rows; only their proportions matter. A step moves the rows behind it, and
// tells a view.
constexpr double perMovedRow = 0.5;
constexpr double perStep = 20'000;
constexpr double perComparison = 100;

} // namespace

RowChange::RowChange(std::vector<int> shown, const FilterRound& round, bool sorted)
    : m_shown(std::move(shown))
    , m_round(round)
    , m_sorted(sorted)
{}

bool RowChange::isForLayout() const
{
    const std::size_t runs = removedRuns() + addedRuns();
    if (runs <= fewRuns || !m_sorted) {
        return runs > fewRuns;
    }
    const double rows = m_round.acceptedCount();
    const double steps = static_cast<double>(runs) * (perStep + perMovedRow * m_round.rowCount());
    return rows * std::log2(rows + 1) * perComparison < steps;
}

std::vector<int> RowChange::hiddenAmong(const std::vector<int>& marked) const
{
    std::vector<int> hidden;
    const auto addFirst = [&](int begin, int end) {
        const auto last = m_shown.begin() + end;
        const auto found = std::find_if(m_shown.begin() + begin, last, [&](int row) { return !m_round.accepts(row); });
        if (found != last) {
            hidden.push_back(*found);
        }
    };
    for (std::size_t i = 0; i < marked.size(); ++i) {
        addFirst(marked[i], marked[i] + 1);
        if (i + 1 < marked.size()) {
            addFirst(marked[i] + 1, marked[i + 1]);
        }
    }
    return hidden;
}

bool RowChange::isKept(std::size_t place) const
{
    return m_round.accepts(m_shown[place]);
}

std::size_t RowChange::keptCount() const
{
    return static_cast<std::size_t>(
        std::count_if(m_shown.begin(), m_shown.end(), [this](int row) { return m_round.accepts(row); }));
}

std::size_t RowChange::removedRuns() const
{
    std::size_t runs = 0;
    for (std::size_t place = 0; place < m_shown.size(); ++place) {
        const bool beginsRun = place == 0 || isKept(place - 1);
        runs += !isKept(place) && beginsRun ? 1U : 0U;
    }
    return runs;
}

// Where sorting puts the new rows is known only after sorting; they are taken to be scattered.
std::size_t RowChange::addedRuns() const
{
    if (!m_sorted) {
        return addedRunsInSourceOrder();
    }
    const std::size_t kept = keptCount();
    const std::size_t added = static_cast<std::size_t>(m_round.acceptedCount()) - kept;
    return added == 0 ? 0 : 1 + added * kept / (added + kept);
}

std::size_t RowChange::addedRunsInSourceOrder() const
{
    std::vector<bool> shown(static_cast<std::size_t>(m_round.rowCount()));
    for (const int row : m_shown) {
        shown[static_cast<std::size_t>(row)] = true;
    }
    std::size_t runs = 0;
    bool inRun = false;
    for (int row = 0; row < m_round.rowCount(); ++row) {
        if (m_round.accepts(row)) {
            const bool isNew = !shown[static_cast<std::size_t>(row)];
            runs += isNew && !inRun ? 1U : 0U;
            inRun = isNew;
        }
    }
    return runs;
}

} // namespace ZelkoGUI::Filter
