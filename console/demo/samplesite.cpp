#include <console/demo/samplesite.h>

#include <console/demo/sampleconnection.h>
#include <console/treepaths.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>

namespace ZelkoConsole {

using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
namespace names = zelko::names;

namespace {

template <typename T>
T& find(const QString& path)
{
    return *Tree::Instance()->Find<T>(path);
}

// Puts a value where the path ends.
template <typename T>
void put(const QString& path)
{
    const auto end = path.lastIndexOf(QLatin1Char('/'));
    Tree::Instance()->Emplace(path.left(end), std::make_unique<T>(path.mid(end + 1), TValueState::Open));
}

QString availablePath(const QString& subSystem, const QString& device)
{
    return treepath::device(subSystem, device) + QLatin1Char('/') + names::zelkoAvailable;
}

// The branch of its commands.
QString commandsPath(const QString& subSystem, const QString& device)
{
    return ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem) + names::zelkoCommand + QLatin1Char('/') + device;
}

void putCommands(const QString& path)
{
    put<Value<bool>>(names::join(path, names::synchronize));
    put<Value<QString>>(names::join(path, names::syncOneRecord));
    put<Value<QString>>(names::join(path, names::deleteRecordingList));
    put<Value<QString>>(names::join(path, names::setRecordIdle));
    put<Value<QString>>(names::join(path, names::ipAddress));
    put<Value<bool>>(names::join(path, names::extended));
    find<Value<bool>>(names::join(path, names::extended)).SetValue(true, nullptr);
}

RecordItemMap& mapOf(const QString& subSystem, const QString& device)
{
    return find<RecordItemMap>(treepath::device(subSystem, device) + names::recordsMap);
}

} // namespace

SampleSite::SampleSite(const QStringList& subSystems, QObject* parent)
    : Session(parent)
    , m_names(subSystems)
    , m_connection(std::make_shared<SampleConnection>(subSystems))
{}

SampleSite::~SampleSite()
{
    for (const QString& name : m_names) {
        Tree::Instance()->Remove(ZelkoCommon::ZelkoConfiguration::MakeRootPath(name));
    }
}

std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> SampleSite::connectionData() const
{
    return m_connection;
}

std::optional<ZelkoCommon::Role> SampleSite::role(const QString& subSystem) const
{
    const auto found = m_roles.constFind(subSystem);
    return found == m_roles.constEnd() ? std::nullopt : std::optional(*found);
}

void SampleSite::actFor(const ZelkoCommon::LinkCredentials& user)
{
    m_actsFor = user;
    for (const QString& name : m_names) {
        if (status(name).state == LinkState::Denied) {
            setStatus(name, {});
        }
    }
}

void SampleSite::knowUsers()
{
    for (const auto role : ZelkoCommon::allRoles) {
        m_users.push_back({{ZelkoCommon::roleName(role), QStringLiteral("secret")}, role});
    }
}

void SampleSite::setStatus(const QString& subSystem, const SubSystemStatus& status)
{
    m_status[subSystem] = status;
    m_connection->setConnected(subSystem, status.isConnected());
    Q_EMIT statusChanged(subSystem);
}

void SampleSite::lose(const QString& subSystem, const QString& reason)
{
    Tree::Instance()->Remove(ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem));
    setStatus(subSystem, {LinkState::Unreachable, reason});
}

void SampleSite::addDevice(const QString& subSystem, const QString& device, bool available)
{
    const QString path = treepath::device(subSystem, device);
    put<Value<bool>>(availablePath(subSystem, device));
    put<Value<int>>(path + names::recordsLoadCount);
    put<RecordItemMap>(path + names::recordsMap);
    put<Value<bool>>(path + names::recordsLoadedCompletly);
    putCommands(commandsPath(subSystem, device));
    setAvailable(subSystem, device, available);
    setLoad(subSystem, device, 0, true);
}

void SampleSite::removeDevice(const QString& subSystem, const QString& device)
{
    Tree::Instance()->Remove(treepath::device(subSystem, device));
    Tree::Instance()->Remove(commandsPath(subSystem, device));
}

void SampleSite::setAvailable(const QString& subSystem, const QString& device, bool available)
{
    find<Value<bool>>(availablePath(subSystem, device)).SetValue(available, nullptr);
}

void SampleSite::setLoad(const QString& subSystem, const QString& device, int loadCount, bool complete)
{
    const QString path = treepath::device(subSystem, device);
    find<Value<int>>(path + names::recordsLoadCount).SetValue(loadCount, nullptr);
    find<Value<bool>>(path + names::recordsLoadedCompletly).SetValue(complete, nullptr);
}

void SampleSite::setRecord(const QString& subSystem, const QString& device, const RecordPtr& record)
{
    mapOf(subSystem, device).SetAt(record->GetRecordID(), RecordMapData(record), nullptr);
}

void SampleSite::eraseRecord(const QString& subSystem, const QString& device, const QString& id)
{
    mapOf(subSystem, device).EraseAt(id, nullptr);
}

void SampleSite::clearRecords(const QString& subSystem, const QString& device)
{
    mapOf(subSystem, device).Clear(nullptr);
}

QString SampleSite::command(const QString& subSystem, const QString& device, QLatin1String name) const
{
    return find<Value<QString>>(names::join(commandsPath(subSystem, device), name)).GetValue();
}

SampleSite::RecordPtr sampleRecord(const QString& id, const QString& name, SampleSite::Record::RecordStatus status,
                                   quint64 start, quint64 duration, quint64 frequency)
{
    using Record = SampleSite::Record;
    constexpr quint64 sampleRate = 250000;
    auto record = std::make_shared<Record>();
    record->SetRecordID(id);
    record->SetRecordName(name);
    record->SetRecordStatus(status);
    record->SetStartTime(start);
    record->SetStopTime(start + duration);
    record->SetSize(duration * sampleRate / 250000);
    record->SetStopPosition(record->GetSize());
    record->SetDataFormat(Record::DataFormat::IQ16);
    record->SetDataRate(Record::DataRate::UpTo1MB);
    record->SetInterface(Record::Interface::Ethernet);
    record->SetDeletable(true);
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(start);
    entry.SetRecordOffset(0);
    entry.SetTunerFrequency(frequency);
    entry.SetSampleRate(sampleRate);
    entry.SetBandwidth(200000);
    record->SetIndexEntry({entry});
    return record;
}

} // namespace ZelkoConsole
