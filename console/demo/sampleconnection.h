#pragma once

#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/ivtclient.h>

#include <QSet>

namespace ZelkoConsole {

/// The connection of a site without a network: what is written stays on the tree.
class SampleConnection : public ZelkoCommon::AbstractServerConnectionData
{
    Q_OBJECT

public:
    using ConnectionType = ZelkoCommon::ConnectionType;

    /// Configures the sub systems; none is connected.
    explicit SampleConnection(const QStringList& subSystems);
    ~SampleConnection() override;

    /// Says that a sub system came or went; nothing where that is no change.
    void setConnected(const QString& subSystem, bool connected);

    std::shared_ptr<ZelkoCommon::ZelkoConfiguration> GetConfiguration() const override { return m_configuration; }
    bool isConnected(const QString& subSystem) const override { return m_connected.contains(subSystem); }
    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const override;

private:
    const std::shared_ptr<ZelkoCommon::ZelkoConfiguration> m_configuration;
    const std::shared_ptr<IVtClient> m_client;
    QSet<QString> m_connected;
};

} // namespace ZelkoConsole
