#include <recorder/link/linkbacklog.h>

#include <utility>

namespace ZelkoRecorder {

LinkBacklog::LinkBacklog(std::size_t maxBytes, std::size_t batchBytes)
    : m_maxBytes(maxBytes)
    , m_frames(batchBytes)
{}

bool LinkBacklog::append(SharedFrame frame)
{
    const std::size_t waiting = m_frames.changeBytes();
    if (waiting > 0 && waiting + frame->size() > m_maxBytes) {
        m_frames.drop();
        return false;
    }
    m_frames.append(std::move(frame));
    return true;
}

void LinkBacklog::appendState(SharedFrame frame)
{
    m_frames.append(std::move(frame), ZelkoCommon::FrameQueue::Kind::State);
}

} // namespace ZelkoRecorder
