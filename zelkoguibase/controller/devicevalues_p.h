#pragma once

#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

class IVtClient;

namespace ZelkoGUI {

/// What a record controller needs of a device on the tree, beside its records. Each value is null until it is found,
/// and again when it is gone. The client is told of the values that say something of the device, and not of the
/// commands, which are there to be written.
struct DeviceValues
{
    /// `client` is told of what it observes; not owned.
    explicit DeviceValues(IObserver* client);

    /// Looks in Tree::Instance() for what is missing. `devicePath` is the base path of the device, `commandPath` that
    /// of its command values, which ends in its separator.
    void lookUp(const QString& devicePath, const QString& commandPath);

    bool areComplete() const;

    /// From here on what is written to the commands goes to the device.
    void addCommandsTo(IVtClient& client) const;

    void letGo();

    /// Of the device; empty while it is not known.
    QString address() const { return ipAddress ? ipAddress->GetValue() : QString(); }

    bool isExtended() const { return extended && extended->GetValue(); }

    /// Gives a command to the device, also if it is the one that it was given last; nothing without the value.
    static void write(const ValuePtr<Value<QString>>& command, const QString& text);

    ValueObservingPtr<Value<int>> loadCount; ///< number of records when all are loaded
    ValueObservingPtr<Value<bool>> loadedCompletely;
    ValuePtr<Value<bool>> synchronize;
    ValuePtr<Value<QString>> syncOneRecord;
    ValuePtr<Value<QString>> deleteList;
    ValuePtr<Value<QString>> recordIdle;
    ValueObservingPtr<Value<bool>> extended;
    ValueObservingPtr<Value<QString>> ipAddress;
};

} // namespace ZelkoGUI
