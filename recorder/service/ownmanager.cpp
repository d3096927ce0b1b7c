#include <recorder/service/ownmanager.h>

#include <recorder/source/sourcefactory.h>
#include <recorder/store/recorderlog.h>

#include <zelkobase/orb/corbatext.h>

#include <QDateTime>

#include <utility>

namespace ZelkoRecorder {

using Contract = QD_ZLK::IF_ZLK_c_ChanMan;

namespace {

constexpr qint64 microsecondsPerMillisecond = 1000;

[[noreturn]] void refuse(Contract::ChanManCode code, const QString& text)
{
    throw Contract::exChanMan(code, ZelkoCommon::toCorba(text));
}

} // namespace

OwnManager::OwnManager(const QString& name, const QString& source, double speed, SourceFlow::Failed failed)
    : m_name(name)
    , m_source(source)
    , m_speed(speed)
    , m_failed(std::move(failed))
{}

OwnManager::~OwnManager() = default;

// A call within the process does not come through here.
_CORBA_Boolean OwnManager::_dispatch(omniCallHandle&)
{
    throw CORBA::NO_PERMISSION(0, CORBA::COMPLETED_NO);
}

CORBA::Boolean OwnManager::isAvailableForRecord(const char*, const QD_ZLK::StringSeq&)
{
    openSource();
    return true;
}

CORBA::Boolean OwnManager::connectForRecord(const char*, QD_ZLK::DataEndpointSeq_out, QD_ZLK::LongSeq_out)
{
    refuse(Contract::CHANMAN_NOT_SUPPORTED, QStringLiteral("the channel is connected by the newer operation"));
}

CORBA::Boolean OwnManager::connectForRecordNG(const char*, QD_ZLK::DataEndpointNGSeq_out endpoints,
                                              QD_ZLK::LongSeq_out streams)
{
    streams = new QD_ZLK::LongSeq;
    endpoints = new QD_ZLK::DataEndpointNGSeq;
    endpoints->length(1);
    QD_ZLK::DataEndpointNG& endpoint = (*endpoints)[0];
    endpoint.kind = QD_ZLK::ENDPOINT_TCP;
    endpoint.address = "";
    endpoint.portNumber = 0;
    endpoint.streamId = 0;
    return true;
}

void OwnManager::startDataFlow(const char*)
{
    refuse(Contract::CHANMAN_NOT_SUPPORTED, QStringLiteral("the flow is started by the newer operation"));
}

void OwnManager::startDataFlowNG(const char*, const char*, CORBA::Long portNumber)
{
    SourceFlow::Start start;
    start.port = static_cast<quint16>(portNumber);
    start.time = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch() * microsecondsPerMillisecond);
    start.speed = m_speed;
    m_flow.reset();
    m_flow = std::make_unique<SourceFlow>(openSource(), start, m_failed);
}

void OwnManager::stopDataFlow(const char*)
{
    m_flow.reset();
}

// Of a recording as of a replay, which are never at the same time.
void OwnManager::disconnect(const char*)
{
    m_flow.reset();
    m_sink.reset();
}

CORBA::Boolean OwnManager::isAvailableForReplay(const char*, const QD_ZLK::StringSeq&)
{
    return true;
}

CORBA::Boolean OwnManager::connectForReplay(const char*, const QD_ZLK::DataEndpointSeq& endpoints,
                                            const QD_ZLK::LongSeq&)
{
    if (endpoints.length() == 0 || endpoints[0].kind != QD_ZLK::ENDPOINT_TCP) {
        refuse(Contract::CHANMAN_BAD_ENDPOINT, QStringLiteral("the samples of a replay come as a stream"));
    }
    m_sink.reset();
    m_sink = std::make_unique<ReplaySink>(
        static_cast<quint16>(endpoints[0].portNumber), [name = m_name](const ReplaySink::Taken& taken) {
            qCInfo(recorderLog).noquote() << "channel" << name << "has played" << taken.sampleBytes
                                          << "bytes of samples" << (taken.isWhole ? "to the end" : "");
        });
    return true;
}

void OwnManager::DataTransferStarted(const char*) {}

void OwnManager::stoppingDataTransfer(const char*) {}

void OwnManager::goingDown()
{
    disconnect(nullptr);
}

void OwnManager::ChannelRemoved(const char*)
{
    disconnect(nullptr);
}

void OwnManager::RecordingFinished(const char*, const char*, const char*) {}

CORBA::Boolean OwnManager::startXgReplayLegacy(const QD_ZLK::DataEndpointNGSeq&, const QD_ZLK::LongSeq&)
{
    return false;
}

CORBA::Boolean OwnManager::startXgReplay(const char*, CORBA::LongLong, CORBA::LongLong, CORBA::Long)
{
    return false;
}

CORBA::Boolean OwnManager::stopXgReplay()
{
    return false;
}

// The channel has told the log already, and does not call for a flow again.
void OwnManager::ZelkoRecordReplaySessionFault(const char*, CORBA::Long, const char*)
{
    m_flow.reset();
}

std::unique_ptr<SignalSource> OwnManager::openSource() const
{
    QString error;
    auto source = SourceFactory::create(m_source, &error);
    if (!source) {
        refuse(Contract::CHANMAN_NOT_AVAILABLE, error);
    }
    return source;
}

} // namespace ZelkoRecorder
