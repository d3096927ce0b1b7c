#pragma once

#include <QList>

#include <map>
#include <vector>

class QAbstractItemModel;

namespace ZelkoGUI::Filter {

class AbstractFilterCondition;

/// What a set of conditions says about each row of a source, and which columns they hide rows by: all from one pass
/// over the rows, which reads no cell twice.
class FilterRound
{
public:
    FilterRound(const QAbstractItemModel& source, const QList<AbstractFilterCondition*>& filters);

    int rowCount() const { return static_cast<int>(m_accepted.size()); }
    int acceptedCount() const { return m_acceptedCount; }

    bool accepts(int sourceRow) const { return m_accepted[static_cast<std::size_t>(sourceRow)]; }

    /// Gives rows another verdict, until they are given this one back.
    void judge(const std::vector<int>& sourceRows, bool accepted);

    /// For each source column with an active condition the first row that one of them rejects, or -1.
    const std::map<int, int>& firstRejected() const { return m_firstRejected; }

private:
    struct Test
    {
        const AbstractFilterCondition* condition;
        int* firstRejected;
    };

    static bool passes(const std::vector<Test>& tests, const QAbstractItemModel& source, int row);

    std::vector<bool> m_accepted;
    int m_acceptedCount = 0;
    std::map<int, int> m_firstRejected;
};

} // namespace ZelkoGUI::Filter
