#pragma once

#include <recorder/served/jobthread.h>
#include <recorder/served/mailbox.h>
#include <recorder/store/recordexport.h>
#include <recorder/store/recorduses.h>

#include <QList>
#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace ZelkoRecorder {

/// Exports records one after the other, on a thread of its own. The operations may be called by any thread; the signals
/// come on the thread that this object lives on.
class ExportQueue : public QObject
{
    Q_OBJECT

public:
    /// Where a record to be exported comes from. Store and uses are those of the device; the uses outlive the queue.
    struct Source
    {
        QString device;
        DeviceStore store;
        RecordUses& uses;
    };

    /// Called before each part that is moved, on the thread of the exports, which it may slow down.
    using Brake = std::function<void()>;

    explicit ExportQueue(const ExportFolders& folders, Brake brake = {}, QObject* parent = nullptr);

    /// Gives up the export under way, without any of its files, and forgets the others. Nobody may call any more.
    ~ExportQueue() override;

    /// So many may wait or be under way.
    static constexpr int mostExports = 100;

    /// Takes an export on and gives its ID: device, record, path and name of the data format, joined with "@". Empty,
    /// and in `status` why, if it cannot be: as RecordExport says, `InUse` for a record that is being deleted or an
    /// export that is under way already, `TooMany` if no more may wait. Until it has ended the record cannot be
    /// deleted. Blocks for as long as it takes to look at record and target.
    QString enqueue(const Source& source, const QString& recordID, const QString& path, StoreStatus* status);

    /// Gives up an export that waits or is under way: `finished` follows. `UnknownEntry` if there is none of this ID.
    StoreStatus cancel(const QString& exportID, RecordExport::Partial partial);

    /// Exports that wait.
    int pending() const;

Q_SIGNALS:
    /// @name Of one export after the other, in this order; `progress` any number of times, always with the newest state
    /// @{
    void started(const QString& exportID);
    void progress(quint64 processed, quint64 total);
    void finished(const QString& exportID, ZelkoRecorder::StoreStatus status);
    /// @}

    /// So many wait now.
    void pendingChanged(int pending);

private:
    struct Errand;
    using ErrandPointer = std::shared_ptr<Errand>;

    bool isFull() const;
    StoreStatus note(const ErrandPointer& errand);
    QList<ErrandPointer>::const_iterator find(const QString& exportID) const;
    void setRunning(bool isRunning);
    void run(const ErrandPointer& errand);
    void report(const ErrandPointer& errand, quint64 moved);
    void tellPending();

    const ExportFolders m_folders;
    const Brake m_brake;
    mutable std::mutex m_mutex;
    QList<ErrandPointer> m_errands; // the first may be under way
    bool m_isRunning = false;
    std::atomic<bool> m_ending = false;
    std::atomic<bool> m_progressIsOnItsWay = false;
    Mailbox m_news;
    JobThread m_thread; // goes first
};

} // namespace ZelkoRecorder
