#include <zelkobase/maps/bookmarkmapdata.h>

#include <observerbase/datetime.h>

#include "sizeditem_p.h"

namespace zelko::bookmarkmap {

BookmarkMapData::BookmarkMapData() = default;
BookmarkMapData::BookmarkMapData(const BookmarkMapData& other) = default;
BookmarkMapData& BookmarkMapData::operator=(const BookmarkMapData& other) = default;
BookmarkMapData::~BookmarkMapData() = default;

BookmarkMapData::BookmarkMapData(unsigned int key, const ZELKO_XML::BookmarkEntry& entry)
    : m_key(key)
    , m_entry(entry)
{}

unsigned int BookmarkMapData::GetKey() const
{
    return m_key;
}

bool BookmarkMapData::operator==(const BookmarkMapData& other) const
{
    return m_key == other.m_key && m_entry == other.m_entry;
}

void BookmarkMapData_ItemFormat::appendTo(std::string& out, const BookmarkMapData& item)
{
    appendSizedItem(out, [&] {
        const unsigned int key = item.GetKey();
        out.append(reinterpret_cast<const char*>(&key), sizeof key);
        item.toEntry().appendBinary(out);
    });
}

std::string BookmarkMapData_ItemFormat::toStandardString(const BookmarkMapData& item)
{
    std::string out;
    appendTo(out, item);
    return out;
}

bool BookmarkMapData_ItemFormat::fromCharStream(const char** stream, BookmarkMapData& item)
{
    SizedItem bytes = takeSizedItem(stream);
    unsigned int key = 0;
    if (static_cast<std::size_t>(bytes.end - bytes.begin) < sizeof key) {
        return false;
    }
    std::memcpy(&key, bytes.begin, sizeof key);
    bytes.begin += sizeof key;
    ZELKO_XML::BookmarkEntry entry;
    if (!entry.readBinary(bytes.begin, bytes.end) || !bytes.isEmpty()) {
        return false;
    }
    item = BookmarkMapData(key, entry);
    return true;
}

QString BookmarkMapData_ItemFormat::GetString(const BookmarkMapData& item)
{
    const ZELKO_XML::BookmarkEntry& entry = item.toEntry();
    return QStringLiteral("%1 %2").arg(Vorn::DateTime::UTCtoLocalString(entry.GetTimestamp()), entry.GetBookmark());
}

} // namespace zelko::bookmarkmap
