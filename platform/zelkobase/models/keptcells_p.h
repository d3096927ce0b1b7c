#pragma once

#include <QVariant>

#include <functional>
#include <vector>

namespace ZelkoCommon {

/// What stands in the columns of a list for one role, side by side for each column that is asked for often. A sort asks
/// for each cell of a column some thirty times, and a search for all of them at each keystroke; in a long list most of
/// these questions would wait for the memory that the record lies in.
///
/// A column is worth keeping once an eighth as many of its cells have been asked for as the list has rows, so a change
/// that moves one row, which asks for a few, never pays for the others.
class KeptCells
{
public:
    /// Reads what stands in a cell.
    using Read = std::function<QVariant(int row, int column)>;

    KeptCells(int columns, Read read)
        : m_read(std::move(read))
        , m_columns(static_cast<std::size_t>(columns))
    {}

    /// Whether this cell is kept. The column is one of the list's.
    bool keeps(int row, int column) const { return row < at(column).count; }

    /// A kept cell.
    QVariant cell(int row, int column) const
    {
        const auto place = static_cast<std::size_t>(row);
        const Column& kept = at(column);
        return kept.others.empty() ? QVariant(kept.numbers[place]) : kept.others[place];
    }

    /// A kept cell, asked for by somebody who walks down the rows: texts further down are fetched from now on.
    QVariant cellOfWalk(int row, int column) const;

    /// A cell of a list of so many rows, when it is not kept. Keeps all of the column when that pays.
    QVariant ask(int row, int column, int rows);

    /// Cells of the list have changed: the kept ones among them are read again.
    void cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn);

    /// Rows came to the list: their cells are read if they stand behind those that are kept.
    void rowsInserted(int first, int last);

    void forget();

private:
    struct Column
    {
        int questions = 0;
        int count = 0;
        std::vector<quint64> numbers; // of sizes, moments and durations, a quarter as long as the other form
        std::vector<QVariant> others; // one of the two is empty
    };

    Column& at(int column) { return m_columns[static_cast<std::size_t>(column)]; }
    const Column& at(int column) const { return m_columns[static_cast<std::size_t>(column)]; }
    int columnCount() const { return static_cast<int>(m_columns.size()); }
    void readRows(int column, int first, int last);

    const Read m_read;
    std::vector<Column> m_columns;
};

} // namespace ZelkoCommon
