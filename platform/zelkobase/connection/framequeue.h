#pragma once

#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <cstddef>
#include <deque>
#include <memory>
#include <string>

namespace ZelkoCommon {

/// Frames that wait to be sent, and the batches in which they go. Not thread safe.
class ZELKOBASECONNECTION_EXPORT FrameQueue
{
public:
    using SharedFrame = std::shared_ptr<const std::string>;

    /// No batch is larger than `batchBytes`.
    explicit FrameQueue(std::size_t batchBytes);

    enum class Kind {
        Change,
        State ///< whoever makes a state makes it as it is taken, and bounds what waits of it himself
    };

    void append(SharedFrame frame, Kind kind = Kind::Change);

    /// Bytes that wait.
    std::size_t bytes() const { return m_bytes; }

    /// Those of them that are changes.
    std::size_t changeBytes() const { return m_changeBytes; }

    bool isEmpty() const { return m_bytes == 0; }

    /// Takes the next batch: whole frames as far as they fit, or a piece of a frame that is larger than a batch. Empty
    /// when nothing waits.
    std::string takeBatch();

    /// Forgets what waits, but for the rest of a frame of which a piece was taken: without it whoever reads the batches
    /// would lose his place in them.
    void drop();

    /// Forgets everything: nobody reads the batches any more.
    void clear();

private:
    struct Waiting
    {
        SharedFrame frame;
        Kind kind;
    };

    void count(Kind kind, std::size_t bytes);
    void countTaken(Kind kind, std::size_t bytes);

    const std::size_t m_batchBytes;
    std::deque<Waiting> m_frames;
    std::size_t m_takenOfFirst = 0;
    std::size_t m_bytes = 0;
    std::size_t m_changeBytes = 0;
};

} // namespace ZelkoCommon
