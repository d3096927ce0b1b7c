#include <recorder/service/zlkservant.h>

#include <recorder/service/questions.h>
#include <recorder/service/recordwire.h>
#include <recorder/service/servicekeys.h>
#include <recorder/service/statusmapping.h>

#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/refusaltext.h>

#include <QScopeGuard>
#include <QSysInfo>

#include <algorithm>
#include <optional>

namespace ZelkoRecorder {

using Contract = QD_ZLK::IF_ZLK_c_ZLK;
using ZelkoCommon::fromCorba;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::toCorba;

namespace {

[[noreturn]] void refuse(Contract::ZLKCode code, const QString& text)
{
    throw Contract::exZLK(code, toCorba(text));
}

// The contract has no code for it, so the text says what it is.
[[noreturn]] void refuse(ServiceStatus status, const QString& words = {})
{
    refuse(Contract::ZLK_FAILED, ZelkoCommon::toText({status, words}));
}

// A caller gets back no more of what he sent.
constexpr qsizetype longestEcho = 128;

[[noreturn]] void refuseUnknown(Contract::ZLKCode code, const QString& text, const QString& what)
{
    refuse(code, text.arg(what.left(longestEcho)));
}

[[noreturn]] void refuseDevice(const QString& device)
{
    refuseUnknown(Contract::ZLK_UNKNOWN_DEVICE, QStringLiteral("there is no device \"%1\""), device);
}

[[noreturn]] void refuseRecord(const QString& record)
{
    refuseUnknown(Contract::ZLK_UNKNOWN_RECORD, QStringLiteral("there is no record \"%1\""), record);
}

QD_ZLK::GenCode genCode(ChannelRegistry::Refusal::Reason reason)
{
    using Reason = ChannelRegistry::Refusal::Reason;
    switch (reason) {
    case Reason::NameInUse:
        return QD_ZLK::GEN_NAME_IN_USE;
    case Reason::TooMany:
        return QD_ZLK::GEN_NO_RESOURCES;
    case Reason::BadParameter:
        break;
    }
    return QD_ZLK::GEN_BAD_PARAMETER;
}

ChannelWish wishOf(QD_ZLK::DataRateClass dataRate, QD_ZLK::DataFormat format, bool canRecord, bool canReplay,
                   const char* name, const char* preferredDevice)
{
    ChannelWish wish;
    wish.name = fromCorba(name);
    wish.preferredDevice = fromCorba(preferredDevice);
    wish.dataRate = static_cast<ChannelWish::DataRate>(dataRate);
    wish.format = static_cast<ChannelWish::DataFormat>(format);
    wish.canRecord = canRecord;
    wish.canReplay = canReplay;
    wish.peer = ZelkoCommon::callingPeer();
    return wish;
}

// A device with one of its records.
struct Found
{
    bool device = false;
    RecordPointer record;
};

// Of the call that this thread serves, null for one that did not come through the ORB: the place of its list, to be
// left when the answer is sent.
thread_local std::optional<Turnstile::Place>* placeOfCall = nullptr;

} // namespace

ZlkServant::ZlkServant(std::shared_ptr<Errands> errands, std::shared_ptr<CallGate> gate, CallRights rights,
                       Sources sources, const ListBounds& bounds)
    : m_errands(std::move(errands))
    , m_gate(std::move(gate))
    , m_rights(std::move(rights))
    , m_sources(std::move(sources))
    , m_largestList(bounds.largest)
    , m_recordsAtOnce(bounds.recordsAtOnce)
    , m_lists(bounds.lists)
{}

// What it calls sends the answer, too.
_CORBA_Boolean ZlkServant::_dispatch(omniCallHandle& call)
{
    std::optional<Turnstile::Place> place;
    placeOfCall = &place;
    const auto forget = qScopeGuard([] { placeOfCall = nullptr; });
    return _impl_IF_ZLK_c_ZLK::_dispatch(call);
}

QD_ZLK::IF_ZLK_c_Chan_ptr ZlkServant::registerChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager,
                                                      QD_ZLK::DataRateClass dataRate, QD_ZLK::DataFormat format,
                                                      CORBA::Boolean canRecord, CORBA::Boolean canReplay,
                                                      const char* name, CORBA::String_out channelId)
{
    return enter(manager, wishOf(dataRate, format, canRecord, canReplay, name, ""), channelId);
}

QD_ZLK::IF_ZLK_c_Chan_ptr ZlkServant::registerChannelEx(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager,
                                                        QD_ZLK::DataRateClass dataRate, QD_ZLK::DataFormat format,
                                                        CORBA::Boolean canRecord, CORBA::Boolean canReplay,
                                                        const char* name, const char* preferredDevice,
                                                        CORBA::String_out channelId)
{
    return enter(manager, wishOf(dataRate, format, canRecord, canReplay, name, preferredDevice), channelId);
}

// A receiver may be named for what it is; its data reach the recorder as those of any other channel.
QD_ZLK::IF_ZLK_c_Chan_ptr ZlkServant::registerReceiverChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager,
                                                              QD_ZLK::DataRateClass dataRate, QD_ZLK::DataFormat format,
                                                              CORBA::Boolean canRecord, CORBA::Boolean canReplay,
                                                              const char* name, const char* preferredDevice,
                                                              CORBA::String_out channelId, QD_ZLK::EndpointKind,
                                                              const char*)
{
    return enter(manager, wishOf(dataRate, format, canRecord, canReplay, name, preferredDevice), channelId);
}

QD_ZLK::IF_ZLK_c_Chan_ptr ZlkServant::enter(QD_ZLK::IF_ZLK_c_ChanMan_ptr manager, const ChannelWish& wish,
                                            CORBA::String_out channelId)
{
    if (!m_rights.allow(Action::UseChannels)) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_NOT_PERMITTED, "this user may not register channels");
    }
    if (CORBA::is_nil(manager)) {
        throw QD_ZLK::exGen(QD_ZLK::GEN_BAD_PARAMETER, "there is no manager to call back");
    }
    const QD_ZLK::IF_ZLK_c_ChanMan_var kept = QD_ZLK::IF_ZLK_c_ChanMan::_duplicate(manager);
    const auto entered =
        askRecorder(*m_errands, [&channels = m_sources.channels, wish, kept] { return channels.enter(wish, kept); });
    if (entered.refusal) {
        throw QD_ZLK::exGen(genCode(entered.refusal->reason), toCorba(entered.refusal->text));
    }
    const std::string id = entered.channelId.toStdString();
    const CORBA::Object_var channel = m_sources.reference(channelKey(id));
    channelId = CORBA::string_dup(id.c_str());
    return QD_ZLK::IF_ZLK_c_Chan::_narrow(channel);
}

QD_ZLK::IF_ZELKO_Replay_ptr ZlkServant::getZelkoReplayInterface(const char* device)
{
    m_rights.require(Action::Look);
    const bool known = askRecorder(
        *m_errands, [&devices = m_sources.devices, id = fromCorba(device)] { return devices.contains(id); });
    const CORBA::Object_var replay = known ? m_sources.reference(replayKey) : CORBA::Object::_nil();
    return QD_ZLK::IF_ZELKO_Replay::_narrow(replay);
}

QD_ZLK::IF_ZLK_c_Chan_ptr ZlkServant::getZelkoChannelInterface(const char* channelId)
{
    m_rights.require(Action::Look);
    const bool known = askRecorder(
        *m_errands, [&channels = m_sources.channels, id = fromCorba(channelId)] { return channels.contains(id); });
    const CORBA::Object_var channel = known ? m_sources.reference(channelKey(channelId)) : CORBA::Object::_nil();
    return QD_ZLK::IF_ZLK_c_Chan::_narrow(channel);
}

QD_ZLK::IF_ZELKO_Admin_ptr ZlkServant::getZelkoAdminInterface()
{
    m_rights.require(Action::Look);
    const CORBA::Object_var admin = m_sources.reference(adminKey);
    return QD_ZLK::IF_ZELKO_Admin::_narrow(admin);
}

QD_ZLK::StringSeq* ZlkServant::getAllDevices()
{
    m_rights.require(Action::Look);
    const QStringList ids = askRecorder(*m_errands, [&devices = m_sources.devices] { return devices.devices(); });
    QD_ZLK::StringSeq_var result = new QD_ZLK::StringSeq;
    result->length(static_cast<CORBA::ULong>(ids.size()));
    for (CORBA::ULong i = 0; i < result->length(); ++i) {
        result[i] = toCorba(ids.at(static_cast<qsizetype>(i)))._retn();
    }
    return result._retn();
}

char* ZlkServant::mapDeviceIdToAddress(const char* device)
{
    require(Action::Look);
    const QString id = fromCorba(device);
    const QString address = askRecorder(*m_errands, [&devices = m_sources.devices, id] { return devices.address(id); });
    if (address.isEmpty()) {
        refuseDevice(id);
    }
    return toCorba(address)._retn();
}

char* ZlkServant::mapAddressToDeviceId(const char* address)
{
    require(Action::Look);
    const QString where = fromCorba(address);
    const QString device =
        askRecorder(*m_errands, [&devices = m_sources.devices, where] { return devices.deviceAt(where); });
    if (device.isEmpty()) {
        refuseUnknown(Contract::ZLK_UNKNOWN_DEVICE, QStringLiteral("there is no device at \"%1\""), where);
    }
    return toCorba(device)._retn();
}

void ZlkServant::getDeviceInformation(const char* device, CORBA::String_out deviceName, CORBA::Long& deviceState)
{
    require(Action::Look);
    const QString id = fromCorba(device);
    const auto state = askRecorder(*m_errands, [&devices = m_sources.devices, id] {
        return devices.contains(id) ? std::optional(devices.state(id)) : std::nullopt;
    });
    if (!state) {
        refuseDevice(id);
    }
    deviceName = toCorba(id)._retn();
    deviceState = static_cast<CORBA::Long>(*state);
}

QD_ZLK::RecordMetaData* ZlkServant::getMetaDataForRecord(const char* device, const char* record)
{
    require(Action::Look);
    const QString deviceId = fromCorba(device);
    const QString recordId = fromCorba(record);
    const Found found = askRecorder(*m_errands, [&devices = m_sources.devices, deviceId, recordId] {
        return Found{devices.contains(deviceId), devices.record(deviceId, recordId)};
    });
    if (!found.device) {
        refuseDevice(deviceId);
    }
    if (!found.record) {
        refuseRecord(recordId);
    }
    return new QD_ZLK::RecordMetaData(recordMetaData(deviceId, *found.record));
}

QD_ZLK::RecordInfoSeq* ZlkServant::getAllRecords(const char* device)
{
    require(Action::Look);
    const QString id = fromCorba(device);
    if (!askRecorder(*m_errands, [&devices = m_sources.devices, id] { return devices.contains(id); })) {
        refuseDevice(id);
    }
    std::optional<Turnstile::Place> ofThisCall;
    auto& place = placeOfCall ? *placeOfCall : ofThisCall;
    if (!place.emplace(m_lists, ZelkoCommon::callingPeer())) {
        refuse(ServiceStatus::LimitReached, QStringLiteral("too many lists of records are being sent"));
    }
    RecordPointers records = allRecords(id);
    std::sort(records.begin(), records.end(),
              [](const auto& a, const auto& b) { return a->GetRecordID() < b->GetRecordID(); });
    return listOf(records);
}

// Each slice is a question of its own, so that others come in between.
RecordPointers ZlkServant::allRecords(const QString& device) const
{
    RecordPointers result;
    std::optional<DeviceDirectory::Records::Place> next;
    do {
        const auto slice = askRecorder(*m_errands, [&devices = m_sources.devices, device, atOnce = m_recordsAtOnce,
                                                    next] { return devices.records(device, atOnce, next); });
        if (slice.isFromTheBeginning) {
            result.clear();
        }
        result += slice.records;
        next = slice.next;
    } while (next);
    return result;
}

QD_ZLK::RecordInfoSeq* ZlkServant::listOf(const RecordPointers& records) const
{
    std::size_t room = m_largestList;
    const auto take = [&room](std::size_t bytes) {
        if (bytes > room) {
            refuse(ServiceStatus::AnswerTooLarge);
        }
        room -= bytes;
    };
    const std::size_t least = wireSize(QD_ZLK::RecordInfo());
    take(least * static_cast<std::size_t>(records.size())); // before there is memory for them
    QD_ZLK::RecordInfoSeq_var result = new QD_ZLK::RecordInfoSeq;
    result->length(static_cast<CORBA::ULong>(records.size()));
    for (CORBA::ULong i = 0; i < result->length(); ++i) {
        result[i] = recordInfo(*records.at(static_cast<qsizetype>(i)));
        take(wireSize(result[i]) - least);
    }
    return result._retn();
}

char* ZlkServant::getWorkstationName()
{
    m_rights.require(Action::Look);
    return toCorba(QSysInfo::machineHostName())._retn();
}

char* ZlkServant::exportRecording(const char* device, const char* record, const char* target)
{
    require(Action::Export);
    const QString deviceId = fromCorba(device);
    const QString recordId = fromCorba(record);
    if (!askRecorder(*m_errands, [&devices = m_sources.devices, deviceId] { return devices.contains(deviceId); })) {
        refuseDevice(deviceId);
    }
    const CallGate::Pass pass(*m_gate);
    StoreStatus status = StoreStatus::Done;
    const QString id = m_sources.beginExport(deviceId, recordId, fromCorba(target), &status);
    if (status == StoreStatus::UnknownRecord) {
        refuseRecord(recordId);
    }
    if (id.isEmpty()) {
        refuse(serviceStatus(status));
    }
    return toCorba(id)._retn();
}

void ZlkServant::cancelExport(const char* exportId, CORBA::Boolean removeTarget)
{
    require(Action::Export);
    const CallGate::Pass pass(*m_gate);
    const StoreStatus status = m_sources.cancelExport(fromCorba(exportId), removeTarget);
    if (status != StoreStatus::Done) {
        refuse(serviceStatus(status, ServiceStatus::NoSuchExport));
    }
}

void ZlkServant::require(Action action) const
{
    if (!m_rights.allow(action)) {
        refuse(Contract::ZLK_NOT_PERMITTED, QStringLiteral("this user may not: %1").arg(QString(actionText(action))));
    }
}

} // namespace ZelkoRecorder
