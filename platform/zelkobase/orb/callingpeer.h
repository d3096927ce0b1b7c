#pragma once

#include <zelkobase/orb/zelkobaseorb_export.h>

#include <string>

namespace ZelkoCommon {

/// The address, without a port and as `plainAddress` has it, of the peer whose call this thread is serving. Empty when
/// the call comes from this process, and on a thread that serves none.
ZELKOBASEORB_EXPORT const std::string& callingPeer();

/// The address of this host, in the same form, at which that peer has called. Empty when `callingPeer` is.
ZELKOBASEORB_EXPORT const std::string& calledAddress();

/// Makes both known. Called by Orb when the ORB is initialised and serves nothing yet.
void noteCallingPeers();

/// The host of an address of a transport, as `plainAddress` has it: "fd00::2" of "giop:tcp:[fd00::2]:4711". Empty where
/// there is none in numbers.
ZELKOBASEORB_EXPORT std::string hostOfTransportAddress(const std::string& address);

} // namespace ZelkoCommon
