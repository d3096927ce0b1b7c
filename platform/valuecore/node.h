#pragma once

#include <observerbase/observable.h>
#include <valuecore/treeitem.h>

#include <vector>

/// Inner node of the tree. Its observers hear of added (ChildAdded) and removed (ChildRemoved) children, after the
/// fact.
class VALUECORE_EXPORT Node : public TreeItem, public Observable
{
public:
    explicit Node(const QString& name);
    ~Node() override;

    /// The children in the order in which they came.
    const std::vector<TreeItem*>& GetTreeItems() const { return m_children; }

private:
    friend class Tree;

    std::vector<TreeItem*> m_children;
};
