#include <console/session/session.h>

namespace ZelkoConsole {

Session::Session(QObject* parent)
    : QObject(parent)
{}

Session::~Session() = default;

const std::vector<KnownUser>& Session::knownUsers() const
{
    static const std::vector<KnownUser> none;
    return none;
}

QString Session::configuredUser() const
{
    return {};
}

void Session::actFor(const ZelkoCommon::LinkCredentials&) {}

std::optional<ZelkoCommon::Role> Session::role(const QString&) const
{
    return std::nullopt;
}

} // namespace ZelkoConsole
