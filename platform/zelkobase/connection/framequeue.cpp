#include <zelkobase/connection/framequeue.h>

#include <algorithm>
#include <utility>

namespace ZelkoCommon {

FrameQueue::FrameQueue(std::size_t batchBytes)
    : m_batchBytes(batchBytes)
{}

void FrameQueue::append(SharedFrame frame, Kind kind)
{
    count(kind, frame->size());
    m_frames.push_back({std::move(frame), kind});
}

std::string FrameQueue::takeBatch()
{
    std::string batch;
    while (!m_frames.empty()) {
        const auto& [first, kind] = m_frames.front();
        const std::size_t left = first->size() - m_takenOfFirst;
        if (!batch.empty() && batch.size() + left > m_batchBytes) {
            break;
        }
        const std::size_t taken = std::min(left, m_batchBytes - batch.size());
        batch.append(*first, m_takenOfFirst, taken);
        countTaken(kind, taken);
        if (taken < left) {
            m_takenOfFirst += taken;
            break;
        }
        m_takenOfFirst = 0;
        m_frames.pop_front();
    }
    return batch;
}

void FrameQueue::drop()
{
    if (m_takenOfFirst == 0) {
        clear();
        return;
    }
    m_frames.resize(1);
    const auto& [begun, kind] = m_frames.front();
    m_bytes = 0;
    m_changeBytes = 0;
    count(kind, begun->size() - m_takenOfFirst);
}

void FrameQueue::clear()
{
    m_frames.clear();
    m_takenOfFirst = 0;
    m_bytes = 0;
    m_changeBytes = 0;
}

void FrameQueue::count(Kind kind, std::size_t bytes)
{
    m_bytes += bytes;
    m_changeBytes += kind == Kind::Change ? bytes : 0;
}

void FrameQueue::countTaken(Kind kind, std::size_t bytes)
{
    m_bytes -= bytes;
    m_changeBytes -= kind == Kind::Change ? bytes : 0;
}

} // namespace ZelkoCommon
