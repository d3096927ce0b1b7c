#include <recorder/service/channelreplay.h>

#include <recorder/served/deviceservice.h>
#include <recorder/service/channeldevices.h>

#include <zelkobase/data/recordfiles.h>

#include <QDir>

#include <arpa/inet.h>

namespace ZelkoRecorder {

using ManagerPtr = QD_ZLK::IF_ZLK_c_ChanMan_ptr;

namespace {

QString statusText(StoreStatus status)
{
    switch (status) {
    case StoreStatus::UnknownRecord:
        return QStringLiteral("there is no such record");
    case StoreStatus::InUse:
        return QStringLiteral("the record is being recorded, replayed or deleted");
    case StoreStatus::Damaged:
        return QStringLiteral("the record is damaged");
    case StoreStatus::BadRange:
        return QStringLiteral("the record has no samples there");
    default:
        return QStringLiteral("the record cannot be replayed");
    }
}

QString endText(const ReplayStream::Ending& ending)
{
    switch (ending.end) {
    case ReplayStream::End::NobodyCame:
        return QStringLiteral("nobody has come for the samples");
    case ReplayStream::End::NotBegun:
        return statusText(ending.status);
    case ReplayStream::End::Damaged:
        return QStringLiteral("samples of the record are missing");
    case ReplayStream::End::Lost:
        return QStringLiteral("nobody takes the samples any more");
    case ReplayStream::End::Finished:
    case ReplayStream::End::Stopped:
        break;
    }
    return {};
}

// What somebody may replay at any moment may be none by the time that it is looked at.
StoreStatus beginReplay(DeviceService& device, const ChannelReplay::Wish& wish, ReplayStream::Source* source)
{
    const RecordPointer record = device.record(wish.record);
    if (!record) {
        return StoreStatus::UnknownRecord;
    }
    const RecordTimeline timeline(*record);
    const bool isInside = wish.start >= timeline.startTime() && wish.start < timeline.stopTime();
    source->record = record;
    source->start = isInside ? wish.start : timeline.startTime();
    source->stop = wish.stop == 0 ? timeline.stopTime() : std::min(wish.stop, timeline.stopTime());
    source->samples = QDir(device.store().recordFolder(wish.record))
                          .filePath(ZELKO_XML::sampleFileName(wish.record, record->GetDataFormat()));
    source->position = [&device, id = wish.record] { return device.replayPosition(id); };
    source->end = [&device, id = wish.record] { device.stopReplay(id); };
    return device.startReplay(wish.record, source->start, wish.stop);
}

// The older form of an endpoint, which is the only one that this call has: 0 is where the recorder was called.
QD_ZLK::DataEndpointSeq endpointsAt(const QString& address, quint16 port)
{
    in_addr told{};
    const bool isVersion4 = ::inet_pton(AF_INET, address.toLatin1().constData(), &told) == 1;
    QD_ZLK::DataEndpointSeq endpoints;
    endpoints.length(1);
    endpoints[0].kind = QD_ZLK::ENDPOINT_TCP;
    endpoints[0].address = static_cast<CORBA::Long>(isVersion4 ? ntohl(told.s_addr) : 0);
    endpoints[0].portNumber = port;
    endpoints[0].streamId = 0;
    return endpoints;
}

} // namespace

ChannelReplay::ChannelReplay(const QString& channelId, ManagerCaller& caller, ChannelDevices& devices,
                             const Options& options, QObject* parent)
    : QObject(parent)
    , m_channelId(channelId.toStdString())
    , m_options(options)
    , m_caller(caller)
    , m_devices(devices)
{}

ChannelReplay::~ChannelReplay() = default;

quint64 ChannelReplay::position()
{
    if (m_hasBegun) {
        if (const auto position = m_device->replayPosition(m_wish.record)) {
            m_position = position->time;
        }
    }
    return m_position;
}

bool ChannelReplay::start(const Wish& wish)
{
    DeviceService* const device = isIdle() ? m_devices.service(wish.device) : nullptr;
    if (!device) {
        return false;
    }
    m_device = device;
    m_wish = wish;
    m_isToPause = false;
    m_position = 0; // not where the last one stood
    m_hasBegun = false;
    m_isConnected = false;
    enter(State::Started);
    askManager();
    return true;
}

void ChannelReplay::askManager()
{
    m_caller.call(
        [id = m_channelId, device = m_wish.device.toStdString()](ManagerPtr manager) {
            QD_ZLK::StringSeq devices;
            devices.length(1);
            devices[0] = device.c_str();
            return bool{manager->isAvailableForReplay(id.c_str(), devices)};
        },
        [this](const ManagerCaller::Outcome& outcome) { asked(outcome); });
}

void ChannelReplay::asked(const ManagerCaller::Outcome& outcome)
{
    if (m_state == State::Stopping) {
        rest();
    } else if (!outcome.done) {
        fail(QStringLiteral("the channel is not available for a replay"));
    } else if (m_state == State::Started) {
        connectManager();
    }
}

bool ChannelReplay::openSocket()
{
    QString error;
    m_socket = FlowSocket::open(FlowSocket::Kind::Stream, m_options.listenAddress, 0, m_options.peer, &error);
    if (!m_socket) {
        fail(error);
    }
    return m_socket != nullptr;
}

void ChannelReplay::connectManager()
{
    if (!openSocket()) {
        return;
    }
    m_caller.call(
        [id = m_channelId, endpoints = endpointsAt(m_options.toldAddress, m_socket->port())](ManagerPtr manager) {
            return bool{manager->connectForReplay(id.c_str(), endpoints, QD_ZLK::LongSeq())};
        },
        [this](const ManagerCaller::Outcome& outcome) { connected(outcome); });
}

void ChannelReplay::connected(const ManagerCaller::Outcome& outcome)
{
    m_isConnected = outcome.done;
    if (m_state == State::Stopping) {
        rest();
    } else if (!outcome.done) {
        fail(QStringLiteral("the channel did not connect for a replay"));
    } else if (m_state == State::Started) {
        m_stream = std::make_unique<ReplayStream>(
            std::move(m_socket),
            [device = m_device, wish = m_wish](ReplayStream::Source* source) {
                return beginReplay(*device, wish, source);
            },
            listener(), m_options.stream);
    }
}

ReplayStream::Listener ChannelReplay::listener()
{
    ReplayStream::Listener listener;
    listener.began = [this](const RecordPointer& record) { m_news.post([this, record] { begin(record); }); };
    listener.paused = [this](bool paused) { m_news.post([this, paused] { noteStandstill(paused); }); };
    listener.ended = [this](const ReplayStream::Ending& ending) { m_news.post([this, ending] { end(ending); }); };
    return listener;
}

void ChannelReplay::begin(const RecordPointer& record)
{
    m_hasBegun = true;
    Q_EMIT began(record);
    if (m_state == State::Started && m_isToPause) {
        hold();
    } else if (m_state == State::Started) {
        enter(State::Running);
    }
    m_caller.call(
        [id = m_channelId](ManagerPtr manager) {
            manager->DataTransferStarted(id.c_str());
            return true;
        },
        nullptr);
}

void ChannelReplay::noteStandstill(bool standsStill)
{
    if (m_state == State::Running || m_state == State::Pausing || m_state == State::Paused) {
        enter(standsStill ? State::Paused : State::Running);
    }
}

// The stream tells when it has come to stand.
void ChannelReplay::hold()
{
    enter(State::Pausing);
    m_device->pauseReplay(m_wish.record);
}

// What has not begun cannot be held yet: the wish waits.
bool ChannelReplay::pause()
{
    if (m_state == State::Started) {
        m_isToPause = true;
        return true;
    }
    if (m_state != State::Running) {
        return false;
    }
    hold();
    return true;
}

bool ChannelReplay::goOn()
{
    if (m_state == State::Started && m_isToPause) {
        m_isToPause = false;
        return true;
    }
    if (m_state != State::Pausing && m_state != State::Paused) {
        return false;
    }
    m_device->continueReplay(m_wish.record);
    enter(State::Running);
    return true;
}

// While the manager is being asked for something the wish waits for its answer.
bool ChannelReplay::stop()
{
    if (isIdle() || m_state == State::Stopping) {
        return false;
    }
    enter(State::Stopping);
    if (m_stream) {
        m_stream->stop();
    }
    return true;
}

void ChannelReplay::abandon()
{
    m_stream.reset();
    m_isConnected = false;
    if (!isIdle()) {
        enter(State::Stopping); // what still comes finds it so
    }
}

// The thread of the stream has told its last, so waiting for it takes no time.
void ChannelReplay::end(const ReplayStream::Ending& ending)
{
    m_stream.reset();
    m_position = ending.time > 0 ? ending.time : m_position;
    const QString why = endText(ending);
    if (!why.isEmpty() && m_state != State::Stopping) {
        fail(why);
        return;
    }
    if (!isIdle() && m_state != State::Stopping) {
        enter(State::Stopping);
    }
    rest();
}

void ChannelReplay::fail(const QString& why)
{
    Q_EMIT failed(why);
    rest();
}

void ChannelReplay::rest()
{
    m_hasBegun = false;
    m_socket.reset();
    if (std::exchange(m_isConnected, false)) {
        m_caller.call(
            [id = m_channelId](ManagerPtr manager) {
                manager->stoppingDataTransfer(id.c_str());
                manager->disconnect(id.c_str());
                return true;
            },
            nullptr);
    }
    enter(State::Stopped);
}

void ChannelReplay::enter(State state)
{
    if (m_state != state) {
        m_state = state;
        Q_EMIT changed();
    }
}

} // namespace ZelkoRecorder
