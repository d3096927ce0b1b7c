#include <console/channel/workchannel.h>

#include <console/channel/permittedconnection.h>
#include <console/records/recordsituation.h>

#include <host/userrights.h>
#include <valuecore/tree.h>
#include <valuecore/valueselection.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkoguibase/state/zelkochannelmodel.h>

#include <algorithm>
#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::AbstractServerConnectionData;

namespace {

// A value of the workstation's own, which stays for as long as the process lives, as its other local values do.
ValuePtr<Value<QString>> channelIdValue(const ZelkoCommon::LocalZelkoValues& local)
{
    const QString folder = zelko::names::localValuesPath(local.basePath());
    const auto name = QStringLiteral("ChannelID");
    ValuePtr<Value<QString>> value;
    if (!value.GetFromTree(folder + QLatin1Char('/') + name)) {
        value = Tree::Instance()->Emplace(folder, std::make_unique<Value<QString>>(name));
    }
    return value;
}

template <typename T>
void follow(ValueObservingPtr<T>& handle, const ValuePtr<T>& value)
{
    handle = value.get();
}

template <typename Handle, typename Content>
Content contentOr(const Handle& handle, const Content& otherwise)
{
    return handle ? handle->GetValue() : otherwise;
}

int keyOf(const ValueObservingPtr<ValueSelection>& selection)
{
    return selection ? selection->GetCurrentKey() : -1;
}

} // namespace

WorkChannel::WorkChannel(const QString& subSystem, const Connection& connection, QObject* parent)
    : QObject(parent)
    , m_subSystem(subSystem)
    , m_connection(std::make_shared<PermittedConnection>(connection))
    , m_local(subSystem)
    , m_served(subSystem)
    , m_id(channelIdValue(m_local))
    , m_mayUse(mayChangeAnything())
    , m_model(std::make_unique<ZelkoGUI::ZelkoChannelModel>(m_local, m_id->GetPathName(), m_connection))
    , m_stateObserver([this](TChangeCode) { m_soon.ask(); })
    , m_positionObserver([this](TChangeCode) { mirrorPosition(); })
    , m_recording(&m_stateObserver)
    , m_replay(&m_stateObserver)
    , m_error(&m_stateObserver)
    , m_recordFlag(&m_stateObserver)
    , m_replayFlag(&m_stateObserver)
    , m_recordName(&m_stateObserver)
    , m_recordTimeout(&m_stateObserver)
    , m_fileSize(&m_stateObserver)
    , m_position(&m_positionObserver)
{
    connect(&m_served, &ServedChannels::changed, this, &WorkChannel::look);
    for (const auto signal :
         {&AbstractServerConnectionData::si_allTicsConnected, &AbstractServerConnectionData::si_allTicsDisconnected}) {
        connect(m_connection.get(), signal, &m_served, &ServedChannels::lookSoon);
    }
    connect(m_model.get(), &ZelkoGUI::ZelkoChannelModel::si_availableChannelState, this, &WorkChannel::observe);
    connect(UserRights::Instance(), &UserRights::UpdateUserRights, this, &WorkChannel::rightsChanged);
    look();
}

WorkChannel::~WorkChannel() = default;

bool WorkChannel::isOffered() const
{
    return !channels().empty() || (!id().isEmpty() && !m_connection->isConnected(m_subSystem));
}

QString WorkChannel::id() const
{
    return contentOr(m_id, QString());
}

void WorkChannel::choose(const QString& id)
{
    const ServedChannels::Channel* const channel = m_served.find(id);
    m_name = channel ? channel->name : QString();
    if (m_id) {
        m_id->SetValue(id, nullptr);
    }
    m_soon.ask();
}

// What is lost with its connection is told as that by the model.
void WorkChannel::look()
{
    if (m_connection->isConnected(m_subSystem)) {
        chooseServed();
        takeUp();
    }
    observe();
}

// The model does not look again at a channel of which it has seen that the values are missing, and does not see that
// they went and came.
void WorkChannel::takeUp()
{
    if (!situation().isThere()) {
        m_model->setChannelId(QString(), QString());
    }
    m_model->resetChannel(QString());
}

void WorkChannel::chooseServed()
{
    if (channels().empty()) {
        return;
    }
    if (const ServedChannels::Channel* const channel = m_served.find(id())) {
        m_name = channel->name;
        return;
    }
    const auto named = std::find_if(channels().begin(), channels().end(),
                                    [this](const ServedChannels::Channel& channel) { return channel.name == m_name; });
    if (id().isEmpty() || named != channels().end()) {
        choose((named == channels().end() ? channels().front() : *named).id);
    }
}

void WorkChannel::observe()
{
    const ZelkoCommon::ChannelValues& values = *m_model->channelValues();
    follow(m_recording, values.valueRecordingState());
    follow(m_replay, values.valueReplayState());
    follow(m_error, values.valueErrorCode());
    follow(m_recordFlag, values.valueRecordFlag());
    follow(m_replayFlag, values.valueReplayFlag());
    follow(m_recordName, values.valueRecordName());
    follow(m_recordTimeout, values.valueRecordTimeout());
    follow(m_fileSize, values.valueFileSizeInKB());
    follow(m_position, values.valueCurrentReplayPosition());
    mirrorPosition();
    m_soon.ask();
}

void WorkChannel::mirrorPosition()
{
    if (const auto& shown = m_local.valueWaterfallTimestamp(); shown && m_position) {
        shown->SetValue(m_position->GetValue(), nullptr);
    }
}

// The values of the channel are bound anew, or not any more.
void WorkChannel::rightsChanged()
{
    if (std::exchange(m_mayUse, mayChangeAnything()) != mayChangeAnything()) {
        m_model->setChannelId(QString(), QString());
        look();
    }
    m_soon.ask();
}

ChannelSituation WorkChannel::situation() const
{
    ChannelSituation situation;
    const bool isConnected = m_connection->isConnected(m_subSystem);
    situation.state = isConnected && id().isEmpty() ? ZelkoGlobal::ChannelNotSet : m_model->channelState();
    if (situation.isThere() && !m_recording) {
        situation.state = isConnected ? ZelkoGlobal::ChannelValuesMissing : ZelkoGlobal::ChannelDisconnected;
    }
    situation.name = m_name.isEmpty() ? id() : m_name;
    situation.subSystem = m_subSystem;
    situation.mayUse = m_mayUse;
    situation.canRecord = contentOr(m_recordFlag, false);
    situation.canReplay = contentOr(m_replayFlag, false);
    situation.recording = keyOf(m_recording);
    situation.replay = keyOf(m_replay);
    situation.error = contentOr(m_error, QString());
    return situation;
}

QString WorkChannel::recordName() const
{
    return contentOr(m_recordName, QString());
}

int WorkChannel::recordTimeout() const
{
    return contentOr(m_recordTimeout, 0);
}

int WorkChannel::fileSizeInKB() const
{
    return contentOr(m_fileSize, 0);
}

void WorkChannel::startRecording()
{
    m_model->setDeviceID(contentOr(m_local.valueDeviceId(), QString()));
    m_model->startRecording();
}

} // namespace ZelkoConsole
