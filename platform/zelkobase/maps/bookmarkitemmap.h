#pragma once

#include <zelkobase/maps/bookmarkmapdata.h>
#include <zelkobase/maps/zelkobasemaps_export.h>

#include <zelkoguibase/valueitemmap/valueitemmap.h>

// Compiled once, in this room, so that a dynamic cast finds one and the same type everywhere.
extern template class ZELKOBASEMAPS_EXPORT
    ValueItemMapBase<zelko::bookmarkmap::BookmarkMapData, zelko::bookmarkmap::BookmarkMapData_ItemFormat,
                     zelko::bookmarkmap::BookmarkMapData_TextAdapter>;
extern template class ZELKOBASEMAPS_EXPORT
    ValueItemMap<zelko::bookmarkmap::BookmarkMapData, zelko::bookmarkmap::BookmarkMapData_ItemFormat,
                 zelko::bookmarkmap::BookmarkMapData_TextAdapter>;

namespace zelko::bookmarkmap {

/// The bookmarks of one record, by keys that mean nothing but identity.
class ZELKOBASEMAPS_EXPORT BookmarkItemMap final
    : public ValueItemMap<BookmarkMapData, BookmarkMapData_ItemFormat, BookmarkMapData_TextAdapter>
{
public:
    static constexpr int Type = 21;
    static constexpr const char* TypeName = "BookmarkItemMap";

    BookmarkItemMap();
    BookmarkItemMap(const QString& name, TValueState state);
    BookmarkItemMap(const BookmarkItemMap& other);
    BookmarkItemMap& operator=(const BookmarkItemMap& other);
    ~BookmarkItemMap() override;

    /// Adds a bookmark under a new key, which is returned. The key is no item's now, but may have been one's before.
    unsigned int AddEntry(const ZELKO_XML::BookmarkEntry& entry, IObserver* origin);

    bool contains(const unsigned int& key) const;

    /// How many bookmarks there are, in words; empty for an empty map.
    QString GetStringValue() const override;

    int GetType() const override { return Type; }
    const char* GetTypeName() const override { return TypeName; }

protected:
    unsigned int CreateNewUniqueKey() override;

private:
    unsigned int m_nextKey = 0;
};

} // namespace zelko::bookmarkmap
