#pragma once

#include <zelkoidl/recorderservice.hh>

#include <omniORB4/callHandle.h>

#include <QStringList>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string_view>

namespace ZelkoTest {

/// A channel manager: notes each call of the recorder, without the ID of the channel, and answers what it is told to.
/// Its members may be used on any thread.
class ChannelManager final : public POA_QD_ZLK::IF_ZLK_c_ChanMan, public PortableServer::RefCountServantBase
{
public:
    /// How it answers; to be set before it is called.
    struct Answers
    {
        bool available = true;
        bool connects = true;
        bool starts = true;        ///< otherwise it refuses by its exception
        bool hangs = false;        ///< when it is asked whether it is available, until `release`
        bool namesEndpoint = true; ///< in its answer to connecting
        QD_ZLK::EndpointKind kind = QD_ZLK::ENDPOINT_UDP;
        std::string address;
        std::function<void()> refusal; ///< throws, in place of an answer to the newer way of connecting
        bool isOlder = false;          ///< knows none of the newer operations
        CORBA::Long olderPort = 0;     ///< what it then says, where its data arrive
        CORBA::Long olderAddress = 0;
        bool availableForReplay = true;
        bool connectsForReplay = true;
    };
    Answers answers;

    QStringList calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    quint16 port() const
    {
        const std::lock_guard lock(m_mutex);
        return m_port;
    }
    /// Of the recorder, where the samples of a replay are to be had; 0 before the first.
    quint16 replayPort() const
    {
        const std::lock_guard lock(m_mutex);
        return m_replayPort;
    }
    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }

    CORBA::Boolean isAvailableForRecord(const char*, const QD_ZLK::StringSeq& devices) override
    {
        note(QStringLiteral("available %1").arg(devices.length() == 1 ? devices[0].in() : "?"));
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !answers.hangs || m_released; });
        return answers.available;
    }
    CORBA::Boolean connectForRecord(const char*, QD_ZLK::DataEndpointSeq_out endpoints,
                                    QD_ZLK::LongSeq_out streams) override
    {
        note("connect of old");
        streams = new QD_ZLK::LongSeq;
        endpoints = new QD_ZLK::DataEndpointSeq;
        if (answers.namesEndpoint) {
            endpoints->length(1);
            (*endpoints)[0] = {answers.kind, answers.olderAddress, answers.olderPort, 7};
        }
        return answers.connects;
    }
    CORBA::Boolean connectForRecordNG(const char*, QD_ZLK::DataEndpointNGSeq_out endpoints,
                                      QD_ZLK::LongSeq_out streams) override
    {
        note("connect");
        if (answers.refusal) {
            answers.refusal();
        }
        streams = new QD_ZLK::LongSeq;
        endpoints = new QD_ZLK::DataEndpointNGSeq;
        if (answers.namesEndpoint) {
            endpoints->length(1);
            (*endpoints)[0].kind = answers.kind;
            (*endpoints)[0].address = answers.address.c_str();
            (*endpoints)[0].portNumber = 0;
            (*endpoints)[0].streamId = 7;
        }
        return answers.connects;
    }
    void startDataFlow(const char*) override { start("start of old", answers.olderPort); }
    void startDataFlowNG(const char*, const char*, CORBA::Long port) override { start("start", port); }
    void stopDataFlow(const char*) override { note("stop"); }
    void disconnect(const char*) override { note("disconnect"); }
    CORBA::Boolean isAvailableForReplay(const char*, const QD_ZLK::StringSeq& devices) override
    {
        note(QStringLiteral("available for replay %1").arg(devices.length() == 1 ? devices[0].in() : "?"));
        return answers.availableForReplay;
    }
    CORBA::Boolean connectForReplay(const char*, const QD_ZLK::DataEndpointSeq& endpoints,
                                    const QD_ZLK::LongSeq&) override
    {
        const bool isStream = endpoints.length() == 1 && endpoints[0].kind == QD_ZLK::ENDPOINT_TCP;
        {
            const std::lock_guard lock(m_mutex);
            m_replayPort = static_cast<quint16>(isStream ? endpoints[0].portNumber : 0);
        }
        note("connect for replay");
        return answers.connectsForReplay;
    }
    void DataTransferStarted(const char*) override { note("started"); }
    void stoppingDataTransfer(const char*) override { note("stopping"); }
    void goingDown() override { note("going down"); }
    void ChannelRemoved(const char*) override { note("removed"); }
    void RecordingFinished(const char*, const char* device, const char* record) override
    {
        note(QStringLiteral("finished %1 %2").arg(device, record));
    }
    CORBA::Boolean startXgReplayLegacy(const QD_ZLK::DataEndpointNGSeq&, const QD_ZLK::LongSeq&) override
    {
        return false;
    }
    CORBA::Boolean startXgReplay(const char*, CORBA::LongLong, CORBA::LongLong, CORBA::Long) override { return false; }
    CORBA::Boolean stopXgReplay() override { return false; }
    void ZelkoRecordReplaySessionFault(const char*, CORBA::Long fault, const char* text) override
    {
        note(QStringLiteral("fault %1: %2").arg(fault).arg(text));
    }

    /// An operation that it does not know is none for its ORB either.
    CORBA::Boolean _dispatch(omniCallHandle& call) override
    {
        const bool isNewer = std::string_view(call.operation_name()).ends_with("NG");
        return !(answers.isOlder && isNewer) && POA_QD_ZLK::IF_ZLK_c_ChanMan::_dispatch(call);
    }

private:
    void start(const QString& call, CORBA::Long port)
    {
        if (!answers.starts) {
            throw QD_ZLK::IF_ZLK_c_ChanMan::exChanMan(QD_ZLK::IF_ZLK_c_ChanMan::CHANMAN_NO_DATA, "no data today");
        }
        {
            const std::lock_guard lock(m_mutex);
            m_port = static_cast<quint16>(port);
        }
        note(call);
    }
    void note(const QString& call)
    {
        const std::lock_guard lock(m_mutex);
        m_calls << call;
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    QStringList m_calls;
    quint16 m_port = 0;
    quint16 m_replayPort = 0;
    bool m_released = false;
};

} // namespace ZelkoTest
