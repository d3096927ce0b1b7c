#pragma once

#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>

#include <QString>

/// Where things stand on the client's tree.
namespace ZelkoConsole::treepath {

/// The node that holds the devices of a sub system.
inline QString devices(const QString& subSystem)
{
    return ZelkoCommon::ZelkoConfiguration::MakeRootPath(subSystem) + zelko::names::zelkoDevice;
}

/// The branch of a device.
inline QString device(const QString& subSystem, const QString& name)
{
    return devices(subSystem) + QLatin1Char('/') + name;
}

} // namespace ZelkoConsole::treepath
