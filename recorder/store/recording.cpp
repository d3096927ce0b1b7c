#include <recorder/store/recording.h>

#include <recorder/store/dataratetable.h>
#include <recorder/store/thinindex.h>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr qint64 bufferBytes = 256 * 1024;

// How long the signal is left to gather, so that a slow one is not read frame by frame.
constexpr std::chrono::milliseconds gatherTime{20};

qint64 framesIn(std::chrono::microseconds time, quint64 sampleRate)
{
    const double frames = std::chrono::duration<double>(time).count() * static_cast<double>(sampleRate);
    return std::max<qint64>(1, static_cast<qint64>(frames));
}

} // namespace

Recording::Recording(const DeviceStore& store, SignalSource& source, const ZELKO_RecordData& birth,
                     const RecordingPace& pace, Listener listener, RecordingClock& clock)
    : m_source(source)
    , m_store(store)
    , m_clock(clock)
    , m_pace(pace)
    , m_listener(std::move(listener))
    , m_timeline(source.description(), birth.GetStartTime())
    , m_bytesPerFrame(source.description().format.bytesPerFrame())
    , m_signalPace(pace.speed, source.description().sampleRate, clock)
    , m_birth(birth)
    , m_buffer(static_cast<std::size_t>(std::max(bufferBytes, m_bytesPerFrame)))
    , m_lastStep(clock.now())
    , m_indexFrames(framesIn(pace.indexInterval, source.description().sampleRate))
    , m_nextIndexFrame(m_indexFrames)
{
    m_birth.SetIndexEntry({m_timeline.indexEntryAt(0)});
}

Recording::~Recording() = default;

void Recording::takeEditsFrom(EditQueue& edits)
{
    m_edits = &edits;
}

bool Recording::run(const std::stop_token& stop, QString* error)
{
    m_writer = RecordWriter::create(m_store, m_birth, error);
    if (!m_writer) {
        closeEdits();
        m_edits->end();
        return false;
    }
    tell();
    const bool recorded = recordAll(stop, error);
    noteBookmarks();
    noteIndexEntry();
    closeEdits();
    const bool closed = m_writer->finish();
    tell();
    m_edits->end();
    if (recorded && !closed) {
        *error = QStringLiteral("the disk does not take the end of the record");
    }
    m_complete = recorded && closed && m_signalEnded;
    return recorded && closed;
}

bool Recording::recordAll(const std::stop_token& stop, QString* error)
{
    while (!stop.stop_requested()) {
        const qint64 boundary = nextBoundary();
        if (!waitForFrames(stop, boundary)) {
            return true;
        }
        if (readTo(std::min(boundary, m_signalPace.framesDue())) == 0) {
            m_signalEnded = true;
            break;
        }
        if (m_frame == boundary) {
            noteBookmarks();
            noteIndexEntry();
            m_diskRefused = !stepIfDue();
        }
        if (m_diskRefused) {
            *error = QStringLiteral("the disk takes no more");
            return false;
        }
    }
    *error = m_source.errorText();
    return error->isEmpty();
}

qint64 Recording::nextBoundary() const
{
    const qint64 segment = m_timeline.nextSegment(m_frame);
    return segment < 0 ? m_nextIndexFrame : std::min(segment, m_nextIndexFrame);
}

// Returns when `frame` is due, or some frames have gathered; false when to stop.
bool Recording::waitForFrames(const std::stop_token& stop, qint64 frame)
{
    const RecordingClock::TimePoint gathered = m_clock.now() + gatherTime;
    constexpr std::chrono::milliseconds patience{1};
    while (!stop.stop_requested()) {
        makeEdits(m_edits->take());
        const qint64 due = m_signalPace.framesDue();
        if (due >= frame || (due > m_frame && m_clock.now() >= gathered)) {
            return true;
        }
        m_clock.wait(stop, due > m_frame ? patience : gatherTime);
    }
    return false;
}

// Reads as much as the buffer takes, up to `frame`; gives how many frames came.
qint64 Recording::readTo(qint64 frame)
{
    const qint64 room = static_cast<qint64>(m_buffer.size()) / m_bytesPerFrame;
    const qint64 frames = m_source.read(m_buffer.data(), std::min(room, frame - m_frame));
    m_diskRefused = frames > 0 && !m_writer->append(m_buffer.data(), frames * m_bytesPerFrame);
    m_frame += m_diskRefused ? 0 : frames;
    return frames;
}

void Recording::noteIndexEntry()
{
    auto& index = m_writer->record().GetIndexEntry();
    const IndexEntry entry = m_timeline.indexEntryAt(m_frame);
    if (entry.GetRecordOffset() == index.constLast().GetRecordOffset()) {
        return;
    }
    index.append(entry);
    if (index.size() > m_pace.maximumIndexEntries && thinIndex(index)) {
        m_indexFrames *= 2;
    }
    if (m_frame >= m_nextIndexFrame) {
        m_nextIndexFrame = m_frame + m_indexFrames;
    }
}

void Recording::noteBookmarks()
{
    const auto& marks = m_source.description().marks;
    for (; m_nextMark < marks.size() && marks.at(m_nextMark).frame <= m_frame; ++m_nextMark) {
        ZELKO_XML::BookmarkEntry bookmark;
        bookmark.SetTimestamp(m_timeline.timeAt(marks.at(m_nextMark).frame));
        bookmark.SetBookmark(marks.at(m_nextMark).text);
        m_writer->record().AppendBookmarkEntry(bookmark);
    }
}

void Recording::makeEdits(const std::vector<EditQueue::Entry>& entries)
{
    m_writer->makeEdits(entries, [this] { tell(); });
}

// What was asked for before the end counts; who asks later waits until the record is at rest.
void Recording::closeEdits()
{
    const auto entries = m_edits->close();
    if (m_writer) {
        makeEdits(entries);
        return;
    }
    for (const EditQueue::Entry& entry : entries) {
        entry.answer(StoreStatus::UnknownRecord);
    }
}

// False if the disk refused.
bool Recording::stepIfDue()
{
    const RecordingClock::TimePoint now = m_clock.now();
    if (now - m_lastStep < m_pace.stepInterval) {
        return true;
    }
    m_lastStep = now;
    if (!m_writer->step()) {
        return false;
    }
    tell();
    return true;
}

void Recording::tell()
{
    m_listener(m_writer->saved());
}

ZELKO_RecordData recordOf(const SourceDescription& signal, quint64 now)
{
    ZELKO_RecordData record;
    const SignalTimeline timeline(signal, now);
    const quint64 bytesPerSecond = signal.sampleRate * static_cast<quint64>(signal.format.bytesPerFrame());
    record.SetRecordName(signal.name);
    record.SetStartTime(timeline.timeAt(0));
    record.SetStopTime(timeline.timeAt(0));
    record.SetDataFormat(static_cast<ZELKO_RecordData::DataFormat>(signal.format.storedFormat()));
    record.SetDataRate(dataRateClass(bytesPerSecond));
    return record;
}

} // namespace ZelkoRecorder
