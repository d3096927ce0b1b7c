#pragma once

class TreeItem;

/// Hears of every item that comes into a tree or leaves it, before the observers of its parent do. For whoever keeps a
/// copy of a whole tree in step. It must not change the tree from within.
class ITreeListener
{
public:
    virtual ~ITreeListener() = default;

    /// `item` stands in the tree.
    virtual void ItemInserted(TreeItem& item) = 0;

    /// `item` is about to leave and still stands where it stood; its own children have left already.
    virtual void ItemRemoving(TreeItem& item) = 0;
};
