#pragma once

#include <zelkobase/connection/linkframe.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZelkoRecorder {

/// What one client writes, as it comes in batches: Commands frames, of which each may begin in one batch and end in a
/// later one. Holds no more than one frame that has not come whole.
class WriteStream
{
public:
    void append(std::string_view batch);

    /// Reads the next frame; its payload is valid until the next `append`. Nothing is read any more behind what is
    /// malformed.
    ZelkoCommon::link::ReadResult next(ZelkoCommon::link::Frame& frame);

    /// Handle of the frame that has begun and not come whole; empty when there is none, or not known yet.
    std::optional<std::uint32_t> begunHandle() const;

    /// Forgets the frame that has begun, and what still comes of it.
    void passOver();

private:
    std::string m_bytes;
    std::size_t m_position = 0;
    std::size_t m_toPassOver = 0;
};

} // namespace ZelkoRecorder
