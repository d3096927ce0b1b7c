#pragma once

#include <recorder/store/preparedrecords.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoRecorder {

/// How prepared records are changed.
struct ChurnPlan
{
    /// Changes a second, spread evenly; 0 for none.
    double perSecond = 0;
    /// Changes in all; 0 for no end.
    qint64 changes = 0;
};

/// Changes prepared records again and again, one after the other, in the map alone and not on disk, for trying clients
/// under load: each change makes a record 4096 bytes larger and a second longer. Lives on the thread of the map.
class RecordChurn : public QObject
{
    Q_OBJECT

public:
    /// `map` outlives the churn.
    RecordChurn(zelko::recordmap::RecordItemMap& map, const PreparedRecords& prepared, const ChurnPlan& plan,
                QObject* parent = nullptr);

    void start();

    /// Makes the changes that are due so long after the start, but no more than a portion of them at once, so that the
    /// thread stays free after a stall. Called by a timer from `start` on.
    void changeUntil(std::chrono::nanoseconds sinceStart);

private:
    void changeNext();

    zelko::recordmap::RecordItemMap& m_map;
    const PreparedRecords m_prepared;
    const double m_perSecond;
    const qint64 m_changes;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_done = 0;
};

} // namespace ZelkoRecorder
