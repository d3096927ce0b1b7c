#pragma once

#include <recorder/store/preparedrecords.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoRecorder {

/// Changes prepared records again and again, one after the other, in the map alone and not on disk, for trying clients
/// under load: each change makes a record a little larger and longer. Lives on the thread of the map.
class RecordChurn : public QObject
{
    Q_OBJECT

public:
    /// `map` outlives the churn. `perSecond` changes are spread evenly.
    RecordChurn(zelko::recordmap::RecordItemMap& map, const PreparedRecords& prepared, double perSecond,
                QObject* parent = nullptr);

    void start();

private:
    void changeThoseDue();
    void changeNext();

    zelko::recordmap::RecordItemMap& m_map;
    const PreparedRecords m_prepared;
    const double m_perSecond;
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_done = 0;
};

} // namespace ZelkoRecorder
