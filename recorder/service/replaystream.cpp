#include <recorder/service/replaystream.h>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::IndexEntry;

namespace {

constexpr quint64 mostFrameBytes = 64 * 1024;

} // namespace

ReplayStream::ReplayStream(std::unique_ptr<FlowSocket> socket, Begin begin, Listener listener, const Options& options,
                           RecordingClock& clock)
    : m_socket(std::move(socket))
    , m_begin(std::move(begin))
    , m_listener(std::move(listener))
    , m_options(options)
    , m_clock(clock)
    , m_thread([this](const std::stop_token& stop) { run(stop); })
{}

ReplayStream::~ReplayStream() = default;

void ReplayStream::run(const std::stop_token& stop)
{
    if (awaitReceiver(stop) && begin()) {
        m_listener.began(m_source.record);
        play(stop);
        m_ending.time = m_position.time;
        m_source.end();
    }
    m_listener.ended(m_ending);
}

bool ReplayStream::awaitReceiver(const std::stop_token& stop)
{
    const auto latest = m_clock.now() + m_options.patience;
    while (!m_socket->accept()) {
        if (stop.stop_requested() || m_clock.now() >= latest) {
            m_ending.end = stop.stop_requested() ? End::Stopped : End::NobodyCame;
            return false;
        }
        m_clock.wait(stop, m_options.tick);
    }
    return true;
}

bool ReplayStream::begin()
{
    m_ending.status = m_begin(&m_source);
    if (m_ending.status != StoreStatus::Done) {
        m_ending.end = End::NotBegun;
        return false;
    }
    m_timeline.emplace(*m_source.record);
    m_offset = m_timeline->offsetAt(m_source.start);
    m_position.time = m_source.start;
    m_positionTaken = m_lastProgress = m_clock.now();
    m_samples.setFileName(m_source.samples);
    if (!m_samples.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        m_ending.end = End::Damaged;
        m_source.end();
        return false;
    }
    return true;
}

void ReplayStream::play(const std::stop_token& stop)
{
    while (!stop.stop_requested()) {
        const auto asked = m_clock.now();
        const auto position = m_source.position();
        if (!position) {
            if (hasComeToItsEnd()) {
                finish(stop);
            }
            break;
        }
        m_positionTaken = asked;
        if (!follow(*position)) {
            return;
        }
        m_clock.wait(stop, m_options.tick);
    }
    queueFrame({.isLast = true}, {});
    sendWaiting();
}

// One that went on and was paused again since the last look has come to another standstill.
bool ReplayStream::follow(const Replays::Position& position)
{
    const bool isSamePause = position.pauses == m_position.pauses;
    m_position = position;
    const Progress progress = sendTo(position.offset);
    if (progress == Progress::Failed) {
        return false;
    }
    const bool standsStill = position.paused && (progress == Progress::Done || (m_standsStill && isSamePause));
    if (standsStill != m_standsStill || (standsStill && !isSamePause)) {
        m_standsStill = standsStill;
        m_listener.paused(standsStill);
    }
    return true;
}

// Who ends a replay does not say why. It ran until now, and would be over by now: then it is. The position is no
// younger than the moment in which it was asked for, however long the answer took.
bool ReplayStream::hasComeToItsEnd() const
{
    const auto since = std::chrono::duration_cast<std::chrono::microseconds>(m_clock.now() - m_positionTaken);
    return !m_position.paused && m_position.time + static_cast<quint64>(since.count()) >= m_source.stop;
}

// What came due since the last look.
void ReplayStream::finish(const std::stop_token& stop)
{
    m_position.time = m_source.stop;
    const quint64 end = m_timeline->offsetAt(m_source.stop);
    Progress progress = sendTo(end);
    while (progress == Progress::Waits && !stop.stop_requested()) {
        m_clock.wait(stop, m_options.tick);
        progress = sendTo(end);
    }
    if (progress == Progress::Done) {
        m_ending.end = End::Finished;
    }
}

// What waits is at most a frame, however slow the receiver is.
ReplayStream::Progress ReplayStream::sendTo(quint64 offset)
{
    Progress progress = sendWaiting();
    while (progress == Progress::Done && m_offset < offset) {
        progress = takeFrame(offset) ? sendWaiting() : Progress::Failed;
    }
    return progress;
}

ReplayStream::Progress ReplayStream::sendWaiting()
{
    const auto now = m_clock.now();
    while (m_written < m_waiting.size()) {
        std::size_t written = 0;
        const auto size = static_cast<std::size_t>(m_waiting.size() - m_written);
        const auto sent = m_socket->write(m_waiting.constData() + m_written, size, &written);
        const bool isStuck = sent == FlowSocket::Sent::Nothing && now - m_lastProgress >= m_options.patience;
        if (sent == FlowSocket::Sent::End || isStuck) {
            m_ending.end = End::Lost;
            return Progress::Failed;
        }
        if (sent == FlowSocket::Sent::Nothing) {
            return Progress::Waits;
        }
        m_written += static_cast<qsizetype>(written);
        m_lastProgress = now;
    }
    m_waiting.clear();
    m_written = 0;
    m_lastProgress = now;
    return Progress::Done;
}

// False when the samples are not there.
bool ReplayStream::takeFrame(quint64 offset)
{
    const quint64 end = std::min(offset, frameEnd(m_offset));
    const auto size = static_cast<qint64>(end - m_offset);
    const QByteArray samples = m_samples.seek(static_cast<qint64>(m_offset)) ? m_samples.read(size) : QByteArray();
    if (samples.size() != size) {
        m_ending.end = End::Damaged;
        return false;
    }
    queueFrame(ChannelFrame::at(m_timeline->entryAt(m_offset)), samples);
    m_offset = end;
    return true;
}

void ReplayStream::queueFrame(const ChannelFrame& frame, const QByteArray& samples)
{
    ChannelFrame head = frame;
    head.number = m_number++;
    head.appendTo(&m_waiting, {samples.constData(), static_cast<std::size_t>(samples.size())});
}

// A frame that began at one entry of the index and went on behind the next would claim a time that its samples do not
// have.
quint64 ReplayStream::frameEnd(quint64 offset) const
{
    const auto& points = m_timeline->points();
    const auto next = std::upper_bound(points.cbegin(), points.cend(), offset, [](quint64 at, const IndexEntry& entry) {
        return at < entry.GetRecordOffset();
    });
    const quint64 largest =
        offset + std::max(mostFrameBytes / m_timeline->bytesPerFrame(), quint64{1}) * m_timeline->bytesPerFrame();
    return next == points.cend() ? largest : std::min(largest, next->GetRecordOffset());
}

} // namespace ZelkoRecorder
