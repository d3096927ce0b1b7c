#pragma once

#include <string>

namespace ZelkoCommon {

/// The ORB bounds its threads and not its connections: where there are more connections than threads, peers that begin
/// a message and do not end it take the threads from everybody else. This transport is TCP or TLS with a bound on
/// connections.
///
/// At the bound a new connection takes the place of the one that has waited longest without ever having been answered.
/// Where all have been answered, the new one is closed.
///
/// Registers the transport, once in a process, and says how many connections the endpoints that are made from now on
/// hold. Called before the ORB is initialised.
void boundConnections(int maxConnections);

/// An endpoint of an ORB, giop:tcp:HOST:PORT or giop:ssl:HOST:PORT, with bounded connections.
std::string boundedEndpoint(const std::string& endpoint);

} // namespace ZelkoCommon
