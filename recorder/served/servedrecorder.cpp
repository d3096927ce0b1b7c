#include <recorder/served/servedrecorder.h>

#include <recorder/store/devicestore.h>

namespace ZelkoRecorder {

ServedRecorder::ServedRecorder(const ExportFolders& exportFolders)
    : m_exports(std::make_unique<ExportQueue>(exportFolders))
{}

ServedRecorder::~ServedRecorder() = default;

bool ServedRecorder::addDevice(const DeviceIdentity& identity, const DevicePlan& plan, QString* error)
{
    if (m_devices.contains(identity.id)) {
        *error = QStringLiteral("there are two devices \"%1\"").arg(identity.id);
        return false;
    }
    if (!DeviceStore(plan.folder).open(error)) {
        return false;
    }
    m_devices.emplace(identity.id, std::make_unique<ServedDevice>(m_tree, identity, plan));
    return true;
}

void ServedRecorder::close()
{
    m_exports.reset();
    m_devices.clear();
}

QStringList ServedRecorder::deviceIds() const
{
    QStringList ids;
    for (const auto& [id, device] : m_devices) {
        ids.append(id);
    }
    return ids;
}

DeviceService* ServedRecorder::service(const QString& deviceID) const
{
    const auto device = m_devices.find(deviceID);
    return device == m_devices.end() ? nullptr : &device->second->service();
}

ServedDevice* ServedRecorder::device(const QString& deviceID) const
{
    const auto found = m_devices.find(deviceID);
    return found == m_devices.end() ? nullptr : found->second.get();
}

QString ServedRecorder::exportRecord(const QString& deviceID, const QString& recordID, const QString& path,
                                     StoreStatus* status)
{
    DeviceService* const device = service(deviceID);
    if (!device) {
        *status = StoreStatus::UnknownRecord;
        return {};
    }
    return m_exports->enqueue({deviceID, device->store(), device->uses()}, recordID, path, status);
}

} // namespace ZelkoRecorder
