#include <recorder/users/caller.h>

namespace ZelkoRecorder {

QString Caller::text() const
{
    const QString who =
        name.isEmpty() ? QStringLiteral("a client without a name") : QStringLiteral("user \"%1\"").arg(name);
    return QStringLiteral("%1 (%2)").arg(who, roleName(role));
}

} // namespace ZelkoRecorder
