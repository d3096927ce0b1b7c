#pragma once

#include <recorder/served/exportqueue.h>
#include <recorder/served/serveddevice.h>

#include <valuecore/tree.h>

#include <map>
#include <memory>

namespace ZelkoRecorder {

/// A recorder with all its devices, and the tree on which it shows them. Lives on the thread that made it.
class ServedRecorder
{
public:
    /// Records may be exported below these folders only.
    explicit ServedRecorder(const ExportFolders& exportFolders = ExportFolders());
    ~ServedRecorder();
    ServedRecorder(const ServedRecorder&) = delete;
    ServedRecorder& operator=(const ServedRecorder&) = delete;

    /// False, and a text for people in `error`, if the device is there already or its folder cannot be used.
    bool addDevice(const DeviceIdentity& identity, const DevicePlan& plan, QString* error);

    /// Gives up exports and closes all recordings. The tree stays as it is. Nobody may call a service any more.
    void close();

    /// The IDs of the devices, and what clients may ask of each; null for an ID that is none. Any thread, once all
    /// devices were added.
    QStringList deviceIds() const;
    DeviceService* service(const QString& deviceID) const;

    /// Null for an ID that is none.
    ServedDevice* device(const QString& deviceID) const;

    /// Takes an export on, as ExportQueue does; `UnknownRecord` for a device that is not there. Any thread, as above.
    QString exportRecord(const QString& deviceID, const QString& recordID, const QString& path, StoreStatus* status);

    ExportQueue& exports() { return *m_exports; }

    Tree& tree() { return m_tree; }

private:
    Tree m_tree;
    std::map<QString, std::unique_ptr<ServedDevice>> m_devices;
    std::unique_ptr<ExportQueue> m_exports; // works on the devices
};

} // namespace ZelkoRecorder
