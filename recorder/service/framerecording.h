#pragma once

#include <recorder/service/framesequence.h>
#include <recorder/store/deviceclock.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/editqueue.h>
#include <recorder/store/recordwriter.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ZelkoRecorder {

/// Makes one record of the frames of a channel, on one thread. The record is born with the first frame that has
/// samples; without one there is none.
///
/// A birth with a loop size makes a record that keeps its last samples only: so many bytes, and what stands before them
/// up to an entry of the index. Its start moves on; positions still count from the first sample that it ever had.
class FrameRecording
{
public:
    /// Told of each durable state of the record, in the end of one that is finished, or damaged.
    using Listener = std::function<void(const RecordPointer&)>;

    /// Told of the ID before anything of the record is on disk.
    using BirthListener = std::function<void(const QString& recordID)>;

    /// `birth` has name, format and whatever else the frames do not say; the ID is made when it is born, of the time of
    /// the device. `store` and `clock` outlive the recording.
    FrameRecording(const DeviceStore& store, const DeviceClock& clock, const ZELKO_XML::ZELKO_RecordData& birth,
                   BirthListener born, Listener listener);
    ~FrameRecording();

    /// At least between two index entries of what changes, in microseconds of the signal; more when they become many.
    static constexpr quint64 shortestChangeInterval = 50'000;

    /// With more entries than this the index is thinned out.
    static constexpr int maximumIndexEntries = 1024;

    /// Writes the frame's samples behind those before. A frame that does not follow, as FrameSequence says, or that
    /// ends within a sample is left out; one behind a gap begins a new entry of the index. One that is unproven is kept
    /// in memory until it is known what becomes of it. False, and a text for people in `error`, if the disk refuses.
    bool take(const ChannelFrame& frame, std::string_view samples, QString* error);

    /// With this the record never has more bytes of samples: of the frame that goes beyond it only the whole samples
    /// that fit are taken, and of those behind it nothing. 0: no limit.
    void limitTo(quint64 bytes) { m_mostBytes = bytes; }

    /// Whether it has as many samples as its limit lets it have.
    bool isFull() const { return m_mostBytes > 0 && m_mostBytes - m_size < m_bytesPerSample; }

    /// Makes the edits that wait, durably; as long as there is no record it is to be born with them.
    void makeEdits(EditQueue& edits);

    /// Makes the edits that wait, closes the record, durably, and ends the edits. False if the disk does not take its
    /// end: then the record is shown as damaged. Without a record edits are answered `UnknownRecord`.
    bool finish(EditQueue& edits);

    /// Empty as long as there is no record.
    QString recordID() const;

    /// Frames that never came, as their numbers tell, and frames that were left out. Known when it is finished.
    quint64 lostFrames() const { return m_sequence.lostFrames(); }
    quint64 refusedFrames() const { return m_refused; }

private:
    using Clock = std::chrono::steady_clock;
    using Place = FrameSequence::Place;

    struct KeptFrame
    {
        ChannelFrame frame;
        std::string samples;
    };

    bool store(ChannelFrame frame, std::string_view samples, Place place, QString* error);
    void keepUnproven(const ChannelFrame& frame, std::string_view samples);
    void refuseUnproven();
    bool storeUnproven(const std::vector<Place>& places, QString* error);
    bool storeRest();
    bool write(const ChannelFrame& frame, std::string_view samples, QString* error);
    bool begin(const ChannelFrame& frame, QString* error);
    void moveStart();
    void noteIndexEntry(const ChannelFrame& frame, bool isGap);
    void planEntries(quint64 time);
    void appendEntry(quint64 time);
    void keepIndexSmall();
    void tellOfFolding();
    bool stepIfDue();
    void tell();
    quint64 endOf(const ChannelFrame& frame) const;

    const DeviceStore& m_store;
    const DeviceClock& m_clock;
    ZELKO_XML::ZELKO_RecordData m_birth;
    const BirthListener m_born;
    const Listener m_listener;
    const quint64 m_bytesPerSample;
    std::unique_ptr<RecordWriter> m_writer;
    FrameSequence m_sequence;
    std::vector<KeptFrame> m_unproven; // those that the sequence tells of
    ChannelFrame m_last;
    quint64 m_end = 0;  // time behind the last sample
    quint64 m_size = 0; // bytes so far
    quint64 m_mostBytes = 0;
    quint64 m_nextEntry = 0;
    quint64 m_nextChange = 0;
    quint64 m_entryInterval;
    quint64 m_changeInterval;
    bool m_changeWaits = false;  // for its entry
    bool m_lastIsOfStep = false; // the last entry
    bool m_hasToldOfFolding = false;
    Clock::time_point m_lastStep;
    quint64 m_refused = 0;
};

} // namespace ZelkoRecorder
