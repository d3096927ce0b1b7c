#include "bookmarkkeys_p.h"

#include <algorithm>
#include <utility>

namespace ZelkoGUI {

// A row that is out of date was right before the first change in front of it, so it is not below m_firstStale either.
int BookmarkKeys::rowOf(Key key)
{
    const int row = m_rows.value(key, -1);
    if (row < m_firstStale) {
        return row;
    }
    renumber();
    return m_rows.value(key);
}

void BookmarkKeys::insert(int row, Key key)
{
    if (row < count()) {
        renumberLater(row);
    }
    m_keys.insert(row, key);
    m_rows.insert(key, row);
}

void BookmarkKeys::remove(int row)
{
    m_rows.remove(m_keys.takeAt(row));
    if (row < count()) {
        renumberLater(row);
    }
}

void BookmarkKeys::move(int first, int rows, int destination)
{
    const bool areThere = first >= 0 && rows > 0 && rows <= count() - first;
    if (!areThere || destination < 0 || destination > count()) {
        return;
    }
    const auto block = m_keys.begin() + first;
    const auto place = m_keys.begin() + destination;
    if (destination < first) {
        std::rotate(place, block, block + rows);
    } else if (destination > first + rows) {
        std::rotate(block, block + rows, place);
    } else {
        return;
    }
    renumberLater(std::min(first, destination));
}

void BookmarkKeys::assign(const QList<Key>& keys)
{
    m_keys = keys;
    m_rows.clear();
    m_rows.reserve(keys.size());
    m_firstStale = 0;
    renumber();
}

void BookmarkKeys::renumber()
{
    const int from = std::exchange(m_firstStale, std::numeric_limits<int>::max());
    for (int row = from; row < count(); ++row) {
        m_rows.insert(m_keys[row], row);
    }
}

void BookmarkKeys::renumberLater(int from)
{
    m_firstStale = std::min(m_firstStale, from);
}

} // namespace ZelkoGUI
