#include "bookmarkchanges_p.h"

#include <algorithm>

namespace SPECTRUM_OVERVIEW {

using ZELKO_XML::BookmarkEntry;

namespace {

bool isEarlier(const BookmarkEntry& a, const BookmarkEntry& b)
{
    return a.GetTimestamp() < b.GetTimestamp();
}

quint64 distance(quint64 a, quint64 b)
{
    return a < b ? b - a : a - b;
}

} // namespace

Bookmarks withBookmark(Bookmarks bookmarks, quint64 time, const QString& text)
{
    BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(text);
    bookmarks.append(entry);
    std::stable_sort(bookmarks.begin(), bookmarks.end(), &isEarlier);
    return bookmarks;
}

Bookmarks withoutBookmark(Bookmarks bookmarks, const BookmarkEntry& bookmark)
{
    bookmarks.removeOne(bookmark);
    return bookmarks;
}

std::optional<BookmarkEntry> nearestBookmark(const Bookmarks& bookmarks, quint64 time, quint64 reach)
{
    const auto nearest =
        std::min_element(bookmarks.begin(), bookmarks.end(), [time](const BookmarkEntry& a, const BookmarkEntry& b) {
            return distance(a.GetTimestamp(), time) < distance(b.GetTimestamp(), time);
        });
    const bool isNear = nearest != bookmarks.end() && distance(nearest->GetTimestamp(), time) <= reach;
    return isNear ? std::optional(*nearest) : std::nullopt;
}

} // namespace SPECTRUM_OVERVIEW
