#include <recorder/service/channelpanel.h>

#include <recorder/served/replaystep.h>
#include <recorder/source/cleantext.h>

#include <valuecore/tree.h>
#include <valuecore/valueselection.h>

#include <limits>
#include <utility>

namespace ZelkoRecorder {

using Verdict = Channel::Verdict;
using RecordingState = Channel::RecordingState;
using ReplayState = ChannelReplay::State;
using ZELKO_XML::ZELKO_RecordData;

namespace {

constexpr quint64 bytesPerKB = 1024;

QString verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Done:
        break;
    case Verdict::Removed:
        return QStringLiteral("the channel was removed");
    case Verdict::Busy:
        return QStringLiteral("the channel is busy");
    case Verdict::NotRecording:
        return QStringLiteral("the channel is not recording");
    case Verdict::NoDevice:
        return QStringLiteral("there is no such device for the channel");
    case Verdict::NotAble:
        return QStringLiteral("the channel was not registered for this");
    case Verdict::NoSize:
        return QStringLiteral("a recording in a loop needs a file size");
    case Verdict::NotStored:
        return QStringLiteral("the disk does not take it");
    }
    return {};
}

// Nothing for what is no time, as anybody may write it.
quint64 microsecondsOf(double time)
{
    constexpr auto latest = static_cast<double>(std::numeric_limits<qint64>::max());
    return time > 0 && time < latest ? static_cast<quint64>(time) : 0;
}

} // namespace

ChannelPanel::ChannelPanel(Tree& tree, Channel& channel, QObject* parent)
    : QObject(parent)
    , m_tree(tree)
    , m_channel(channel)
    , m_branch(tree, channel.id())
    , m_bookmarkBounds(m_branch.bookmarks)
{
    for (Observable* const value : std::initializer_list<Observable*>{
             m_branch.recordingState, m_branch.replayState, m_branch.deviceId, m_branch.recordName,
             m_branch.recordTimeout, m_branch.fileSizeInKB, m_branch.recordId, m_branch.recordStatus,
             m_branch.replayDataRateClass, m_branch.dataFormat}) {
        observe(value);
    }
    connect(&channel, &Channel::changed, this, [this] { show(); });
    connect(&channel, &Channel::recordChanged, this, [this](const RecordPointer& record) { showRecord(record); });
    connect(&channel, &Channel::failed, this, [this](const QString& why) { tellError(why); });
    connect(&m_positionTimer, &QTimer::timeout, this, [this] { showPosition(); });
    m_positionTimer.setInterval(replayStep);
    show();
}

ChannelPanel::~ChannelPanel()
{
    for (Observable* const value : m_observed) {
        value->DeleteObserver(this);
    }
    m_tree.Remove(ChannelBranch::pathOf(m_channel.id()));
}

void ChannelPanel::observe(Observable* value)
{
    value->AddObserver(this);
    m_observed.push_back(value);
}

// Whatever is written here would go to the clients before the write that it answers.
void ChannelPanel::Update(Observable* source, TChangeCode code)
{
    if (code != TChangeCode::ValueChanged) {
        return;
    }
    for (const ValueSelection* const state : {m_branch.recordingState, m_branch.replayState}) {
        if (source == state) {
            m_wishes.push_back({state, state->GetCurrentKey()});
        }
    }
    m_isDeviceChosen = m_isDeviceChosen || source == m_branch.deviceId;
    if (!std::exchange(m_isGranting, true)) {
        QMetaObject::invokeMethod(this, &ChannelPanel::grantWishes, Qt::QueuedConnection);
    }
}

void ChannelPanel::grantWishes()
{
    m_isGranting = false;
    tidy();
    for (const Wish& wish : std::exchange(m_wishes, {})) {
        if (wish.state == m_branch.recordingState) {
            grantRecording(wish.key);
        } else {
            grantReplay(wish.key);
        }
    }
    show();
}

void ChannelPanel::grantRecording(int key)
{
    switch (static_cast<RecordingState>(key)) {
    case RecordingState::StartRequested:
    case RecordingState::NormalRecording:
        startRecording(false);
        break;
    case RecordingState::ContinuousRecording:
        startRecording(true);
        break;
    case RecordingState::Stopping:
    case RecordingState::Stopped:
        m_channel.stopRecording(QString(), [](Verdict) {});
        break;
    }
}

void ChannelPanel::grantReplay(int key)
{
    ChannelReplay& replay = m_channel.replay();
    switch (static_cast<ReplayState>(key)) {
    case ReplayState::Started:
    case ReplayState::Running:
        if (!replay.goOn()) {
            startReplay();
        }
        break;
    case ReplayState::Pausing:
    case ReplayState::Paused:
        replay.pause();
        break;
    case ReplayState::Stopping:
    case ReplayState::Stopped:
        replay.stop();
        break;
    }
}

void ChannelPanel::startRecording(bool isLoop)
{
    if (m_channel.recordingState() == RecordingState::Stopped) {
        set(m_branch.errorCode, QString());
    }
    Channel::Recording recording;
    recording.seconds = m_branch.recordTimeout->GetValue();
    recording.name = m_branch.recordName->GetValue();
    recording.device = m_branch.deviceId->GetValue();
    recording.mostBytes = static_cast<quint64>(m_branch.fileSizeInKB->GetValue()) * bytesPerKB;
    recording.isLoop = isLoop;
    note(m_channel.startRecording(recording));
}

void ChannelPanel::startReplay()
{
    if (m_channel.replay().isIdle()) {
        set(m_branch.errorCode, QString());
    }
    note(m_channel.startReplay({m_branch.deviceId->GetValue(), m_branch.recordId->GetValue(),
                                microsecondsOf(m_branch.position->GetValue()), 0}));
}

void ChannelPanel::note(Verdict verdict)
{
    if (verdict != Verdict::Done) {
        tellError(verdictText(verdict));
    }
}

// Whoever asks for the same thing twice is to hear twice why he does not get it.
void ChannelPanel::tellError(const QString& text)
{
    if (m_branch.errorCode->GetValue() == text) {
        m_branch.errorCode->HasChanged(TChangeCode::ValueChanged, this);
    } else {
        set(m_branch.errorCode, text);
    }
}

// Anything may have been written: what makes no sense goes back to what does.
void ChannelPanel::tidy()
{
    for (TextValue* const text : {m_branch.deviceId, m_branch.recordName, m_branch.recordId, m_branch.recordStatus,
                                  m_branch.replayDataRateClass, m_branch.dataFormat}) {
        tidyText(text);
    }
    for (IntValue* const number : {m_branch.recordTimeout, m_branch.fileSizeInKB}) {
        set(number, std::max(0, number->GetValue()));
    }
}

void ChannelPanel::tidyText(TextValue* value)
{
    set(value, cleanText(value->GetValue()));
}

void ChannelPanel::show()
{
    const ChannelWish& settings = m_channel.settings();
    set(m_branch.channelName, settings.name);
    set(m_branch.recordFlag, settings.canRecord);
    set(m_branch.replayFlag, settings.canReplay);
    set(m_branch.dataRateClass, ZELKO_RecordData::DataRateToName(settings.dataRate));
    showDevice();
    m_branch.recordingState->SetCurrentKey(static_cast<int>(m_channel.recordingState()), this);

    const auto replayState = static_cast<int>(m_channel.replay().state());
    showPosition();
    m_branch.guiReplayState->SetCurrentKey(replayState, this);
    m_branch.replayState->SetCurrentKey(replayState, this);
    if (m_channel.replay().isIdle()) {
        m_positionTimer.stop();
    } else if (!m_positionTimer.isActive()) {
        m_positionTimer.start();
    }
}

// What records or replays keeps the device that it has.
void ChannelPanel::showDevice()
{
    const bool isAtRest = m_channel.recordingState() == RecordingState::Stopped && m_channel.replay().isIdle();
    if (isAtRest && !m_isDeviceChosen) {
        set(m_branch.deviceId, m_channel.device());
    }
}

void ChannelPanel::showRecord(const RecordPointer& record)
{
    set(m_branch.fileSize, static_cast<qint64>(record->GetSize()));
    set(m_branch.startTime, static_cast<qint64>(record->GetStartTime()));
    set(m_branch.stopTime, static_cast<qint64>(record->GetStopTime()));
    set(m_branch.startPosition, static_cast<qint64>(record->GetStartPosition()));
    set(m_branch.stopPosition, static_cast<qint64>(record->GetStopPosition()));
    set(m_branch.loopSize, static_cast<qint64>(record->GetRecordingLoopSize()));
    set(m_branch.recordStatus, ZELKO_RecordData::RecordStatusToName(record->GetRecordStatus()));
    set(m_branch.replayDataRateClass, ZELKO_RecordData::DataRateToName(record->GetDataRate()));
    set(m_branch.dataFormat, ZELKO_RecordData::DataFormatToName(record->GetDataFormat()));
    set(m_branch.isDeletable, record->GetDeletable());
    set(m_branch.recordId, record->GetRecordID());
}

// Where a replay will begin is for clients to say, and where the last one stood until they do.
void ChannelPanel::showPosition()
{
    const bool isMoving = !m_channel.replay().isIdle() || m_positionTimer.isActive();
    if (const quint64 position = m_channel.replay().position(); isMoving && position > 0) {
        set(m_branch.position, static_cast<double>(position));
    }
}

template <typename T, typename Content>
void ChannelPanel::set(T* value, const Content& content)
{
    value->SetValue(content, this);
}

} // namespace ZelkoRecorder
