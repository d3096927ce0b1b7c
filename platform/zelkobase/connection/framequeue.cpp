#include <zelkobase/connection/framequeue.h>

#include <algorithm>
#include <utility>

namespace ZelkoCommon {

FrameQueue::FrameQueue(std::size_t batchBytes)
    : m_batchBytes(batchBytes)
{}

void FrameQueue::append(SharedFrame frame)
{
    m_bytes += frame->size();
    m_frames.push_back(std::move(frame));
}

std::string FrameQueue::takeBatch()
{
    std::string batch;
    while (!m_frames.empty()) {
        const std::string& first = *m_frames.front();
        const std::size_t left = first.size() - m_takenOfFirst;
        if (!batch.empty() && batch.size() + left > m_batchBytes) {
            break;
        }
        const std::size_t taken = std::min(left, m_batchBytes - batch.size());
        batch.append(first, m_takenOfFirst, taken);
        if (taken < left) {
            m_takenOfFirst += taken;
            break;
        }
        m_takenOfFirst = 0;
        m_frames.pop_front();
    }
    m_bytes -= batch.size();
    return batch;
}

void FrameQueue::drop()
{
    const SharedFrame begun = m_takenOfFirst > 0 ? m_frames.front() : nullptr;
    m_frames.clear();
    m_bytes = 0;
    if (begun) {
        m_frames.push_back(begun);
        m_bytes = begun->size() - m_takenOfFirst;
    }
}

void FrameQueue::clear()
{
    m_frames.clear();
    m_takenOfFirst = 0;
    m_bytes = 0;
}

} // namespace ZelkoCommon
