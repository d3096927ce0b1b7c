#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/maps/zelkobasemaps_export.h>

#include <QString>

#include <limits>
#include <string>

namespace zelko::bookmarkmap {

/// One item of the bookmark map: a bookmark and the key it stands under.
class ZELKOBASEMAPS_EXPORT BookmarkMapData
{
public:
    using KeyType = unsigned int;

    /// The key; the largest number, which is no key, for a new item.
    virtual unsigned int GetKey() const;

    BookmarkMapData();
    BookmarkMapData(unsigned int key, const ZELKO_XML::BookmarkEntry& entry);
    BookmarkMapData(const BookmarkMapData& other);
    BookmarkMapData& operator=(const BookmarkMapData& other);
    virtual ~BookmarkMapData();

    const ZELKO_XML::BookmarkEntry& toEntry() const { return m_entry; }

    bool operator==(const BookmarkMapData& other) const;

private:
    unsigned int m_key = std::numeric_limits<unsigned int>::max();
    ZELKO_XML::BookmarkEntry m_entry;
};

/// How an item stands in a command: its size in four bytes, machine order, then its key in four bytes and the binary
/// form of the bookmark.
class ZELKOBASEMAPS_EXPORT BookmarkMapData_ItemFormat
{
public:
    static std::string toStandardString(const BookmarkMapData& item);

    /// Appends what `toStandardString` gives.
    static void appendTo(std::string& out, const BookmarkMapData& item);

    /// Reads an item of which the stream is known to hold the announced size and advances the stream behind it. False
    /// for bytes that are not exactly one item; `item` is as before then.
    static bool fromCharStream(const char** stream, BookmarkMapData& item);

    /// Local time and text in one line.
    static QString GetString(const BookmarkMapData& item);
};

/// Names the text form of the item type; bookmarks have none but BookmarkMapData_ItemFormat::GetString.
struct BookmarkMapData_TextAdapter
{};

} // namespace zelko::bookmarkmap
