#pragma once

#include <recorder/link/linkuser.h>

#include <QObject>
#include <QString>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class Tree;
class ValueBase;

namespace ZelkoCommon {
class Orb;
}

namespace ZelkoRecorder {

/// Bounds of the server's side of the tree link.
struct TreeLinkServerOptions
{
    /// More clients than this are refused.
    int maxSessions = 32;

    /// And more than this from one address, so that one host does not keep all others out.
    int maxSessionsPerPeer = 16;

    /// What may wait for one client. When there is more it is dropped, and the client gets the whole state afresh.
    std::size_t maxBacklogBytes = 8 * 1024 * 1024;

    /// A client that does not take a batch in this time is dropped.
    std::chrono::milliseconds deliverTimeout{20000};

    /// A client of which nothing was heard for this time is dropped.
    std::chrono::milliseconds maxSilence{30000};

    /// For how long a client's write may wait for the thread of the tree; after that it is refused as busy, and not
    /// done.
    std::chrono::milliseconds writeTimeout{4000};

    /// What of one client may wait for the thread of the tree. More is refused until the thread has come to it.
    std::size_t maxWaitingWriteBytes = 8 * 1024 * 1024;
};

/// Serves a tree to the clients of a tree link, under the object key of the link.
///
/// Lives on the thread of the tree. What clients send is served by threads of the ORB, which pass it on and wait for
/// the verdict.
class TreeLinkServer : public QObject
{
    Q_OBJECT

public:
    /// Whether a user at the address `host` may attach, and what he is; an empty user is nobody in particular. Called
    /// on threads of the ORB, on several at once; it may block.
    using Authenticate =
        std::function<LinkAdmission(const QString& user, const QString& password, const std::string& host)>;

    /// Whether a user may write a value. Called on the thread of the tree.
    using MayWrite = std::function<bool(const LinkUser& user, const ValueBase& value)>;

    /// Begins to serve. `orb` and `tree` outlive the server. Without `mayWrite` nobody writes anything; without
    /// `authenticate` everybody is a viewer, whatever he says.
    TreeLinkServer(ZelkoCommon::Orb& orb, Tree& tree, const TreeLinkServerOptions& options = {}, MayWrite mayWrite = {},
                   const Authenticate& authenticate = {}, QObject* parent = nullptr);

    /// Drops all clients, and calls to them that are under way. A client whose host swallows a connection that is being
    /// made is waited for, for the rest of `deliverTimeout`.
    ~TreeLinkServer() override;

    int sessionCount() const;

    /// Tells for whom the client of a session acts that calls from the address `host`; nothing for a number that is no
    /// session, or no longer, or one of a client at another address. What is given may be called on any thread, and
    /// outlive the server, which leaves no sessions.
    using UserOfSession = std::function<std::optional<LinkUser>(std::uint64_t session, const std::string& host)>;
    UserOfSession users() const;

    /// Bytes that wait for clients, all together.
    std::size_t backlogBytes() const;

    /// How often a client that was too slow was given the whole state afresh.
    int restartCount() const;

Q_SIGNALS:
    void sessionOpened(const QString& user);
    void sessionClosed(const QString& user, const QString& reason);

    /// A part of what a client wrote was not done; once for each batch.
    void writeRefused(const QString& user, const QString& reason);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoRecorder
