#pragma once

/// What a client says of its connections over the ORB.
namespace CorbaCommon {

/// The connection between the workstation and the recorder's channels. The numbers are the keys, and the positions, of
/// the value that carries it.
enum ccoConnectionStates : int {
    ccoNotConnected = 0,
    ccoConnecting = 1,
    ccoConnected = 2,
    ccoFailed = 3 ///< the text that stands beside it says why
};

} // namespace CorbaCommon
