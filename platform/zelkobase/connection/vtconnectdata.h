#pragma once

#include <QString>

namespace ZelkoCommon {

/// What a client connects to on the value tree of a sub system.
enum class ConnectionType : int {
    Client = 1 ///< the branch of the sub system's devices
};

/// Where a value tree server is found.
struct VtConnectData
{
    QString host;      ///< name or address, as configured
    QString ipAddress; ///< address
    int port = 0;      ///< 0: not known

    bool operator==(const VtConnectData&) const = default;
};

} // namespace ZelkoCommon
