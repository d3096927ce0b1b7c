#pragma once

#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>

#include <QSet>

/// The connection of a client as a test wants it: connected to what it was told, with paths as the real one has them.
class FakeConnectionData : public ZelkoCommon::AbstractServerConnectionData
{
public:
    using ConnectionType = ZelkoCommon::ConnectionType;

    explicit FakeConnectionData(const ZelkoCommon::ZelkoConfiguration& site)
        : configuration(std::make_shared<ZelkoCommon::ZelkoConfiguration>(site))
    {}

    std::shared_ptr<ZelkoCommon::ZelkoConfiguration> GetConfiguration() const override { return configuration; }
    bool isConnected(const QString& subSystem) const override { return connected.contains(subSystem); }
    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType) const override
    {
        return isConnected(subSystem) ? client : nullptr;
    }
    ZelkoCommon::VtConnectData getConnData(const QString& subSystem, ConnectionType) const override
    {
        ZelkoCommon::VtConnectData data;
        GetIPConnectionInformation(subSystem, data);
        return data;
    }
    QString getClientBasePath(const QString& subSystem, ConnectionType) const override
    {
        return ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem) + zelko::names::zelkoDevice;
    }
    QString GetDeviceBasePath(const QString& device) const override
    {
        return getClientBasePath(configuration->GetCurrentSubSystem(), ConnectionType::Client) + QLatin1Char('/') +
               device;
    }
    QString GetBasePath(const QString& device) const override
    {
        return ZelkoCommon::ZelkoConfiguration::MakeRootPath(configuration->GetCurrentSubSystem()) +
               zelko::names::zelkoCommand + QLatin1Char('/') + device + QLatin1Char('/');
    }
    bool GetIPConnectionInformation(const QString& subSystem, ZelkoCommon::VtConnectData& data) const override
    {
        const auto* const found = configuration->Find(subSystem);
        if (found) {
            data = {found->host, found->host, found->port};
        }
        return found;
    }

    /// Says that a sub system came, or went.
    void setConnected(const QString& subSystem, bool isThere)
    {
        if (isThere) {
            connected.insert(subSystem);
            Q_EMIT si_allTicsConnected(subSystem);
        } else {
            connected.remove(subSystem);
            Q_EMIT si_allTicsDisconnected(subSystem);
        }
    }

    std::shared_ptr<ZelkoCommon::ZelkoConfiguration> configuration;
    std::shared_ptr<IVtClient> client;
    QSet<QString> connected;
};
