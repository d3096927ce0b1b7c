#include <credentials/role.h>

#include <algorithm>
#include <iterator>

namespace ZelkoCommon {

QLatin1String roleName(Role role)
{
    switch (role) {
    case Role::Viewer:
        return QLatin1String("viewer");
    case Role::Operator:
        return QLatin1String("operator");
    case Role::Administrator:
        return QLatin1String("administrator");
    }
    return {};
}

std::optional<Role> roleOfName(QStringView name)
{
    const auto* const found =
        std::find_if(std::begin(allRoles), std::end(allRoles), [&](Role role) { return name == roleName(role); });
    return found == std::end(allRoles) ? std::nullopt : std::optional(*found);
}

} // namespace ZelkoCommon
