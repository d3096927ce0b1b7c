#pragma once

#include <overviewdisplay/overviewlevels.h>
#include <zelkobase/data/bookmarkentry.h>

#include <QVector>

namespace ZelkoConsole {

/// The spectra of a recording as they arrive: noise, carriers, a channel with talks, bursts that hop, and a sweep.
class PaintedSpectra
{
public:
    static constexpr quint64 begin = 1'777'896'000'000'000; ///< microseconds since the epoch
    static constexpr quint64 second = 1'000'000;

    /// `seconds` of recording in so many lines.
    explicit PaintedSpectra(double seconds = 600, int lines = 900, int bins = 1024);

    /// What a recorder answers to this wish.
    explicit PaintedSpectra(const SPECTRUM_OVERVIEW::OverviewWish& wish);

    /// 0: frequencies count from the centre, or are not known at all.
    void setCentre(quint64 centre, quint64 span = 2'400'000);

    /// Lets lines arrive, both included.
    void take(int first, int last);
    void takeAll() { take(0, lineCount() - 1); }

    int lineCount() const { return static_cast<int>(m_levels.wish().lineCount); }
    quint64 start() const { return m_levels.wish().start; }
    quint64 stop() const { return m_levels.wish().stop; }
    const SPECTRUM_OVERVIEW::OverviewLevels& levels() const { return m_levels; }

    /// So many, evenly spread, with texts of every length.
    QVector<ZELKO_XML::BookmarkEntry> bookmarks(int count) const;

private:
    qint16 level(double time, double place) const;

    SPECTRUM_OVERVIEW::OverviewLevels m_levels;
    quint64 m_centre = 118'700'000;
    quint64 m_span = 2'400'000;
};

} // namespace ZelkoConsole
