#pragma once

#include <recorder/store/deviceclock.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/editqueue.h>

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

namespace ZelkoRecorder {

class DeviceService;

/// The devices of the recorder as channels see them: where records go, and who is to know of them. On the recorder's
/// thread.
class ChannelDevices
{
public:
    virtual ~ChannelDevices() = default;

    /// All devices that can record, in alphabetical order.
    virtual QStringList devices() const = 0;

    virtual DeviceStore store(const QString& device) const = 0;

    /// What may be asked of a device; lives as long as the device. Null for one that is none.
    virtual DeviceService* service(const QString& device) const = 0;

    /// Lives as long as the device.
    virtual const DeviceClock& clock(const QString& device) const = 0;

    /// Calls `ready` once records may be born in the device's store, but not before this has returned, and not if
    /// `context` is gone by then.
    virtual void whenReady(const QString& device, QObject* context, std::function<void()> ready) = 0;

    /// @name What happens to a record that a channel makes, in this order
    /// @{
    /// It is about to be born; nothing of it is on disk yet. `stop` is called when somebody wants the recording ended;
    /// what others want to change of it comes through `edits`.
    virtual void recordBegins(const QString& device, const QString& recordID, std::function<void()> stop,
                              const std::shared_ptr<EditQueue>& edits) = 0;
    virtual void recordChanged(const QString& device, const RecordPointer& record) = 0;
    virtual void recordEnded(const QString& device, const QString& recordID) = 0;
    /// @}
};

} // namespace ZelkoRecorder
