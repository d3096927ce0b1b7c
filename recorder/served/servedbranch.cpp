#include <recorder/served/servedbranch.h>

#include <recorder/served/putvalue.h>

#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/names/valuenames.h>

namespace ZelkoRecorder {

namespace names = zelko::names;
using zelko::recordmap::RecordItemMap;

namespace {

constexpr SelItemDesc deviceTypes[] = {{1, "Recorder"}};
constexpr ValueDescriptor deviceTypeDescriptor{"DeviceType", deviceTypes, std::size(deviceTypes)};

} // namespace

// The members stand in the order of the tree.
ServedBranch::ServedBranch(Tree& tree, const DeviceIdentity& device)
{
    const QString base = names::join(names::zelkoDevice, QLatin1String()) + device.id;
    const QString command = names::join(names::zelkoCommand, QLatin1String()) + device.id;

    tree.Emplace(base + names::admin, std::make_unique<ValueSelection>(deviceTypeDescriptor));
    putValue<TextValue>(tree, names::adminPath(base, names::ipAddress), device.ipAddress);
    putValue<BoolValue>(tree, names::adminPath(base, names::supportsXGInterface), false);
    putValue<TextValue>(tree, names::join(base + names::statusVersion, names::firmwareVersion), device.firmware);
    available = putValue<BoolValue>(tree, names::join(base, names::zelkoAvailable), true);

    synchronize = putValue<BoolValue>(tree, names::join(command, names::synchronize));
    syncOneRecord = putValue<TextValue>(tree, names::join(command, names::syncOneRecord));
    putValue<BoolValue>(tree, names::join(command, names::extended), true);
    putValue<TextValue>(tree, names::join(command, names::ipAddress), device.ipAddress);
    deleteRecordingList = putValue<TextValue>(tree, names::join(command, names::deleteRecordingList));
    setRecordIdle = putValue<TextValue>(tree, names::join(command, names::setRecordIdle));

    loadCount = putValue<IntValue>(tree, names::loadCountPath(base), 0);
    records = putValue<RecordItemMap>(tree, names::recordMapPath(base));
    loadedCompletly = putValue<BoolValue>(tree, names::loadedCompletlyPath(base), false);
}

} // namespace ZelkoRecorder
