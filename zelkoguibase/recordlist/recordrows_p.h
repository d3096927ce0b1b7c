#pragma once

#include "hashindex_p.h"

#include <valuecore/texthash.h>
#include <zelkobase/data/zelko_recorddata.h>

#include <QString>

#include <boost/container/deque.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace ZelkoGUI {

/// The rows of a record list: an order of IDs, the record of each, and the row of each, found by hash. Every operation
/// on one record costs the same in a list of any length.
///
/// Records may be queued behind the rows: they are held but do not count as rows until showQueued().
///
/// Rows are removed in runs, from the last run to the first. Between the first run and closeGap() the freed places
/// stay, as one gap that moves up the list with the runs: so each record is moved once however many runs there are, and
/// every row and every ID can be looked up all the while.
class RecordRows
{
public:
    using Data = std::shared_ptr<ZELKO_XML::ZELKO_RecordData>;

    /// Number of rows.
    int count() const { return m_count; }

    /// Number of records that wait behind the rows.
    int queuedCount() const { return static_cast<int>(m_order.size()) - m_count - m_gapLength; }

    /// Makes room for that many records, which otherwise comes step by step.
    void reserve(std::size_t count);

    /// The row of an ID; -1 for one that is not there or queued.
    int rowOf(const QString& id) const;

    /// ID and data of a row, which must exist.
    const QString& id(int row) const { return entry(row).id; }
    const Data& data(int row) const { return entry(row).data; }

    /// The hash under which an ID is looked for, whose place in memory is fetched from now on.
    std::size_t expect(const QString& id) const
    {
        const std::size_t hash = textHash(id);
        m_index.expect(hash);
        return hash;
    }

    /// What `replace` found: the row, and the data that it had. -1 and no data for an ID that is queued.
    struct Found
    {
        int row;
        Data before;
    };

    /// Replaces the data of an ID with that hash; none for an ID that is not held.
    std::optional<Found> replace(const QString& id, std::size_t hash, const Data& data);

    /// Queues the record of an ID that is not held, with its hash.
    void queue(QString id, std::size_t hash, Data data);

    /// Makes rows of the queued records, behind the others and in the order in which they were queued.
    void showQueued() { m_count += queuedCount(); }

    /// Removes `count` rows from `first` on, all of which stand in front of those removed since closeGap().
    void removeRun(int first, int count);

    /// Ends the removal of runs. The only step whose cost depends on the length of the list.
    void closeGap();

    /// Removes all rows; queued records stay queued.
    void clearRows();

    void clearQueue();

private:
    struct Entry
    {
        QString id;
        Data data;
        std::uint32_t hash; // as much of it as the index looks at
        int place;          // in m_order
    };

    int rowAt(int place) const { return place < m_gapStart ? place : place - m_gapLength; }
    std::size_t placeOf(int row) const { return static_cast<std::size_t>(row < m_gapStart ? row : row + m_gapLength); }
    Entry& at(int number) { return m_entries[static_cast<std::size_t>(number)]; }
    const Entry& at(int number) const { return m_entries[static_cast<std::size_t>(number)]; }
    Entry& entry(int row) { return at(m_order[placeOf(row)]); }
    const Entry& entry(int row) const { return at(m_order[placeOf(row)]); }

    int find(const QString& id, std::size_t hash) const;
    int newEntry(Entry&& entry);
    void put(int place, int number);
    void eraseEntries(int firstPlace, int count);
    void renumberFrom(int place);

    // Grows without moving what is there, which in a long list would be one long step.
    using Blocks = boost::container::deque_options_t<boost::container::block_size<1024u>>;
    using Entries = boost::container::deque<Entry, void, Blocks>;

    // An entry has a number for as long as it lives; rows and index hold numbers only.
    Entries m_entries;
    std::vector<int> m_free;
    HashIndex m_index;
    std::vector<int> m_order; // rows, with a gap among them while runs are removed, then the queue
    int m_count = 0;
    int m_gapStart = 0;
    int m_gapLength = 0;
};

} // namespace ZelkoGUI
