#pragma once

#include <recorder/served/servedbranch.h>

#include <QObject>
#include <QStringList>
#include <QTimer>

namespace ZelkoRecorder {

class Replays;

/// Shows on the tree what a device replays: below "/Replay" of its branch the ID of the record that was begun last, in
/// "RecordID", the moment of it that is being replayed, in "CurrentReplayPosition", in microseconds since the epoch,
/// and how many records are being replayed, in "NoOfReplays". Without a replay they are empty and 0. Lives on the
/// thread of the tree.
class ReplayValues : public QObject
{
    Q_OBJECT

public:
    /// Puts the values on the tree, which owns them and outlives this as do the replays.
    ReplayValues(Tree& tree, const QString& device, const Replays& replays, QObject* parent = nullptr);

private:
    void note(const QString& recordID);
    void show();

    const Replays& m_replays;
    QStringList m_running; // the last one was begun last
    TextValue* m_recordID;
    Value<qint64>* m_position;
    IntValue* m_count;
    QTimer m_timer;
};

} // namespace ZelkoRecorder
