#include <recorder/served/recordchurn.h>

#include <zelkobase/maps/recorditemmap.h>

#include <algorithm>
#include <chrono>

namespace ZelkoRecorder {

using zelko::recordmap::RecordMapData;

RecordChurn::RecordChurn(zelko::recordmap::RecordItemMap& map, const PreparedRecords& prepared, double perSecond,
                         QObject* parent)
    : QObject(parent)
    , m_map(map)
    , m_prepared(prepared)
    , m_perSecond(perSecond)
{
    constexpr std::chrono::milliseconds tick{5};
    m_timer.setInterval(tick);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { changeThoseDue(); });
}

void RecordChurn::start()
{
    if (m_perSecond > 0 && m_prepared.count() > 0) {
        m_clock.start();
        m_timer.start();
    }
}

// What a stall has put off is made up for in bounded portions.
void RecordChurn::changeThoseDue()
{
    constexpr qint64 portion = 1000;
    const double seconds = std::chrono::duration<double>(std::chrono::nanoseconds(m_clock.nsecsElapsed())).count();
    const qint64 due = static_cast<qint64>(seconds * m_perSecond) - m_done;
    for (qint64 i = std::min(due, portion); i > 0; --i) {
        changeNext();
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
