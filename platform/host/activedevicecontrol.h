#pragma once

#include <host/host_export.h>

#include <QObject>
#include <QString>

/// Which device the host application works on. The host sets it; record lists, dialogs and views follow the signals.
/// GUI thread only.
class HOST_EXPORT ActiveDeviceControl : public QObject
{
    Q_OBJECT

public:
    explicit ActiveDeviceControl(QObject* parent = nullptr);
    ~ActiveDeviceControl() override;

    /// ID and sub system of the active device; both empty when there is none.
    QString activeDevice() const { return m_deviceID; }
    QString activeSubSystem() const { return m_subSystem; }

public Q_SLOTS:
    /// Makes a device the active one, or with an empty ID none. Tells so if that is a change.
    void setActiveDevice(const QString& deviceID, const QString& subSystem);

    /// The connection of the active device has changed: tells everybody to look again.
    void refreshActiveDevice();

    /// A device was taken out of the configuration. Tells so, whether it is the active one or not; if it is, there is
    /// no active one from then on, which is not told a second time.
    void deleteDevice(const QString& deviceID, const QString& subSystem);

Q_SIGNALS:
    /// The active device or its connection changed.
    void si_activeDeviceChanged(QString deviceID, QString subSystem);

    void si_activeDeviceDeleted(QString deviceID, QString subSystem);

private:
    QString m_deviceID;
    QString m_subSystem;
};
