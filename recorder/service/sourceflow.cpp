#include <recorder/service/sourceflow.h>

#include <recorder/service/channelframe.h>

#include <algorithm>

namespace ZelkoRecorder {

namespace {

constexpr qint64 mostBytes = 64 * 1024; // of samples in a frame

// How long the signal is left to gather, so that it does not go out sample by sample.
constexpr std::chrono::milliseconds gatherTime{20};

} // namespace

SourceFlow::SourceFlow(std::unique_ptr<SignalSource> source, const Start& start, Failed failed, RecordingClock& clock)
    : m_source(std::move(source))
    , m_port(start.port)
    , m_timeline(m_source->description(), start.time)
    , m_failed(std::move(failed))
    , m_clock(clock)
    , m_pace(start.speed, m_source->description().sampleRate, clock)
    , m_bytesPerFrame(m_source->description().format.bytesPerFrame())
    , m_samples(static_cast<std::size_t>(std::max(mostBytes, m_bytesPerFrame)))
    , m_thread([this](const std::stop_token& stop) { run(stop); })
{}

SourceFlow::~SourceFlow() = default;

void SourceFlow::run(const std::stop_token& stop)
{
    const auto connection = FlowConnection::open(m_port, stop);
    if (!connection) {
        if (!stop.stop_requested()) {
            fail(QStringLiteral("nobody takes the data of the source"));
        }
        return;
    }
    while (sendDue(*connection, stop)) {
        m_clock.wait(stop, gatherTime);
    }
    if (hasSourceFailed()) {
        fail(QStringLiteral("the source has failed: %1").arg(m_source->errorText()));
    }
}

void SourceFlow::fail(const QString& why) const
{
    if (m_failed) {
        m_failed(why);
    }
}

// False when nothing more is to be sent.
bool SourceFlow::sendDue(const FlowConnection& connection, const std::stop_token& stop)
{
    const qint64 due = m_pace.framesDue();
    bool goesOn = true;
    while (goesOn && m_position < due && !stop.stop_requested()) {
        goesOn = takeFrame(due);
        goesOn = send(connection, stop) && goesOn;
    }
    return goesOn && !stop.stop_requested();
}

bool SourceFlow::send(const FlowConnection& connection, const std::stop_token& stop) const
{
    qsizetype sent = 0;
    while (sent < m_bytes.size()) {
        std::size_t moved = 0;
        const auto left = static_cast<std::size_t>(m_bytes.size() - sent);
        const auto result = connection.write(m_bytes.constData() + sent, left, &moved);
        if (result == FlowConnection::Moved::End) {
            return false;
        }
        if (result == FlowConnection::Moved::Nothing) {
            if (stop.stop_requested()) {
                return false;
            }
            m_clock.wait(stop, gatherTime);
        }
        sent += static_cast<qsizetype>(moved);
    }
    return true;
}

// False when it is the last. A signal that breaks off has not come to its end: then there is no last one either.
bool SourceFlow::takeFrame(qint64 due)
{
    ChannelFrame frame = ChannelFrame::at(m_timeline.indexEntryAt(m_position));
    const qint64 frames = m_source->read(m_samples.data(), framesUntil(due));
    m_number += isBehindHole() ? 1U : 0U;
    frame.number = m_number++;
    frame.isLast = frames == 0;
    m_bytes.clear();
    if (frame.isLast && hasSourceFailed()) {
        return false;
    }
    frame.appendTo(&m_bytes, {m_samples.data(), static_cast<std::size_t>(frames * m_bytesPerFrame)});
    m_position += frames;
    return !frame.isLast;
}

qint64 SourceFlow::framesUntil(qint64 due) const
{
    const qint64 segment = m_timeline.nextSegment(m_position);
    const qint64 end = segment < 0 ? due : std::min(due, segment);
    return std::min(end - m_position, static_cast<qint64>(m_samples.size()) / m_bytesPerFrame);
}

// Times are rounded down, so that two samples may seem to be a microsecond further apart than they are.
bool SourceFlow::isBehindHole() const
{
    if (m_position == 0) {
        return false;
    }
    const quint64 next = m_timeline.timeAt(m_position - 1) + m_source->description().microsecondsAt(1) + 1;
    return m_timeline.timeAt(m_position) > next;
}

} // namespace ZelkoRecorder
