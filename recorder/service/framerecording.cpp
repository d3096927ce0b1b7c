#include <recorder/service/framerecording.h>

#include <recorder/store/dataratetable.h>
#include <recorder/store/recorderlog.h>
#include <recorder/store/recordid.h>
#include <recorder/store/recordtimeline.h>
#include <recorder/store/thinindex.h>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr quint64 microsecondsPerSecond = 1'000'000;
constexpr quint64 longestEntryInterval = 86'400 * microsecondsPerSecond;
constexpr std::chrono::milliseconds stepInterval{250};

bool isSameTuning(const ChannelFrame& a, const ChannelFrame& b)
{
    return a.centreFrequency == b.centreFrequency && a.sampleRate == b.sampleRate && a.bandwidth == b.bandwidth;
}

} // namespace

FrameRecording::FrameRecording(const DeviceStore& store, const DeviceClock& clock, const ZELKO_RecordData& birth,
                               BirthListener born, Listener listener)
    : m_store(store)
    , m_clock(clock)
    , m_birth(birth)
    , m_born(std::move(born))
    , m_listener(std::move(listener))
    , m_bytesPerSample(bytesPerSample(birth.GetDataFormat()))
    , m_entryInterval(microsecondsPerSecond)
    , m_changeInterval(shortestChangeInterval)
{}

FrameRecording::~FrameRecording() = default;

// Part of a sample would shift all that are behind it.
bool FrameRecording::take(const ChannelFrame& frame, std::string_view samples, QString* error)
{
    if (samples.empty() || isFull()) {
        return true;
    }
    const bool isWhole = samples.size() % m_bytesPerSample == 0;
    const Place place = isWhole ? m_sequence.place(frame, endOf(frame)) : Place::Refused;
    switch (place) {
    case Place::Next:
    case Place::BehindGap:
        refuseUnproven();
        return store(frame, samples, place, error);
    case Place::Unproven:
    case Place::Proven:
        keepUnproven(frame, samples);
        return place == Place::Unproven || storeUnproven(m_sequence.believe(), error);
    case Place::Refused:
        ++m_refused;
        break;
    }
    return true;
}

bool FrameRecording::store(ChannelFrame frame, std::string_view samples, Place place, QString* error)
{
    if (m_mostBytes > 0) {
        samples = samples.substr(0, (m_mostBytes - m_size) / m_bytesPerSample * m_bytesPerSample);
        frame.sampleBytes = static_cast<quint32>(samples.size());
    }
    if (m_writer) {
        noteIndexEntry(frame, place == Place::BehindGap);
    } else if (!begin(frame, error)) {
        return false;
    }
    return write(frame, samples, error);
}

// The sequence knows of no others, so neither does this.
void FrameRecording::keepUnproven(const ChannelFrame& frame, std::string_view samples)
{
    if (m_sequence.unproven() == 1) {
        refuseUnproven();
    }
    m_unproven.push_back({frame, std::string(samples)});
}

void FrameRecording::refuseUnproven()
{
    m_refused += m_unproven.size();
    m_unproven.clear();
}

// `places` are those of the frames that are kept.
bool FrameRecording::storeUnproven(const std::vector<Place>& places, QString* error)
{
    const auto kept = std::exchange(m_unproven, {});
    for (std::size_t i = 0; i < places.size() && !isFull(); ++i) {
        if (!store(kept[i].frame, kept[i].samples, places[i], error)) {
            return false;
        }
    }
    return true;
}

bool FrameRecording::storeRest()
{
    QString error;
    const auto places = m_sequence.believeAtEnd();
    if (places.empty()) {
        refuseUnproven();
    }
    return storeUnproven(places, &error);
}

bool FrameRecording::write(const ChannelFrame& frame, std::string_view samples, QString* error)
{
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
    m_birth.SetRecordID(createRecordId(static_cast<quint64>(m_clock.now())));
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
    planEntries(frame.time);
    tell();
    return true;
}

// An entry at each interval, and where what follows does not go on as before. Changes that come too fast for an entry
// each wait for the next one.
void FrameRecording::noteIndexEntry(const ChannelFrame& frame, bool isGap)
{
    if (frame.time < m_last.time) {
        m_nextChange = 0;
    }
    m_changeWaits = m_changeWaits || isGap || !isSameTuning(frame, m_last);
    if (m_changeWaits && frame.time < m_nextChange) {
        tellOfFolding();
        return;
    }
    if (isGap && m_end < frame.time) {
        appendEntry(m_end);
    }
    if (m_changeWaits || frame.time >= m_nextEntry) {
        m_last = frame;
        appendEntry(frame.time);
        keepIndexSmall();
        planEntries(frame.time);
    }
}

void FrameRecording::planEntries(quint64 time)
{
    m_changeWaits = false;
    m_nextEntry = time + m_entryInterval;
    m_nextChange = time + m_changeInterval;
}

// The entry of a step only counts what was recorded until then: the next one does that as well.
void FrameRecording::appendEntry(quint64 time)
{
    auto& index = m_writer->record().GetIndexEntry();
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(index.isEmpty() ? time : std::max(time, index.constLast().GetTimestamp()));
    entry.SetRecordOffset(m_size);
    entry.SetTunerFrequency(m_last.centreFrequency);
    entry.SetSampleRate(m_last.sampleRate);
    entry.SetBandwidth(m_last.bandwidth);
    if (std::exchange(m_lastIsOfStep, false)) {
        index.removeLast();
    }
    index.append(entry);
}

// A source that changes all the time leaves nothing to thin out: then changes are left out as well.
void FrameRecording::keepIndexSmall()
{
    auto& index = m_writer->record().GetIndexEntry();
    if (index.size() <= maximumIndexEntries) {
        return;
    }
    thinIndex(index);
    m_entryInterval = std::min(m_entryInterval * 2, longestEntryInterval);
    if (index.size() > maximumIndexEntries * 3 / 4) {
        halveIndex(index);
        m_changeInterval = std::min(m_changeInterval * 2, m_entryInterval);
        tellOfFolding();
    }
}

void FrameRecording::tellOfFolding()
{
    if (!std::exchange(m_hasToldOfFolding, true)) {
        qCWarning(recorderLog).noquote() << "record" << m_birth.GetRecordID()
                                         << ": its source changes too fast, not all changes are in the index";
    }
}

// To the last entry from which on there are samples enough. A step makes it durable.
void FrameRecording::moveStart()
{
    ZELKO_RecordData& record = m_writer->record();
    const quint64 loop = record.GetRecordingLoopSize();
    auto& index = record.GetIndexEntry();
    if (loop == 0 || m_size <= loop) {
        return;
    }
    const auto behind = std::upper_bound(
        index.cbegin(), index.cend(), m_size - loop,
        [](quint64 offset, const ZELKO_XML::IndexEntry& entry) { return offset < entry.GetRecordOffset(); });
    if (behind == index.cbegin()) {
        return;
    }
    index.erase(index.cbegin(), behind - 1);
    record.SetStartPosition(index.constFirst().GetRecordOffset());
    record.SetStartTime(index.constFirst().GetTimestamp());
}

bool FrameRecording::stepIfDue()
{
    const auto now = Clock::now();
    if (now - m_lastStep < stepInterval) {
        return true;
    }
    m_lastStep = now;
    appendEntry(m_end);
    m_lastIsOfStep = true;
    moveStart();
    if (!m_writer->step()) {
        return false;
    }
    tell();
    return true;
}

// Before its birth there is nothing on disk that could be without the edit. After a birth that the disk refused the
// edits wait for the end.
void FrameRecording::makeEdits(EditQueue& edits)
{
    if (m_writer) {
        m_writer->makeEdits(edits.take(), [this] { tell(); });
    } else if (m_birth.GetRecordID().isEmpty()) {
        for (const EditQueue::Entry& entry : edits.take()) {
            entry.answer(applyEdit(m_birth, entry.edit));
        }
    }
}

bool FrameRecording::finish(EditQueue& edits)
{
    const auto entries = edits.close();
    if (!m_writer) {
        for (const EditQueue::Entry& entry : entries) {
            entry.answer(StoreStatus::UnknownRecord);
        }
        edits.end();
        return true;
    }
    m_writer->makeEdits(entries, [this] { tell(); });
    const bool isWhole = storeRest();
    if (std::as_const(m_writer->record()).GetIndexEntry().constLast().GetRecordOffset() < m_size) {
        appendEntry(m_end);
    }
    moveStart();
    const bool closed = m_writer->finish();
    tell();
    edits.end();
    return closed && isWhole;
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
