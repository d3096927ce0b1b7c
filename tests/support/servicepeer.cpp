#include "servicepeer.h"

#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/serviceaddress.h>

#include <condition_variable>
#include <mutex>

using ZelkoCommon::fromCorba;
using ZelkoCommon::toCorba;

// What the servants, which the ORB may keep for longer than the peer, share with it.
struct ServicePeer::Script
{
    mutable std::mutex mutex;
    std::condition_variable changed;
    QStringList calls;
    std::map<QString, unsigned long> answers;
    std::map<QString, std::function<void()>> actions;
    QD_ZLK::RecordInfo record;
    int adminRequests = 0;
    bool isHeld = false;
    bool isWithoutAdmin = false;
    bool isLocal = false;
    QString adminReference;
    QByteArray adminKey;
    int identities = 0;

    void noteCaller() { isLocal = isLocal || ZelkoCommon::callingPeer().empty(); }

    // Notes a call, does what the test wants of it, and gives the answer.
    unsigned long take(const QString& operation, const QStringList& arguments)
    {
        std::function<void()> action;
        unsigned long answer = 0;
        {
            std::unique_lock lock(mutex);
            noteCaller();
            calls << (QStringList(operation) << arguments).join(QLatin1Char(' '));
            while (isHeld) {
                changed.wait(lock);
            }
            action = actions[operation];
            answer = answers[operation];
        }
        if (action) {
            action();
        }
        return answer;
    }
};

namespace {

using Script = std::shared_ptr<ServicePeer::Script>;

QString number(CORBA::LongLong value)
{
    return QString::number(value);
}

QString word(CORBA::Boolean value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString text(const QD_ZLK::TimeRangeSeq& ranges)
{
    QStringList texts;
    for (CORBA::ULong i = 0; i < ranges.length(); ++i) {
        texts << number(ranges[i].start) + QLatin1Char('-') + number(ranges[i].stop);
    }
    return QLatin1Char('[') + texts.join(QLatin1Char(',')) + QLatin1Char(']');
}

QString text(const QD_ZLK::RecordBookmarkSeq& bookmarks)
{
    QStringList texts;
    for (CORBA::ULong i = 0; i < bookmarks.length(); ++i) {
        texts << number(bookmarks[i].position) + QLatin1Char(':') + fromCorba(bookmarks[i].text.in());
    }
    return QLatin1Char('[') + texts.join(QLatin1Char(',')) + QLatin1Char(']');
}

class AdminServant final : public POA_QD_ZLK::IF_ZELKO_Admin
{
public:
    explicit AdminServant(Script script)
        : m_script(std::move(script))
    {}

    CORBA::ULong removeHistoryEntry(const char* device, const char* record, CORBA::LongLong entryKey) override
    {
        return take("removeHistoryEntry", {device, record, number(entryKey)});
    }
    CORBA::ULong addHistory(const char* device, const char* record, const CORBA::WChar* entry) override
    {
        return take("addHistory", {device, record, fromCorba(entry)});
    }
    CORBA::ULong copyRecord(const char* device, const char* record, CORBA::String_out newRecord,
                            const QD_ZLK::TimeRangeSeq& ranges, const CORBA::WChar* newName) override
    {
        newRecord = toCorba(ServicePeer::newId())._retn();
        return take("copyRecord", {device, record, text(ranges), fromCorba(newName)});
    }
    CORBA::ULong setRecordComment(const char* device, const char* record, const CORBA::WChar* comment) override
    {
        return take("setRecordComment", {device, record, fromCorba(comment)});
    }
    CORBA::ULong setRecordDeletableFlag(const char* device, const char* record, CORBA::Boolean deletable) override
    {
        return take("setRecordDeletableFlag", {device, record, word(deletable)});
    }
    CORBA::ULong addBookmarks(const char* device, const char* record,
                              const QD_ZLK::RecordBookmarkSeq& bookmarks) override
    {
        return take("addBookmarks", {device, record, text(bookmarks)});
    }
    CORBA::ULong deleteBookmarks(const char* device, const char* record,
                                 const QD_ZLK::RecordBookmarkSeq& bookmarks) override
    {
        return take("deleteBookmarks", {device, record, text(bookmarks)});
    }
    CORBA::ULong getDeviceTime(const char* device, CORBA::LongLong& deviceTime, CORBA::Boolean& synchronised) override
    {
        deviceTime = 1234567890123456;
        synchronised = true;
        return take("getDeviceTime", {device});
    }
    CORBA::ULong setDeviceTime(const char* device, CORBA::LongLong deviceTime) override
    {
        return take("setDeviceTime", {device, number(deviceTime)});
    }
    CORBA::ULong getOverviewSpectrumStreamed(const char* device, const char* record, CORBA::LongLong start,
                                             CORBA::LongLong stop, CORBA::LongLong lineCount, CORBA::Long order,
                                             QD_ZLK::FftWindow window, const char* host, CORBA::UShort port) override
    {
        return take("getOverviewSpectrumStreamed", {device, record, number(start), number(stop), number(lineCount),
                                                    number(order), number(window), host, number(port)});
    }
    CORBA::ULong getRecord(const char* device, const char* record, QD_ZLK::RecordInfo_out recordData) override
    {
        {
            const std::lock_guard lock(m_script->mutex);
            recordData = new QD_ZLK::RecordInfo(m_script->record);
        }
        return take("getRecord", {device, record});
    }
    CORBA::ULong requestRecordDataDetail(const char* device, const char* record) override
    {
        return take("requestRecordDataDetail", {device, record});
    }

private:
    CORBA::ULong take(const char* operation, const QStringList& arguments)
    {
        return static_cast<CORBA::ULong>(m_script->take(QLatin1String(operation), arguments));
    }

    const Script m_script;
};

class RootServant final : public POA_QD_ZLK::IF_ZLK_c_ZLK
{
public:
    explicit RootServant(Script script)
        : m_script(std::move(script))
    {}

    QD_ZLK::IF_ZLK_c_Chan_ptr registerChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr, QD_ZLK::DataRateClass, QD_ZLK::DataFormat,
                                              CORBA::Boolean, CORBA::Boolean, const char* name,
                                              CORBA::String_out channelId) override
    {
        channelId = CORBA::string_dup("");
        m_script->take("registerChannel", {name});
        return QD_ZLK::IF_ZLK_c_Chan::_nil();
    }
    QD_ZLK::IF_ZLK_c_Chan_ptr registerChannelEx(QD_ZLK::IF_ZLK_c_ChanMan_ptr, QD_ZLK::DataRateClass, QD_ZLK::DataFormat,
                                                CORBA::Boolean, CORBA::Boolean, const char* name, const char*,
                                                CORBA::String_out channelId) override
    {
        channelId = CORBA::string_dup("");
        m_script->take("registerChannelEx", {name});
        return QD_ZLK::IF_ZLK_c_Chan::_nil();
    }
    QD_ZLK::IF_ZLK_c_Chan_ptr registerReceiverChannel(QD_ZLK::IF_ZLK_c_ChanMan_ptr, QD_ZLK::DataRateClass,
                                                      QD_ZLK::DataFormat, CORBA::Boolean, CORBA::Boolean,
                                                      const char* name, const char*, CORBA::String_out channelId,
                                                      QD_ZLK::EndpointKind, const char*) override
    {
        channelId = CORBA::string_dup("");
        m_script->take("registerReceiverChannel", {name});
        return QD_ZLK::IF_ZLK_c_Chan::_nil();
    }
    QD_ZLK::IF_ZELKO_Replay_ptr getZelkoReplayInterface(const char* device) override
    {
        m_script->take("getZelkoReplayInterface", {device});
        return QD_ZLK::IF_ZELKO_Replay::_nil();
    }
    QD_ZLK::IF_ZLK_c_Chan_ptr getZelkoChannelInterface(const char* channelId) override
    {
        m_script->take("getZelkoChannelInterface", {channelId});
        return QD_ZLK::IF_ZLK_c_Chan::_nil();
    }
    QD_ZLK::IF_ZELKO_Admin_ptr getZelkoAdminInterface() override;
    QD_ZLK::StringSeq* getAllDevices() override
    {
        m_script->take("getAllDevices", {});
        return new QD_ZLK::StringSeq;
    }
    char* mapDeviceIdToAddress(const char* device) override
    {
        m_script->take("mapDeviceIdToAddress", {device});
        return CORBA::string_dup("192.0.2.1");
    }
    char* mapAddressToDeviceId(const char* address) override
    {
        m_script->take("mapAddressToDeviceId", {address});
        return CORBA::string_dup("D1");
    }
    void getDeviceInformation(const char* device, CORBA::String_out deviceName, CORBA::Long& deviceState) override
    {
        deviceName = CORBA::string_dup("Device");
        deviceState = 0;
        m_script->take("getDeviceInformation", {device});
    }
    QD_ZLK::RecordMetaData* getMetaDataForRecord(const char* device, const char* record) override
    {
        m_script->take("getMetaDataForRecord", {device, record});
        return new QD_ZLK::RecordMetaData;
    }
    QD_ZLK::RecordInfoSeq* getAllRecords(const char* device) override
    {
        m_script->take("getAllRecords", {device});
        return new QD_ZLK::RecordInfoSeq;
    }
    char* getWorkstationName() override
    {
        m_script->take("getWorkstationName", {});
        return CORBA::string_dup("workstation");
    }
    char* exportRecording(const char* device, const char* record, const char* target) override
    {
        m_script->take("exportRecording", {device, record, fromCorba(target)});
        return toCorba(ServicePeer::newId())._retn();
    }
    void cancelExport(const char* exportId, CORBA::Boolean removeTarget) override
    {
        m_script->take("cancelExport", {exportId, word(removeTarget)});
    }

private:
    const Script m_script;
};

// As a call does, but without a line for it.
QD_ZLK::IF_ZELKO_Admin_ptr RootServant::getZelkoAdminInterface()
{
    const std::lock_guard lock(m_script->mutex);
    m_script->noteCaller();
    ++m_script->adminRequests;
    if (m_script->isWithoutAdmin) {
        return QD_ZLK::IF_ZELKO_Admin::_nil();
    }
    const CORBA::Object_var object = ZelkoCommon::Orb::current()->reference(m_script->adminReference);
    return QD_ZLK::IF_ZELKO_Admin::_unchecked_narrow(object);
}

} // namespace

ServicePeer::ServicePeer(ZelkoCommon::Orb& orb, quint16 port)
    : m_orb(orb)
    , m_port(port)
    , m_script(std::make_shared<Script>())
{
    publish();
}

ServicePeer::~ServicePeer()
{
    setHeld(false);
    withdraw();
}

void ServicePeer::publish()
{
    if (m_isPublished) {
        return;
    }
    m_isPublished = true;
    const PortableServer::Servant_var<AdminServant> admin(new AdminServant(m_script));
    const PortableServer::Servant_var<RootServant> root(new RootServant(m_script));
    {
        const std::lock_guard lock(m_script->mutex);
        m_script->adminKey = "Admin" + QByteArray::number(++m_script->identities);
        m_script->adminReference = QStringLiteral("corbaloc::1.2@127.0.0.1:%1/%2").arg(m_port).arg(m_script->adminKey);
    }
    m_orb.publish(m_script->adminKey.constData(), admin);
    m_orb.publish(ZelkoCommon::recorderServiceKey, root);
}

void ServicePeer::withdraw()
{
    if (m_isPublished) {
        m_isPublished = false;
        m_orb.withdraw(ZelkoCommon::recorderServiceKey);
        m_orb.withdraw(m_script->adminKey.constData());
    }
}

void ServicePeer::restart()
{
    withdraw();
    publish();
}

QStringList ServicePeer::calls() const
{
    const std::lock_guard lock(m_script->mutex);
    return m_script->calls;
}

int ServicePeer::adminRequests() const
{
    const std::lock_guard lock(m_script->mutex);
    return m_script->adminRequests;
}

bool ServicePeer::wasCalledOverNetwork() const
{
    const std::lock_guard lock(m_script->mutex);
    return !m_script->isLocal && (m_script->adminRequests > 0 || !m_script->calls.isEmpty());
}

void ServicePeer::forgetCalls()
{
    const std::lock_guard lock(m_script->mutex);
    m_script->calls.clear();
    m_script->adminRequests = 0;
}

void ServicePeer::setAnswer(const QString& operation, unsigned long code)
{
    const std::lock_guard lock(m_script->mutex);
    m_script->answers[operation] = code;
}

void ServicePeer::setAction(const QString& operation, std::function<void()> action)
{
    const std::lock_guard lock(m_script->mutex);
    m_script->actions[operation] = std::move(action);
}

void ServicePeer::setHeld(bool held)
{
    const std::lock_guard lock(m_script->mutex);
    m_script->isHeld = held;
    m_script->changed.notify_all();
}

void ServicePeer::setWithoutAdmin(bool without)
{
    const std::lock_guard lock(m_script->mutex);
    m_script->isWithoutAdmin = without;
}

void ServicePeer::setRecord(const QD_ZLK::RecordInfo& record)
{
    const std::lock_guard lock(m_script->mutex);
    m_script->record = record;
}
