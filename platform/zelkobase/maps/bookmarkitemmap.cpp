#include <zelkobase/maps/bookmarkitemmap.h>

template class ValueItemMapBase<zelko::bookmarkmap::BookmarkMapData, zelko::bookmarkmap::BookmarkMapData_ItemFormat,
                                zelko::bookmarkmap::BookmarkMapData_TextAdapter>;
template class ValueItemMap<zelko::bookmarkmap::BookmarkMapData, zelko::bookmarkmap::BookmarkMapData_ItemFormat,
                            zelko::bookmarkmap::BookmarkMapData_TextAdapter>;

namespace zelko::bookmarkmap {

BookmarkItemMap::BookmarkItemMap() = default;
BookmarkItemMap::BookmarkItemMap(const QString& name, TValueState state)
    : ValueItemMap(name, state)
{}
BookmarkItemMap::BookmarkItemMap(const BookmarkItemMap& other) = default;
BookmarkItemMap& BookmarkItemMap::operator=(const BookmarkItemMap& other) = default;
BookmarkItemMap::~BookmarkItemMap() = default;

unsigned int BookmarkItemMap::AddEntry(const ZELKO_XML::BookmarkEntry& entry, IObserver* origin)
{
    return Add(BookmarkMapData(CreateNewUniqueKey(), entry), origin);
}

bool BookmarkItemMap::contains(const unsigned int& key) const
{
    return data().find(key) != data().end();
}

QString BookmarkItemMap::GetStringValue() const
{
    if (data().empty()) {
        return {};
    }
    return data().size() == 1 ? QStringLiteral("1 bookmark") : QStringLiteral("%1 bookmarks").arg(data().size());
}

// Counts on from the key made last, past those that came from elsewhere. A key that became free is so not given to
// another bookmark at once, while a reader may still hold it for the old one.
unsigned int BookmarkItemMap::CreateNewUniqueKey()
{
    while (m_nextKey == InvalidKey || contains(m_nextKey)) {
        ++m_nextKey;
    }
    return m_nextKey++;
}

} // namespace zelko::bookmarkmap
