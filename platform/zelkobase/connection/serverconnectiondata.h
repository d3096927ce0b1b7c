#pragma once

#include <credentials/role.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/linkoptions.h>
#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <optional>

class Tree;

namespace ZelkoCommon {

class Orb;

/// Connects to every sub system of a configuration over tree links of its own.
class ZELKOBASECONNECTION_EXPORT ServerConnectionData : public AbstractServerConnectionData
{
    Q_OBJECT

public:
    /// Begins to connect to all sub systems that are configured now. `orb` and `tree` outlive this object.
    ServerConnectionData(Orb& orb, Tree* tree, std::shared_ptr<ZelkoConfiguration> configuration,
                         const LinkOptions& options = {}, QObject* parent = nullptr);

    /// Ends all links at once: waits as long as the slowest of them takes; see TreeLink.
    ~ServerConnectionData() override;

    std::shared_ptr<ZelkoConfiguration> GetConfiguration() const override;
    bool isConnected(const QString& subSystem) const override;
    std::shared_ptr<IVtClient> getVtClient(const QString& subSystem, ConnectionType type) const override;

    /// For whom the client acts at a sub system from now on, or at all of them; see TreeLink::setCredentials. Does not
    /// block: `si_allTicsDisconnected` and `si_allTicsConnected` follow.
    void SetCredentials(const QString& subSystem, const LinkCredentials& credentials);
    void SetCredentials(const LinkCredentials& credentials);

    /// What the server of a sub system takes the user for; nothing while it is not connected for him.
    std::optional<Role> GetRole(const QString& subSystem) const;

    /// Why a sub system is not connected, for people; empty when it is, or when nothing is known yet.
    QString lastError(const QString& subSystem) const;

    /// Whether that is because its server does not admit the user. See TreeLink::isDenied.
    bool isDenied(const QString& subSystem) const;

Q_SIGNALS:
    /// An attempt to connect failed; the next one follows by itself.
    void connectFailed(const QString& subSystem, const QString& reason);

    /// @name A write did not change the server's value, which comes back as the server has it
    /// See the signals of those names of TreeLink.
    /// @{
    void writeRefused(const QString& subSystem, const QString& reason);
    void writeNotSent(const QString& subSystem, const QString& reason);
    /// @}

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
