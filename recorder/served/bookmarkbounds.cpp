#include <recorder/served/bookmarkbounds.h>

#include <recorder/store/recordedits.h>

#include <utility>

namespace ZelkoRecorder {

using zelko::bookmarkmap::BookmarkItemMap;
using zelko::bookmarkmap::BookmarkMapData;

BookmarkBounds::BookmarkBounds(BookmarkItemMap* map, QObject* parent)
    : QObject(parent)
    , m_position(map->GetChangeLog().NextNumber())
{
    m_map = map;
    noteKeys();
}

BookmarkBounds::~BookmarkBounds() = default;

// Not at once: others still hear of the change that would be taken back.
void BookmarkBounds::Update(Observable*, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged && !std::exchange(m_isTidying, true)) {
        QMetaObject::invokeMethod(this, &BookmarkBounds::tidy, Qt::QueuedConnection);
    }
}

void BookmarkBounds::tidy()
{
    m_isTidying = false;
    if (!m_map) {
        return;
    }
    const Keys written = writtenKeys();
    for (const unsigned int key : written) {
        if (!isSound(key)) {
            m_map->EraseAt(key, this);
        }
    }
    eraseTooMany(written);
    noteKeys();
}

// A bookmark that was there before has its place, also when it is changed.
void BookmarkBounds::eraseTooMany(const Keys& written)
{
    for (auto key = written.rbegin(); m_map->Size() > std::uint64_t{mostBookmarks} && key != written.rend(); ++key) {
        if (!m_known.contains(*key)) {
            m_map->EraseAt(*key, this);
        }
    }
}

void BookmarkBounds::noteKeys()
{
    const Keys keys = m_map->IndexVector();
    m_known = {keys.begin(), keys.end()};
}

// Since the last time, in order; those of all items where more was written than the log keeps.
BookmarkBounds::Keys BookmarkBounds::writtenKeys()
{
    Keys keys;
    char type = 0;
    unsigned int key = 0;
    while (const signed char result = m_map->GetChangeLog().ReadNext(m_position, type, key)) {
        if (result < 0) {
            return m_map->IndexVector();
        }
        if (type == valueitemmap::ChangeSet) {
            keys.push_back(key);
        }
    }
    return keys;
}

// Also what went again is: there is nothing to erase.
bool BookmarkBounds::isSound(unsigned int key) const
{
    const auto found = m_map->data().find(key);
    return found == m_map->data().end() ||
           (found->second.GetKey() == key && found->second.toEntry().GetBookmark().size() <= longestRecordText);
}

} // namespace ZelkoRecorder
