#pragma once

#include <recorder/service/channelframe.h>

#include <vector>

namespace ZelkoRecorder {

/// Decides which frames of a channel follow those before. A frame that is far off, in number or in time, is not
/// believed alone, for all that come after it would be late; if others go on from it, the source has begun anew, or
/// goes on behind a long hole.
class FrameSequence
{
public:
    enum class Place {
        Next,
        BehindGap, ///< frames are missing before it, or the source has begun anew
        Unproven,  ///< far off: to be kept, it may still be believed
        Proven,    ///< with it all that are unproven are believed: `believe` says where they belong
        Refused    ///< older than the one before, or the same again
    };

    /// Distances of frames that are believed: in numbers, and in microseconds behind the end of the frame before.
    static constexpr qint64 longestGap = 1'000'000;
    static constexpr quint64 longestPause = 3'600'000'000;

    /// So many frames are believed wherever they are if their numbers and times go on from each other.
    static constexpr int framesToBelieve = 4;

    /// Where the frame belongs, which ends at `end`. The first one of all is `Next`.
    Place place(const ChannelFrame& frame, quint64 end);

    /// The last ones in a row that are neither believed nor refused; those before them are refused by now.
    int unproven() const { return static_cast<int>(m_unproven.size()); }

    /// Where those belong, in their order, which are then the last ones that are believed: each is `Next` or
    /// `BehindGap`.
    std::vector<Place> believe();

    /// The same when no more frames come: then those are believed whose numbers go on from the last one's, for nothing
    /// that comes after them can be late. Empty if they do not.
    std::vector<Place> believeAtEnd();

    /// Frames that never came, as the numbers of those that followed each other tell.
    quint64 lostFrames() const { return m_lost; }

private:
    struct Point
    {
        quint32 number = 0;
        quint64 time = 0;
        quint64 end = 0;
    };

    Place append(const Point& point);
    static bool goesOn(const Point& before, const Point& point);
    static bool follows(const Point& before, const Point& point);
    static bool isLate(const Point& before, const Point& point);

    bool m_hasBegun = false;
    Point m_last;
    std::vector<Point> m_unproven;
    quint64 m_lost = 0;
};

} // namespace ZelkoRecorder
