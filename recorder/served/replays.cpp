#include <recorder/served/replays.h>

namespace ZelkoRecorder {

using ZELKO_XML::ZELKO_RecordData;

namespace {

// How late the end of a replay is noticed at most.
constexpr std::chrono::milliseconds lookEvery{50};

} // namespace

Replays::Replays(RecordUses& uses, RecordingClock& clock, QObject* parent)
    : QObject(parent)
    , m_uses(uses)
    , m_clock(clock)
{
    m_timer.setInterval(lookEvery);
    connect(&m_timer, &QTimer::timeout, this, &Replays::endThoseDue);
}

Replays::~Replays() = default;

StoreStatus Replays::start(const QString& recordID, const RecordTimeline& timeline, quint64 start, quint64 stop)
{
    Replay replay(timeline, start, stop, m_clock.now());
    if (!replay.isValid()) {
        return StoreStatus::BadRange;
    }
    RecordUses::Handle use = m_uses.begin(recordID, RecordUses::Kind::Replay);
    if (!use) {
        return StoreStatus::InUse;
    }
    const std::lock_guard lock(m_mutex);
    const bool isNew = m_running.try_emplace(recordID, Running{std::move(replay), std::move(use)}).second;
    if (isNew) {
        tell({recordID});
    }
    return isNew ? StoreStatus::Done : StoreStatus::InUse;
}

// One that has come to its end, and was not looked at since, is no longer a replay to be paused or continued.
template <typename Action>
StoreStatus Replays::with(const QString& recordID, const Action& action)
{
    const std::lock_guard lock(m_mutex);
    const auto running = m_running.find(recordID);
    if (running == m_running.end() || running->second.replay.hasEnded(m_clock.now())) {
        return StoreStatus::UnknownEntry;
    }
    action(running->second.replay);
    return StoreStatus::Done;
}

StoreStatus Replays::pause(const QString& recordID)
{
    return with(recordID, [this](Replay& replay) { replay.pause(m_clock.now()); });
}

StoreStatus Replays::goOn(const QString& recordID)
{
    return with(recordID, [this](Replay& replay) { replay.continueAt(m_clock.now()); });
}

StoreStatus Replays::stop(const QString& recordID)
{
    const std::lock_guard lock(m_mutex);
    if (m_running.erase(recordID) == 0) {
        return StoreStatus::UnknownEntry;
    }
    tell({recordID});
    return StoreStatus::Done;
}

bool Replays::isReplaying(const QString& recordID) const
{
    const std::lock_guard lock(m_mutex);
    return m_running.contains(recordID);
}

std::optional<Replays::Position> Replays::position(const QString& recordID) const
{
    const std::lock_guard lock(m_mutex);
    const auto running = m_running.find(recordID);
    if (running == m_running.end()) {
        return std::nullopt;
    }
    const Replay& replay = running->second.replay;
    const Replay::TimePoint now = m_clock.now();
    return Position{replay.timeAt(now), replay.offsetAt(now), replay.isPaused(), replay.pauses()};
}

RecordPointer Replays::asShown(const RecordPointer& record) const
{
    if (!record || !isReplaying(record->GetRecordID())) {
        return record;
    }
    auto shown = std::make_shared<ZELKO_RecordData>(*record);
    shown->SetRecordStatus(ZELKO_RecordData::RecordStatus::Replaying);
    return shown;
}

void Replays::endThoseDue()
{
    const std::lock_guard lock(m_mutex);
    QStringList ended;
    for (const auto& [recordID, running] : m_running) {
        if (running.replay.hasEnded(m_clock.now())) {
            ended.append(recordID);
        }
    }
    for (const QString& recordID : ended) {
        m_running.erase(recordID);
    }
    if (m_running.empty()) {
        m_timer.stop();
    }
    tell(ended);
}

// Behind the operation that it tells of: nobody is called while the lock is held.
void Replays::tell(const QStringList& recordIDs)
{
    for (const QString& recordID : recordIDs) {
        m_news.post([this, recordID] {
            if (isReplaying(recordID)) {
                m_timer.start();
            }
            Q_EMIT changed(recordID);
        });
    }
}

} // namespace ZelkoRecorder
