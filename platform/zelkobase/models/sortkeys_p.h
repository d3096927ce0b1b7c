#pragma once

#include <QVariant>

#include <functional>
#include <vector>

namespace ZelkoCommon {

/// The sort keys of one column of a list, side by side. A sort asks for each of them some thirty times; in a long list
/// most of these questions would wait for the memory that the record lies in.
///
/// Keys are worth keeping once an eighth as many have been asked for as the list has rows, so a change that moves one
/// row, which asks for a few, never pays for the others.
class SortKeys
{
public:
    /// Reads the key of a row in a column.
    using Read = std::function<QVariant(int row, int column)>;

    explicit SortKeys(Read read)
        : m_read(std::move(read))
    {}

    /// Whether the key of this cell is kept.
    bool keeps(int row, int column) const { return column == m_column && row < m_count; }

    /// A kept key.
    QVariant key(int row) const
    {
        const auto place = static_cast<std::size_t>(row);
        return m_others.empty() ? QVariant(m_numbers[place]) : m_others[place];
    }

    /// The key of a cell of a list of so many rows, when it is not kept. Keeps all of the column when that pays.
    QVariant ask(int row, int column, int rows);

    /// Cells of the list have changed: the kept ones among their keys are read again.
    void cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn);

    /// Rows came to the list: their keys are read if they stand behind those that are kept.
    void rowsInserted(int first, int last);

    void forget();

private:
    bool isForNumbers(const QVariant& key) const;
    void append(const QVariant& key);
    void appendRows(int first, int last);
    void replace(int row, const QVariant& key);
    void turnNumbersIntoOthers();

    const Read m_read;
    int m_column = -1;
    int m_questions = 0;
    int m_count = 0;
    std::vector<quint64> m_numbers; // of sizes, moments and durations, a quarter as long as the other form
    std::vector<QVariant> m_others; // one of the two is empty
};

} // namespace ZelkoCommon
