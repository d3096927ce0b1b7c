#pragma once

#include <observerbase/iobserver.h>
#include <zelkobase/connection/vtconnectdata.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QObject>
#include <QStringList>

#include <memory>

namespace ZelkoCommon {
class AbstractRecordListModel;
class AbstractServerConnectionData;
class LocalZelkoValues;
} // namespace ZelkoCommon

namespace ZelkoGUI {

/// The devices of the current sub system that can be used, one of them as the current one, and the records of that.
///
/// A device can be used when its "ZelkoAvailable" is true and its type is one that users are offered. Devices and their
/// availability are followed on the tree; a change there makes one refresh, in the next turn of the event loop, however
/// many changes there are. Every refresh chooses the current device anew, and so connects the record model anew: the
/// device that was the current one if it can still be used, otherwise the first one.
///
/// When the connection is lost, the devices leave the tree, and no device is the current one any more. It comes back
/// with the first one, whichever it was before, and leaves a device ID that is set as it is: who wants his device back
/// chooses it again.
///
/// The sub system is the one that is the current one when the model is made. What the connection data tell of others
/// means nothing here: with one of them lost, this one's devices stay. GUI thread.
class ZELKOGUIBASE_EXPORT ZelkoDeviceModel : public QObject, public IObserver
{
    Q_OBJECT

public:
    /// Follows the devices, without any until the connection data say that they are connected.
    explicit ZelkoDeviceModel(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connectionData);

    /// As above, and in step with the device ID of `localValues`. Chooses no device by itself, and takes none by
    /// `setCurrentDevice`, before `setChannelDevice` was called.
    ZelkoDeviceModel(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connectionData,
                     const ZelkoCommon::LocalZelkoValues& localValues);

    ~ZelkoDeviceModel() override;

    /// Names of the devices that can be used, in the order of the tree.
    const QStringList& deviceList() const;

    /// The records of the current device. A child of this object.
    ZelkoCommon::AbstractRecordListModel* recordModel() const;

    /// Empty when there is none. May be one that cannot be used, and "ZelkoChannel", which stands for whatever device
    /// the channel works on.
    const QString& currentDevice() const;

    /// Name, address, version and XG interface of the current device, one a line, as far as they are known.
    const QString& deviceTooltip() const;

    /// Makes a device the current one, whether it can be used or not. Where there is an empty device ID value, it is
    /// written to that, and told by `si_currentDeviceChanged`.
    void setCurrentDevice(const QString& device);

    /// The device that the channel works on. From here on the model follows devices. With "ZelkoChannel" the last real
    /// device that was set in this way is taken, as far as it can be used.
    void setChannelDevice(const QString& device);

    /// Whether the current device says that it has an XG interface.
    bool currentDeviceSupportsXg() const;

    /// Whether there are devices, and a real one is the current one.
    bool isReady() const;

    /// Where the sub system's server is found.
    ZelkoCommon::VtConnectData getVtConnectData() const;

    /// Where the server is found that runs on the workstation itself, at its fixed port; without one, and without a
    /// host in `data`, that of the current sub system. False when there is none of them.
    bool GetServerVtConnectionData(ZelkoCommon::VtConnectData& data) const;

    void Update(Observable* source, TChangeCode code) override;

Q_SIGNALS:
    /// After every refresh while connected, and when the connection goes; then with an empty list. Each time both, in
    /// this order.
    void devicesRefreshed();                           // clazy:exclude=overloaded-signal
    void devicesRefreshed(const QStringList& devices); // clazy:exclude=overloaded-signal

    /// The device ID value is another: by somebody else, or because it was empty and is the current device now.
    void si_currentDeviceChanged(const QString& device);

private Q_SLOTS:
    void refreshDevices();
    void sl_zelkoConnected(const QString& subSystem);
    void sl_zelkoDisconnected(const QString& subSystem);
    void observeDeviceValues();
    void resetDeviceValues();

private:
    void tellDevices();
    bool observeDevice(const QString& path);
    void updateCurrentDeviceAndNotify(const QString& previous);
    void showDevice(const QString& device);
    QString composedTooltip(const QString& devicePath) const;

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
