#pragma once

#include <QString>

namespace ZelkoConsole {

/// How far the way to the recorder server of a sub system is.
enum class LinkState {
    Starting,    ///< the console's own recorder is being started
    Connecting,  ///< nothing is known yet
    Connected,   ///< everything that the server has stands on the tree
    Unreachable, ///< the last attempt failed; the next one follows by itself
    Denied,      ///< the server is there and does not admit the user
    Unusable     ///< nothing is tried: what this machine needs for it cannot be used
};

/// State of a sub system for people.
struct SubSystemStatus
{
    LinkState state = LinkState::Connecting;
    /// Why it is `Unreachable`, `Denied` or `Unusable`, without a full stop; may be empty.
    QString reason;

    bool isConnected() const { return state == LinkState::Connected; }
    bool operator==(const SubSystemStatus&) const = default;
};

/// One or two words: "connected".
QString shortText(const SubSystemStatus& status);

/// A sentence that names the sub system: "Connecting to north…".
QString longText(const QString& subSystem, const SubSystemStatus& status);

} // namespace ZelkoConsole
