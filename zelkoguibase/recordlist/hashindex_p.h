#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZelkoGUI {

/// Finds numbers by a hash; what the numbers stand for, and when two are equal, its user knows. Numbers are not
/// negative.
///
/// A table of pairs in one piece of memory: putting a number in allocates nothing but when the table grows, growing
/// does not look at what the numbers stand for, and a search that finds nothing seldom does.
class HashIndex
{
public:
    /// The number with that hash for which `matches` holds; -1 if there is none.
    template <typename Matches>
    int find(std::size_t hash, Matches matches) const
    {
        const auto wanted = static_cast<std::uint32_t>(hash);
        if (m_slots.empty()) {
            return -1;
        }
        for (std::size_t at = home(wanted); m_slots[at].number >= 0; at = next(at)) {
            if (m_slots[at].hash == wanted && matches(m_slots[at].number)) {
                return m_slots[at].number;
            }
        }
        return -1;
    }

    /// Says that `hash` is about to be looked for, so that its place is fetched from memory meanwhile.
    void expect(std::size_t hash) const
    {
        if (!m_slots.empty()) {
            __builtin_prefetch(&m_slots[home(static_cast<std::uint32_t>(hash))]);
        }
    }

    /// Makes room for that many numbers, which otherwise comes step by step.
    void reserve(std::size_t count);

    /// Puts in a number that is not there.
    void insert(std::size_t hash, int number);

    /// Takes out a number that is there under that hash.
    void erase(std::size_t hash, int number);

private:
    struct Slot
    {
        std::uint32_t hash;
        std::int32_t number; // -1 for a free slot
    };

    std::size_t mask() const { return m_slots.size() - 1; }
    std::size_t home(std::uint32_t hash) const { return hash & mask(); }
    std::size_t next(std::size_t at) const { return (at + 1) & mask(); }
    void put(Slot slot);
    void growTo(std::size_t slotCount);

    std::vector<Slot> m_slots; // as many as a power of two, half of them free at least
    std::size_t m_used = 0;
};

} // namespace ZelkoGUI
