#include <recorder/link/linkbacklog.h>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

LinkBacklog::LinkBacklog(std::size_t maxBytes, std::size_t batchBytes)
    : m_maxBytes(maxBytes)
    , m_batchBytes(batchBytes)
{}

bool LinkBacklog::append(SharedFrame frame)
{
    if (!isEmpty() && m_bytes + frame->size() > m_maxBytes) {
        drop();
        return false;
    }
    appendState(std::move(frame));
    return true;
}

void LinkBacklog::appendState(SharedFrame frame)
{
    m_bytes += frame->size();
    m_frames.push_back(std::move(frame));
}

std::string LinkBacklog::takeBatch()
{
    std::string batch;
    while (!m_frames.empty()) {
        const std::string& first = *m_frames.front();
        const std::size_t left = first.size() - m_sentOfFirst;
        if (!batch.empty() && batch.size() + left > m_batchBytes) {
            break;
        }
        const std::size_t taken = std::min(left, m_batchBytes - batch.size());
        batch.append(first, m_sentOfFirst, taken);
        if (taken < left) {
            m_sentOfFirst += taken;
            break;
        }
        m_sentOfFirst = 0;
        m_frames.pop_front();
    }
    m_bytes -= batch.size();
    return batch;
}

// A frame of which the client has a part must come to its end, or the client loses its place in the stream.
void LinkBacklog::drop()
{
    const SharedFrame begun = m_sentOfFirst > 0 ? m_frames.front() : nullptr;
    m_frames.clear();
    m_bytes = 0;
    if (begun) {
        m_frames.push_back(begun);
        m_bytes = begun->size() - m_sentOfFirst;
    }
}

} // namespace ZelkoRecorder
