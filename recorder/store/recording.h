#pragma once

#include <recorder/source/signalsource.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/editqueue.h>
#include <recorder/store/recordingclock.h>
#include <recorder/store/recordwriter.h>
#include <recorder/store/signalpace.h>
#include <recorder/store/signaltimeline.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

namespace ZelkoRecorder {

/// How a recording goes on.
struct RecordingPace
{
    /// Seconds of the signal that are recorded in a second; 0 for as fast as source and disk allow.
    double speed = 1;

    /// From one index entry to the next, in time of the signal.
    std::chrono::microseconds indexInterval{1'000'000};

    /// At least from one durable step to the next, in time of the clock on the wall: bounds the load of disk and
    /// clients.
    std::chrono::milliseconds stepInterval{250};

    /// With more index entries than this the index is thinned out, and from there on written half as often.
    int maximumIndexEntries = 1024;
};

/// Records one signal into one record, on the thread that calls `run`.
class Recording
{
public:
    /// Told of each durable state of the record. If the disk does not take the last one, told in the end of the one
    /// before as of a damaged record. Called on the thread of `run`.
    using Listener = std::function<void(const RecordPointer&)>;

    /// `birth` has the record's ID and whatever the signal does not say. `store`, `source` and `clock` outlive the
    /// recording.
    Recording(const DeviceStore& store, SignalSource& source, const ZELKO_XML::ZELKO_RecordData& birth,
              const RecordingPace& pace, Listener listener, RecordingClock& clock = RecordingClock::steady());
    ~Recording();

    /// Edits of the record that others ask for are taken from here while it is being recorded, and made durable at
    /// once. At its end when `run` returns. `edits` outlives the recording.
    void takeEditsFrom(EditQueue& edits);

    /// Records until the signal ends, `stop` is requested, or the disk refuses; then closes the record. False, and a
    /// text for people in `error`, after a failure of disk or source; what was recorded before it is kept. May be
    /// called once.
    bool run(const std::stop_token& stop, QString* error);

    /// Whether the whole signal was recorded, to its end and durably.
    bool isComplete() const { return m_complete; }

private:
    bool recordAll(const std::stop_token& stop, QString* error);
    qint64 nextBoundary() const;
    bool waitForFrames(const std::stop_token& stop, qint64 frame);
    qint64 readTo(qint64 frame);
    void noteIndexEntry();
    void noteBookmarks();
    void makeEdits(const std::vector<EditQueue::Entry>& entries);
    void closeEdits();
    bool stepIfDue();
    void tell();

    SignalSource& m_source;
    const DeviceStore& m_store;
    RecordingClock& m_clock;
    const RecordingPace m_pace;
    const Listener m_listener;
    const SignalTimeline m_timeline;
    const qint64 m_bytesPerFrame;
    const SignalPace m_signalPace;
    ZELKO_XML::ZELKO_RecordData m_birth;
    EditQueue m_noEdits;
    EditQueue* m_edits = &m_noEdits;
    std::unique_ptr<RecordWriter> m_writer;
    std::vector<char> m_buffer;
    RecordingClock::TimePoint m_lastStep;
    qint64 m_frame = 0;
    qint64 m_indexFrames;
    qint64 m_nextIndexFrame;
    qsizetype m_nextMark = 0;
    bool m_diskRefused = false;
    bool m_signalEnded = false;
    bool m_complete = false;
};

/// What a record of such a signal says of itself at its birth, but for its ID: name, start, format, data rate. `now` is
/// the start of a signal without a time of its own, in microseconds since the epoch.
ZELKO_XML::ZELKO_RecordData recordOf(const SourceDescription& signal, quint64 now);

} // namespace ZelkoRecorder
