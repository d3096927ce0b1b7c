#pragma once

#include "moment.h"
#include "testbookmarks.h"

#include <chartcontrols/vcreplaybar.h>

#include <QTest>

/// A replay bar of 100 seconds from the begin of the records of tests, one second a pixel, that begins 10 pixels from
/// the left.
struct BookmarkBar
{
    BookmarkBar()
    {
        bar.SetPixOffset(10, 10);
        bar.resize(121, 60);
        bar.SetRecordingStart_ValuePath(start.path());
        bar.SetRecordingStop_ValuePath(stop.path());
        bar.SetCurrentPosition_ValuePath(position.path());
        bar.show();
    }

    QStringList bookmarks() const
    {
        QStringList texts;
        for (const BookmarkType& bookmark : bar.GetBookmarks()) {
            texts.append(bookmarkTexts({makeBookmark(static_cast<quint64>(bookmark.time), bookmark.text)}));
        }
        return texts;
    }

    /// Of each bookmark, whether a user may move it.
    QList<bool> enabled() const
    {
        QList<bool> result;
        for (int number = VCReplayBar::FirstBookmarkMarker; bar.GetMarker(number); ++number) {
            result.append(bar.GetMarker(number)->IsEnabled());
        }
        return result;
    }

    QPoint headOf(int second) const { return {10 + second, bar.rulerHeight() + 6}; }
    void press(int second) { QTest::mousePress(&bar, Qt::LeftButton, {}, headOf(second)); }
    void moveTo(int second) { QTest::mouseMove(&bar, headOf(second)); }
    void release(int second) { QTest::mouseRelease(&bar, Qt::LeftButton, {}, headOf(second)); }

    /// Sets a bookmark at the position, second 50, if the bar lets a user do so.
    void insert() { QTest::keyClick(&bar, Qt::Key_Insert); }

    const Moment start{recordBegin};
    const Moment stop{recordBegin + 100'000'000};
    const Moment position{recordBegin + 50'000'000};
    VCReplayBar bar{nullptr, "ZelkoReplayBar", true};
};
