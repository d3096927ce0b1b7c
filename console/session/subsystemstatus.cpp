#include <console/session/subsystemstatus.h>

#include <console/translation.h>

namespace ZelkoConsole {
namespace {

QString unreachableText(const QString& subSystem, const QString& reason)
{
    if (reason.isEmpty()) {
        return tr("Recorder %1 is not reachable, trying again").arg(subSystem);
    }
    return tr("Recorder %1 is not reachable: %2, trying again").arg(subSystem, reason);
}

} // namespace

QString shortText(const SubSystemStatus& status)
{
    switch (status.state) {
    case LinkState::Starting:
        return tr("starting");
    case LinkState::Connecting:
        return tr("connecting");
    case LinkState::Connected:
        return tr("connected");
    case LinkState::Unreachable:
        return tr("not reachable");
    case LinkState::Denied:
        return tr("access denied");
    case LinkState::Unusable:
        return tr("no connection");
    }
    return {};
}

QString longText(const QString& subSystem, const SubSystemStatus& status)
{
    switch (status.state) {
    case LinkState::Starting:
        return tr("Starting recorder %1…").arg(subSystem);
    case LinkState::Connecting:
        return tr("Connecting to %1…").arg(subSystem);
    case LinkState::Connected:
        return tr("Connected to %1").arg(subSystem);
    case LinkState::Unreachable:
        return unreachableText(subSystem, status.reason);
    case LinkState::Denied:
        return tr("No access to recorder %1: %2").arg(subSystem, status.reason);
    case LinkState::Unusable:
        return tr("This console cannot connect to recorder %1: %2").arg(subSystem, status.reason);
    }
    return {};
}

} // namespace ZelkoConsole
