#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <string>

namespace ZelkoCommon {

/// The address, without a port, of the peer whose call this thread is serving. Empty when the call comes from this
/// process, and on a thread that serves none.
ZELKOBASEORB_EXPORT const std::string& callingPeer();

/// Makes `callingPeer` known. Called by Orb when the ORB is initialised and serves nothing yet.
void noteCallingPeers();

/// The host of an address of a transport: "127.0.0.1" of "giop:tcp:127.0.0.1:4711".
ZELKOBASEORB_EXPORT std::string hostOfTransportAddress(const std::string& address);

} // namespace ZelkoCommon
