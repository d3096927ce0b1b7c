#include <recorder/service/channel.h>

#include <recorder/service/channeldevices.h>
#include <recorder/service/flowsource.h>
#include <recorder/source/cleantext.h>
#include <recorder/store/recorderlog.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/orb/hostaddress.h>

namespace ZelkoRecorder {

using ManagerPtr = QD_ZLK::IF_ZLK_c_ChanMan_ptr;
using ZelkoCommon::toCorba;

Channel::Channel(const QString& id, const ChannelWish& wish, const Manager& manager, ChannelDevices& devices,
                 const Options& options, QObject* parent)
    : QObject(parent)
    , m_id(id)
    , m_wireId(id.toStdString())
    , m_options(options)
    , m_devices(devices)
    , m_wish(wish)
    , m_caller(manager, options.callLimit,
               [this](const QString& why) {
                   qCWarning(recorderLog).noquote() << "channel" << m_id << ": its manager is gone:" << why;
                   Q_EMIT failed(QStringLiteral("the channel's manager is gone"));
                   m_machine.managerLost();
               })
    , m_replay(id, m_caller, devices,
               {options.listenAddress, options.toldAddress,
                wish.peer.empty() ? ZelkoCommon::loopbackAddress : wish.peer, options.replay})
{
    connect(&m_replay, &ChannelReplay::changed, this, &Channel::changed);
    connect(&m_replay, &ChannelReplay::began, this, &Channel::recordChanged);
    connect(&m_replay, &ChannelReplay::failed, this, &Channel::failed);
    QObject::connect(&m_pingTimer, &QTimer::timeout, this, [this] { m_caller.ping(); });
    m_pingTimer.start(options.pingInterval);
}

// The record is closed, and the device still gets to know of it.
Channel::~Channel()
{
    m_receiver.reset();
    if (!m_recordID.isEmpty()) {
        m_devices.recordEnded(m_device, m_recordID);
    }
}

// Data may come before the manager has answered, and not come although it has.
Channel::RecordingState Channel::recordingState() const
{
    switch (m_machine.state()) {
    case ChannelMachine::State::Asking:
    case ChannelMachine::State::Connecting:
    case ChannelMachine::State::Starting:
    case ChannelMachine::State::Recording:
        return m_machine.isStopWanted() ? RecordingState::Stopping
               : !m_machine.hasData()   ? RecordingState::StartRequested
               : m_recording.isLoop     ? RecordingState::ContinuousRecording
                                        : RecordingState::NormalRecording;
    case ChannelMachine::State::Stopping:
    case ChannelMachine::State::Closing:
        return RecordingState::Stopping;
    case ChannelMachine::State::Idle:
    case ChannelMachine::State::Removed:
        break;
    }
    return RecordingState::Stopped;
}

Channel::Verdict Channel::startRecording(const Recording& recording)
{
    if (m_machine.isRemoved()) {
        return Verdict::Removed;
    }
    if (!m_wish.canRecord) {
        return Verdict::NotAble;
    }
    const QString device = chooseDevice(recording.device);
    if (device.isEmpty()) {
        return Verdict::NoDevice;
    }
    if (!m_machine.isIdle() || !m_replay.isIdle()) {
        return Verdict::Busy;
    }
    if (recording.isLoop && recording.mostBytes == 0) {
        return Verdict::NoSize;
    }
    m_device = device;
    m_recordID.clear();
    m_recording = recording;
    m_newName.clear();
    m_machine.start();
    return Verdict::Done;
}

Channel::Verdict Channel::startReplay(const ChannelReplay::Wish& wish)
{
    if (m_machine.isRemoved()) {
        return Verdict::Removed;
    }
    if (!m_wish.canReplay) {
        return Verdict::NotAble;
    }
    ChannelReplay::Wish chosen = wish;
    if (chosen.device.isEmpty()) {
        chosen.device = device();
    }
    if (!m_devices.devices().contains(chosen.device)) {
        return Verdict::NoDevice;
    }
    return m_machine.isIdle() && m_replay.start(chosen) ? Verdict::Done : Verdict::Busy;
}

void Channel::stopRecording(const QString& recordName, const Answer& answer)
{
    if (m_machine.isRemoved()) {
        answer(Verdict::Removed);
    } else if (!m_machine.stop()) {
        answer(Verdict::NotRecording);
    } else {
        m_newName = cleanText(recordName);
        rename(answer);
    }
}

// A record that is still to come is born with the name. One that never comes has nothing to be named.
void Channel::rename(const Answer& answer)
{
    if (m_newName.isEmpty() || !m_receiver) {
        answer(Verdict::Done);
        return;
    }
    const auto renamed = [id = m_id, answer](StoreStatus status) {
        const bool isDone = status == StoreStatus::Done || status == StoreStatus::UnknownRecord;
        if (!isDone) {
            qCWarning(recorderLog).noquote() << "channel" << id << ": its record did not take the name of its end";
        }
        answer(isDone ? Verdict::Done : Verdict::NotStored);
    };
    if (!m_receiver->edits()->post(commentEdit(m_newName), renamed)) {
        answer(Verdict::NotRecording);
    }
}

Channel::Verdict Channel::remove()
{
    if (m_machine.isRemoved()) {
        return Verdict::Removed;
    }
    if (m_wish.isOwn) {
        return Verdict::NotAble;
    }
    return m_replay.isIdle() && m_machine.remove() ? Verdict::Done : Verdict::Busy;
}

Channel::Verdict Channel::removeForced()
{
    if (m_machine.isRemoved()) {
        return Verdict::Removed;
    }
    if (m_wish.isOwn) {
        return Verdict::NotAble;
    }
    m_machine.removeForced();
    return Verdict::Done;
}

Channel::Verdict Channel::setManager(const Manager& manager)
{
    if (m_wish.isOwn) {
        return Verdict::NotAble;
    }
    m_caller.setManager(manager);
    return Verdict::Done;
}

void Channel::fault(const QString& text)
{
    qCWarning(recorderLog).noquote() << "channel" << m_id << ": its manager reports" << cleanText(text);
    Q_EMIT failed(cleanText(text));
    m_machine.dataEnded();
}

Channel::Verdict Channel::setFormat(ChannelWish::DataFormat format)
{
    if (m_wish.isOwn) {
        return Verdict::NotAble;
    }
    if (!m_machine.isIdle()) {
        return Verdict::Busy;
    }
    m_wish.format = format;
    return Verdict::Done;
}

Channel::Verdict Channel::setDataRate(ChannelWish::DataRate dataRate)
{
    if (!m_machine.isIdle()) {
        return Verdict::Busy;
    }
    m_wish.dataRate = dataRate;
    Q_EMIT changed();
    return Verdict::Done;
}

Channel::Verdict Channel::setCanRecord(bool canRecord)
{
    if (!canRecord && !m_machine.isIdle()) {
        return Verdict::Busy;
    }
    m_wish.canRecord = canRecord;
    Q_EMIT changed();
    return Verdict::Done;
}

Channel::Verdict Channel::setCanReplay(bool canReplay)
{
    if (!canReplay && !m_replay.isIdle()) {
        return Verdict::Busy;
    }
    m_wish.canReplay = canReplay;
    Q_EMIT changed();
    return Verdict::Done;
}

void Channel::setName(const QString& name)
{
    m_wish.name = name;
    Q_EMIT changed();
}

Channel::Verdict Channel::setDevices(const QStringList& devices)
{
    const QStringList before = std::exchange(m_allowedDevices, devices);
    if (!devices.isEmpty() && device().isEmpty()) {
        m_allowedDevices = before;
        return Verdict::NoDevice;
    }
    Q_EMIT changed();
    return Verdict::Done;
}

// The one that is wanted; else the preferred one, if it may be used; else the first that may.
QString Channel::chooseDevice(const QString& wanted) const
{
    const QStringList present = m_devices.devices();
    const QStringList allowed = m_allowedDevices.isEmpty() ? present : m_allowedDevices;
    if (!wanted.isEmpty()) {
        return allowed.contains(wanted) && present.contains(wanted) ? wanted : QString();
    }
    if (allowed.contains(m_wish.preferredDevice) && present.contains(m_wish.preferredDevice)) {
        return m_wish.preferredDevice;
    }
    const auto found =
        std::find_if(allowed.begin(), allowed.end(), [&](const QString& device) { return present.contains(device); });
    return found == allowed.end() ? QString() : *found;
}

void Channel::tellGoingDown(std::function<void()> done)
{
    m_caller.call(
        [told = std::shared_ptr<void>(nullptr, [done = std::move(done)](void*) { done(); })](ManagerPtr manager) {
            manager->goingDown();
            return true;
        },
        nullptr);
}

void Channel::ask()
{
    m_caller.call(
        [id = m_wireId, device = m_device.toStdString()](ManagerPtr manager) {
            QD_ZLK::StringSeq devices;
            devices.length(1);
            devices[0] = device.c_str();
            return bool{manager->isAvailableForRecord(id.c_str(), devices)};
        },
        [this](const ManagerCaller::Outcome& outcome) { m_machine.asked(outcome.done, outcome.why); });
}

// The source is written on the thread of the calls before its outcome is told, and read after that.
void Channel::connectSource()
{
    m_source = std::make_shared<FlowSource>(m_wish.peer.empty() ? ZelkoCommon::loopbackAddress : m_wish.peer);
    m_caller.call([id = m_wireId, source = m_source](ManagerPtr manager) { return source->connect(manager, id); },
                  [this](const ManagerCaller::Outcome& outcome) {
                      const bool usable = outcome.done && m_source->isUsable();
                      if (outcome.done && !usable) {
                          disconnectSource(); // it agreed, and waits
                      }
                      m_machine.connected(usable, outcome.done ? QStringLiteral("it names no endpoint that can be used")
                                                               : outcome.why);
                  });
}

// The manager may be lost before the device is ready.
void Channel::startFlow()
{
    m_devices.whenReady(m_device, this, [this] {
        if (m_machine.state() == ChannelMachine::State::Starting) {
            beginFlow();
        }
    });
}

void Channel::beginFlow()
{
    QString error;
    if (!openReceiver(&error)) {
        m_news.post([this, error] { m_machine.flowStarted(false, error); });
        return;
    }
    m_caller.call(
        [id = m_wireId, source = m_source, address = m_options.toldAddress.toStdString(),
         port = m_receiver->port()](ManagerPtr manager) {
            source->start(manager, id, address, port);
            return true;
        },
        [this](const ManagerCaller::Outcome& outcome) {
            m_machine.flowStarted(outcome.done, outcome.why);
            awaitData();
        });
}

// The first data have as much time as the recording, and never less than a slow source may need. Without a time that it
// is to last a recording waits for a signal that may come tomorrow, until somebody stops it.
void Channel::awaitData()
{
    const bool isWaiting = m_machine.state() == ChannelMachine::State::Recording && !m_machine.hasData();
    if (isWaiting && m_recording.seconds > 0) {
        m_durationTimer.start(
            std::max<std::chrono::milliseconds>(std::chrono::seconds(m_recording.seconds), m_options.dataPatience));
    }
}

void Channel::noteFirstData()
{
    if (m_machine.dataCame()) {
        m_durationTimer.stop();
        if (m_recording.seconds > 0) {
            m_durationTimer.start(std::chrono::seconds(m_recording.seconds));
        }
    }
}

void Channel::noteTimeIsOver()
{
    if (m_machine.hasData()) {
        m_machine.timeIsOver();
    } else {
        m_machine.dataMissing(QStringLiteral("no data have come"));
    }
}

bool Channel::openReceiver(QString* error)
{
    auto socket =
        FlowSocket::open(m_source->kind(), m_options.listenAddress, m_source->port(), m_source->sender(), error);
    if (!socket) {
        return false;
    }
    m_receiver = std::make_unique<ChannelReceiver>(
        std::move(socket),
        ChannelReceiver::Flow{m_source->stream(), m_sampleRate, m_recording.isLoop ? 0 : m_recording.mostBytes},
        m_devices.store(m_device), m_devices.clock(m_device), birth(), receiverListener());
    return true;
}

// Called on the thread of the receiver.
ChannelReceiver::Listener Channel::receiverListener()
{
    ChannelReceiver::Listener listener;
    listener.born = [this](const QString& id) { m_news.post([this, id] { beginRecord(id); }); };
    listener.changed = [this](const RecordPointer& record) { m_news.post([this, record] { changeRecord(record); }); };
    listener.dataCame = [this] { m_news.post([this] { noteFirstData(); }); };
    listener.dataEnded = [this] { m_news.post([this] { m_machine.dataEnded(); }); };
    listener.full = [this] { m_news.post([this] { m_machine.timeIsOver(); }); };
    listener.diskRefused = [this](const QString& why) { m_news.post([this, why] { m_machine.diskRefused(why); }); };
    listener.closed = [this](const QString& id) { m_news.post([this, id] { endRecord(id); }); };
    return listener;
}

void Channel::beginRecord(const QString& recordID)
{
    m_recordID = recordID;
    m_devices.recordBegins(
        m_device, recordID, [this] { m_machine.timeIsOver(); }, m_receiver->edits());
}

void Channel::changeRecord(const RecordPointer& record)
{
    m_devices.recordChanged(m_device, record);
    Q_EMIT recordChanged(record);
}

ZELKO_XML::ZELKO_RecordData Channel::birth() const
{
    ZELKO_XML::ZELKO_RecordData record;
    const QString name = m_recording.name.isEmpty() ? m_wish.name : m_recording.name;
    record.SetRecordName(m_newName.isEmpty() ? cleanText(name) : m_newName);
    record.SetDataFormat(m_wish.format);
    record.SetDataRate(m_wish.dataRate);
    record.SetRecordingLoopSize(m_recording.isLoop ? m_recording.mostBytes : 0);
    record.SetInterface(ZELKO_XML::ZELKO_RecordData::Interface::Ethernet);
    return record;
}

void Channel::stopFlow()
{
    m_durationTimer.stop();
    m_caller.call(
        [id = m_wireId](ManagerPtr manager) {
            manager->stopDataFlow(id.c_str());
            return true;
        },
        [this](const ManagerCaller::Outcome&) { m_machine.flowStopped(); });
}

void Channel::closeRecord()
{
    m_durationTimer.stop();
    if (m_receiver) {
        m_receiver->close();
    } else {
        m_news.post([this] { m_machine.recordClosed(); });
    }
}

// The thread of the receiver has told its last, so waiting for it takes no time.
void Channel::endRecord(const QString& recordID)
{
    m_receiver.reset();
    if (!recordID.isEmpty()) {
        m_devices.recordEnded(m_device, recordID);
    }
    m_machine.recordClosed();
    m_recordID.clear();
}

void Channel::disconnectSource()
{
    tell([](ManagerPtr manager, const char* id) { manager->disconnect(id); });
}

void Channel::tellStarted()
{
    tell([](ManagerPtr manager, const char* id) { manager->DataTransferStarted(id); });
}

void Channel::tellStopping()
{
    tell([](ManagerPtr manager, const char* id) { manager->stoppingDataTransfer(id); });
}

void Channel::tellFinished()
{
    tell([device = m_device.toStdString(), record = m_recordID.toStdString()](ManagerPtr manager, const char* id) {
        manager->RecordingFinished(id, device.c_str(), record.c_str());
    });
}

void Channel::tellFault(ChannelMachine::Fault fault, const QString& text)
{
    Q_EMIT failed(cleanText(text));
    qCWarning(recorderLog).noquote() << "channel" << m_id << "does not record:" << cleanText(text);
    tell([fault, text](ManagerPtr manager, const char* id) {
        manager->ZelkoRecordReplaySessionFault(id, static_cast<CORBA::Long>(fault), toCorba(text));
    });
}

void Channel::tellRemoved()
{
    tell([](ManagerPtr manager, const char* id) { manager->ChannelRemoved(id); });
}

// What the manager is still to be told stands in the queue before this.
void Channel::ended()
{
    m_pingTimer.stop();
    m_replay.abandon();
    m_caller.call([](ManagerPtr) { return true; }, [this](const ManagerCaller::Outcome&) { Q_EMIT gone(m_id); });
}

void Channel::tell(std::function<void(ManagerPtr, const char*)> call)
{
    m_caller.call(
        [call = std::move(call), id = m_wireId](ManagerPtr manager) {
            call(manager, id.c_str());
            return true;
        },
        nullptr);
}

} // namespace ZelkoRecorder
