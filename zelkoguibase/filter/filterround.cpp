#include "filterround_p.h"

#include "celltest_p.h"

namespace ZelkoGUI::Filter {

FilterRound::FilterRound(const QAbstractItemModel& source, const QList<AbstractFilterCondition*>& filters)
    : m_accepted(static_cast<std::size_t>(source.rowCount()), true)
{
    std::vector<Test> tests;
    for (const AbstractFilterCondition* filter : filters) {
        if (filter->filterActive()) {
            tests.push_back({filter, &m_firstRejected.try_emplace(filter->filterKeyColumn(), -1).first->second});
        }
    }
    m_acceptedCount = rowCount();
    for (int row = 0; row < rowCount() && !tests.empty(); ++row) {
        if (!passes(tests, source, row)) {
            m_accepted[static_cast<std::size_t>(row)] = false;
            --m_acceptedCount;
        }
    }
}

void FilterRound::judge(const std::vector<int>& sourceRows, bool accepted)
{
    for (const int row : sourceRows) {
        if (accepts(row) != accepted) {
            m_accepted[static_cast<std::size_t>(row)] = accepted;
            m_acceptedCount += accepted ? 1 : -1;
        }
    }
}

// Behind the first rejection only those conditions matter that may yet be the first of their column to reject a row.
bool FilterRound::passes(const std::vector<Test>& tests, const QAbstractItemModel& source, int row)
{
    bool accepted = true;
    for (const Test& test : tests) {
        const bool newColumn = *test.firstRejected < 0;
        if ((accepted || newColumn) && !passesRow(*test.condition, source, row)) {
            accepted = false;
            *test.firstRejected = newColumn ? row : *test.firstRejected;
        }
    }
    return accepted;
}

} // namespace ZelkoGUI::Filter
