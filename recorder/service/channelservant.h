#pragma once

#include <recorder/service/callrights.h>
#include <recorder/service/channelregistry.h>
#include <recorder/service/errands.h>

#include <zelkoidl/recorderservice.hh>

#include <functional>
#include <memory>

namespace ZelkoRecorder {

/// A channel as the ORB sees it. Served on threads of the ORB; everything is asked of the recorder's thread. Once the
/// channel is gone operations say so: by their own exception where they have one, by OBJECT_NOT_EXIST otherwise.
class ChannelServant final : public POA_QD_ZLK::IF_ZLK_c_Chan, public PortableServer::RefCountServantBase
{
public:
    /// `channels` outlives the errands.
    ChannelServant(const QString& id, std::shared_ptr<Errands> errands, CallRights rights, ChannelRegistry& channels);

    void errorOccured(QD_ZLK::ChannelFault fault) override;
    void removeChannel() override;
    void removeChannelForced() override;
    void setCallBackInterface(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager) override;
    void setDataRateClass(QD_ZLK::DataRateClass dataRate) override;
    void setRequestedSampleRate(CORBA::LongLong sampleRate, CORBA::UShort bitsPerSample) override;
    void setDataFormat(QD_ZLK::DataFormat format) override;
    void setRecordFlag(CORBA::Boolean canRecord) override;
    void setReplayFlag(CORBA::Boolean canReplay) override;
    void setName(const char* name) override;
    char* getChannelID() override;
    void startRecording(CORBA::Long seconds, const CORBA::WChar* recordName, CORBA::Long loopSeconds) override;
    void DataTransferStarted() override;
    void stopRecording(const CORBA::WChar* recordComment) override;
    void DataTransferStopped() override;
    void startReplaying(const char* device, const char* record, QD_ZLK::DataRateClass dataRate, CORBA::LongLong start,
                        CORBA::LongLong stop, CORBA::Long speed) override;
    void channelError(const char* text) override;
    void setZelkoDevices(const QD_ZLK::StringSeqSeq& devices) override;
    void setAdditionalDataRateClass(QD_ZLK::DataRateClass dataRate) override;

private:
    using Wish = std::function<Channel::Verdict(Channel&)>;

    Channel::Verdict ask(Wish wish) const;
    void tell(std::function<void(Channel&)> news) const;
    void askOrThrowChan(Wish wish) const;
    void requireOrThrowGen() const;
    void askOrThrowGen(Wish wish) const;

    const QString m_id;
    const std::shared_ptr<Errands> m_errands;
    const CallRights m_rights;
    ChannelRegistry& m_channels;
};

} // namespace ZelkoRecorder
