#pragma once

#include <chartcontrols/vcreplaybar.h>

#include <QTest>

#include <cmath>

/// What a user does with the mouse on a replay bar. Moments are microseconds since the epoch.
class ReplayBarHands
{
public:
    explicit ReplayBarHands(VCReplayBar& bar)
        : m_bar(bar)
    {}

    /// Where a marker at that moment has its handle, and where it has its flag.
    QPoint handleAt(double moment) const { return {m_bar.pixelAt(moment), m_bar.height() - 4}; }
    QPoint flagAt(double moment) const { return {m_bar.pixelAt(moment), m_bar.rulerHeight() + 6}; }

    void dragPosition(double from, double to) { drag(handleAt(from), handleAt(to)); }
    void dragFlag(double from, double to) { drag(flagAt(from), flagAt(to)); }
    void doubleClick(double moment) { QTest::mouseDClick(&m_bar, Qt::LeftButton, {}, flagAt(moment)); }

    /// The moment to which a drag between the pixels of both moments takes the one that stood at the first.
    double afterDrag(double from, double to) const
    {
        const double start = m_bar.visibleStart();
        const double pixels = m_bar.placeAt(m_bar.visibleStop()) - m_bar.placeAt(start);
        const double way = (m_bar.pixelAt(to) - m_bar.pixelAt(from)) * (m_bar.visibleStop() - start) / pixels;
        return std::round(from + way);
    }

private:
    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(&m_bar, Qt::LeftButton, {}, from);
        QTest::mouseMove(&m_bar, to);
        QTest::mouseRelease(&m_bar, Qt::LeftButton, {}, to);
    }

    VCReplayBar& m_bar;
};
