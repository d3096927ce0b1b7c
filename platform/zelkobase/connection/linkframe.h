#pragma once

#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The form of what travels on the tree link.
///
/// A batch is a piece of one byte stream of frames; a frame may begin in one batch and end in a later one. Numbers
/// stand in the byte order of x86 and ARM, little-endian, which both sides share. A frame is
///
///     type      1 byte
///     handle    4 bytes, the item that the frame is about; 0 where there is none
///     size      4 bytes, number of bytes that follow
///     payload   by type
///
/// A session begins with StateBegin, an Announce per item, the state of the plain values, Ready, then the state of the
/// maps and of the values that stand behind a map in the same node, then StateEnd; changes may come in between from the
/// moment an item was announced. The same happens in the middle of a session when its client was too slow and the
/// server dropped what waited for it. Handles stay the same for the life of an item.
///
/// A client sends Commands, and Commands without a payload where it wants to be told a value as it is.
namespace ZelkoCommon::link {

enum class FrameType : std::uint8_t {
    StateBegin = 1, ///< what the client holds is out of date; what is not announced until Ready is gone
    Announce = 2,   ///< path below the root of the sub system and type name, both as in a command; no type: a node
    Ready = 3,      ///< every item was announced and the plain values are up to date
    Commands = 4,   ///< commands on the item, one behind the other
    StateEnd = 5,   ///< everything is up to date
    Withdraw = 6    ///< the item is gone
};

struct Frame
{
    FrameType type{};
    std::uint32_t handle = 0;
    std::string_view payload; ///< points into the bytes that were read
};

/// What an Announce says.
struct Announcement
{
    QString path;
    std::string typeName; ///< empty for a node
};

/// What stands before a payload.
struct FrameHeader
{
    FrameType type{};
    std::uint32_t handle = 0;
    std::size_t payloadSize = 0;
};

inline constexpr std::size_t frameHeaderSize = 9;

/// No frame is larger; a peer that says so is not believed.
inline constexpr std::size_t maxFramePayload = 64u * 1024 * 1024;

/// No frame is larger that a client writes.
inline constexpr std::size_t maxWritePayload = 8u * 1024 * 1024;

/// No path is longer, and so none is nested deeper than the tree can walk.
inline constexpr qsizetype maxPathLength = 4096;

/// Checksum of a batch, XXH3 with 64 bits (https://github.com/Cyan4973/xxHash). TCP's own is 16 bits wide and not
/// carried across proxies; what slips through it must not become the name of a record, let alone an order to delete
/// one.
ZELKOBASECONNECTION_EXPORT std::uint64_t checksum(std::string_view batch);

enum class ReadResult {
    Frame,      ///< a frame was read, and `bytes` begins behind it
    Incomplete, ///< the frame has not come whole; nothing was taken
    Malformed   ///< this is no frame; nothing was taken
};

/// Reads the header at the front of `bytes`, which stay as they are.
ZELKOBASECONNECTION_EXPORT ReadResult readHeader(std::string_view bytes, FrameHeader& header);

/// Reads the frame at the front of `bytes`.
ZELKOBASECONNECTION_EXPORT ReadResult readFrame(std::string_view& bytes, Frame& frame);

ZELKOBASECONNECTION_EXPORT void appendFrame(std::string& out, FrameType type, std::uint32_t handle,
                                            std::string_view payload = {});

/// Begins a frame whose payload is then appended in place, and gives where the payload starts, which `endFrame` takes.
ZELKOBASECONNECTION_EXPORT std::size_t beginFrame(std::string& out, FrameType type, std::uint32_t handle);
ZELKOBASECONNECTION_EXPORT void endFrame(std::string& out, std::size_t payloadStart);

ZELKOBASECONNECTION_EXPORT void appendAnnouncement(std::string& out, std::uint32_t handle, const Announcement& what);

/// False when the payload does not parse.
ZELKOBASECONNECTION_EXPORT bool readAnnouncement(std::string_view payload, Announcement& what);

} // namespace ZelkoCommon::link
