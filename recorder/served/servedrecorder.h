#pragma once

#include <recorder/served/serveddevice.h>

#include <valuecore/tree.h>

#include <map>
#include <memory>

namespace ZelkoRecorder {

/// A recorder with all its devices, and the tree on which it shows them. Lives on the thread that made it.
class ServedRecorder
{
public:
    ServedRecorder();
    ~ServedRecorder();
    ServedRecorder(const ServedRecorder&) = delete;
    ServedRecorder& operator=(const ServedRecorder&) = delete;

    /// False, and a text for people in `error`, if the device is there already or its folder cannot be used.
    bool addDevice(const DeviceIdentity& identity, const DevicePlan& plan, QString* error);

    /// Closes all recordings. The tree stays as it is.
    void close();

    Tree& tree() { return m_tree; }

private:
    Tree m_tree;
    std::map<QString, std::unique_ptr<ServedDevice>> m_devices;
};

} // namespace ZelkoRecorder
