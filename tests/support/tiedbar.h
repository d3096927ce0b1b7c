#pragma once

#include "moment.h"

#include <chartcontrols/vcreplaybar.h>
#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QTest>

/// A bar of a recording of 100 seconds, one second a pixel, that begins 10 pixels from the left; its position is at
/// second 50.
struct TiedBar
{
    static constexpr long long begin = 1'700'000'000'000'000;
    static constexpr long long perPixel = 1'000'000;

    TiedBar()
    {
        bar.SetPixOffset(10, 10);
        bar.resize(121, 60);
        bar.SetRecordingStart_ValuePath(start.path());
        bar.SetRecordingStop_ValuePath(stop.path());
        bar.SetCurrentPosition_ValuePath(position.path());
        bar.GetMarker(2)->SetShowMarker(false);
        bar.GetMarker(3)->SetShowMarker(false);
        bar.show();
    }

    static ValueNumeric<double>& value(const QString& path)
    {
        return *Tree::Instance()->Find<ValueNumeric<double>>(path);
    }
    static void set(const QString& path, long long time) { value(path).SetValue(static_cast<double>(time), nullptr); }

    /// Second of the recording at which a marker stands.
    long long secondOf(int marker) const
    {
        return (static_cast<long long>(bar.GetMarker(marker)->GetPosition()) - begin) / perPixel;
    }

    static std::vector<BookmarkType> bookmarks(std::initializer_list<int> seconds)
    {
        std::vector<BookmarkType> all;
        for (const int second : seconds) {
            all.emplace_back(begin + second * perPixel, QStringLiteral("b%1").arg(second));
        }
        return all;
    }

    void press(int second) { QTest::mousePress(&bar, Qt::LeftButton, {}, headOf(second)); }
    void moveTo(int second) { QTest::mouseMove(&bar, headOf(second)); }
    void release(int second) { QTest::mouseRelease(&bar, Qt::LeftButton, {}, headOf(second)); }
    void drag(int from, int to)
    {
        press(from);
        moveTo(to);
        release(to);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&bar, key, modifiers); }

    /// Where the flag of a marker at that second begins; the line of one that is no flag is found there too.
    QPoint headOf(int second) const { return {10 + second, bar.rulerHeight() + 6}; }

    const Moment start{begin};
    const Moment stop{begin + 100 * perPixel};
    const Moment position{begin + 50 * perPixel};
    VCReplayBar bar{nullptr, "ZelkoReplayBar", true};
};
