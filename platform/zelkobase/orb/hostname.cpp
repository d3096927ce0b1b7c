#include <zelkobase/orb/hostname.h>

#include <algorithm>

namespace ZelkoCommon {
namespace {

bool canBeInHost(QChar c)
{
    return c.unicode() < 128 && (c.isLetterOrNumber() || QLatin1String(".-_:").contains(c));
}

} // namespace

bool canBeHost(const QString& host)
{
    return !host.isEmpty() && std::all_of(host.begin(), host.end(), canBeInHost);
}

} // namespace ZelkoCommon
