#include <zelkobase/connection/linkframe.h>

#include <valuecore/commandreader.h>

#include <xxhash.h>

#include <cstring>

namespace ZelkoCommon::link {
namespace {

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the link's byte order");

bool isKnown(std::uint8_t type)
{
    return type >= static_cast<std::uint8_t>(FrameType::StateBegin) &&
           type <= static_cast<std::uint8_t>(FrameType::Withdraw);
}

template <typename T>
T numberAt(std::string_view bytes, std::size_t offset)
{
    T result;
    std::memcpy(&result, bytes.data() + offset, sizeof(T));
    return result;
}

} // namespace

std::uint64_t checksum(std::string_view batch)
{
    return XXH3_64bits(batch.data(), batch.size());
}

ReadResult readHeader(std::string_view bytes, FrameHeader& header)
{
    if (!bytes.empty() && !isKnown(numberAt<std::uint8_t>(bytes, 0))) {
        return ReadResult::Malformed;
    }
    if (bytes.size() < frameHeaderSize) {
        return ReadResult::Incomplete;
    }
    header = {static_cast<FrameType>(bytes[0]), numberAt<std::uint32_t>(bytes, 1), numberAt<std::uint32_t>(bytes, 5)};
    return header.payloadSize > maxFramePayload ? ReadResult::Malformed : ReadResult::Frame;
}

ReadResult readFrame(std::string_view& bytes, Frame& frame)
{
    FrameHeader header;
    const ReadResult result = readHeader(bytes, header);
    if (result != ReadResult::Frame) {
        return result;
    }
    if (bytes.size() - frameHeaderSize < header.payloadSize) {
        return ReadResult::Incomplete;
    }
    frame = {header.type, header.handle, bytes.substr(frameHeaderSize, header.payloadSize)};
    bytes.remove_prefix(frameHeaderSize + header.payloadSize);
    return ReadResult::Frame;
}

std::size_t beginFrame(std::string& out, FrameType type, std::uint32_t handle)
{
    commandwriter::number(out, static_cast<std::uint8_t>(type));
    commandwriter::number(out, handle);
    commandwriter::number(out, std::uint32_t{0});
    return out.size();
}

void endFrame(std::string& out, std::size_t payloadStart)
{
    const auto size = static_cast<std::uint32_t>(out.size() - payloadStart);
    std::memcpy(out.data() + payloadStart - sizeof size, &size, sizeof size);
}

void appendFrame(std::string& out, FrameType type, std::uint32_t handle, std::string_view payload)
{
    const std::size_t payloadStart = beginFrame(out, type, handle);
    out += payload;
    endFrame(out, payloadStart);
}

void appendAnnouncement(std::string& out, std::uint32_t handle, const Announcement& what)
{
    std::string payload;
    commandwriter::string(payload, what.path);
    payload += what.typeName;
    appendFrame(out, FrameType::Announce, handle, payload);
}

bool readAnnouncement(std::string_view payload, Announcement& what)
{
    const char* position = payload.data();
    CommandReader reader(&position, static_cast<std::ptrdiff_t>(payload.size()));
    what.path = reader.string();
    what.typeName.assign(position, reader.remaining());
    return reader.ok() && what.path.startsWith(QLatin1Char('/')) && what.path.size() <= maxPathLength;
}

} // namespace ZelkoCommon::link
