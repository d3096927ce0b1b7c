#pragma once

#include <recorder/served/mailbox.h>
#include <recorder/store/recordpointer.h>
#include <recorder/store/recorduses.h>
#include <recorder/store/replay.h>
#include <recorder/store/storestatus.h>

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <map>
#include <mutex>
#include <optional>

namespace ZelkoRecorder {

/// The replays of a device's records: at most one of each record at a time. The operations may be called by any thread;
/// the signals come on the thread that this object lives on.
class Replays : public QObject
{
    Q_OBJECT

public:
    /// How far a replay has come.
    struct Position
    {
        quint64 time;   ///< microseconds since the epoch
        quint64 offset; ///< bytes
        bool paused;
        quint32 pauses = 0; ///< so far, the present one included

        friend bool operator==(const Position&, const Position&) = default;
    };

    /// `uses` and `clock` outlive the replays.
    explicit Replays(RecordUses& uses, RecordingClock& clock = RecordingClock::steady(), QObject* parent = nullptr);

    /// Ends them all without a signal. Nobody may call any more.
    ~Replays() override;

    /// Begins a replay as `Replay` does. `InUse` if the record is replayed already, or being deleted; `BadRange` if
    /// there is nothing to replay between `start` and `stop`.
    StoreStatus start(const QString& recordID, const RecordTimeline& timeline, quint64 start, quint64 stop);

    /// `UnknownEntry` if the record is not being replayed. Twice is as once.
    StoreStatus pause(const QString& recordID);
    StoreStatus goOn(const QString& recordID);

    /// Ends it at once; `UnknownEntry` if the record is not being replayed.
    StoreStatus stop(const QString& recordID);

    bool isReplaying(const QString& recordID) const;

    /// Nothing if the record is not being replayed.
    std::optional<Position> position(const QString& recordID) const;

    /// The record with the status of one that is replayed, if it is; otherwise just the record, or null.
    RecordPointer asShown(const RecordPointer& record) const;

    /// Ends the replays that have come to their stop. Called by a timer while there are any.
    void endThoseDue();

Q_SIGNALS:
    /// The replay of a record has begun or ended; ask `isReplaying`.
    void changed(const QString& recordID);

private:
    struct Running
    {
        Replay replay;
        RecordUses::Handle use;
    };

    template <typename Action>
    StoreStatus with(const QString& recordID, const Action& action);
    void tell(const QStringList& recordIDs);

    RecordUses& m_uses;
    RecordingClock& m_clock;
    mutable std::mutex m_mutex;
    std::map<QString, Running> m_running;
    QTimer m_timer;
    Mailbox m_news;
};

} // namespace ZelkoRecorder
