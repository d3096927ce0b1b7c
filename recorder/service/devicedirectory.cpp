#include <recorder/service/devicedirectory.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/names/valuenames.h>

#include <algorithm>

namespace ZelkoRecorder {

namespace names = zelko::names;
using zelko::recordmap::RecordItemMap;

namespace {

QString basePath(const QString& device)
{
    return names::devicePathBelowRoot(QString(), device);
}

bool isTrue(const Tree& tree, const QString& path)
{
    const auto* const value = tree.Find<Value<bool>>(path);
    return value && value->GetValue();
}

} // namespace

DeviceDirectory::DeviceDirectory(const Tree& tree, const QStringList& devices)
    : m_tree(tree)
    , m_devices(devices)
{
    m_devices.sort();
}

// An ID that a peer gave is looked for among the devices before it becomes a part of a path.
QString DeviceDirectory::address(const QString& device) const
{
    if (!contains(device)) {
        return QString();
    }
    const auto* const address = m_tree.Find<Value<QString>>(names::adminPath(basePath(device), names::ipAddress));
    return address ? address->GetValue() : QString();
}

QString DeviceDirectory::deviceAt(const QString& address) const
{
    const auto found = std::find_if(m_devices.begin(), m_devices.end(), [&](const QString& device) {
        return !address.isEmpty() && this->address(device) == address;
    });
    return found == m_devices.end() ? QString() : *found;
}

DeviceDirectory::DeviceState DeviceDirectory::state(const QString& device) const
{
    if (!contains(device) || !isTrue(m_tree, names::availablePath(basePath(device)))) {
        return DeviceState::NotAvailable;
    }
    return isTrue(m_tree, names::loadedCompletlyPath(basePath(device))) ? DeviceState::Ready : DeviceState::Loading;
}

RecordPointer DeviceDirectory::record(const QString& device, const QString& recordID) const
{
    const RecordItemMap* const records = map(device);
    return records && records->contains(recordID) ? records->At(recordID).GetRecordData() : nullptr;
}

RecordPointers DeviceDirectory::records(const QString& device) const
{
    RecordPointers result;
    if (const RecordItemMap* const records = map(device)) {
        result.reserve(static_cast<qsizetype>(records->data().size()));
        for (const auto& [id, item] : records->data()) {
            result.append(item.GetRecordData());
        }
    }
    return result;
}

const RecordItemMap* DeviceDirectory::map(const QString& device) const
{
    return contains(device) ? m_tree.Find<RecordItemMap>(names::recordMapPath(basePath(device))) : nullptr;
}

} // namespace ZelkoRecorder
