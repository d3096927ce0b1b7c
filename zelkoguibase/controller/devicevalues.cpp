#include "devicevalues_p.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/names/valuenames.h>

namespace ZelkoGUI {

namespace names = zelko::names;

DeviceValues::DeviceValues(IObserver* client)
    : loadCount(client)
    , loadedCompletely(client)
    , extended(client)
    , ipAddress(client)
{}

void DeviceValues::lookUp(const QString& devicePath, const QString& commandPath)
{
    const auto find = [](auto& handle, const QString& path) {
        if (!handle) {
            handle.GetFromTree(path);
        }
    };
    find(loadCount, names::loadCountPath(devicePath));
    find(loadedCompletely, names::loadedCompletlyPath(devicePath));
    find(synchronize, commandPath + names::synchronize);
    find(syncOneRecord, commandPath + names::syncOneRecord);
    find(extended, commandPath + names::extended);
    find(ipAddress, commandPath + names::ipAddress);
    find(deleteList, commandPath + names::deleteRecordingList);
    find(recordIdle, commandPath + names::setRecordIdle);
}

bool DeviceValues::areComplete() const
{
    return loadCount && loadedCompletely && synchronize && syncOneRecord && extended && ipAddress && deleteList &&
           recordIdle;
}

void DeviceValues::addCommandsTo(IVtClient& client) const
{
    client.AddValue(synchronize.get(), 0);
    client.AddValue(syncOneRecord.get(), 0);
    client.AddValue(deleteList.get(), 0);
    client.AddValue(recordIdle.get(), 0);
}

void DeviceValues::letGo()
{
    loadCount = nullptr;
    loadedCompletely = nullptr;
    synchronize = nullptr;
    syncOneRecord = nullptr;
    deleteList = nullptr;
    recordIdle = nullptr;
    extended = nullptr;
    ipAddress = nullptr;
}

// A device does what a command value says when it is written, so the same command given twice is no change of it.
void DeviceValues::write(const ValuePtr<Value<QString>>& command, const QString& text)
{
    if (!command) {
        return;
    }
    if (command->GetValue() != text) {
        command->SetValue(text, nullptr);
    } else {
        command->HasChanged(TChangeCode::ValueChanged, nullptr);
    }
}

} // namespace ZelkoGUI
