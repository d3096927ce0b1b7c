#pragma once

#include "bookmarksite.h"
#include "shownreplaybar.h"

/// A replay bar by itself, with the bookmarks of records on the tree.
struct DialogBar
{
    explicit DialogBar(bool readOnly = false)
        : site(readOnly)
    {}

    void store(const QString& id, long long start, long long stop)
    {
        const BookmarkSite::RecordPtr record = BookmarkSite::record({}, id);
        record->SetStartTime(static_cast<quint64>(start));
        record->SetStopTime(static_cast<quint64>(stop));
        site.store(record);
    }
    void showRecord(const QString& id) { shown.widget->setRecord(id, site.records.get(), QStringLiteral("D")); }

    /// Stores and shows the record R of 90 seconds, and forgets the position that was told.
    void showRecord(const BookmarkSite::Entries& bookmarks = {})
    {
        site.store(bookmarks);
        showRecord(QStringLiteral("R"));
        shown.takePositions();
    }

    BookmarkSite site;
    ShownReplayBar shown{std::make_unique<ZelkoGUI::ReplayBarWidget>(&site.model)};
};
