#include <zelkobase/state/localzelkovalues.h>

#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/state/ccoconnectionstates.h>

#include <iterator>

namespace ZelkoCommon {

namespace names = zelko::names;

namespace {

constexpr SelItemDesc connectionStates[] = {{CorbaCommon::ccoNotConnected, "not connected"},
                                            {CorbaCommon::ccoConnecting, "connecting"},
                                            {CorbaCommon::ccoConnected, "connected"},
                                            {CorbaCommon::ccoFailed, "failed"}};
constexpr ValueDescriptor connectionState{names::ccoConnectionState.data(), connectionStates,
                                          std::size(connectionStates)};

template <typename T, typename From>
void findOrPut(ValuePtr<T>& handle, const QString& folder, const From& nameOrDescriptor)
{
    auto value = std::make_unique<T>(nameOrDescriptor);
    if (!handle.GetFromTree(folder + QLatin1Char('/') + value->GetName())) {
        handle = Tree::Instance()->Emplace(folder, std::move(value));
    }
}

} // namespace

LocalZelkoValues::LocalZelkoValues(const QString& subSystem)
    : m_subSystem(subSystem)
{
    const QString folder = names::localValuesPath(basePath());
    findOrPut(m_deviceId, folder, names::deviceId);
    findOrPut(m_availableDevices, folder, names::availableDevices);
    findOrPut(m_connectionState, folder, connectionState);
    findOrPut(m_connectionResult, folder, names::ccoConnectionResult);
    findOrPut(m_waterfallTimestamp, folder, names::waterfallTimestamp);
}

QString LocalZelkoValues::basePath() const
{
    return ZelkoConfiguration::MakeRootPath(m_subSystem);
}

} // namespace ZelkoCommon
