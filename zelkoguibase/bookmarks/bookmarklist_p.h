#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/recordextent.h>

#include <QVector>

#include <optional>

namespace ZelkoGUI {

/// The bookmarks of a record in row order. What is asked of all of them after each change, whether they are in order
/// and within the record, is kept up to date with the change, so that it costs the same in a list of any length.
class BookmarkList
{
public:
    using Entry = ZELKO_XML::BookmarkEntry;
    using Entries = QVector<Entry>;

    const Entries& entries() const { return m_entries; }
    int count() const { return static_cast<int>(m_entries.size()); }
    bool has(int row) const { return row >= 0 && row < count(); }

    void append(const Entry& entry);
    void assign(const Entries& entries);

    /// Of a row that there is.
    void replace(int row, const Entry& entry);
    void remove(int row);

    /// From the first to the last moment of the record; without limits no bookmark is out of range.
    void setLimits(const std::optional<ZELKO_XML::RecordExtent>& limits);

    /// Whether the bookmark of a row that there is lies before the first or behind the last moment.
    bool isOutOfRange(int row) const { return isOutOfRange(m_entries[row]); }
    bool anyOutOfRange() const { return m_outOfRange > 0; }
    Entries withinRange() const;

    /// Whether the times ascend from row to row, and none comes twice.
    bool isNormalized() const { return m_misplaced == 0; }

    /// One bookmark for each time, in ascending order. Texts of the same time are joined in their row order, with a
    /// blank between two that are not empty.
    Entries normalized() const;

private:
    bool isOutOfRange(const Entry& entry) const;
    int misplaced(int row) const;
    int outOfRange(int row) const { return isOutOfRange(row) ? 1 : 0; }
    void countAnew();

    Entries m_entries;
    std::optional<ZELKO_XML::RecordExtent> m_limits;
    int m_misplaced = 0;  // rows with a time that is not above that of the row before
    int m_outOfRange = 0; // rows that are out of range
};

} // namespace ZelkoGUI
