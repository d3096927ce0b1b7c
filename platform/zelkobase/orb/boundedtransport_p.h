#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace ZelkoCommon {

/// What the peers of an endpoint may have of it.
struct ConnectionBounds
{
    int connections;                       ///< all together
    int connectionsPerHost;                ///< of one address
    std::size_t messageBytes;              ///< of a message that is accepted
    std::chrono::milliseconds answerLimit; ///< in which a peer takes a whole answer
};

/// The ORB bounds its threads and not its connections: where there are more connections than threads, peers that begin
/// a message and do not end it take the threads from everybody else. It also has one limit of size for what it sends
/// and what it accepts, and none of time for a peer that does not take its answer. This transport is TCP or TLS with
/// bounds.
///
/// At a bound on connections a new one takes the place of the one that has waited longest without ever having been
/// answered: of those of its host where the host has all that it may have, of all where there is no place at all. Where
/// all of these have been answered, the new one is closed. A host is an address, those of the loopback included.
///
/// A connection that begins too large a message, or does not take its answer in time, is closed.
///
/// Registers the transport, once in a process, and sets the bounds of the endpoints that are made from now on. Called
/// before the ORB is initialised.
void boundConnections(const ConnectionBounds& bounds);

/// Called before the ORB ends, which waits for answers that nobody takes, and is not safe while hands are being shaken
/// for TLS: takes no connection any more, closes those that never had an answer, and waits up to a second for them. An
/// answer of which nothing is taken for a moment is given up from here on.
void endConnections();

/// An endpoint of an ORB, giop:tcp:HOST:PORT or giop:ssl:HOST:PORT, with bounded connections.
std::string boundedEndpoint(const std::string& endpoint);

} // namespace ZelkoCommon
