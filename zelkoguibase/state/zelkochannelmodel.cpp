#include <zelkoguibase/state/zelkochannelmodel.h>

#include "channelpseudodevice_p.h"

#include <valuecore/valueptr.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/data/datarateusage.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkobase/state/localzelkovalues.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace ZelkoGUI {

using ZELKO_XML::Admin;
using ZelkoCommon::AbstractServerConnectionData;
using ZelkoCommon::ChannelValues;
using RecordingMode = Admin::RecordReplayAllModes;
using ReplayMode = Admin::RecordReplayMode;

namespace {

template <typename Enumerator>
int key(Enumerator enumerator)
{
    return static_cast<int>(enumerator);
}

template <typename Handle>
bool isTrue(const Handle& flag)
{
    return flag && flag->GetValue();
}

// To what stands where `found` does; true if that is new.
template <typename Handle, typename T>
bool connectByPath(Handle& handle, const ValuePtr<T>& found)
{
    return !handle && found && handle.GetFromTree(found->GetPathName());
}

} // namespace

struct ZelkoChannelModel::Private
{
    Private(ZelkoChannelModel* model, const ZelkoCommon::LocalZelkoValues& localValues,
            const std::shared_ptr<AbstractServerConnectionData>& data)
        : subSystem(localValues.subSystem())
        , values(std::make_unique<ChannelValues>(localValues, data))
        , channelIdValue(model)
        , recordingState(model)
        , replayState(model)
        , errorCode(model)
        , recordFlag(model)
        , availableDevices(localValues.valueAvailableDevices())
        , ccoState(model)
        , ccoResult(model)
    {}

    const QString subSystem;
    bool valuesExist = false; // when they were looked for last
    const std::unique_ptr<ChannelValues> values;
    QString channelId;
    QString deviceId; // the last that was written
    ValueObservingPtr<Value<QString>> channelIdValue;
    ValueObservingPtr<ValueSelection> recordingState;
    ValueObservingPtr<ValueSelection> replayState;
    ValueObservingPtr<Value<QString>> errorCode;
    ValueObservingPtr<Value<bool>> recordFlag;
    ValuePtr<Value<bool>> replayFlag;
    const ValuePtr<Value<QString>> availableDevices;
    ValueObservingPtr<ValueSelection> ccoState;
    ValueObservingPtr<Value<QString>> ccoResult;
    ValuePtr<ValueSelection> guiRecordReplayState;
    ZelkoGlobal::ChannelAvailableState state = ZelkoGlobal::ChannelDisconnected;
};

ZelkoChannelModel::ZelkoChannelModel(const ZelkoCommon::LocalZelkoValues& localValues, const QString& channelIdPath,
                                     const std::shared_ptr<AbstractServerConnectionData>& connectionData)
    : d(std::make_unique<Private>(this, localValues, connectionData))
{
    d->channelIdValue.GetFromTree(channelIdPath);
    connectByPath(d->ccoState, localValues.valueCCOConnectionState());
    connectByPath(d->ccoResult, localValues.valueCCOConnectionResult());
    using Data = AbstractServerConnectionData;
    connectTo(connectionData.get(), &Data::si_allTicsConnected, &ZelkoChannelModel::observeChannelValues);
    connectTo(connectionData.get(), &Data::si_allTicsDisconnected, &ZelkoChannelModel::sl_channelDisconnected);
}

// The connection data have all sub systems of the site, each with a connection of its own.
template <typename Signal>
void ZelkoChannelModel::connectTo(const AbstractServerConnectionData* data, Signal signal,
                                  void (ZelkoChannelModel::*slot)())
{
    connect(data, signal, this, [this, slot](const QString& subSystem) {
        if (subSystem == d->subSystem) {
            (this->*slot)();
        }
    });
}

ZelkoChannelModel::~ZelkoChannelModel() = default;

void ZelkoChannelModel::resetChannel(const QString& path)
{
    if (d->channelIdValue) {
        setChannelId(d->channelIdValue->GetValue(), path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
    }
}

void ZelkoChannelModel::setChannelId(const QString& channelId, const QString& device)
{
    if (channelId.isEmpty()) {
        resetChannelValues();
    } else if (channelId != d->channelId || !d->valuesExist || !d->values->valuesExist()) {
        QString wanted = channelId; // may be the one that is held
        resetChannelValues();
        d->channelId = std::move(wanted);
        d->values->init(device, d->channelId);
        observeChannelValues();
    }
}

const QString& ZelkoChannelModel::channelId() const
{
    return d->channelId;
}

void ZelkoChannelModel::startRecording()
{
    if (d->recordingState) {
        d->recordingState->SetCurrentKey(key(RecordingMode::StartRequested), this);
    }
}

void ZelkoChannelModel::stopRecording()
{
    const int mode = getRecordingMode();
    if (mode != -1 && mode != key(RecordingMode::Stopped)) {
        d->recordingState->SetCurrentKey(key(RecordingMode::Stopping), this);
    }
}

void ZelkoChannelModel::setReplayIdle()
{
    setReplayKey(key(ReplayMode::Stopped));
}

void ZelkoChannelModel::setReplayPaused()
{
    setReplayKey(key(ReplayMode::Paused));
}

void ZelkoChannelModel::setReplayRunning()
{
    setReplayKey(key(ReplayMode::Running));
}

void ZelkoChannelModel::setReplayKey(int newKey)
{
    if (d->replayState) {
        d->replayState->SetCurrentKey(newKey, this);
    }
}

void ZelkoChannelModel::setFileSize(int kilobytes)
{
    if (const auto& fileSize = d->values->valueFileSizeInKB()) {
        fileSize->SetValue(kilobytes, this);
    }
}

void ZelkoChannelModel::setDeviceID(const QString& device)
{
    if (!channelAvailable()) {
        return;
    }
    if (device != d->deviceId) {
        d->deviceId = device;
        d->values->resetRecordDataValues();
    }
    d->values->valueDeviceId()->SetValue(device, this);
}

void ZelkoChannelModel::setRecordingName(const QString& name)
{
    if (channelAvailable()) {
        d->values->valueRecordName()->SetValue(name, this);
    }
}

void ZelkoChannelModel::setRecordingTimeout(unsigned int seconds)
{
    constexpr unsigned int longest = std::numeric_limits<int>::max();
    if (channelAvailable()) {
        d->values->valueRecordTimeout()->SetValue(static_cast<int>(std::min(seconds, longest)), this);
    }
}

void ZelkoChannelModel::setRecordData(const ZELKO_XML::ZELKO_RecordData& record)
{
    if (!channelAvailable()) {
        return;
    }
    if (record.AnyData()) {
        d->values->setRecordDataToValues(record);
    } else {
        d->values->resetRecordDataValues();
    }
}

QString ZelkoChannelModel::recordID()
{
    return channelAvailable() ? d->values->valueRecordId()->GetValue() : QString();
}

int ZelkoChannelModel::getDataRateClass()
{
    return channelAvailable()
               ? key(ZELKO_XML::DataRateUsage::NameToDataRate(d->values->valueDefaultDataRateClass()->GetValue()))
               : -1;
}

void ZelkoChannelModel::synchronize(const QString& deviceID)
{
    if (!channelAvailable()) {
        return;
    }
    if (d->deviceId.isEmpty() && deviceID != channelPseudoDevice) {
        d->deviceId = deviceID;
    }
    Update(d->replayState.get(), TChangeCode::ValueChanged);
}

bool ZelkoChannelModel::isReady() const
{
    return d->state == ZelkoGlobal::ChannelReady;
}

ZelkoGlobal::ChannelAvailableState ZelkoChannelModel::channelState() const
{
    return d->state;
}

bool ZelkoChannelModel::supportsRecording() const
{
    return isTrue(d->recordFlag);
}

bool ZelkoChannelModel::supportsXGReplay() const
{
    return isTrue(d->replayFlag);
}

int ZelkoChannelModel::replayKey() const
{
    return d->replayState ? d->replayState->GetCurrentKey() : -1;
}

bool ZelkoChannelModel::isPaused() const
{
    return replayKey() == key(ReplayMode::Paused) || replayKey() == key(ReplayMode::Pausing);
}

bool ZelkoChannelModel::isReplaying() const
{
    return replayKey() == key(ReplayMode::Running) || replayKey() == key(ReplayMode::Started);
}

// The moment between the request and the start counts as recording.
bool ZelkoChannelModel::isRecording() const
{
    const int mode = getRecordingMode();
    return mode == key(RecordingMode::StartRequested) || mode == key(RecordingMode::NormalRecording) ||
           mode == key(RecordingMode::ContinuousRecording);
}

bool ZelkoChannelModel::isStopped() const
{
    const int mode = getRecordingMode();
    return mode == -1 || mode == key(RecordingMode::Stopping) || mode == key(RecordingMode::Stopped);
}

int ZelkoChannelModel::getRecordingMode() const
{
    return d->recordingState ? d->recordingState->GetCurrentKey() : -1;
}

int ZelkoChannelModel::getCCOConnectionState() const
{
    return d->ccoState ? d->ccoState->GetCurrentIndex() : -1;
}

// Not translated: it is the text of a value that is missing, and those come as they are.
QString ZelkoChannelModel::getCCOConnectionResult() const
{
    return d->ccoResult
               ? d->ccoResult->GetValue()
               : QStringLiteral("Please validate if your server and client are running the same Belvo version!");
}

const std::unique_ptr<ChannelValues>& ZelkoChannelModel::channelValues() const
{
    return d->values;
}

void ZelkoChannelModel::sl_setAvailableDevices(const QStringList& devices)
{
    if (d->availableDevices) {
        d->availableDevices->SetValue(devices.join(zelko::names::idSeparator), nullptr);
    }
}

void ZelkoChannelModel::observeChannelValues()
{
    auto state = ZelkoGlobal::ChannelValuesMissing;
    if (channelAvailable()) {
        Q_EMIT channelReconnected(static_cast<ReplayMode>(d->guiRecordReplayState->GetCurrentKey()));
        state = stateOfRecordFlag();
    }
    setChannelState(state, true);
}

void ZelkoChannelModel::sl_channelDisconnected()
{
    resetChannelValues();
    setChannelState(ZelkoGlobal::ChannelDisconnected, true);
}

bool ZelkoChannelModel::channelAvailable()
{
    d->valuesExist = d->values->valuesExist();
    if (d->valuesExist) {
        connectChannelValues();
    }
    return d->valuesExist;
}

// Those that are connected stay so.
void ZelkoChannelModel::connectChannelValues()
{
    const ChannelValues& values = *d->values;
    connectByPath(d->recordingState, values.valueRecordingState());
    if (connectByPath(d->errorCode, values.valueErrorCode())) {
        d->values->setErrorCodeOptimization(true);
    }
    connectByPath(d->recordFlag, values.valueRecordFlag());
    connectByPath(d->guiRecordReplayState, values.valueGUIRecordReplayState());
    connectByPath(d->replayFlag, values.valueReplayFlag());
    connectByPath(d->replayState, values.valueReplayState());
}

ZelkoGlobal::ChannelAvailableState ZelkoChannelModel::stateOfRecordFlag() const
{
    return supportsRecording() ? ZelkoGlobal::ChannelReady : ZelkoGlobal::ChannelRecordFlagOff;
}

// Also for a state that is the same: listeners take the signal for a sign that the channel was looked at.
void ZelkoChannelModel::setChannelState(ZelkoGlobal::ChannelAvailableState state, bool notify)
{
    d->state = state;
    if (notify) {
        Q_EMIT si_availableChannelState(state);
    }
}

// Silently: what there is instead is told by whoever asked for this.
void ZelkoChannelModel::resetChannelValues()
{
    d->channelId.clear();
    d->recordingState = nullptr;
    d->replayState = nullptr;
    d->errorCode = nullptr;
    d->recordFlag = nullptr;
    d->guiRecordReplayState = nullptr;
    d->replayFlag = nullptr;
    d->valuesExist = false;
    d->values->resetValues();
    setChannelState(ZelkoGlobal::ChannelNotSet, false);
}

void ZelkoChannelModel::Update(Observable* source, TChangeCode code)
{
    if (code != TChangeCode::ValueChanged) {
        return;
    }
    if (source == d->recordingState.get()) {
        tellRecordingState();
    } else if (source == d->replayState.get()) {
        tellReplayState();
    } else if (source == d->errorCode.get()) {
        tellErrorCode();
    } else if (source == d->recordFlag.get()) {
        setChannelState(stateOfRecordFlag(), true);
    } else if (source == d->channelIdValue.get()) {
        followChannelId();
    } else if (source == d->ccoState.get() || source == d->ccoResult.get()) {
        tellConnection();
    }
}

void ZelkoChannelModel::tellRecordingState()
{
    switch (static_cast<RecordingMode>(getRecordingMode())) {
    case RecordingMode::NormalRecording:
        Q_EMIT si_recordingNormal();
        break;
    case RecordingMode::ContinuousRecording:
        Q_EMIT si_recordingContinuous();
        break;
    case RecordingMode::Stopping:
        Q_EMIT si_recordingStopping();
        break;
    case RecordingMode::Stopped:
        Q_EMIT si_recordingStopped();
        break;
    default:
        break;
    }
}

void ZelkoChannelModel::tellReplayState()
{
    switch (static_cast<ReplayMode>(replayKey())) {
    case ReplayMode::Stopped:
        Q_EMIT si_replayStopped();
        break;
    case ReplayMode::Paused:
        Q_EMIT si_replayPaused();
        break;
    case ReplayMode::Pausing:
        Q_EMIT si_replayPausing();
        break;
    case ReplayMode::Running:
        Q_EMIT si_replayRunning();
        break;
    case ReplayMode::Stopping:
        Q_EMIT si_replayStopping();
        break;
    default:
        break;
    }
}

void ZelkoChannelModel::tellErrorCode()
{
    const QString text = d->errorCode->GetValue();
    if (!text.isEmpty()) {
        Q_EMIT si_errorCode(text);
    }
}

void ZelkoChannelModel::followChannelId()
{
    const QString channelId = d->channelIdValue->GetValue();
    if (channelId.isEmpty()) {
        resetChannelValues();
    } else {
        setChannelId(channelId, QString());
    }
}

void ZelkoChannelModel::tellConnection()
{
    if (d->ccoState && d->ccoResult) {
        Q_EMIT si_ccoConnectionState(static_cast<CorbaCommon::ccoConnectionStates>(d->ccoState->GetCurrentIndex()),
                                     d->ccoResult->GetValue());
    }
}

} // namespace ZelkoGUI
