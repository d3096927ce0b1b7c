#include <console/demo/sampleconnection.h>

#include <zelkobase/connection/zelkoconfiguration.h>

namespace ZelkoConsole {

using ZelkoCommon::ZelkoConfiguration;

namespace {

struct ClientOfNobody final : IVtClient
{
    void AddValue(ValueBase*, int) override {}
    void RemoveValue(ValueBase*) override {}
};

std::shared_ptr<ZelkoConfiguration> configurationOf(const QStringList& subSystems)
{
    auto configuration = std::make_shared<ZelkoConfiguration>();
    for (const QString& name : subSystems) {
        configuration->AddSubSystem({name, QStringLiteral("127.0.0.1"), 1}); // where nobody answers
    }
    return configuration;
}

} // namespace

SampleConnection::SampleConnection(const QStringList& subSystems)
    : m_configuration(configurationOf(subSystems))
    , m_client(std::make_shared<ClientOfNobody>())
{}

SampleConnection::~SampleConnection() = default;

void SampleConnection::setConnected(const QString& subSystem, bool connected)
{
    if (connected == isConnected(subSystem)) {
        return;
    }
    if (connected) {
        m_connected.insert(subSystem);
        Q_EMIT si_allTicsConnected(subSystem);
    } else {
        m_connected.remove(subSystem);
        Q_EMIT si_allTicsDisconnected(subSystem);
    }
}

std::shared_ptr<IVtClient> SampleConnection::getVtClient(const QString& subSystem, ConnectionType) const
{
    return isConnected(subSystem) ? m_client : nullptr;
}

} // namespace ZelkoConsole
