#include "recordrows_p.h"

namespace ZelkoGUI {

int RecordRows::rowOf(const QString& id) const
{
    const auto found = m_records.find(id);
    const int row = found == m_records.end() ? m_count : rowAt(found->second.place);
    return row < m_count ? row : -1;
}

int RecordRows::rowOrQueue(const QString& id, const Data& data)
{
    const auto [found, isNew] = m_records.try_emplace(id, Content{data, static_cast<int>(m_order.size())});
    if (isNew) {
        m_order.push_back(&*found);
        return -1;
    }
    const int row = rowAt(found->second.place);
    if (row < m_count) {
        return row;
    }
    found->second.data = data;
    return -1;
}

// What stood between this run and the one behind it moves to the far end of the gap, where it stays until the gap
// closes.
void RecordRows::removeRun(int first, int count)
{
    if (m_gapLength == 0) {
        m_gapStart = first + count;
    }
    eraseEntries(first, count);
    for (int place = m_gapStart - 1; place >= first + count; --place) {
        put(place + m_gapLength, m_order[static_cast<std::size_t>(place)]);
    }
    m_gapStart = first;
    m_gapLength += count;
    m_count -= count;
}

void RecordRows::closeGap()
{
    const auto gap = m_order.begin() + m_gapStart;
    m_order.erase(gap, gap + m_gapLength);
    renumberFrom(m_gapStart);
    m_gapStart = 0;
    m_gapLength = 0;
}

void RecordRows::clearRows()
{
    closeGap();
    if (queuedCount() == 0) {
        m_records = Records();
        m_order = std::vector<Entry*>();
    } else {
        eraseEntries(0, m_count);
        m_order.erase(m_order.begin(), m_order.begin() + m_count);
        renumberFrom(0);
    }
    m_count = 0;
}

void RecordRows::clearQueue()
{
    const int firstQueued = m_count + m_gapLength;
    eraseEntries(firstQueued, queuedCount());
    m_order.resize(static_cast<std::size_t>(firstQueued));
}

void RecordRows::put(int place, Entry* entry)
{
    m_order[static_cast<std::size_t>(place)] = entry;
    entry->second.place = place;
}

void RecordRows::eraseEntries(int firstPlace, int count)
{
    for (int place = firstPlace; place < firstPlace + count; ++place) {
        m_records.erase(m_order[static_cast<std::size_t>(place)]->first);
    }
}

void RecordRows::renumberFrom(int place)
{
    for (const int end = static_cast<int>(m_order.size()); place < end; ++place) {
        m_order[static_cast<std::size_t>(place)]->second.place = place;
    }
}

} // namespace ZelkoGUI
