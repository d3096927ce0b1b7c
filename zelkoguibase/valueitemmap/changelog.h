#pragma once

#include <boost/circular_buffer.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace valueitemmap {

/// Types of change in the log of a keyed map.
enum ChangeType : char { ChangeSet = 1, ChangeErased = 2, ChangeCleared = 3 };

} // namespace valueitemmap

/// The numbered log of the changes of a keyed map. It keeps the last changes, as many as its capacity; each reader has
/// a cursor of its own, the number of the next change it wants to see. A reader that fell behind what is kept learns of
/// it and has to read the whole map instead.
template <typename Type, typename Key>
class ChangeLogTemplate
{
public:
    static constexpr std::size_t DefaultCapacity = 100;

    /// Throws std::length_error "circular_buffer" for a log of 2 GiB and more.
    explicit ChangeLogTemplate(std::size_t capacity = DefaultCapacity)
        : m_entries(checked(capacity))
    {}

    /// Reads the change at `position`, the reader's cursor. 1: one change was read into `type` and `key`, the cursor is
    /// one further. 0: nothing further to read. -1: changes were lost; the cursor stands behind the newest change now.
    /// A reader calls until it gets 0 and must be ready for -1 at each call. Where shrinking left a gap in the numbers,
    /// the first change behind it is read once for each number of the gap that the cursor still has to pass.
    signed char ReadNext(std::uint64_t& position, Type& type, Key& key) const
    {
        if (m_entries.empty() || position >= m_nextNumber) {
            return 0;
        }
        if (position < m_entries.front().number) {
            position = m_nextNumber;
            return -1;
        }
        const auto entry = entryAtOrAfter(position);
        if (entry == m_entries.end()) {
            return 0; // the newest entries were dropped when the log was shrunk
        }
        ++position;
        type = entry->type;
        key = entry->key;
        return 1;
    }

    /// The number that the next change will get: where a reader starts that wants later changes only.
    std::uint64_t NextNumber() const { return m_nextNumber; }

    std::size_t Capacity() const { return m_entries.capacity(); }
    std::size_t Size() const { return m_entries.size(); }

private:
    template <typename, typename, typename>
    friend class ValueItemMapBase;

    struct Entry
    {
        std::uint64_t number;
        Type type;
        Key key;
    };

    // Numbers rise without gaps but where the log was shrunk. So the wanted entry stands no further from the front than
    // its number tells, and almost always exactly there.
    auto entryAtOrAfter(std::uint64_t position) const
    {
        const std::uint64_t distance = position - m_entries.front().number;
        if (distance < m_entries.size()) {
            const auto guess = m_entries.begin() + static_cast<std::ptrdiff_t>(distance);
            if (guess->number == position) {
                return guess;
            }
        }
        return std::lower_bound(m_entries.begin(), m_entries.end(), position,
                                [](const Entry& entry, std::uint64_t number) { return entry.number < number; });
    }

    // The number goes up even when the capacity is 0 and nothing is kept.
    void append(Type type, Key key) { m_entries.push_back(Entry{m_nextNumber++, type, std::move(key)}); }

    // What an allocator promises today can be far more than the machine holds, so the limit is one of our own.
    static std::size_t checked(std::size_t capacity)
    {
        constexpr std::size_t maximumBytes = 0x7fffffff;
        if (capacity > maximumBytes / sizeof(Entry)) {
            throw std::length_error("circular_buffer");
        }
        return capacity;
    }

    // Shrinking keeps the oldest entries, which leaves a gap in the numbers before the next change.
    void setCapacity(std::size_t capacity) { m_entries.set_capacity(checked(capacity)); }

    boost::circular_buffer<Entry> m_entries;
    std::uint64_t m_nextNumber = 0;
};
