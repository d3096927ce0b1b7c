#pragma once

#include "recordbegin.h"

#include <zelkobase/data/bookmarkentry.h>

#include <QStringList>
#include <QVector>

/// A bookmark at a time in microseconds since the epoch.
inline ZELKO_XML::BookmarkEntry makeBookmark(quint64 time, const QString& text)
{
    ZELKO_XML::BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(text);
    return entry;
}

/// A bookmark so many seconds behind the begin of a record.
inline ZELKO_XML::BookmarkEntry bookmarkAt(int second, const QString& text)
{
    return makeBookmark(recordBegin + static_cast<quint64>(second) * 1'000'000, text);
}

/// Each bookmark as "<microseconds behind the begin of a record> <text>".
inline QStringList bookmarkTexts(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks)
{
    QStringList texts;
    for (const ZELKO_XML::BookmarkEntry& bookmark : bookmarks) {
        const auto offset = static_cast<qint64>(bookmark.GetTimestamp() - recordBegin);
        texts.append(QStringLiteral("%1 %2").arg(offset).arg(bookmark.GetBookmark()));
    }
    return texts;
}

/// A list in order and within the record, and its texts.
inline const QVector<ZELKO_XML::BookmarkEntry> twoBookmarks{bookmarkAt(10, QStringLiteral("a")),
                                                            bookmarkAt(20, QStringLiteral("b"))};
inline const QStringList textsOfTwo{QStringLiteral("10000000 a"), QStringLiteral("20000000 b")};
