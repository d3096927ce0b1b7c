#pragma once

#include <zelkobase/connection/vtconnectdata.h>
#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <QObject>
#include <QString>

#include <memory>

class IVtClient;

namespace ZelkoCommon {

class ZelkoConfiguration;

/// The connection of a client to the recorder servers of its sub systems, as the library sees it.
///
/// Lives on the GUI thread, which is also the thread of the value tree; the signals come there, in the order in which
/// things happened. Nothing blocks.
class ZELKOBASECONNECTION_EXPORT AbstractServerConnectionData : public QObject
{
    Q_OBJECT

public:
    ~AbstractServerConnectionData() override;

    /// Never null.
    virtual std::shared_ptr<ZelkoConfiguration> GetConfiguration() const = 0;

    /// True between `si_allTicsConnected` and `si_allTicsDisconnected` of the sub system.
    virtual bool isConnected(const QString& subSystem) const = 0;

    /// The writing end of the link to a sub system; null while it is not connected.
    virtual std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const = 0;

    /// @name What the configuration says of itself
    /// @{

    /// Where the sub system's server is found; all empty for one that is not configured.
    virtual VtConnectData getConnData(const QString& subSystem, ConnectionType type) const;

    /// The node of the value tree that holds the sub system's devices.
    virtual QString getClientBasePath(const QString& subSystem, ConnectionType type) const;

    /// The branch of a device of the current sub system: its records, administration and status.
    virtual QString GetDeviceBasePath(const QString& device) const;

    /// Where the command values of a device of the current sub system stand: a path that ends in its separator.
    virtual QString GetBasePath(const QString& device) const;

    /// Host and port of a sub system, the current one for an empty name. False, and `data` unchanged, when it is not
    /// configured.
    virtual bool GetIPConnectionInformation(const QString& subSystem, VtConnectData& data) const;
    /// @}

Q_SIGNALS:
    /// Once per connection, when everything that the server has stands in the tree; the content of large maps follows.
    void si_allTicsConnected(const QString& subSystem);

    /// Once per lost connection, when nothing of the sub system stands in the tree any more.
    void si_allTicsDisconnected(const QString& subSystem);

    /// The node of a device came into the tree; `path` is its full path. The values below it follow.
    void si_deviceNodeAdded(const QString& path);

protected:
    explicit AbstractServerConnectionData(QObject* parent = nullptr);
};

} // namespace ZelkoCommon
