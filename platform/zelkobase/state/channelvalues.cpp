#include <zelkobase/state/channelvalues.h>

#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/localzelkovalues.h>

namespace ZelkoCommon {

namespace names = zelko::names;
using ZELKO_XML::ZELKO_RecordData;

namespace {

// Long enough for a burst of error codes, short enough for whoever waits for one.
constexpr int errorCodeIntervalMs = 100;

template <typename T, typename Content>
void write(const ValuePtr<Value<T>>& value, const Content& content)
{
    if (value) {
        value->SetValue(static_cast<T>(content), nullptr);
    }
}

} // namespace

ChannelValues::ChannelValues(const LocalZelkoValues& localValues,
                             std::shared_ptr<AbstractServerConnectionData> connectionData)
    : m_basePath(names::channelBasePath(localValues.basePath()))
    , m_subSystem(localValues.subSystem())
    , m_connectionData(std::move(connectionData))
{}

ChannelValues::~ChannelValues()
{
    resetValues();
}

// Every value with its name; whoever adds one adds it here.
template <typename Function>
void ChannelValues::forEach(Function&& function)
{
    function(m_recordingState, names::allRecordReplayModes);
    function(m_replayState, names::replayMode);
    function(m_guiRecordReplayState, names::recordReplayModes);
    function(m_errorCode, names::errorCode);
    function(m_recordFlag, names::recordFlag);
    function(m_replayFlag, names::replayFlag);
    function(m_deviceId, names::deviceId);
    function(m_recordName, names::recordName);
    function(m_recordTimeout, names::recordTimeout);
    function(m_fileSizeInKB, names::fileSizeInKB);
    function(m_dataRateClass, names::dataRateClass);
    function(m_currentReplayPosition, names::currentReplayPosition);
    forEachOfRecord(function);
}

template <typename Function>
void ChannelValues::forEachOfRecord(Function&& function)
{
    function(m_fileSize, names::fileSize);
    function(m_startTime, names::startTime);
    function(m_stopTime, names::stopTime);
    function(m_startPosition, names::startPosition);
    function(m_stopPosition, names::stopPosition);
    function(m_loopSize, names::loopSize);
    function(m_recordStatus, names::recordStatus);
    function(m_replayDataRateClass, names::replayDataRateClass);
    function(m_dataFormat, names::dataFormat);
    function(m_isDeletable, names::isDeletable);
    function(m_recordId, names::recordId);
}

void ChannelValues::init(const QString& device, const QString& channelId)
{
    resetValues();
    if (!channelId.isEmpty()) {
        m_path = m_basePath + (device.isEmpty() ? QString() : device + QLatin1Char('/')) + channelId;
        valuesExist();
    }
}

bool ChannelValues::valuesExist()
{
    const bool isComplete = lookUp();
    bind();
    return isComplete;
}

bool ChannelValues::lookUp()
{
    if (m_path.isEmpty()) {
        return false;
    }
    bool isComplete = true;
    forEach([&](auto& value, QLatin1String name) {
        isComplete = (value || value.GetFromTree(names::join(m_path, name))) && isComplete;
    });
    return isComplete;
}

// The values may stand on the tree before there is a client to write through: while the link is still connecting.
void ChannelValues::bind()
{
    const auto client = m_connectionData->getVtClient(m_subSystem, ConnectionType::Client);
    if (!client) {
        return;
    }
    forEach([&](auto& value, QLatin1String) {
        if (value && !value->GetTransmitter()) {
            client->AddValue(value.get(), 0);
        }
    });
}

void ChannelValues::resetValues()
{
    const auto client = m_connectionData->getVtClient(m_subSystem, ConnectionType::Client);
    forEach([&](auto& value, QLatin1String) {
        if (value && client) {
            client->RemoveValue(value.get());
        }
        value = nullptr;
    });
    m_path.clear();
}

void ChannelValues::resetRecordDataValues()
{
    forEachOfRecord([]<typename T>(const ValuePtr<Value<T>>& value, QLatin1String) { write(value, T()); });
}

void ChannelValues::setRecordDataToValues(const ZELKO_RecordData& record)
{
    write(m_fileSize, record.GetSize());
    write(m_startTime, record.GetStartTime());
    write(m_stopTime, record.GetStopTime());
    write(m_startPosition, record.GetStartPosition());
    write(m_stopPosition, record.GetStopPosition());
    write(m_loopSize, record.GetRecordingLoopSize());
    write(m_recordStatus, ZELKO_RecordData::RecordStatusToName(record.GetRecordStatus()));
    write(m_replayDataRateClass, ZELKO_RecordData::DataRateToName(record.GetDataRate()));
    write(m_dataFormat, ZELKO_RecordData::DataFormatToName(record.GetDataFormat()));
    write(m_isDeletable, record.GetDeletable());
    write(m_recordId, record.GetRecordID());
}

void ChannelValues::setErrorCodeOptimization(bool on)
{
    if (m_errorCode) {
        m_errorCode->SetUpdateTimerTime(on ? errorCodeIntervalMs : 0);
    }
}

} // namespace ZelkoCommon
