#include "bookmarklist_p.h"

#include <algorithm>
#include <map>

namespace ZelkoGUI {

void BookmarkList::append(const Entry& entry)
{
    m_entries.append(entry);
    m_misplaced += misplaced(count() - 1);
    m_outOfRange += outOfRange(count() - 1);
}

void BookmarkList::assign(const Entries& entries)
{
    m_entries = entries;
    countAnew();
}

void BookmarkList::replace(int row, const Entry& entry)
{
    m_misplaced -= misplaced(row) + misplaced(row + 1);
    m_outOfRange -= outOfRange(row);
    m_entries[row] = entry;
    m_misplaced += misplaced(row) + misplaced(row + 1);
    m_outOfRange += outOfRange(row);
}

void BookmarkList::remove(int row)
{
    m_misplaced -= misplaced(row) + misplaced(row + 1);
    m_outOfRange -= outOfRange(row);
    m_entries.removeAt(row);
    m_misplaced += misplaced(row);
}

void BookmarkList::setLimits(const std::optional<ZELKO_XML::RecordExtent>& limits)
{
    if (limits != m_limits) {
        m_limits = limits;
        countAnew();
    }
}

BookmarkList::Entries BookmarkList::withinRange() const
{
    Entries result;
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(result),
                 [this](const Entry& entry) { return !isOutOfRange(entry); });
    return result;
}

BookmarkList::Entries BookmarkList::normalized() const
{
    std::map<quint64, Entry> byTime;
    for (const Entry& entry : m_entries) {
        const auto [place, isNew] = byTime.try_emplace(entry.GetTimestamp(), entry);
        if (!isNew) {
            const QString& before = place->second.GetBookmark();
            const bool needsBlank = !before.isEmpty() && !entry.GetBookmark().isEmpty();
            place->second.SetBookmark(before + (needsBlank ? QStringLiteral(" ") : QString()) + entry.GetBookmark());
        }
    }
    Entries result;
    result.reserve(static_cast<qsizetype>(byTime.size()));
    for (const auto& [time, entry] : byTime) {
        result.append(entry);
    }
    return result;
}

bool BookmarkList::isOutOfRange(const Entry& entry) const
{
    return m_limits && (entry.GetTimestamp() < m_limits->start || entry.GetTimestamp() > m_limits->stop);
}

// 1 or 0; also asked of the row behind the last one, which has no time to be in the wrong place.
int BookmarkList::misplaced(int row) const
{
    return row > 0 && row < count() && m_entries[row - 1].GetTimestamp() >= m_entries[row].GetTimestamp() ? 1 : 0;
}

void BookmarkList::countAnew()
{
    m_misplaced = 0;
    m_outOfRange = 0;
    for (int row = 0; row < count(); ++row) {
        m_misplaced += misplaced(row);
        m_outOfRange += outOfRange(row);
    }
}

} // namespace ZelkoGUI
