// What a peer sends as messages of GIOP, behind two bytes that bound them: whatever way it is cut the verdict is the
// same, no message that says to be larger passes, and what passes one bound passes a larger one.
#include "require.h"

#include <zelkobase/orb/messagemeter_p.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

using ZelkoCommon::MessageMeter;

namespace {

constexpr std::size_t boundBytes = 2;
constexpr std::size_t headBytes = 12;

std::size_t byteAt(std::string_view bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

// Whether all of it passes in pieces of that size. What did not pass once never does.
bool passes(std::string_view stream, std::size_t most, std::size_t piece)
{
    MessageMeter meter(most);
    bool passed = true;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
        const std::string_view part = stream.substr(at, piece);
        const bool isTaken = meter.take(part.data(), part.size());
        require(passed || !isTaken);
        passed = isTaken;
    }
    return passed;
}

// The size that the first message says to have.
std::size_t saidSize(std::string_view stream)
{
    const bool isLittle = (byteAt(stream, 6) & 1) != 0;
    std::size_t size = 0;
    for (const std::size_t at : {8, 9, 10, 11}) {
        size = size << 8 | byteAt(stream, isLittle ? 19 - at : at);
    }
    return size;
}

// The largest size that a message of the stream says to have, up to what is no message.
std::size_t largestSaid(std::string_view stream)
{
    std::size_t largest = 0;
    while (stream.size() >= headBytes && stream.substr(0, 4) == "GIOP") {
        const std::size_t size = saidSize(stream);
        largest = std::max(largest, size);
        stream.remove_prefix(headBytes + std::min(size, stream.size() - headBytes));
    }
    return largest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < boundBytes) {
        return 0;
    }
    std::string_view stream(reinterpret_cast<const char*>(data), size);
    const std::size_t most = byteAt(stream, 0) << 8 | byteAt(stream, 1);
    stream.remove_prefix(boundBytes);
    const bool isPassed = passes(stream, most, size);
    for (const std::size_t piece : {1, 5, 12, 13}) {
        require(passes(stream, most, piece) == isPassed);
    }
    require(!isPassed || largestSaid(stream) <= most);
    require(!isPassed || passes(stream, most + 1, size));
    require(passes(stream, SIZE_MAX, size));
    return 0;
}
