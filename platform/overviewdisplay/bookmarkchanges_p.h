#pragma once

#include <zelkobase/data/bookmarkentry.h>

#include <QVector>

#include <optional>

namespace SPECTRUM_OVERVIEW {

using Bookmarks = QVector<ZELKO_XML::BookmarkEntry>;

/// The bookmarks in the order of their times; those of the same time as they were.
Bookmarks inOrder(Bookmarks bookmarks);

/// The bookmarks with one more, in the order of their times; behind those of the same time.
Bookmarks withBookmark(Bookmarks bookmarks, quint64 time, const QString& text);

/// The bookmarks without this one; of several that are alike, without one of them.
Bookmarks withoutBookmark(Bookmarks bookmarks, const ZELKO_XML::BookmarkEntry& bookmark);

/// The one that is nearest to a time, and no further from it than `reach`, in microseconds.
std::optional<ZELKO_XML::BookmarkEntry> nearestBookmark(const Bookmarks& bookmarks, quint64 time, quint64 reach);

} // namespace SPECTRUM_OVERVIEW
