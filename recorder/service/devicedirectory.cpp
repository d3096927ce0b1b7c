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

// A record stays in its bucket until the map grows or shrinks, whatever comes and goes beside it.
DeviceDirectory::Records DeviceDirectory::records(const QString& device, std::size_t atOnce,
                                                  const std::optional<Records::Place>& from) const
{
    Records result;
    const RecordItemMap* const records = map(device);
    if (!records) {
        return result;
    }
    const auto& all = records->data();
    result.isFromTheBeginning = !from || from->bucketCount != all.bucket_count();
    const std::size_t first = result.isFromTheBeginning ? 0 : from->bucket;
    const std::size_t last = std::min(all.bucket_count(), first + atOnce);
    for (std::size_t bucket = first; bucket < last; ++bucket) {
        for (auto entry = all.cbegin(bucket); entry != all.cend(bucket); ++entry) {
            result.records.append(entry->second.GetRecordData());
        }
    }
    if (last < all.bucket_count()) {
        result.next = {last, all.bucket_count()};
    }
    return result;
}

const RecordItemMap* DeviceDirectory::map(const QString& device) const
{
    return contains(device) ? m_tree.Find<RecordItemMap>(names::recordMapPath(basePath(device))) : nullptr;
}

} // namespace ZelkoRecorder
