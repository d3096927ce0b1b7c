#include <recorder/service/replaysink.h>

#include <vector>

namespace ZelkoRecorder {

namespace {

constexpr std::size_t bufferSize = 256 * 1024;
constexpr std::chrono::milliseconds tick{20}; // until it looks again when there was nothing

} // namespace

ReplaySink::ReplaySink(quint16 port, Ended ended, RecordingClock& clock)
    : m_port(port)
    , m_ended(std::move(ended))
    , m_clock(clock)
    , m_thread([this](const std::stop_token& stop) { run(stop); })
{}

ReplaySink::~ReplaySink() = default;

void ReplaySink::run(const std::stop_token& stop)
{
    const auto connection = FlowConnection::open(m_port, stop);
    std::vector<char> buffer(bufferSize);
    bool goesOn = connection != nullptr;
    while (goesOn && !stop.stop_requested()) {
        std::size_t size = 0;
        switch (connection->read(buffer.data(), buffer.size(), &size)) {
        case FlowConnection::Moved::Bytes:
            goesOn = take({buffer.data(), size});
            break;
        case FlowConnection::Moved::Nothing:
            m_clock.wait(stop, tick);
            break;
        case FlowConnection::Moved::End:
            goesOn = false;
            break;
        }
    }
    m_ended(m_taken);
}

// False when nothing more comes that means anything.
bool ReplaySink::take(std::string_view bytes)
{
    m_reader.append(bytes);
    ChannelFrame frame;
    std::string_view samples;
    FrameReader::Result result = m_reader.next(&frame, &samples);
    for (; result == FrameReader::Result::Frame; result = m_reader.next(&frame, &samples)) {
        m_taken.sampleBytes += samples.size();
        m_taken.isWhole = m_taken.isWhole || frame.isLast;
    }
    return result == FrameReader::Result::NeedsMore && !m_taken.isWhole;
}

} // namespace ZelkoRecorder
