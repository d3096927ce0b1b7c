#pragma once

#include <valuecore/treeitem.h>
#include <valuecore/valuecore_export.h>

#include <QString>

#include <memory>

class ITreeListener;
class Node;

/// A hierarchy of typed values, addressed by paths such as "/SubSystems/north/ZELKO/Device/A1/Records/Map".
///
/// A process may have several. A client's is `Instance()`; a server owns one of its own. A tree belongs to the thread
/// that made it and takes no lock. A path begins with "/" and has no empty pieces; a missing first "/" and a last one
/// too many are overlooked. Paths may come from a peer, so their length is limited.
class VALUECORE_EXPORT Tree
{
public:
    /// The longest path of an item, in UTF-16 code units; a longer one is refused.
    static constexpr qsizetype MaximumPathLength = 4096;

    Tree();
    ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    /// The client's tree, which lives as long as the process.
    static Tree* Instance();

    /// The item at `path`, or null when nothing stands there. A hash look-up, whatever the depth.
    TreeItem* GetItem(const QString& path) const;

    /// The item at `path` if there is one and it is a T, otherwise null.
    template <typename T>
    T* Find(const QString& path) const
    {
        return dynamic_cast<T*>(GetItem(path));
    }

    /// Puts `item` below `parentPath` and creates the nodes that are missing on the way. Returns the item, or null (and
    /// the item is destroyed) when its name is empty or has a "/", when something stands there already, when a value is
    /// in the way, when the path gets too long, or when the place is being removed. A refused name creates no nodes.
    TreeItem* Insert(const QString& parentPath, std::unique_ptr<TreeItem> item);

    /// `Insert` for an item whose type is known.
    template <typename T>
    T* Emplace(const QString& parentPath, std::unique_ptr<T> item)
    {
        return static_cast<T*>(Insert(parentPath, std::unique_ptr<TreeItem>(std::move(item))));
    }

    /// The node at `path`, created with those above it when it is missing; null when a value is in the way.
    Node* CreateOrGetNode(const QString& path);

    /// Removes what stands at `path` with everything below it, the deepest first. Of each item, first its observers
    /// hear of the deletion while it still exists, then it is destroyed, then the observers of its parent are told.
    /// False when nothing stands there, and for the root.
    bool Remove(const QString& path);

    /// One listener, not owned; null takes it away. It hears of what comes and goes from here on.
    void SetListener(ITreeListener* listener);

    /// The top of the tree, which has an empty name and no parent.
    Node* GetRoot() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
