#include <recorder/service/framerecording.h>

#include <recorder/store/dataratetable.h>
#include <recorder/store/recordid.h>
#include <recorder/store/recordtimeline.h>
#include <recorder/store/thinindex.h>

#include <QDateTime>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr quint64 microsecondsPerSecond = 1'000'000;
constexpr std::chrono::milliseconds stepInterval{250};
constexpr int maximumIndexEntries = 1024;

bool isSameTuning(const ChannelFrame& a, const ChannelFrame& b)
{
    return a.centreFrequency == b.centreFrequency && a.sampleRate == b.sampleRate && a.bandwidth == b.bandwidth;
}

} // namespace

FrameRecording::FrameRecording(const DeviceStore& store, const ZELKO_RecordData& birth, BirthListener born,
                               Listener listener)
    : m_store(store)
    , m_birth(birth)
    , m_born(std::move(born))
    , m_listener(std::move(listener))
    , m_bytesPerSample(bytesPerSample(birth.GetDataFormat()))
    , m_entryInterval(microsecondsPerSecond)
{}

FrameRecording::~FrameRecording() = default;

bool FrameRecording::take(const ChannelFrame& frame, std::string_view samples, QString* error)
{
    if (samples.empty()) {
        return true;
    }
    if (!m_writer) {
        if (!begin(frame, error)) {
            return false;
        }
    } else if (!isNext(frame)) {
        ++m_refused;
        return true;
    } else {
        noteIndexEntry(frame);
    }
    const bool written = m_writer->append(samples.data(), static_cast<qint64>(samples.size()));
    if (written) {
        m_last = frame;
        m_size += samples.size();
        m_end = endOf(frame);
    }
    if (!written || !stepIfDue()) {
        *error = QStringLiteral("the disk takes no more");
        return false;
    }
    return true;
}

bool FrameRecording::begin(const ChannelFrame& frame, QString* error)
{
    const auto now = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch()) * 1000;
    m_birth.SetRecordID(createRecordId(now));
    m_birth.SetStartTime(frame.time);
    m_birth.SetStopTime(frame.time);
    if (m_birth.GetDataRate() == ZELKO_RecordData::DataRate::NotSet && frame.sampleRate > 0) {
        m_birth.SetDataRate(dataRateClass(frame.sampleRate * m_bytesPerSample));
    }
    m_last = frame;
    m_born(m_birth.GetRecordID());
    m_writer = RecordWriter::create(m_store, m_birth, error);
    if (!m_writer) {
        return false;
    }
    m_lastStep = Clock::now();
    appendEntry(frame.time);
    tell();
    return true;
}

// Numbers count on beyond their end; a distance of more than half of them is a step back.
bool FrameRecording::isNext(const ChannelFrame& frame)
{
    const quint32 distance = frame.number - m_last.number;
    if (distance == 0 || distance > 0x80000000U || frame.time < m_last.time) {
        return false;
    }
    m_lost += distance - 1;
    return true;
}

// An entry at each second, and where what follows does not go on as before.
void FrameRecording::noteIndexEntry(const ChannelFrame& frame)
{
    const bool isGap = frame.number - m_last.number != 1;
    const bool isNewTuning = !isSameTuning(frame, m_last);
    if (isGap && m_end < frame.time) {
        appendEntry(m_end);
    }
    if (isGap || isNewTuning || frame.time >= m_nextEntry) {
        m_last = frame;
        appendEntry(frame.time);
    }
}

void FrameRecording::appendEntry(quint64 time)
{
    auto& index = m_writer->record().GetIndexEntry();
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(index.isEmpty() ? time : std::max(time, index.constLast().GetTimestamp()));
    entry.SetRecordOffset(m_size);
    entry.SetTunerFrequency(m_last.centreFrequency);
    entry.SetSampleRate(m_last.sampleRate);
    entry.SetBandwidth(m_last.bandwidth);
    index.append(entry);
    if (index.size() > maximumIndexEntries && thinIndex(index)) {
        m_entryInterval *= 2;
    }
    m_nextEntry = time + m_entryInterval;
}

bool FrameRecording::stepIfDue()
{
    const auto now = Clock::now();
    if (now - m_lastStep < stepInterval) {
        return true;
    }
    m_lastStep = now;
    appendEntry(m_end);
    if (!m_writer->step()) {
        return false;
    }
    tell();
    return true;
}

bool FrameRecording::finish()
{
    if (!m_writer) {
        return true;
    }
    if (std::as_const(m_writer->record()).GetIndexEntry().constLast().GetRecordOffset() < m_size) {
        appendEntry(m_end);
    }
    const bool closed = m_writer->finish();
    tell();
    return closed;
}

QString FrameRecording::recordID() const
{
    return m_writer ? m_birth.GetRecordID() : QString();
}

void FrameRecording::tell()
{
    m_listener(m_writer->saved());
}

// Without a sample rate nobody knows how long the samples last.
quint64 FrameRecording::endOf(const ChannelFrame& frame) const
{
    if (frame.sampleRate == 0) {
        return frame.time;
    }
    const quint64 samples = frame.sampleBytes / m_bytesPerSample;
    return std::min(frame.time + samples * microsecondsPerSecond / frame.sampleRate, ChannelFrame::latestTime);
}

} // namespace ZelkoRecorder
