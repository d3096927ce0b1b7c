#pragma once

#include <QString>

/// A bookmark on a replay bar: a moment in microseconds since the epoch and a text.
struct BookmarkType
{
    BookmarkType() = default;
    BookmarkType(long long bookmarkTime, QString bookmarkText)
        : time(bookmarkTime)
        , text(std::move(bookmarkText))
    {}

    long long time = 0;
    QString text;

    bool operator==(const BookmarkType&) const = default;
};
