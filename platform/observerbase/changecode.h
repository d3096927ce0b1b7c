#pragma once

/// What kind of change a notification reports. An observer acts on the codes it knows and ignores every other number,
/// so that a newer peer may send codes of its own.
enum class TChangeCode : int {
    StateChanged = 2,   ///< the state of a value changed; state Deleted then means that the value is about to go
    ValueChanged = 3,   ///< the content of a value changed
    ChildAdded = 16,    ///< a node got a child
    ChildRemoved = 18,  ///< a node lost a child
    ValueRefreshed = 23 ///< the content of a value was confirmed or replaced from outside without a user's doing
};
