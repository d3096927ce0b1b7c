#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace ZelkoCommon {

/// The addresses of a host, in the order in which they are to be tried; none for a name that nobody knows. Nothing when
/// the name server does not answer within `limit`: an ORB that looks a name up by itself waits for as long as the
/// system does. An address is its own answer, without asking anybody.
ZELKOBASESERVICE_EXPORT std::optional<QStringList> addressesOf(const QString& host, std::chrono::milliseconds limit);

/// Asks for the addresses of a name, for as long as that takes; called on a thread of its own, which nobody waits for.
using HostQuery = std::function<QStringList(const std::string& name)>;

/// As above, of another name service than the system's.
ZELKOBASESERVICE_EXPORT std::optional<QStringList> addressesOf(const QString& host, std::chrono::milliseconds limit,
                                                               const HostQuery& query);

} // namespace ZelkoCommon
