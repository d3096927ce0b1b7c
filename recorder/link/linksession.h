#pragma once

#include <recorder/link/linkbacklog.h>
#include <recorder/link/linkedtree.h>
#include <recorder/link/linksender.h>
#include <recorder/link/linkuser.h>
#include <recorder/link/statewalk.h>
#include <recorder/link/writestream.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace ZelkoRecorder {

/// One client of the tree link, on the thread of the tree.
///
/// A client that keeps up gets each change. For one that does not, what waits is bounded: it is dropped when it grows
/// too large, and the client gets the whole state afresh once it takes something again.
class LinkSession final : public ILinkSubscriber
{
public:
    /// `wantsPump` is called when there is something to hand over.
    LinkSession(LinkedTree& tree, std::unique_ptr<LinkSender> sender, const LinkUser& user, std::size_t maxBacklogBytes,
                std::function<void()> wantsPump);
    ~LinkSession() override;

    const LinkUser& user() const { return m_user; }

    /// Hands over as much as the sender has room for. Called when the sender reports room, and soon after `wantsPump`.
    void pump();

    /// Sends a value as it is: the client holds another content that was refused. A map is sent with a fresh state of
    /// the whole tree.
    void correct(std::uint32_t handle);

    /// What the client writes.
    WriteStream& writes() { return m_writes; }

    /// How often what waited was dropped so far.
    int restarts() const { return m_restarts; }

    /// Bytes that wait for the client.
    std::size_t backlogBytes() const { return m_backlog.bytes(); }

    void frameCreated(const LinkBacklog::SharedFrame& frame) override;

    /// Gives the sender away, stopped, to somebody who can wait for its thread.
    std::unique_ptr<LinkSender> releaseSender();

private:
    void refill();
    void append(const LinkBacklog::SharedFrame& frame);
    void startOver();

    LinkedTree& m_tree;
    std::unique_ptr<LinkSender> m_sender;
    const LinkUser m_user;
    const std::function<void()> m_wantsPump;
    WriteStream m_writes;
    LinkBacklog m_backlog;
    std::size_t m_refillBytes = statePieceBytes;
    std::unique_ptr<StateWalk> m_walk;
    bool m_stateWanted = true;
    int m_restarts = 0;
};

} // namespace ZelkoRecorder
