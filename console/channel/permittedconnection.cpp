#include <console/channel/permittedconnection.h>

#include <console/records/recordsituation.h>

#include <zelkobase/connection/ivtclient.h>

#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::AbstractServerConnectionData;

namespace {

class PermittedClient final : public IVtClient
{
public:
    explicit PermittedClient(std::shared_ptr<IVtClient> client)
        : m_client(std::move(client))
    {}

    void AddValue(ValueBase* value, int flags) override
    {
        if (mayChangeAnything()) {
            m_client->AddValue(value, flags);
        }
    }
    void RemoveValue(ValueBase* value) override { m_client->RemoveValue(value); }

private:
    const std::shared_ptr<IVtClient> m_client;
};

} // namespace

PermittedConnection::PermittedConnection(const std::shared_ptr<AbstractServerConnectionData>& connection)
    : SiteConnection(connection->GetConfiguration())
    , m_connection(connection)
{
    follow(connection.get());
}

PermittedConnection::~PermittedConnection() = default;

std::shared_ptr<IVtClient> PermittedConnection::getVtClient(const QString& subSystem, ConnectionType type) const
{
    auto client = SiteConnection::getVtClient(subSystem, type);
    return client ? std::make_shared<PermittedClient>(std::move(client)) : nullptr;
}

} // namespace ZelkoConsole
