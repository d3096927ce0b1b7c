#pragma once

#include <console/session/siteconnection.h>

namespace ZelkoConsole {

/// The connection of a session for values that windows write by themselves, as a replay bar does when a record is
/// chosen: only for a user from whom recorders take changes do they go out. For anybody else they stay on the client's
/// tree, and no recorder has to refuse what nobody has asked for. GUI thread.
class PermittedConnection : public SiteConnection
{
    Q_OBJECT

public:
    explicit PermittedConnection(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connection);
    ~PermittedConnection() override;

    /// Binds values for whoever may change anything when it is asked to; those that are bound stay so until they are
    /// removed.
    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const override;

private:
    const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> m_connection;
};

} // namespace ZelkoConsole
