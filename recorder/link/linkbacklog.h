#pragma once

#include <zelkobase/connection/framequeue.h>

#include <cstddef>
#include <string>

namespace ZelkoRecorder {

/// What waits to be sent to one client: frames, shared with the backlogs of the other clients. The changes among them
/// are bounded: when there are too many, what was not begun to be sent is dropped, and the client needs a fresh state.
class LinkBacklog
{
public:
    using SharedFrame = ZelkoCommon::FrameQueue::SharedFrame;

    LinkBacklog(std::size_t maxBytes, std::size_t batchBytes);

    /// Appends a change; false when there was no room and the backlog was dropped.
    bool append(SharedFrame frame);

    /// Appends a frame of a state that is being made as the client takes it. It does not count against the bound: who
    /// makes it waits for room by himself, and one large frame would keep every change out, and so never get sent.
    void appendState(SharedFrame frame);

    /// Bytes that wait.
    std::size_t bytes() const { return m_frames.bytes(); }

    bool isEmpty() const { return m_frames.isEmpty(); }

    /// Takes the next batch; see FrameQueue.
    std::string takeBatch() { return m_frames.takeBatch(); }

private:
    const std::size_t m_maxBytes;
    ZelkoCommon::FrameQueue m_frames;
};

} // namespace ZelkoRecorder
