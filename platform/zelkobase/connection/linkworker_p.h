#pragma once

#include <credentials/role.h>
#include <zelkobase/connection/framequeue.h>
#include <zelkobase/connection/linkoptions.h>
#include <zelkobase/connection/linkqueue.h>
#include <zelkobase/connection/zelkoconfiguration.h>

#include <zelkoidl/treelink.hh>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_set>

namespace ZelkoCommon {

class Orb;

/// The thread of a link that makes its calls to the server: attaches, writes, asks whether the server still lives, and
/// begins again when it does not. What it learns goes into the queue.
class LinkWorker
{
public:
    LinkWorker(Orb& orb, const ZelkoConfiguration::SubSystem& subSystem, const LinkOptions& options,
               std::shared_ptr<LinkQueue> queue);

    /// Does what `stop` does, and waits for the thread: for a call that is under way, and for the one that detaches.
    ~LinkWorker();

    /// Has the thread send what waits, as far as it gets in the time of a call, detach and end. Does not wait for it.
    void stop();

    /// Sends a frame to the server, in order, as soon as it can. Dropped when there is no connection. Not taken when it
    /// is too large or too much waits: then the text says so, which is empty otherwise.
    QString write(const std::string& frame);

    /// Has the server send a value as it is, behind what was written so far.
    void askFor(std::uint32_t handle);

    /// For whom the client acts from now on: what waits is sent, then a connection for the new user follows at once.
    /// What is written before that is dropped. False, and nothing of that, for the user who it is already. Any thread.
    bool setCredentials(const LinkCredentials& credentials);

    /// What the server of the last connection takes the user for; nothing where that was for another user. Any thread.
    std::optional<Role> role();

    /// Whether the server did not admit the user at the last attempt; false where that was for another user. Any
    /// thread.
    bool isDenied();

    /// Gives the present connection up, because of `reason`, and begins again.
    void drop(const std::string& reason);

private:
    struct Connection;

    void run();
    std::optional<Connection> attach();
    void serve(const Connection& connection);
    bool deliver(const Connection& connection, const std::string& batch);
    bool send(const Connection& connection, const std::string& batch);
    bool waitToRepeat();
    bool mustEnd() const;
    bool isStopping();
    void detach(const Connection& connection);
    void deactivate(const Connection& connection);
    std::optional<std::string> nextWrite();
    bool hasOutgoing() const;
    bool waitForRetry(std::chrono::milliseconds time);
    void forgetOutgoing();
    LinkCredentials takeCredentials();
    void enter(Connection& connection);
    void noteRole(Role role);
    void noteDenial(bool isDenied);
    std::string explain(const CORBA::Exception& exception) const;

    Orb& m_orb;
    const ZelkoConfiguration::SubSystem m_subSystem;
    const LinkOptions m_options;
    const std::shared_ptr<LinkQueue> m_queue;

    std::mutex m_mutex;
    std::condition_variable m_somethingToDo;
    FrameQueue m_outgoing;
    std::unordered_set<std::uint32_t> m_questions; // handles that are asked for when all that waits is sent
    std::string m_dropReason;                      // not empty: give the connection up
    LinkCredentials m_credentials;
    std::optional<Role> m_role; // none when the user has changed since
    bool m_denied = false;      // at the last attempt; not when the user has changed since
    bool m_userChanges = false; // the present connection, or attempt to make one, is for another user
    bool m_serving = false;
    bool m_stopping = false;
    std::chrono::steady_clock::time_point m_lastWrite; // when it is stopping, no write begins behind this time

    std::thread m_thread; // last: it uses all of the above
};

} // namespace ZelkoCommon
