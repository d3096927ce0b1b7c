#include "bookmarkchanges_p.h"

#include "timedistance_p.h"

#include <algorithm>
#include <utility>

namespace SPECTRUM_OVERVIEW {

using ZELKO_XML::BookmarkEntry;

namespace {

bool isEarlier(const BookmarkEntry& a, const BookmarkEntry& b)
{
    return a.GetTimestamp() < b.GetTimestamp();
}

} // namespace

Bookmarks inOrder(Bookmarks bookmarks)
{
    std::stable_sort(bookmarks.begin(), bookmarks.end(), &isEarlier);
    return bookmarks;
}

Bookmarks withBookmark(Bookmarks bookmarks, quint64 time, const QString& text)
{
    BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(text);
    bookmarks.append(entry);
    return inOrder(std::move(bookmarks));
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
            return timeDistance(a.GetTimestamp(), time) < timeDistance(b.GetTimestamp(), time);
        });
    const bool isNear = nearest != bookmarks.end() && timeDistance(nearest->GetTimestamp(), time) <= reach;
    return isNear ? std::optional(*nearest) : std::nullopt;
}

} // namespace SPECTRUM_OVERVIEW
