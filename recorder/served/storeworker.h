#pragma once

#include <recorder/served/jobthread.h>
#include <recorder/served/mailbox.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/preparedrecords.h>
#include <recorder/store/recordchanges.h>
#include <recorder/store/recorduses.h>

#include <QObject>
#include <QSet>

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace ZelkoRecorder {

/// Does a device's work on disk, one job after the other on a thread of its own, so that the thread of the tree never
/// waits for a disk. Results come as signals on the thread that this object lives on, in the order of the jobs; what is
/// read comes in slices small enough for that thread.
class StoreWorker : public QObject
{
    Q_OBJECT

public:
    /// Who is told how a job ended, on the worker's thread. An answer that the end of the worker overtakes is destroyed
    /// without being called.
    using Answer = std::function<void(StoreStatus)>;

    /// `uses` outlives the worker.
    StoreWorker(const DeviceStore& store, const PreparedRecords& prepared, RecordUses& uses, QObject* parent = nullptr);

    /// Waits for the job under way and forgets the others.
    ~StoreWorker() override;

    /// Reads the whole store for the first time: what earlier runs left half done is put in order, and prepared records
    /// that are missing are made. Once, before anything else, and before anything is recorded to the store.
    void load();

    /// Looks for folders that came and went since.
    void rescan();

    /// Reads every record anew, and looks for folders that came and went; nothing more if that waits already.
    void readAll();

    /// Reads one record anew; tells that it is gone, and answers so, if it cannot be read. Without an answer it does
    /// nothing more if that waits already.
    void readOne(const QString& recordID, const Answer& answer = {});

    /// Answers `Done` when the jobs before are done; once the load has been asked for nothing that an earlier run left
    /// is there any more.
    void reach(const Answer& answer);

    /// Edits one record at rest, as RecordChanges does. The new state is on its way as a signal when the answer comes.
    void edit(const QString& recordID, const RecordEdit& edit, const Answer& answer);

    /// Takes up a record that somebody else has put into the store.
    void add(const RecordPointer& record);

    /// Puts a record at rest, whatever its status says. Not one that is being recorded.
    void putToRest(const QString& recordID);

    /// Removes records for good, but not those that are in use or not marked as deletable on disk. The log says when it
    /// begins, and how long it took.
    void remove(const QStringList& recordIDs);

Q_SIGNALS:
    /// The load has begun and there are so many records to come. From here on records may be born.
    void counted(int records);

    /// What was read. Records that are being recorded are left out.
    void recordsRead(const ZelkoRecorder::RecordPointers& records);

    /// The last record of the load has been read.
    void loaded();

    /// These are no longer in the store.
    void recordsGone(const QStringList& recordIDs);

private:
    void listAll();
    void loadSlice();
    RecordPointer loadOne(const QString& recordID);
    void compareNames();
    void readSlices(const QStringList& recordIDs);
    RecordPointer readKnown(const QString& recordID);
    qsizetype removePart(const QStringList& recordIDs);
    bool mayRemove(const QString& recordID) const;
    bool noteWaiting(const QString& recordID);
    void forgetWaiting(const QString& recordID);
    void tellOf(const RecordPointers& records);
    void tellGone(const QStringList& recordIDs);
    void setAside(const QString& recordID, const QString& why);

    const DeviceStore m_store;
    const PreparedRecords m_prepared;
    RecordUses& m_uses;

    // Only the jobs use these.
    QStringList m_toLoad;
    bool m_loading = false;
    bool m_compareAfterLoad = false;
    QSet<QString> m_known;
    QSet<QString> m_setAside;

    std::atomic<bool> m_readAllWaits = false;
    std::mutex m_mutex;
    QSet<QString> m_readingsThatWait; // for which nobody wants an answer

    Mailbox m_results;
    JobThread m_thread; // goes first
};

} // namespace ZelkoRecorder
