#pragma once

#include <valuecore/valueptr.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/state/zelkobasestate_export.h>

#include <QString>

#include <memory>

namespace ZELKO_XML {
class ZELKO_RecordData;
}

namespace ZelkoCommon {

class AbstractServerConnectionData;
class LocalZelkoValues;

/// The values of one channel of a recorder, on the client's tree. What is written to them goes to the recorder.
///
/// A channel stands at `<root path of the sub system>/ZELKO/Channel/<channel ID>`, or, where the channel IDs of several
/// devices may be alike, at `.../ZELKO/Channel/<device>/<channel ID>`. GUI thread.
class ZELKOBASESTATE_EXPORT ChannelValues
{
public:
    /// No channel at first. The channels are those of the sub system of `localValues`.
    ChannelValues(const LocalZelkoValues& localValues, std::shared_ptr<AbstractServerConnectionData> connectionData);
    ~ChannelValues();
    ChannelValues(const ChannelValues&) = delete;
    ChannelValues& operator=(const ChannelValues&) = delete;

    /// From here on the values of that channel; none for an empty ID. `device` may be empty; see above.
    void init(const QString& device, const QString& channelId);

    /// Whether all values of the channel are on the tree. Looks for those that are missing so far.
    bool valuesExist();

    /// Lets go of the channel.
    void resetValues();

    /// Tells the channel that there is no record to replay.
    void resetRecordDataValues();

    /// Tells the channel which record is to be replayed. The ID is the last that it is told.
    void setRecordDataToValues(const ZELKO_XML::ZELKO_RecordData& record);

    /// With it, error codes that this side sets one after the other go out as the last of them only. Nothing happens
    /// without the value.
    void setErrorCodeOptimization(bool on);

    /// @name The values; each is null while it is not on the tree
    /// @{
    /// An Admin::RecordReplayAllModes.
    const ValuePtr<ValueSelection>& valueRecordingState() const { return m_recordingState; }
    /// An Admin::RecordReplayMode.
    const ValuePtr<ValueSelection>& valueReplayState() const { return m_replayState; }
    /// An Admin::RecordReplayMode: what windows are to show.
    const ValuePtr<ValueSelection>& valueGUIRecordReplayState() const { return m_guiRecordReplayState; }
    /// What went wrong, for people; empty: nothing.
    const ValuePtr<Value<QString>>& valueErrorCode() const { return m_errorCode; }
    /// Whether the channel may record.
    const ValuePtr<Value<bool>>& valueRecordFlag() const { return m_recordFlag; }
    /// Whether the channel can replay through its XG interface.
    const ValuePtr<Value<bool>>& valueReplayFlag() const { return m_replayFlag; }
    /// The device that records and replays.
    const ValuePtr<Value<QString>>& valueDeviceId() const { return m_deviceId; }
    /// The name that the next recording gets.
    const ValuePtr<Value<QString>>& valueRecordName() const { return m_recordName; }
    /// After how many seconds a recording stops by itself; 0: it does not.
    const ValuePtr<Value<int>>& valueRecordTimeout() const { return m_recordTimeout; }
    /// The size at which a recording stops, in kB; 0: there is no limit.
    const ValuePtr<Value<int>>& valueFileSizeInKB() const { return m_fileSizeInKB; }
    /// The data rate class of what the channel records, by its name.
    const ValuePtr<Value<QString>>& valueDefaultDataRateClass() const { return m_dataRateClass; }
    /// The moment that is being replayed, or where the next replay begins, in microseconds since the epoch.
    const ValuePtr<Value<double>>& valueCurrentReplayPosition() const { return m_currentReplayPosition; }
    /// The record that is being recorded or replayed, or is to be replayed; empty: none.
    const ValuePtr<Value<QString>>& valueRecordId() const { return m_recordId; }
    /// @}

private:
    template <typename Function>
    void forEach(Function&& function);
    template <typename Function>
    void forEachOfRecord(Function&& function);
    bool lookUp();
    void bind();

    const QString m_basePath;
    const QString m_subSystem;
    const std::shared_ptr<AbstractServerConnectionData> m_connectionData;
    QString m_path; ///< of the channel; empty: none

    ValuePtr<ValueSelection> m_recordingState;
    ValuePtr<ValueSelection> m_replayState;
    ValuePtr<ValueSelection> m_guiRecordReplayState;
    ValuePtr<Value<QString>> m_errorCode;
    ValuePtr<Value<bool>> m_recordFlag;
    ValuePtr<Value<bool>> m_replayFlag;
    ValuePtr<Value<QString>> m_deviceId;
    ValuePtr<Value<QString>> m_recordName;
    ValuePtr<Value<int>> m_recordTimeout;
    ValuePtr<Value<int>> m_fileSizeInKB;
    ValuePtr<Value<QString>> m_dataRateClass;
    ValuePtr<Value<double>> m_currentReplayPosition;

    // Of the record that is to be replayed: times in microseconds since the epoch, sizes and positions in bytes, and
    // texts that are the names of enumerators.
    ValuePtr<Value<qint64>> m_fileSize;
    ValuePtr<Value<qint64>> m_startTime;
    ValuePtr<Value<qint64>> m_stopTime;
    ValuePtr<Value<qint64>> m_startPosition;
    ValuePtr<Value<qint64>> m_stopPosition;
    ValuePtr<Value<qint64>> m_loopSize;
    ValuePtr<Value<QString>> m_recordStatus;
    ValuePtr<Value<QString>> m_replayDataRateClass;
    ValuePtr<Value<QString>> m_dataFormat;
    ValuePtr<Value<bool>> m_isDeletable;
    ValuePtr<Value<QString>> m_recordId;
};

} // namespace ZelkoCommon
