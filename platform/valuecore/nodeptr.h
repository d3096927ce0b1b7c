#pragma once

#include <valuecore/tree.h>
#include <valuecore/valuecore_export.h>

#include <memory>

class IObserver;
class Node;

/// Handle on a node of the tree. Null until the node is found, and null again once the node is gone.
class VALUECORE_EXPORT NodePtr
{
public:
    NodePtr();
    virtual ~NodePtr();

    /// Looks the node up; false, and a null handle, when there is none.
    bool GetFromTree(const QString& path, Tree* tree = Tree::Instance());

    /// Looks the node up and creates it when it is missing; false only when a value is in the way.
    bool CreateOrGetNode(const QString& path, Tree* tree = Tree::Instance());

    virtual void Reset();

    Node* get() const { return m_lifeline.expired() ? nullptr : m_node; }
    Node* operator->() const { return get(); }
    explicit operator bool() const { return get() != nullptr; }

protected:
    virtual void Set(Node* node);

private:
    Node* m_node = nullptr;
    std::weak_ptr<void> m_lifeline;
};

/// Handle on a node that keeps a client subscribed to it: the client hears of added and removed children. As with
/// values, a client holds one such handle per node.
class VALUECORE_EXPORT NodeObservingPtr final : public NodePtr
{
public:
    /// `client` is not owned and outlives the handle.
    explicit NodeObservingPtr(IObserver* client);
    ~NodeObservingPtr() override;
    NodeObservingPtr(const NodeObservingPtr&) = delete;
    NodeObservingPtr& operator=(const NodeObservingPtr&) = delete;

    void Reset() override;

protected:
    void Set(Node* node) override;

private:
    void detach();

    IObserver* const m_client;
};
