#include <recorder/served/replayvalues.h>

#include <recorder/served/putvalue.h>
#include <recorder/served/replays.h>
#include <recorder/served/replaystep.h>

#include <zelkobase/names/valuenames.h>

namespace ZelkoRecorder {

namespace names = zelko::names;

namespace {

template <typename T, typename Content>
void set(T* value, const Content& content)
{
    if (value->GetValue() != content) {
        value->SetValue(content, nullptr);
    }
}

} // namespace

ReplayValues::ReplayValues(Tree& tree, const QString& device, const Replays& replays, QObject* parent)
    : QObject(parent)
    , m_replays(replays)
{
    const QString node = names::devicePathBelowRoot(QString(), device) + QLatin1String("/Replay");
    m_recordID = putValue<TextValue>(tree, names::join(node, names::recordId));
    m_position = putValue<Value<qint64>>(tree, names::join(node, names::currentReplayPosition));
    m_count = putValue<IntValue>(tree, names::join(node, names::noOfReplays));
    m_timer.setInterval(replayStep);
    connect(&m_timer, &QTimer::timeout, this, [this] { show(); });
    connect(&replays, &Replays::changed, this, [this](const QString& id) { note(id); });
}

void ReplayValues::note(const QString& recordID)
{
    m_running.removeAll(recordID);
    if (m_replays.isReplaying(recordID)) {
        m_running.append(recordID);
        m_timer.start();
    } else if (m_running.isEmpty()) {
        m_timer.stop();
    }
    show();
}

void ReplayValues::show()
{
    const QString shown = m_running.isEmpty() ? QString() : m_running.constLast();
    const auto position = m_replays.position(shown);
    set(m_recordID, shown);
    set(m_position, position ? static_cast<qint64>(position->time) : qint64{0});
    set(m_count, static_cast<int>(m_running.size()));
}

} // namespace ZelkoRecorder
