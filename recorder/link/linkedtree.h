#pragma once

#include <recorder/link/linkbacklog.h>

#include <observerbase/iobserver.h>
#include <valuecore/icommandtransmitter.h>
#include <valuecore/itreelistener.h>
#include <zelkobase/connection/linkframe.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class Tree;
class TreeItem;
class ValueBase;

namespace ZelkoRecorder {

/// A state that is larger travels in frames of about this size.
inline constexpr std::size_t statePieceBytes = 32 * 1024;

/// Hears what the server's tree tells its clients. A session is one; it is also the origin of what its client writes.
class ILinkSubscriber : public IObserver
{
public:
    virtual void frameCreated(const LinkBacklog::SharedFrame& frame) = 0;
    void Update(Observable*, TChangeCode) override {}
};

/// A whole tree as its clients see it: gives each item a handle, and turns each change into a frame once for all of
/// them.
class LinkedTree final : public ITreeListener, public ICommandTransmitter
{
public:
    /// `tree` outlives this object, which binds every value in it.
    explicit LinkedTree(Tree& tree);
    ~LinkedTree() override;

    /// From here on `subscriber` gets a frame for each change that it did not make itself.
    void add(ILinkSubscriber* subscriber);
    void remove(ILinkSubscriber* subscriber);

    /// The item of a handle; null for a handle that is none, or no longer.
    TreeItem* item(std::uint32_t handle) const;
    ValueBase* value(std::uint32_t handle) const;

    /// Handles of all items, parents and elder siblings first.
    std::vector<std::uint32_t> handles() const;

    LinkBacklog::SharedFrame announcement(std::uint32_t handle) const;

    // ITreeListener, ICommandTransmitter
    void ItemInserted(TreeItem& item) override;
    void ItemRemoving(TreeItem& item) override;
    void Transmit(ValueBase& value, const Command& command, IObserver* origin) override;

private:
    std::uint32_t enter(TreeItem& item);
    void enterAllBelow(TreeItem& item);
    void tellState(std::uint32_t handle, ValueBase& value);
    void tell(const LinkBacklog::SharedFrame& frame, const IObserver* origin);

    Tree& m_tree;
    std::uint32_t m_lastHandle = 0;
    std::map<std::uint32_t, TreeItem*> m_items;
    std::unordered_map<const TreeItem*, std::uint32_t> m_handles;
    std::vector<ILinkSubscriber*> m_subscribers;
};

/// A frame that is made once and shared.
LinkBacklog::SharedFrame makeFrame(ZelkoCommon::link::FrameType type, std::uint32_t handle,
                                   std::string_view payload = {});

} // namespace ZelkoRecorder
