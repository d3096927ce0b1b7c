#include "recordrows_p.h"

namespace ZelkoGUI {

void RecordRows::reserve(std::size_t count)
{
    m_index.reserve(count);
    m_order.reserve(count);
}

int RecordRows::rowOf(const QString& id) const
{
    const int number = find(id, textHash(id));
    const int row = number < 0 ? m_count : rowAt(at(number).place);
    return row < m_count ? row : -1;
}

std::optional<RecordRows::Found> RecordRows::replace(const QString& id, std::size_t hash, const Data& data)
{
    const int number = find(id, hash);
    if (number < 0) {
        return std::nullopt;
    }
    Entry& known = at(number);
    const int row = rowAt(known.place);
    Data before = std::exchange(known.data, data);
    return row < m_count ? Found{row, std::move(before)} : Found{-1, nullptr};
}

void RecordRows::queue(QString id, std::size_t hash, Data data)
{
    const int place = static_cast<int>(m_order.size());
    m_order.push_back(newEntry({std::move(id), std::move(data), static_cast<std::uint32_t>(hash), place}));
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
    if (m_gapLength > 0) {
        const auto gap = m_order.begin() + m_gapStart;
        m_order.erase(gap, gap + m_gapLength);
        renumberFrom(m_gapStart);
    }
    m_gapStart = 0;
    m_gapLength = 0;
}

void RecordRows::clearRows()
{
    closeGap();
    if (queuedCount() == 0) {
        *this = RecordRows();
    } else {
        eraseEntries(0, m_count);
        m_order.erase(m_order.begin(), m_order.begin() + m_count);
        renumberFrom(0);
        m_count = 0;
    }
}

void RecordRows::clearQueue()
{
    const int firstQueued = m_count + m_gapLength;
    eraseEntries(firstQueued, queuedCount());
    m_order.resize(static_cast<std::size_t>(firstQueued));
}

int RecordRows::find(const QString& id, std::size_t hash) const
{
    return m_index.find(hash, [&](int number) { return at(number).id == id; });
}

int RecordRows::newEntry(Entry&& entry)
{
    int number = static_cast<int>(m_entries.size());
    m_index.insert(entry.hash, m_free.empty() ? number : m_free.back());
    if (m_free.empty()) {
        m_entries.push_back(std::move(entry));
    } else {
        number = m_free.back();
        m_free.pop_back();
        at(number) = std::move(entry);
    }
    return number;
}

void RecordRows::put(int place, int number)
{
    m_order[static_cast<std::size_t>(place)] = number;
    at(number).place = place;
}

void RecordRows::eraseEntries(int firstPlace, int count)
{
    for (int place = firstPlace; place < firstPlace + count; ++place) {
        const int number = m_order[static_cast<std::size_t>(place)];
        m_index.erase(at(number).hash, number);
        at(number) = Entry();
        m_free.push_back(number);
    }
}

void RecordRows::renumberFrom(int place)
{
    for (const int end = static_cast<int>(m_order.size()); place < end; ++place) {
        at(m_order[static_cast<std::size_t>(place)]).place = place;
    }
}

} // namespace ZelkoGUI
