#pragma once

#include <recorder/service/servicekeys.h>
#include <reportcore/bytereader.h>

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// An operation of the recorder's service.
struct ServiceOperation
{
    const char* key; ///< of its object; null for a channel
    const char* name;
    bool takesManager = false;
};

/// Turns the bytes of a fuzzer into calls of the recorder's service: for each a byte that says which operation is
/// called, one for the size of its arguments, 255 for all that is left, and the arguments in CDR. Where an operation
/// takes a channel manager, a byte that says which one stands before the size.
class ServiceScript
{
public:
    using Operation = ServiceOperation;

    struct Call
    {
        const Operation& operation;
        std::uint8_t manager; ///< 0 where none is taken
        QByteArray arguments;
    };

    explicit ServiceScript(std::string_view script)
        : m_reader(script.data(), script.data() + script.size())
    {}

    /// The next call, as long as there is one.
    std::optional<Call> next()
    {
        if (m_reader.left() == 0) {
            return std::nullopt;
        }
        const Operation& operation = operations[byte() % operations.size()];
        const std::uint8_t manager = operation.takesManager ? byte() : std::uint8_t{0};
        const std::size_t wanted = byte();
        const std::size_t size = wanted == all ? m_reader.left() : std::min(wanted, m_reader.left());
        return Call{operation, manager, QByteArray(m_reader.take(size), static_cast<qsizetype>(size))};
    }

private:
    static constexpr std::size_t all = 255;
    static constexpr const char* adminKey = ZelkoRecorder::adminKey;
    static constexpr const char* replayKey = ZelkoRecorder::replayKey;
    static constexpr const char* entryKey = ZelkoRecorder::entryKey;
    static constexpr const char* channelKey = nullptr;

    // New ones come last, for the numbers stand in what was kept of earlier runs.
    static constexpr auto operations = std::to_array<Operation>({
        {adminKey, "removeHistoryEntry"},
        {adminKey, "addHistory"},
        {adminKey, "copyRecord"},
        {adminKey, "setRecordComment"},
        {adminKey, "setRecordDeletableFlag"},
        {adminKey, "addBookmarks"},
        {adminKey, "deleteBookmarks"},
        {adminKey, "getDeviceTime"},
        {adminKey, "setDeviceTime"},
        {adminKey, "getOverviewSpectrumStreamed"},
        {adminKey, "getRecord"},
        {adminKey, "requestRecordDataDetail"},
        {replayKey, "StartReplay"},
        {replayKey, "StartReplayReceivers"},
        {replayKey, "PauseReplay"},
        {replayKey, "ContinueReplay"},
        {replayKey, "StopReplay"},
        {entryKey, "getZelkoReplayInterface"},
        {entryKey, "getZelkoChannelInterface"},
        {entryKey, "getAllDevices"},
        {entryKey, "mapDeviceIdToAddress"},
        {entryKey, "mapAddressToDeviceId"},
        {entryKey, "getDeviceInformation"},
        {entryKey, "getMetaDataForRecord"},
        {entryKey, "getAllRecords"},
        {entryKey, "exportRecording"},
        {entryKey, "cancelExport"},
        {entryKey, "getZelkoAdminInterface"},
        {entryKey, "getWorkstationName"},
        {entryKey, "registerChannel", true},
        {entryKey, "registerChannelEx", true},
        {entryKey, "registerReceiverChannel", true},
        {channelKey, "errorOccured"},
        {channelKey, "removeChannel"},
        {channelKey, "removeChannelForced"},
        {channelKey, "setCallBackInterface", true},
        {channelKey, "setDataRateClass"},
        {channelKey, "setRequestedSampleRate"},
        {channelKey, "setDataFormat"},
        {channelKey, "setRecordFlag"},
        {channelKey, "setReplayFlag"},
        {channelKey, "setName"},
        {channelKey, "getChannelID"},
        {channelKey, "startRecording"},
        {channelKey, "DataTransferStarted"},
        {channelKey, "stopRecording"},
        {channelKey, "DataTransferStopped"},
        {channelKey, "startReplaying"},
        {channelKey, "channelError"},
        {channelKey, "setZelkoDevices"},
        {channelKey, "setAdditionalDataRateClass"},
    });

    std::uint8_t byte()
    {
        std::uint8_t value = 0;
        m_reader.read(value);
        return value;
    }

    REPORTGENERATOR::ByteReader m_reader;
};
