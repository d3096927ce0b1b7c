#pragma once

#include <recorder/served/deviceservice.h>
#include <recorder/served/recordchurn.h>
#include <recorder/served/recordingthread.h>
#include <recorder/served/servedbranch.h>
#include <recorder/store/preparedrecords.h>
#include <recorder/store/recording.h>

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace ZelkoRecorder {

/// What a device does from its start on.
struct DevicePlan
{
    /// Folder with the device's records.
    QString folder;
    /// Recorded one after the other, at once, and which of them again.
    QStringList sources;
    RecordingThread::Repeat repeat = RecordingThread::Repeat::Everything;
    RecordingPace pace;
    /// Prepared records for load tests, and the changes that are made to them as soon as they are loaded.
    int preparedRecords = 0;
    ChurnPlan churn;
};

/// One device: its records on disk, and the same ones on the tree, kept in step.
///
/// The tree follows the disk: a record appears, changes and goes on the tree when it has done so durably on disk. A
/// recording whose end the disk does not take is shown as damaged with what is durable of it; putting it to rest tries
/// again. Lives on the thread of the tree and never makes it wait for the disk, but in its destructor.
class ServedDevice : public QObject
{
    Q_OBJECT

public:
    /// Puts the device's branch on the tree and begins to load and to record. `tree` outlives the device, whose branch
    /// stays there.
    ServedDevice(Tree& tree, const DeviceIdentity& identity, const DevicePlan& plan, QObject* parent = nullptr);

    /// Closes the recording under way, and lets those who wait for an answer of the service go.
    ~ServedDevice() override;

    /// What clients may ask of the device; it lives as long as the device.
    DeviceService& service();

    /// @name A record that somebody else makes in the device's store, in this order
    /// @{
    /// Calls `ready` once the load has looked at what earlier runs left behind: it would take a record that is born
    /// before for one of theirs. Never before this has returned, and not if `context` is gone by then.
    void whenReady(QObject* context, std::function<void()> ready);
    /// It is about to be born; nothing of it is on disk yet. `stop` is called when a client wants it at rest; what
    /// clients want to change of it comes through `edits`.
    void beginForeignRecording(const QString& recordID, std::function<void()> stop,
                               const std::shared_ptr<EditQueue>& edits);
    /// A durable state of it.
    void showForeignRecording(const RecordPointer& record);
    /// Nobody writes to it any more.
    void endForeignRecording(const QString& recordID);
    /// @}

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoRecorder
