#pragma once

/// State of a value. Clients read it; nothing but the deletion of a value enforces it.
enum class TValueState : int {
    Open = 0,    ///< open for changes; a server value in this state counts as reachable
    Deleted = 1, ///< the value is gone, or is going: observers are told while it still exists
    Locked = 2   ///< locked against changes by users
};
