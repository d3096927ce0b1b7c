#pragma once

#include <recorder/link/linkbacklog.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class IObjectStateCursor;

namespace ZelkoRecorder {
class LinkedTree;

/// Gives the state of a whole tree, frame by frame, while the tree goes on changing. Who gets all its frames, and those
/// of the changes since it began, in the order in which they were made, has the tree as it is.
///
/// The order serves a client that shows progress: all items are announced, then the plain values come, then Ready, then
/// the maps. A plain value that stands behind a map in the same node comes behind the content of that map, so that it
/// can say that the map is complete.
class StateWalk
{
public:
    /// `tree` outlives the walk.
    explicit StateWalk(const LinkedTree& tree);
    ~StateWalk();

    /// The next frame, large states in pieces of about `bytes`; null when there is none left.
    LinkBacklog::SharedFrame next(std::size_t bytes);

private:
    LinkBacklog::SharedFrame nextOfState(std::size_t bytes);
    void openState(std::uint32_t handle);
    void sortHandles();

    const LinkedTree& m_tree;
    std::vector<std::uint32_t> m_toAnnounce;
    std::vector<std::uint32_t> m_beforeReady;
    std::vector<std::uint32_t> m_afterReady;
    std::size_t m_position = 0; // over the three lists, with StateBegin, Ready and StateEnd in between
    std::uint32_t m_openHandle = 0;
    std::weak_ptr<void> m_openValue;
    std::unique_ptr<IObjectStateCursor> m_cursor;
};

} // namespace ZelkoRecorder
