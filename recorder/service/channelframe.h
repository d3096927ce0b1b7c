#pragma once

#include <QtGlobal>

#include <cstddef>
#include <optional>
#include <string_view>

class QByteArray;

namespace ZELKO_XML {
class IndexEntry;
}

namespace ZelkoRecorder {

/// One frame of the data of a channel: a head of `headSize` bytes, and samples. All numbers are little-endian:
///
/// | offset | type   | content                                                             |
/// |--------|--------|---------------------------------------------------------------------|
/// | 0      | char 4 | "ZCDF"                                                              |
/// | 4      | u16    | version, 1                                                          |
/// | 6      | u16    | flags: 1, the last frame of this flow; others are 0                 |
/// | 8      | u32    | number of the frame in its flow, from 0 on, one more with each      |
/// | 12     | u32    | bytes of samples that follow, at most `mostSamples`                 |
/// | 16     | u64    | stream, as the channel manager named it when it connected           |
/// | 24     | u64    | time of the first sample, in microseconds since the epoch           |
/// | 32     | u64    | centre frequency in Hz, 0 if not known                              |
/// | 40     | u64    | samples a second, 0 if not known                                    |
/// | 48     | u64    | bandwidth in Hz, 0 if not known                                     |
struct ChannelFrame
{
    static constexpr std::size_t headSize = 56;
    static constexpr std::size_t mostSamples = 1024 * 1024;
    static constexpr quint64 latestTime = 253'402'300'799'999'999; ///< the end of the year 9999
    static constexpr quint64 mostHertz = 1'000'000'000'000;

    quint32 number = 0;
    quint32 sampleBytes = 0;
    quint64 stream = 0;
    quint64 time = 0;
    quint64 centreFrequency = 0;
    quint64 sampleRate = 0;
    quint64 bandwidth = 0;
    bool isLast = false;

    /// Reads a head. Nothing if it is shorter than `headSize`, or holds anything that a head cannot.
    static std::optional<ChannelFrame> readHead(std::string_view bytes);

    /// Writes the head to `headSize` bytes.
    void writeHead(char* bytes) const;

    /// A frame without samples, with time and tuning of an index entry as far as a frame can have them.
    static ChannelFrame at(const ZELKO_XML::IndexEntry& entry);

    /// Puts this frame with these samples, at most `mostSamples` bytes, behind `bytes`; their number need not be set.
    void appendTo(QByteArray* bytes, std::string_view samples) const;

    bool operator==(const ChannelFrame&) const = default;
};

} // namespace ZelkoRecorder
