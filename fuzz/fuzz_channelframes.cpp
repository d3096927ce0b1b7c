// The data that come over a channel: whatever way they are cut, the same frames come out, each as it says of itself.
#include "require.h"

#include <recorder/service/framereader.h>

#include <cstdint>
#include <vector>

using namespace ZelkoRecorder;

namespace {

// The frames of a stream that comes in pieces of that size, and whether it parsed to its end.
std::pair<std::vector<ChannelFrame>, bool> framesOf(std::string_view stream, std::size_t piece)
{
    std::vector<ChannelFrame> frames;
    FrameReader reader;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
        reader.append(stream.substr(at, piece));
        ChannelFrame frame;
        std::string_view samples;
        FrameReader::Result result = reader.next(&frame, &samples);
        for (; result == FrameReader::Result::Frame; result = reader.next(&frame, &samples)) {
            require(samples.size() == frame.sampleBytes && samples.size() <= ChannelFrame::mostSamples);
            frames.push_back(frame);
        }
        if (result == FrameReader::Result::Malformed) {
            return {frames, false};
        }
    }
    return {frames, true};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    require(framesOf(bytes, 1) == framesOf(bytes, 61));
    require(framesOf(bytes, 1) == framesOf(bytes, size + 1));
    ChannelFrame frame;
    std::string_view samples;
    if (readDatagram(bytes, &frame, &samples) == FrameReader::Result::Frame) {
        char head[ChannelFrame::headSize];
        frame.writeHead(head);
        require(bytes.substr(0, ChannelFrame::headSize) == std::string_view(head, sizeof head));
    }
    return 0;
}
