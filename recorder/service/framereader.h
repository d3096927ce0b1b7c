#pragma once

#include <recorder/service/channelframe.h>

#include <string>
#include <string_view>

namespace ZelkoRecorder {

/// Takes frames out of bytes that come in pieces. Never keeps more than one frame and one piece.
class FrameReader
{
public:
    enum class Result {
        Frame,
        NeedsMore,
        Malformed ///< where the next frame begins is not known any more
    };

    void append(std::string_view bytes) { m_bytes.append(bytes); }

    /// The next frame, with its samples, which are valid until the next call.
    Result next(ChannelFrame* frame, std::string_view* samples);

private:
    std::string m_bytes;
    std::size_t m_used = 0; // of what the last frame took
};

/// The one frame that a datagram is; `Malformed` if it is anything else.
FrameReader::Result readDatagram(std::string_view datagram, ChannelFrame* frame, std::string_view* samples);

} // namespace ZelkoRecorder
