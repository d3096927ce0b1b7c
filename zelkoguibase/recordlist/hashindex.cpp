#include "hashindex_p.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace ZelkoGUI {

void HashIndex::reserve(std::size_t count)
{
    constexpr std::size_t slotsAtFirst = 16;
    if (2 * count > m_slots.size()) {
        growTo(std::max(slotsAtFirst, std::bit_ceil(2 * count)));
    }
}

void HashIndex::insert(std::size_t hash, int number)
{
    reserve(m_used + 1);
    put({static_cast<std::uint32_t>(hash), number});
    ++m_used;
}

// Those behind move up into the free slot, unless they would come to stand in front of where their search begins.
void HashIndex::erase(std::size_t hash, int number)
{
    std::size_t hole = home(static_cast<std::uint32_t>(hash));
    while (m_slots[hole].number != number) {
        hole = next(hole);
    }
    for (std::size_t at = next(hole); m_slots[at].number >= 0; at = next(at)) {
        const std::size_t distanceFromHome = (at - home(m_slots[at].hash)) & mask();
        const std::size_t distanceFromHole = (at - hole) & mask();
        if (distanceFromHome >= distanceFromHole) {
            m_slots[hole] = m_slots[at];
            hole = at;
        }
    }
    m_slots[hole].number = -1;
    --m_used;
}

void HashIndex::put(Slot slot)
{
    std::size_t at = home(slot.hash);
    while (m_slots[at].number >= 0) {
        at = next(at);
    }
    m_slots[at] = slot;
}

void HashIndex::growTo(std::size_t slotCount)
{
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(slotCount, Slot{0, -1}));
    for (const Slot& slot : old) {
        if (slot.number >= 0) {
            put(slot);
        }
    }
}

} // namespace ZelkoGUI
