#include <recorder/service/framereader.h>

namespace ZelkoRecorder {

FrameReader::Result FrameReader::next(ChannelFrame* frame, std::string_view* samples)
{
    m_bytes.erase(0, m_used);
    m_used = 0;
    if (m_bytes.size() < ChannelFrame::headSize) {
        return Result::NeedsMore;
    }
    const auto head = ChannelFrame::readHead(m_bytes);
    if (!head) {
        return Result::Malformed;
    }
    const std::size_t whole = ChannelFrame::headSize + head->sampleBytes;
    if (m_bytes.size() < whole) {
        return Result::NeedsMore;
    }
    *frame = *head;
    *samples = std::string_view(m_bytes).substr(ChannelFrame::headSize, head->sampleBytes);
    m_used = whole;
    return Result::Frame;
}

FrameReader::Result readDatagram(std::string_view datagram, ChannelFrame* frame, std::string_view* samples)
{
    const auto head = ChannelFrame::readHead(datagram);
    if (!head || datagram.size() != ChannelFrame::headSize + head->sampleBytes) {
        return FrameReader::Result::Malformed;
    }
    *frame = *head;
    *samples = datagram.substr(ChannelFrame::headSize);
    return FrameReader::Result::Frame;
}

} // namespace ZelkoRecorder
