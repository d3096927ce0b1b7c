#include <recorder/service/channelservant.h>

#include <recorder/service/notoffered.h>
#include <recorder/service/questions.h>

#include <zelkobase/orb/corbatext.h>

namespace ZelkoRecorder {

using Contract = QD_ZLK::IF_ZLK_c_Chan;
using ZelkoCommon::fromCorba;
using Verdict = Channel::Verdict;

namespace {

// A sequence of sequences of device IDs may hold no more of them than this, all in all.
constexpr qsizetype mostDevices = 1000;

[[noreturn]] void throwChan(Contract::ChanCode code, const char* text)
{
    throw Contract::exChan(code, text);
}

void throwChanUnlessDone(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Done:
        return;
    case Verdict::Removed:
        throwChan(Contract::CHAN_REMOVED, "the channel was removed");
    case Verdict::Busy:
        throwChan(Contract::CHAN_BUSY, "the channel is recording");
    case Verdict::NotRecording:
        throwChan(Contract::CHAN_NOT_RECORDING, "the channel is not recording");
    case Verdict::NoDevice:
        throwChan(Contract::CHAN_NO_DEVICE, "none of its devices is there");
    case Verdict::NotStored:
        throwChan(Contract::CHAN_FAILED, "the recording ends, but the disk did not take its comment");
    case Verdict::NotAble:
    case Verdict::NoSize:
        break;
    }
    throwChan(Contract::CHAN_FAILED, "the channel was not registered for this");
}

// Where the contract has no code for it.
void throwIfRemoved(Verdict verdict)
{
    if (verdict == Verdict::Removed) {
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    }
}

// The lists are taken as alternatives, the first first.
QStringList flatten(const QD_ZLK::StringSeqSeq& devices)
{
    QStringList result;
    for (CORBA::ULong list = 0; list < devices.length(); ++list) {
        for (CORBA::ULong i = 0; i < devices[list].length(); ++i) {
            if (result.size() >= mostDevices) {
                throwChan(Contract::CHAN_FAILED, "there are too many devices in the list");
            }
            result.append(fromCorba(static_cast<const char*>(devices[list][i])));
        }
    }
    return result;
}

} // namespace

ChannelServant::ChannelServant(const QString& id, std::shared_ptr<Errands> errands, CallRights rights,
                               ChannelRegistry& channels)
    : m_id(id)
    , m_errands(std::move(errands))
    , m_rights(std::move(rights))
    , m_channels(channels)
{}

void ChannelServant::errorOccured(QD_ZLK::ChannelFault fault)
{
    tell([fault](Channel& channel) {
        if (fault != QD_ZLK::FAULT_NONE) {
            channel.fault(QStringLiteral("fault %1").arg(static_cast<int>(fault)));
        }
    });
}

void ChannelServant::removeChannel()
{
    askOrThrowChan([](Channel& channel) { return channel.remove(); });
}

void ChannelServant::removeChannelForced()
{
    m_rights.require(Action::UseChannels);
    const Verdict verdict = ask([](Channel& channel) { return channel.removeForced(); });
    throwIfRemoved(verdict);
    if (verdict == Verdict::NotAble) {
        throw CORBA::NO_PERMISSION(0, CORBA::COMPLETED_NO); // the contract has no exception for it
    }
}

void ChannelServant::setCallBackInterface(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager)
{
    requireOrThrowGen();
    if (CORBA::is_nil(manager)) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_BAD_PARAMETER, "there is no manager to call back");
    }
    const Channel::Manager kept = QD_ZLK::IF_ZLK_c_ChanMan::_duplicate(manager);
    askOrThrowGen([kept](Channel& channel) { return channel.setManager(kept); });
}

void ChannelServant::setDataRateClass(QD_ZLK::DataRateClass dataRate)
{
    askOrThrowGen(
        [dataRate](Channel& channel) { return channel.setDataRate(static_cast<ChannelWish::DataRate>(dataRate)); });
}

// How many bits a sample has follows from the format.
void ChannelServant::setRequestedSampleRate(CORBA::LongLong sampleRate, CORBA::UShort)
{
    requireOrThrowGen();
    if (sampleRate < 0) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_BAD_PARAMETER, "a sample rate is 0 or more");
    }
    askOrThrowGen([sampleRate](Channel& channel) {
        channel.setRequestedSampleRate(static_cast<quint64>(sampleRate));
        return Verdict::Done;
    });
}

void ChannelServant::setDataFormat(QD_ZLK::DataFormat format)
{
    askOrThrowGen(
        [format](Channel& channel) { return channel.setFormat(static_cast<ChannelWish::DataFormat>(format)); });
}

void ChannelServant::setRecordFlag(CORBA::Boolean canRecord)
{
    askOrThrowChan([canRecord](Channel& channel) { return channel.setCanRecord(canRecord); });
}

void ChannelServant::setReplayFlag(CORBA::Boolean canReplay)
{
    askOrThrowChan([canReplay](Channel& channel) { return channel.setCanReplay(canReplay); });
}

void ChannelServant::setName(const char* name)
{
    tell([&channels = m_channels, id = m_id, text = fromCorba(name)](Channel&) { channels.rename(id, text); });
}

char* ChannelServant::getChannelID()
{
    tell([](Channel&) {});
    return ZelkoCommon::toCorba(m_id)._retn();
}

void ChannelServant::startRecording(CORBA::Long seconds, const CORBA::WChar* recordName, CORBA::Long loopSeconds)
{
    m_rights.require(Action::UseChannels);
    if (seconds < 0) {
        throwChan(Contract::CHAN_FAILED, "a recording lasts 0 seconds or more");
    }
    if (loopSeconds != 0) {
        notOffered::loopRecording();
    }
    askOrThrowChan([seconds, name = fromCorba(recordName)](Channel& channel) {
        return channel.startRecording({.seconds = seconds, .name = name, .device = {}});
    });
}

// Data tell of themselves that they have begun.
void ChannelServant::DataTransferStarted()
{
    tell([](Channel&) {});
}

void ChannelServant::stopRecording(const CORBA::WChar* recordComment)
{
    m_rights.require(Action::UseChannels);
    throwChanUnlessDone(
        askRecorderFor<Verdict>(*m_errands, [&channels = m_channels, id = m_id,
                                             comment = fromCorba(recordComment)](const Reply<Verdict>& reply) {
            if (Channel* const channel = channels.find(id)) {
                channel->stopRecording(comment, reply);
            } else {
                reply(Verdict::Removed);
            }
        }));
}

void ChannelServant::DataTransferStopped()
{
    tell([](Channel& channel) { channel.dataStopped(); });
}

// The contract has no exception for it.
void ChannelServant::startReplaying(const char* device, const char* record, QD_ZLK::DataRateClass,
                                    CORBA::LongLong start, CORBA::LongLong stop, CORBA::Long speed)
{
    m_rights.require(Action::UseChannels);
    m_rights.require(Action::Replay);
    if (speed != 0 && speed != notOffered::realTimeReplay) {
        notOffered::replayToChannel();
    }
    if (start < 0 || stop < 0) {
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
    }
    const ChannelReplay::Wish replay{fromCorba(device), fromCorba(record), static_cast<quint64>(start),
                                     static_cast<quint64>(stop)};
    const Verdict verdict = ask([replay](Channel& channel) { return channel.startReplay(replay); });
    throwIfRemoved(verdict);
    if (verdict == Verdict::NotAble) {
        notOffered::replayToChannel();
    } else if (verdict != Verdict::Done) {
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    }
}

void ChannelServant::channelError(const char* text)
{
    tell([what = fromCorba(text)](Channel& channel) { channel.fault(what); });
}

void ChannelServant::setZelkoDevices(const QD_ZLK::StringSeqSeq& devices)
{
    m_rights.require(Action::UseChannels);
    askOrThrowChan([list = flatten(devices)](Channel& channel) { return channel.setDevices(list); });
}

void ChannelServant::setAdditionalDataRateClass(QD_ZLK::DataRateClass)
{
    m_rights.require(Action::UseChannels);
    notOffered::additionalDataRate();
}

Verdict ChannelServant::ask(Wish wish) const
{
    return askRecorder(*m_errands, [&channels = m_channels, id = m_id, wish = std::move(wish)] {
        Channel* const channel = channels.find(id);
        return channel ? wish(*channel) : Verdict::Removed;
    });
}

void ChannelServant::tell(std::function<void(Channel&)> news) const
{
    m_rights.require(Action::UseChannels);
    const Verdict verdict = ask([news = std::move(news)](Channel& channel) {
        news(channel);
        return Verdict::Done;
    });
    throwIfRemoved(verdict);
}

void ChannelServant::askOrThrowChan(Wish wish) const
{
    m_rights.require(Action::UseChannels);
    throwChanUnlessDone(ask(std::move(wish)));
}

void ChannelServant::requireOrThrowGen() const
{
    if (!m_rights.allow(Action::UseChannels)) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_NOT_PERMITTED, "this user may not use channels");
    }
}

void ChannelServant::askOrThrowGen(Wish wish) const
{
    requireOrThrowGen();
    const Verdict verdict = ask(std::move(wish));
    throwIfRemoved(verdict);
    if (verdict == Verdict::NotAble) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_NOT_PERMITTED, "the channel is the recorder's own");
    }
    if (verdict != Verdict::Done) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_NO_RESOURCES, "the channel is recording");
    }
}

} // namespace ZelkoRecorder
