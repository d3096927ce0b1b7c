#include <recorder/link/statewalk.h>

#include <recorder/link/linkedtree.h>

#include <valuecore/iobjectstatecursor.h>
#include <valuecore/node.h>
#include <valuecore/valuebase.h>

#include <unordered_set>

namespace ZelkoRecorder {

using ZelkoCommon::link::FrameType;

namespace {

bool isLarge(const ValueBase& value)
{
    return value.ChangeLogCapacity() > 0;
}

} // namespace

StateWalk::StateWalk(const LinkedTree& tree)
    : m_tree(tree)
    , m_toAnnounce(tree.handles())
{
    sortHandles();
}

StateWalk::~StateWalk() = default;

void StateWalk::sortHandles()
{
    std::unordered_set<const Node*> nodesWithMap;
    for (const std::uint32_t handle : m_toAnnounce) {
        const ValueBase* const value = m_tree.value(handle);
        if (!value) {
            continue;
        }
        if (isLarge(*value)) {
            nodesWithMap.insert(value->GetParent());
        }
        const bool behindMap = nodesWithMap.count(value->GetParent()) > 0;
        (behindMap ? m_afterReady : m_beforeReady).push_back(handle);
    }
}

// Walks StateBegin, announcements, states before Ready, Ready, states after it, StateEnd. Items that went in the
// meantime are passed over: their withdrawal was told already.
LinkBacklog::SharedFrame StateWalk::next(std::size_t bytes)
{
    const std::size_t announceEnd = 1 + m_toAnnounce.size();
    const std::size_t readyAt = announceEnd + m_beforeReady.size();
    const std::size_t endAt = readyAt + 1 + m_afterReady.size();
    for (;;) {
        if (m_cursor) {
            if (auto frame = nextOfState(bytes)) {
                return frame;
            }
            continue;
        }
        const std::size_t at = m_position++;
        if (at == 0) {
            return makeFrame(FrameType::StateBegin, 0);
        }
        if (at < announceEnd) {
            if (const auto handle = m_toAnnounce[at - 1]; m_tree.item(handle)) {
                return m_tree.announcement(handle);
            }
        } else if (at < readyAt) {
            openState(m_beforeReady[at - announceEnd]);
        } else if (at == readyAt) {
            return makeFrame(FrameType::Ready, 0);
        } else if (at < endAt) {
            openState(m_afterReady[at - readyAt - 1]);
        } else if (at == endAt) {
            return makeFrame(FrameType::StateEnd, 0);
        } else {
            m_position = endAt + 1;
            return nullptr;
        }
    }
}

void StateWalk::openState(std::uint32_t handle)
{
    if (ValueBase* const value = m_tree.value(handle)) {
        m_openHandle = handle;
        m_openValue = value->lifeline();
        m_cursor = value->OpenObjectState();
    }
}

LinkBacklog::SharedFrame StateWalk::nextOfState(std::size_t bytes)
{
    if (m_openValue.expired()) {
        m_cursor.reset();
        return nullptr;
    }
    std::string frame;
    frame.reserve(bytes + bytes / 4);
    const std::size_t payload = ZelkoCommon::link::beginFrame(frame, FrameType::Commands, m_openHandle);
    if (!m_cursor->AppendNext(frame, bytes)) {
        m_cursor.reset();
    }
    if (frame.size() == payload) {
        return nullptr;
    }
    ZelkoCommon::link::endFrame(frame, payload);
    return std::make_shared<const std::string>(std::move(frame));
}

} // namespace ZelkoRecorder
