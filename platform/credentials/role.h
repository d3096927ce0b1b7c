#pragma once

#include <credentials/credentials_export.h>

#include <QLatin1String>
#include <QMetaType>
#include <QStringView>

#include <optional>

namespace ZelkoCommon {

/// What a user is, each one being all that stands before it too.
enum class Role {
    Viewer,       ///< looks
    Operator,     ///< works with records
    Administrator ///< looks after the recorder itself
};

inline constexpr Role allRoles[] = {Role::Viewer, Role::Operator, Role::Administrator};

/// The name of a role, as files and command lines have it: "viewer", "operator", "administrator".
CREDENTIALS_EXPORT QLatin1String roleName(Role role);

/// The role of that name, spelled just so; nothing for any other text.
CREDENTIALS_EXPORT std::optional<Role> roleOfName(QStringView name);

} // namespace ZelkoCommon

Q_DECLARE_METATYPE(ZelkoCommon::Role)
