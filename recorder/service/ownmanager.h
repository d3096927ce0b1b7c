#pragma once

#include <recorder/service/replaysink.h>
#include <recorder/service/sourceflow.h>

#include <zelkoidl/recorderservice.hh>

#include <QString>

#include <memory>

namespace ZelkoRecorder {

/// The manager of a channel of the recorder's own: its data are those of a source, from the source's beginning on each
/// time that they are to flow, and the samples of its replays end here.
///
/// It serves the recorder alone, by calls within the process and from one thread at a time; a call that comes through a
/// connection is refused. The recorder listens for it on the loopback address.
class OwnManager final : public POA_QD_ZLK::IF_ZLK_c_ChanMan, public PortableServer::RefCountServantBase
{
public:
    /// `source` is a text as SourceFactory takes it. `speed`: seconds of its signal in a second, 0 for as fast as can
    /// be. `name` is for the log. `failed` is told, as SourceFlow does, when a flow breaks off; not after `goingDown`.
    OwnManager(const QString& name, const QString& source, double speed, SourceFlow::Failed failed);
    ~OwnManager() override;

    CORBA::Boolean isAvailableForRecord(const char* channelId, const QD_ZLK::StringSeq& devices) override;
    CORBA::Boolean connectForRecord(const char* channelId, QD_ZLK::DataEndpointSeq_out endpoints,
                                    QD_ZLK::LongSeq_out streams) override;
    CORBA::Boolean connectForRecordNG(const char* channelId, QD_ZLK::DataEndpointNGSeq_out endpoints,
                                      QD_ZLK::LongSeq_out streams) override;
    void startDataFlow(const char* channelId) override;
    void startDataFlowNG(const char* channelId, const char* address, CORBA::Long portNumber) override;
    void stopDataFlow(const char* channelId) override;
    void disconnect(const char* channelId) override;
    CORBA::Boolean isAvailableForReplay(const char* channelId, const QD_ZLK::StringSeq& devices) override;
    CORBA::Boolean connectForReplay(const char* channelId, const QD_ZLK::DataEndpointSeq& endpoints,
                                    const QD_ZLK::LongSeq& streams) override;
    void DataTransferStarted(const char* channelId) override;
    void stoppingDataTransfer(const char* channelId) override;
    void goingDown() override;
    void ChannelRemoved(const char* channelId) override;
    void RecordingFinished(const char* channelId, const char* device, const char* record) override;
    CORBA::Boolean startXgReplayLegacy(const QD_ZLK::DataEndpointNGSeq& endpoints,
                                       const QD_ZLK::LongSeq& streams) override;
    CORBA::Boolean startXgReplay(const char* channelId, CORBA::LongLong start, CORBA::LongLong stop,
                                 CORBA::Long speed) override;
    CORBA::Boolean stopXgReplay() override;
    void ZelkoRecordReplaySessionFault(const char* channelId, CORBA::Long fault, const char* text) override;

    _CORBA_Boolean _dispatch(omniCallHandle& call) override;

private:
    std::unique_ptr<SignalSource> openSource() const;

    const QString m_name;
    const QString m_source;
    const double m_speed;
    const SourceFlow::Failed m_failed;
    std::unique_ptr<SourceFlow> m_flow; // while data are to flow
    std::unique_ptr<ReplaySink> m_sink; // while a replay is connected
};

} // namespace ZelkoRecorder
