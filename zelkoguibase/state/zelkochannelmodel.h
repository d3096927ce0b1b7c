#pragma once

#include <observerbase/iobserver.h>
#include <zelkobase/data/admin.h>
#include <zelkobase/state/ccoconnectionstates.h>
#include <zelkobase/state/channelavailablestate.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QObject>
#include <QStringList>

#include <memory>

namespace ZELKO_XML {
class ZELKO_RecordData;
}

namespace ZelkoCommon {
class AbstractServerConnectionData;
class ChannelValues;
class LocalZelkoValues;
} // namespace ZelkoCommon

namespace ZelkoGUI {

/// The channel of a recorder that the workstation records and replays on: at most one at a time, the one that the
/// channel ID value of the tree names.
///
/// Everything goes through values of the tree. Operations write, and return before the recorder has done anything; what
/// it does comes as signals, to every client alike. A channel that an operation asks for something while its values are
/// missing does nothing. What this object writes itself it does not hear of.
///
/// The channel is one of the sub system of the local values. What the connection data tell of others means nothing
/// here: with one of them lost, the channel stays. GUI thread.
class ZELKOGUIBASE_EXPORT ZelkoChannelModel : public QObject, public IObserver
{
    Q_OBJECT

public:
    /// Without a channel until the value at `channelIdPath`, which is on the tree already, changes or `resetChannel`
    /// looks at it.
    ZelkoChannelModel(const ZelkoCommon::LocalZelkoValues& localValues, const QString& channelIdPath,
                      const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connectionData);
    ~ZelkoChannelModel() override;

    /// @name Which channel
    /// @{
    /// Takes up the channel that the channel ID value names, again if need be: after a reconnection, for instance. It
    /// is looked for below the last part of `path`, which is that of a device.
    void resetChannel(const QString& path);

    /// Takes up a channel; lets go of the one that there is for an empty ID. `device` as ChannelValues has it. Nothing
    /// happens for the channel that is held, as long as its values exist and did so when they were looked for last.
    void setChannelId(const QString& channelId, const QString& device);

    /// Empty: no channel.
    const QString& channelId() const;
    /// @}

    /// @name What the recorder is to do
    /// @{
    void startRecording();
    /// Nothing is sent where nothing is being recorded.
    void stopRecording();
    void setReplayIdle();
    void setReplayPaused();
    void setReplayRunning();
    /// @}

    /// @name Settings of the channel
    /// @{
    /// In kB; 0: no limit.
    void setFileSize(int kilobytes);
    /// The device that is to record and replay. Another one than before has no record to replay.
    void setDeviceID(const QString& device);
    void setRecordingName(const QString& name);
    /// In seconds; 0: none. Beyond the largest int it is that.
    void setRecordingTimeout(unsigned int seconds);
    /// The record that is to be replayed; one without any data: none.
    void setRecordData(const ZELKO_XML::ZELKO_RecordData& record);
    /// @}

    /// The record that the channel works on; empty: none, or no channel.
    QString recordID();

    /// A DataRateUsage::DataRate, or -1 when it is not known.
    int getDataRateClass();

    /// Says the state of the replay again by its signal, and takes up `deviceID`, unless that is "ZelkoChannel", where
    /// no device was set.
    void synchronize(const QString& deviceID);

    /// @name How it stands. A state that is not known is none of these, but for `isStopped`
    /// @{
    bool isReady() const;
    ZelkoGlobal::ChannelAvailableState channelState() const;
    bool supportsRecording() const;
    bool supportsXGReplay() const;
    bool isPaused() const;    ///< or pausing
    bool isReplaying() const; ///< or started
    bool isRecording() const; ///< or requested; not any more when stopping
    bool isStopped() const;   ///< or stopping, or without a recording state
    /// An Admin::RecordReplayAllModes, or -1 when it is not known.
    int getRecordingMode() const;
    /// A CorbaCommon::ccoConnectionStates, or -1 when it is not known.
    int getCCOConnectionState() const;
    /// What came of connecting, for people; never empty where the value is missing.
    QString getCCOConnectionResult() const;
    /// @}

    /// Never null.
    const std::unique_ptr<ZelkoCommon::ChannelValues>& channelValues() const;

    void Update(Observable* source, TChangeCode code) override;

public Q_SLOTS:
    /// Writes the list of devices that can be used, for whoever reads the local values.
    void sl_setAvailableDevices(const QStringList& devices);

Q_SIGNALS:
    /// @name The recording state, each time that the recorder or another client sets it
    /// @{
    void si_recordingStopped();
    void si_recordingStopping();
    void si_recordingNormal();
    void si_recordingContinuous();
    /// @}

    /// Something went wrong; never empty.
    void si_errorCode(const QString& errorCode);

    /// The state was looked at, which does not mean that it is another. Not told: that a channel was let go of.
    void si_availableChannelState(ZelkoGlobal::ChannelAvailableState state);

    /// The values of a channel are there, and this is what windows are to show. Before si_availableChannelState.
    void channelReconnected(ZELKO_XML::Admin::RecordReplayMode mode);

    /// @name The replay state, each time that the recorder or another client sets it
    /// @{
    void si_replayRunning();
    void si_replayPausing();
    void si_replayPaused();
    void si_replayStopping();
    void si_replayStopped();
    /// @}

    void si_ccoConnectionState(CorbaCommon::ccoConnectionStates state, const QString& result);

private Q_SLOTS:
    void observeChannelValues();
    void sl_channelDisconnected();

private:
    template <typename Signal>
    void connectTo(const ZelkoCommon::AbstractServerConnectionData* data, Signal signal,
                   void (ZelkoChannelModel::*slot)());
    bool channelAvailable();
    void connectChannelValues();
    ZelkoGlobal::ChannelAvailableState stateOfRecordFlag() const;
    void setChannelState(ZelkoGlobal::ChannelAvailableState state, bool notify);
    void resetChannelValues();
    void setReplayKey(int key);
    int replayKey() const;

    void tellRecordingState();
    void tellReplayState();
    void tellErrorCode();
    void followChannelId();
    void tellConnection();

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
