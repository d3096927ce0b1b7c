#pragma once

#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>

#include <chrono>
#include <memory>

namespace ZelkoCommon {
class RecorderService;
}

namespace ZelkoGUI {

/// A client's connection to a recorder server: its branch of the value tree and its service. The handlers of the parts
/// of the service are made from it. GUI thread only.
class ZELKOBASESERVICE_EXPORT ZelkoGuiToServerCorbaHandler
{
public:
    /// `subSystem` is the sub system of the recorder; empty: the current one of the configuration, whichever that is
    /// when it is asked. `service` says where the service is found, as corbaloc, corbaname or IOR; empty: as the
    /// configuration says. Null `connectionData` is allowed: nothing is connected then, and only a `service` that is
    /// given can be asked. Connects nothing yet.
    ZelkoGuiToServerCorbaHandler(const QString& subSystem,
                                 std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData,
                                 const QString& service);

    /// The same for the current sub system and its service.
    explicit ZelkoGuiToServerCorbaHandler(std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData);

    ~ZelkoGuiToServerCorbaHandler();

    /// As given.
    std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> GetServerConnectionData() const;

    /// Empty when the configuration has none.
    QString GetCurrentSubsystem() const;

    /// Whether the branch of the current sub system stands on the value tree. Does not block.
    bool IsConnected() const;

    /// How long a question to the service may take, the way there included; at first what the configuration says, and
    /// 5 s without one. A shorter limit leaves a window livelier, but gives up sooner.
    void setLimit(std::chrono::milliseconds limit);
    std::chrono::milliseconds limit() const;

    /// Why the last question of any handler on this connection failed, for people, with what the recorder itself said
    /// about it. Empty after one that succeeded.
    QString lastErrorText() const;

    /// The way of all calls.
    ZelkoCommon::RecorderService& service() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
