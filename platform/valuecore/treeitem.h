#pragma once

#include <valuecore/valuecore_export.h>

#include <QString>

#include <memory>

class Node;
class Tree;

/// What can stand in the tree: a node or a value. The tree owns its items; everybody else holds handles (ValuePtr,
/// NodePtr), which turn null when the item goes.
class VALUECORE_EXPORT TreeItem
{
public:
    virtual ~TreeItem();

    const QString& GetName() const { return m_name; }

    /// Names the item. Only before it is put into a tree: the place of an item there does not change.
    void SetName(const QString& name);

    /// Full path, from "/" on; just the name for an item that stands in no tree.
    QString GetPathName() const;

    /// The tree that the item stands in, or null.
    Tree* GetTree() const { return m_tree; }

    /// The node that holds this item, or null for a root and outside of a tree.
    Node* GetParent() const { return m_parent; }

    /// The node at `relativePath` below this item; an empty path asks for the item itself. Null when there is none or
    /// when what stands there is a value.
    Node* GetNode(const QString& relativePath);

    /// Something that expires when the item dies.
    std::weak_ptr<void> lifeline() const;

protected:
    explicit TreeItem(const QString& name);
    TreeItem(const TreeItem& other);
    TreeItem& operator=(const TreeItem&);

private:
    friend class Tree;

    QString m_name;
    QString m_path;
    bool m_leaving = false; // nothing can be put below it any more
    Tree* m_tree = nullptr;
    Node* m_parent = nullptr;
    mutable std::shared_ptr<void> m_lifeline;
};
