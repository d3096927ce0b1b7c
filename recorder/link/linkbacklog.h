#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>

namespace ZelkoRecorder {

/// What waits to be sent to one client: frames, shared with the backlogs of the other clients. Bounded: when it is
/// full, what was not begun to be sent is dropped, and the client needs a fresh state.
class LinkBacklog
{
public:
    using SharedFrame = std::shared_ptr<const std::string>;

    LinkBacklog(std::size_t maxBytes, std::size_t batchBytes);

    /// Appends a frame; false when there was no room and the backlog was dropped.
    bool append(SharedFrame frame);

    /// Appends a frame of a state that is being made as the client takes it. Never dropped: who makes it waits for room
    /// by himself.
    void appendState(SharedFrame frame);

    /// Bytes that wait.
    std::size_t bytes() const { return m_bytes; }

    bool isEmpty() const { return m_bytes == 0; }

    /// Takes the next batch: whole frames as far as they fit, or a piece of a frame that is larger than a batch.
    std::string takeBatch();

private:
    void drop();

    const std::size_t m_maxBytes;
    const std::size_t m_batchBytes;
    std::deque<SharedFrame> m_frames;
    std::size_t m_sentOfFirst = 0; // bytes of the first frame that are with the client already
    std::size_t m_bytes = 0;
};

} // namespace ZelkoRecorder
