#pragma once

#include <QHash>
#include <QList>

#include <limits>

namespace ZelkoGUI {

/// Which key of a map each row of a list stands under, and the other way round.
///
/// Rows behind one that comes or goes get new numbers. Those are not written down with the change but when a row behind
/// it is asked for, once for however many changes there were.
class BookmarkKeys
{
public:
    using Key = unsigned int;

    int count() const { return static_cast<int>(m_keys.size()); }

    /// Of a row that there is.
    Key keyOf(int row) const { return m_keys[row]; }

    /// -1 for a key that is none of a row.
    int rowOf(Key key);

    /// A new key; `row` is that of a present one, which moves on, or behind the last.
    void insert(int row, Key key);

    /// Of a row that there is.
    void remove(int row);

    /// Moves so many rows from `first` on in front of the row `destination`, or behind the last one. Nothing happens
    /// for rows that are not there, and for a destination within those rows or right behind them.
    void move(int first, int rows, int destination);

    void assign(const QList<Key>& keys);

private:
    void renumber();
    void renumberLater(int from);

    QList<Key> m_keys;
    QHash<Key, int> m_rows; // some behind m_firstStale are out of date; all before it are right
    int m_firstStale = std::numeric_limits<int>::max();
};

} // namespace ZelkoGUI
