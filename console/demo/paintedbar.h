#pragma once

#include <console/demo/paintedmoment.h>

#include <chartcontrols/vcreplaybar.h>

#include <initializer_list>
#include <utility>

namespace ZelkoConsole {

/// A replay bar over a recording of some length, with its position at two fifths, for pictures.
class PaintedBar
{
public:
    /// When the recording begins, in microseconds since the epoch.
    static constexpr long long begin = 1'777'905'012'000'000;
    static constexpr long long second = 1'000'000;

    /// One of no seconds has a single moment.
    explicit PaintedBar(long long seconds, int width = 720);
    ~PaintedBar();

    VCReplayBar& bar() { return m_bar; }

    /// Bookmarks at so many seconds.
    void bookmark(std::initializer_list<std::pair<int, const char*>> marks);

private:
    PaintedMoment m_start;
    PaintedMoment m_stop;
    PaintedMoment m_position;
    VCReplayBar m_bar;
};

} // namespace ZelkoConsole
