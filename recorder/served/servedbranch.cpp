#include <recorder/served/servedbranch.h>

#include <valuecore/tree.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/names/valuenames.h>

namespace ZelkoRecorder {

namespace names = zelko::names;
using zelko::recordmap::RecordItemMap;

namespace {

constexpr SelItemDesc deviceTypes[] = {{1, "Recorder"}};
constexpr ValueDescriptor deviceTypeDescriptor{"DeviceType", deviceTypes, std::size(deviceTypes)};

// Path of the node and name of the item of a path below it.
struct Place
{
    explicit Place(const QString& path)
        : node(path.left(path.lastIndexOf(QLatin1Char('/'))))
        , name(path.mid(node.size() + 1))
    {}

    const QString node;
    const QString name;
};

template <typename T>
T* put(Tree& tree, const QString& path)
{
    const Place place(path);
    return tree.Emplace(place.node, std::make_unique<T>(place.name, TValueState::Open));
}

template <typename T, typename Content>
T* put(Tree& tree, const QString& path, const Content& content)
{
    T* const value = put<T>(tree, path);
    value->SetValue(content, nullptr);
    return value;
}

} // namespace

// The members stand in the order of the tree.
ServedBranch::ServedBranch(Tree& tree, const DeviceIdentity& device)
{
    const QString base = names::join(names::zelkoDevice, QLatin1String()) + device.id;
    const QString command = names::join(names::zelkoCommand, QLatin1String()) + device.id;

    tree.Emplace(base + names::admin, std::make_unique<ValueSelection>(deviceTypeDescriptor));
    put<TextValue>(tree, names::adminPath(base, names::ipAddress), device.ipAddress);
    put<BoolValue>(tree, names::adminPath(base, names::supportsXGInterface), false);
    put<TextValue>(tree, names::join(base + names::statusVersion, names::firmwareVersion), device.firmware);
    available = put<BoolValue>(tree, names::join(base, names::zelkoAvailable), true);

    synchronize = put<BoolValue>(tree, names::join(command, names::synchronize));
    syncOneRecord = put<TextValue>(tree, names::join(command, names::syncOneRecord));
    put<BoolValue>(tree, names::join(command, names::extended), true);
    put<TextValue>(tree, names::join(command, names::ipAddress), device.ipAddress);
    deleteRecordingList = put<TextValue>(tree, names::join(command, names::deleteRecordingList));
    setRecordIdle = put<TextValue>(tree, names::join(command, names::setRecordIdle));

    loadCount = put<IntValue>(tree, names::loadCountPath(base), 0);
    records = put<RecordItemMap>(tree, names::recordMapPath(base));
    loadedCompletly = put<BoolValue>(tree, names::loadedCompletlyPath(base), false);
}

} // namespace ZelkoRecorder
