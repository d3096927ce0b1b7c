#include <recorder/link/linkedtree.h>

#include <valuecore/iobjectstatecursor.h>
#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <valuecore/valuebase.h>

#include <algorithm>

namespace ZelkoRecorder {

using ZelkoCommon::link::FrameType;

LinkBacklog::SharedFrame makeFrame(FrameType type, std::uint32_t handle, std::string_view payload)
{
    std::string frame;
    frame.reserve(ZelkoCommon::link::frameHeaderSize + payload.size());
    ZelkoCommon::link::appendFrame(frame, type, handle, payload);
    return std::make_shared<const std::string>(std::move(frame));
}

LinkedTree::LinkedTree(Tree& tree)
    : m_tree(tree)
{
    enterAllBelow(*tree.GetRoot());
    m_tree.SetListener(this);
}

LinkedTree::~LinkedTree()
{
    m_tree.SetListener(nullptr);
    for (const auto& [handle, item] : m_items) {
        if (auto* const bound = dynamic_cast<ValueBase*>(item)) {
            bound->SetTransmitter(nullptr);
        }
    }
}

void LinkedTree::add(ILinkSubscriber* subscriber)
{
    m_subscribers.push_back(subscriber);
}

void LinkedTree::remove(ILinkSubscriber* subscriber)
{
    std::erase(m_subscribers, subscriber);
}

TreeItem* LinkedTree::item(std::uint32_t handle) const
{
    const auto found = m_items.find(handle);
    return found == m_items.end() ? nullptr : found->second;
}

ValueBase* LinkedTree::value(std::uint32_t handle) const
{
    return dynamic_cast<ValueBase*>(item(handle));
}

std::vector<std::uint32_t> LinkedTree::handles() const
{
    std::vector<std::uint32_t> result;
    result.reserve(m_items.size());
    for (const auto& [handle, item] : m_items) {
        result.push_back(handle);
    }
    return result;
}

LinkBacklog::SharedFrame LinkedTree::announcement(std::uint32_t handle) const
{
    const TreeItem* const announced = item(handle);
    const auto* const asValue = dynamic_cast<const ValueBase*>(announced);
    std::string frame;
    ZelkoCommon::link::appendAnnouncement(frame, handle,
                                          {announced->GetPathName(), asValue ? asValue->GetTypeName() : std::string()});
    return std::make_shared<const std::string>(std::move(frame));
}

// Whoever put the value into the tree may have filled it before, so its state is told in pieces as well.
void LinkedTree::ItemInserted(TreeItem& inserted)
{
    const std::uint32_t handle = enter(inserted);
    tell(announcement(handle), nullptr);
    if (auto* const asValue = dynamic_cast<ValueBase*>(&inserted)) {
        tellState(handle, *asValue);
    }
}

void LinkedTree::tellState(std::uint32_t handle, ValueBase& value)
{
    if (m_subscribers.empty()) {
        return;
    }
    const auto cursor = value.OpenObjectState();
    bool more = true;
    while (more) {
        std::string piece;
        more = cursor->AppendNext(piece, statePieceBytes);
        tell(makeFrame(FrameType::Commands, handle, piece), nullptr);
    }
}

void LinkedTree::ItemRemoving(TreeItem& removed)
{
    const auto found = m_handles.find(&removed);
    if (found == m_handles.end()) {
        return;
    }
    const std::uint32_t handle = found->second;
    m_handles.erase(found);
    m_items.erase(handle);
    tell(makeFrame(FrameType::Withdraw, handle), nullptr);
}

void LinkedTree::Transmit(ValueBase& value, const Command& command, IObserver* origin)
{
    const auto found = m_handles.find(&value);
    if (found == m_handles.end() || m_subscribers.empty()) {
        return;
    }
    std::string bytes;
    command.AddCommandString(bytes);
    tell(makeFrame(FrameType::Commands, found->second, bytes), origin);
}

std::uint32_t LinkedTree::enter(TreeItem& entered)
{
    const std::uint32_t handle = ++m_lastHandle;
    m_items.emplace(handle, &entered);
    m_handles.emplace(&entered, handle);
    if (auto* const asValue = dynamic_cast<ValueBase*>(&entered)) {
        asValue->SetTransmitter(this);
    }
    return handle;
}

void LinkedTree::enterAllBelow(TreeItem& top)
{
    if (const auto* const node = dynamic_cast<const Node*>(&top)) {
        for (TreeItem* const child : node->GetTreeItems()) {
            enter(*child);
            enterAllBelow(*child);
        }
    }
}

void LinkedTree::tell(const LinkBacklog::SharedFrame& frame, const IObserver* origin)
{
    for (ILinkSubscriber* const subscriber : m_subscribers) {
        if (subscriber != origin) {
            subscriber->frameCreated(frame);
        }
    }
}

} // namespace ZelkoRecorder
