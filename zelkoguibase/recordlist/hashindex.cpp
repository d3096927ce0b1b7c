#include "hashindex_p.h"

#include <algorithm>
#include <utility>

namespace ZelkoGUI {

void HashIndex::insert(std::size_t hash, int number)
{
    if (2 * (m_used + 1) > m_slots.size()) {
        grow();
    }
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

void HashIndex::grow()
{
    constexpr std::size_t slotsAtFirst = 16;
    const std::vector<Slot> old =
        std::exchange(m_slots, std::vector<Slot>(std::max(slotsAtFirst, 2 * m_slots.size()), Slot{0, -1}));
    for (const Slot& slot : old) {
        if (slot.number >= 0) {
            put(slot);
        }
    }
}

} // namespace ZelkoGUI
