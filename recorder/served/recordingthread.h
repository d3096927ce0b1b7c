#pragma once

#include <recorder/served/mailbox.h>
#include <recorder/store/deviceclock.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/recordedsources.h>
#include <recorder/store/recording.h>
#include <recorder/store/recorduses.h>

#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

namespace ZelkoRecorder {

/// Records a device's sources one after the other on a thread of its own. The signals come on the thread that this
/// object lives on.
class RecordingThread : public QObject
{
    Q_OBJECT

public:
    /// What is recorded again.
    enum class Repeat {
        Everything,
        Unfinished ///< only what the store has never recorded to its end
    };

    /// What the recordings of a device share with its other users; all of it outlives the thread.
    struct Surroundings
    {
        const DeviceStore& store;
        RecordUses& uses;
        const DeviceClock& clock;
    };

    /// `sources` are texts as SourceFactory takes them.
    RecordingThread(const QString& device, const Surroundings& surroundings, const QStringList& sources,
                    const RecordingPace& pace, Repeat repeat, QObject* parent = nullptr);

    /// Closes the recording under way, durably, and waits for that.
    ~RecordingThread() override;

    void start();

    /// Ends the recording of this record, if it is under way, and goes on to the next source.
    void stopRecording(const QString& recordID);

    /// Edits the record while it is being recorded. False, and nobody is answered, if it is not, or no longer;
    /// otherwise as EditQueue has it. Any thread.
    bool edit(const QString& recordID, const EditQueue::Entry& entry);

Q_SIGNALS:
    /// A record is about to be born. Comes before anything of it is on disk.
    void recordBegins(const QString& recordID);

    /// A durable state of the record that is being recorded; in the end marked as damaged if it could not be closed.
    void recordChanged(const ZelkoRecorder::RecordPointer& record);

    /// Nobody writes to the record any more.
    void recordEnded(const QString& recordID);

private:
    void recordAll();
    void recordOne(const QString& source, RecordedSources& recorded);
    bool record(const QString& source);
    std::stop_token begin(const QString& recordID, const std::shared_ptr<EditQueue>& edits);

    const QString m_device;
    const DeviceStore m_store;
    RecordUses& m_uses;
    const DeviceClock& m_clock;
    const QStringList m_sources;
    const RecordingPace m_pace;
    const Repeat m_repeat;

    std::atomic<bool> m_ending = false;
    std::mutex m_mutex;
    std::stop_source m_stop; // of the recording under way, with its record's ID
    QString m_recordID;
    std::shared_ptr<EditQueue> m_edits;

    Mailbox m_news;
    std::thread m_thread;
};

} // namespace ZelkoRecorder
