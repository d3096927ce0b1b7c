#pragma once

#include <recorder/store/devicestore.h>
#include <recorder/store/editqueue.h>

#include <QFile>

#include <functional>
#include <memory>
#include <vector>

namespace ZelkoRecorder {

/// Writes one record, in steps after each of which the record on disk is whole: killed at any moment, it can be closed
/// at the last step. For one thread; every operation blocks for as long as the disk takes.
class RecordWriter
{
public:
    /// Makes the record, without samples: `birth` has its ID, name, start time and what is known of the signal; with a
    /// loop size it is shown as one that is recorded in a loop. When
    /// this returns it is durable and stands in the store under its ID, marked as one that is being recorded until
    /// `finish` has succeeded. Null, with a text for people in `error` and the store as it was, if the disk refuses or
    /// the ID is taken.
    static std::unique_ptr<RecordWriter> create(const DeviceStore& store, const ZELKO_XML::ZELKO_RecordData& birth,
                                                QString* error);

    /// Adds samples behind those that are there. They count from the next step on. False if the disk takes no more.
    bool append(const char* bytes, qint64 size);

    /// For entries and bookmarks that the next step is to save.
    ZELKO_XML::ZELKO_RecordData& record() { return m_record; }

    /// Makes the samples durable, then the record with all its index entries and bookmarks, its size and stop time
    /// those of the last index entry. What stands before its start position takes no room on the disk from then on.
    /// False if the disk refuses: then the step before holds.
    bool step();

    /// Makes edits as one step, calls `saved` if there was anything to save, and then answers: also `DiskRefused`, with
    /// the record as it was before.
    void makeEdits(const std::vector<EditQueue::Entry>& entries, const std::function<void()>& saved);

    /// The last step: cuts what no index entry counts and puts the record at rest. False if the disk refuses: then the
    /// step before holds, and the record can be closed at it as after a kill.
    bool finish();

    /// The record as it was saved last; marked as damaged after `finish` has failed, as nobody records it any more and
    /// it is not at rest either.
    const RecordPointer& saved() const { return m_saved; }

private:
    RecordWriter(const DeviceStore& store, const ZELKO_XML::ZELKO_RecordData& birth);

    bool bear(const QString& builtIn);
    bool openIn(const QString& folder);
    bool save(const QString& folder);
    bool flushSamples();
    bool freeBeforeStart();

    const DeviceStore& m_store;
    QFile m_samples;
    ZELKO_XML::ZELKO_RecordData m_record;
    RecordPointer m_saved;
    quint64 m_freed = 0; // up to here samples take no room any more
};

} // namespace ZelkoRecorder
