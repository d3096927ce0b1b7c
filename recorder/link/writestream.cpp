#include <recorder/link/writestream.h>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

using namespace ZelkoCommon::link;

void WriteStream::append(std::string_view batch)
{
    const std::size_t passedOver = std::min(batch.size(), m_toPassOver);
    m_toPassOver -= passedOver;
    m_bytes.erase(0, std::exchange(m_position, 0));
    m_bytes += batch.substr(passedOver);
}

ReadResult WriteStream::next(Frame& frame)
{
    std::string_view rest = std::string_view(m_bytes).substr(m_position);
    FrameHeader header;
    ReadResult result = readHeader(rest, header);
    if (result == ReadResult::Frame) {
        const bool isWrite = header.type == FrameType::Commands && header.payloadSize <= maxWritePayload;
        result = isWrite ? readFrame(rest, frame) : ReadResult::Malformed;
    }
    m_position = m_bytes.size() - rest.size();
    return result;
}

std::optional<std::uint32_t> WriteStream::begunHandle() const
{
    FrameHeader header;
    const bool known = readHeader(std::string_view(m_bytes).substr(m_position), header) == ReadResult::Frame;
    return known ? std::optional(header.handle) : std::nullopt;
}

void WriteStream::passOver()
{
    FrameHeader header;
    const std::string_view begun = std::string_view(m_bytes).substr(m_position);
    if (readHeader(begun, header) == ReadResult::Frame) {
        m_toPassOver = frameHeaderSize + header.payloadSize - begun.size();
        m_bytes.clear();
        m_position = 0;
    }
}

} // namespace ZelkoRecorder
