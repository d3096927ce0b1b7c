#pragma once

#include <zelkobase/connection/abstractserverconnectiondata.h>

#include <QSet>

namespace ZelkoConsole {

/// The connection of a session to its sub systems as the library sees it. It stays the same while what carries it goes
/// and another one comes, as when a recorder is started again and serves at another port. GUI thread.
class SiteConnection : public ZelkoCommon::AbstractServerConnectionData
{
    Q_OBJECT

public:
    using ConnectionType = ZelkoCommon::ConnectionType;

    /// `configuration` is what every carrier is made from.
    explicit SiteConnection(std::shared_ptr<ZelkoCommon::ZelkoConfiguration> configuration);
    ~SiteConnection() override;

    /// From here on everything comes from `carrier`, which is not owned; nothing is connected with null. To be called
    /// when the one before is gone: what that one had is told to be gone too.
    void follow(AbstractServerConnectionData* carrier);

    std::shared_ptr<ZelkoCommon::ZelkoConfiguration> GetConfiguration() const override;
    bool isConnected(const QString& subSystem) const override;
    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const override;

private:
    void connected(const QString& subSystem);
    void disconnected(const QString& subSystem);

    const std::shared_ptr<ZelkoCommon::ZelkoConfiguration> m_configuration;
    AbstractServerConnectionData* m_carrier = nullptr;
    QSet<QString> m_connected; // as was told
};

} // namespace ZelkoConsole
