#include <recorder/served/recordchurn.h>

#include <zelkobase/maps/recorditemmap.h>

#include <algorithm>
#include <limits>

namespace ZelkoRecorder {

using zelko::recordmap::RecordMapData;

namespace {

qint64 allChanges(const PreparedRecords& prepared, const ChurnPlan& plan)
{
    if (prepared.count() == 0) {
        return 0;
    }
    return plan.changes > 0 ? plan.changes : std::numeric_limits<qint64>::max();
}

} // namespace

RecordChurn::RecordChurn(zelko::recordmap::RecordItemMap& map, const PreparedRecords& prepared, const ChurnPlan& plan,
                         QObject* parent)
    : QObject(parent)
    , m_map(map)
    , m_prepared(prepared)
    , m_perSecond(plan.perSecond)
    , m_changes(allChanges(prepared, plan))
{
    constexpr std::chrono::milliseconds tick{5};
    m_timer.setInterval(tick);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this,
            [this] { changeUntil(std::chrono::nanoseconds(m_clock.nsecsElapsed())); });
}

void RecordChurn::start()
{
    if (m_perSecond > 0 && m_changes > 0) {
        m_clock.start();
        m_timer.start();
    }
}

void RecordChurn::changeUntil(std::chrono::nanoseconds sinceStart)
{
    constexpr qint64 portion = 1000;
    const auto due = static_cast<qint64>(std::chrono::duration<double>(sinceStart).count() * m_perSecond);
    for (qint64 left = std::min({due - m_done, m_changes - m_done, portion}); left > 0; --left) {
        changeNext();
    }
    if (m_done == m_changes) {
        m_timer.stop();
    }
}

void RecordChurn::changeNext()
{
    const QString id = m_prepared.recordId(static_cast<int>(m_done % m_prepared.count()));
    ++m_done;
    if (!m_map.contains(id) || !m_map.At(id).GetRecordData()) {
        return;
    }
    constexpr quint64 second = 1'000'000;
    const auto changed = std::make_shared<ZELKO_XML::ZELKO_RecordData>(*m_map.At(id).GetRecordData());
    changed->SetSize(changed->GetSize() + 4096);
    changed->SetStopTime(changed->GetStopTime() + second);
    m_map.SetAt(id, RecordMapData(changed), nullptr);
}

} // namespace ZelkoRecorder
