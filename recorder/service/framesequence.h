#pragma once

#include <recorder/service/channelframe.h>

namespace ZelkoRecorder {

/// Decides which frames of a channel follow those before. A frame that is far off, in number or in time, is not
/// believed alone, for all that come after it would be late; if others go on from it, the source has begun anew.
class FrameSequence
{
public:
    enum class Place {
        Next,
        BehindGap, ///< frames are missing before it, or the source has begun anew
        Refused    ///< older than the one before, the same again, or not believed
    };

    /// Distances of frames that are believed: in numbers, and in microseconds behind the end of the frame before.
    static constexpr qint64 longestGap = 1'000'000;
    static constexpr quint64 longestPause = 3'600'000'000;

    /// So many frames that follow each other are believed wherever they are; the last of them is taken.
    static constexpr int framesToBelieve = 4;

    /// Where the frame belongs, which ends at `end`. The first one of all is `Next`.
    Place place(const ChannelFrame& frame, quint64 end);

    /// Frames that never came, as the numbers of those that followed each other tell.
    quint64 lostFrames() const { return m_lost; }

private:
    struct Point
    {
        quint32 number = 0;
        quint64 time = 0;
        quint64 end = 0;
    };

    static bool follows(const Point& before, const Point& point);
    static bool isLate(const Point& before, const Point& point);
    bool isBelieved(const Point& point);

    bool m_hasBegun = false;
    Point m_last;
    Point m_suspect; // the last of those that are not believed yet
    int m_suspects = 0;
    quint64 m_lost = 0;
};

} // namespace ZelkoRecorder
