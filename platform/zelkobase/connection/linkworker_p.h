#pragma once

#include <zelkobase/connection/linkoptions.h>
#include <zelkobase/connection/linkqueue.h>
#include <zelkobase/connection/zelkoconfiguration.h>

#include <zelkoidl/treelink.hh>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace ZelkoCommon {

class Orb;

/// The thread of a link that makes its calls to the server: attaches, writes, asks whether the server still lives, and
/// begins again when it does not. What it learns goes into the queue.
class LinkWorker
{
public:
    LinkWorker(Orb& orb, const ZelkoConfiguration::SubSystem& subSystem, const LinkOptions& options,
               std::shared_ptr<LinkQueue> queue);

    /// Detaches and ends the thread; waits for a call that is under way.
    ~LinkWorker();

    /// Sends a frame to the server, in order, as soon as it can. Dropped when there is no connection.
    void write(const std::string& frame);

    /// Gives the present connection up, because of `reason`, and begins again.
    void drop(const std::string& reason);

private:
    struct Connection;

    void run();
    std::optional<Connection> attach();
    void serve(const Connection& connection);
    void send(const Connection& connection, const std::string& frames);
    void detach(const Connection& connection);
    void deactivate(const Connection& connection);
    std::optional<std::string> nextWrite();
    void waitForRetry(std::chrono::milliseconds time);
    void forgetOutgoing();
    std::string explain(const CORBA::Exception& exception) const;

    Orb& m_orb;
    const ZelkoConfiguration::SubSystem m_subSystem;
    const LinkOptions m_options;
    const std::shared_ptr<LinkQueue> m_queue;

    std::mutex m_mutex;
    std::condition_variable m_somethingToDo;
    std::deque<std::string> m_outgoing; // frames; a call carries whole ones
    std::size_t m_outgoingBytes = 0;
    std::string m_dropReason; // not empty: give the connection up
    bool m_serving = false;
    bool m_stopping = false;

    std::thread m_thread; // last: it uses all of the above
};

} // namespace ZelkoCommon
