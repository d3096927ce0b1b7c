#include <recorder/link/linksession.h>

#include <valuecore/valuebase.h>

#include <algorithm>
#include <utility>

namespace ZelkoRecorder {

namespace {

// Large enough that a call costs little beside its bytes, small enough that it stays in the caches of the client, which
// has it three times: as it came from the socket, in its queue, and as what it applies.
constexpr std::size_t batchBytes = 128 * 1024;

} // namespace

LinkSession::LinkSession(LinkedTree& tree, std::unique_ptr<LinkSender> sender, const LinkUser& user,
                         std::size_t maxBacklogBytes, std::function<void()> wantsPump)
    : m_tree(tree)
    , m_sender(std::move(sender))
    , m_user(user)
    , m_wantsPump(std::move(wantsPump))
    , m_backlog(maxBacklogBytes, batchBytes)
{
    m_tree.add(this);
    m_wantsPump();
}

LinkSession::~LinkSession()
{
    m_tree.remove(this);
}

void LinkSession::pump()
{
    while (m_sender && m_sender->hasRoom()) {
        refill();
        if (m_backlog.isEmpty()) {
            return;
        }
        m_sender->send(m_backlog.takeBatch());
    }
}

// The state is made as the client takes it, so that it never stands in memory as a whole. It begins with little at a
// time: the client has something to do while the next is made.
void LinkSession::refill()
{
    if (std::exchange(m_stateWanted, false)) {
        m_walk = std::make_unique<StateWalk>(m_tree);
        m_refillBytes = statePieceBytes;
    }
    const std::size_t wanted = m_refillBytes;
    m_refillBytes = std::min(2 * wanted, batchBytes);
    while (m_walk && m_backlog.bytes() < wanted) {
        if (const auto frame = m_walk->next(statePieceBytes)) {
            m_backlog.appendState(frame);
        } else {
            m_walk.reset();
        }
    }
}

// A map can be too large to wait as a whole: it comes with a fresh state, of which there is one however often it is
// asked for.
void LinkSession::correct(std::uint32_t handle)
{
    ValueBase* const value = m_tree.value(handle);
    if (!value || m_stateWanted) {
        return;
    }
    if (value->ChangeLogCapacity() > 0) {
        startOver();
        m_wantsPump();
        return;
    }
    std::string state;
    value->AddObjectStateStringForTransmission(state, 0);
    frameCreated(makeFrame(ZelkoCommon::link::FrameType::Commands, handle, state));
}

// A change from before the state has begun is part of the state.
void LinkSession::frameCreated(const LinkBacklog::SharedFrame& frame)
{
    if (!m_stateWanted) {
        append(frame);
        m_wantsPump();
    }
}

std::unique_ptr<LinkSender> LinkSession::releaseSender()
{
    m_sender->stop();
    return std::move(m_sender);
}

void LinkSession::append(const LinkBacklog::SharedFrame& frame)
{
    if (!m_backlog.append(frame)) {
        startOver();
        ++m_restarts;
    }
}

void LinkSession::startOver()
{
    m_walk.reset();
    m_stateWanted = true;
}

} // namespace ZelkoRecorder
