#pragma once

#include <zelkobase/connection/zelkoconfiguration.h>

#include <QHostAddress>

#include <chrono>
#include <functional>
#include <optional>

namespace ZelkoConsole {

/// Finds the address of this machine from which it reaches a host; nothing where that cannot be told.
using OwnAddress = std::function<std::optional<QHostAddress>(const QString& host)>;

/// Where the ORB has to listen so that the recorders of a site can call back; empty for all interfaces.
///
/// What the site says counts. Where it says nothing: loopback while all recorders are on this machine, else the address
/// from which the others are reached, and all interfaces where that is more than one or cannot be told.
QString listenAddress(const ZelkoCommon::ZelkoConfiguration& site, const OwnAddress& ownAddress);

/// The above with what the system knows of names and routes. Sends nothing to the recorders; blocks while names are
/// looked up, for at most `patience` in all.
QString listenAddress(const ZelkoCommon::ZelkoConfiguration& site,
                      std::chrono::milliseconds patience = std::chrono::seconds(3));

} // namespace ZelkoConsole
