#include <valuecore/nodeptr.h>

#include <valuecore/node.h>

NodePtr::NodePtr() = default;

NodePtr::~NodePtr() = default;

bool NodePtr::GetFromTree(const QString& path, Tree* tree)
{
    Set(tree->Find<Node>(path));
    return get() != nullptr;
}

bool NodePtr::CreateOrGetNode(const QString& path, Tree* tree)
{
    Set(tree->CreateOrGetNode(path));
    return get() != nullptr;
}

void NodePtr::Reset()
{
    Set(nullptr);
}

void NodePtr::Set(Node* node)
{
    m_node = node;
    m_lifeline = node ? node->lifeline() : std::weak_ptr<void>();
}

NodeObservingPtr::NodeObservingPtr(IObserver* client)
    : m_client(client)
{}

NodeObservingPtr::~NodeObservingPtr()
{
    detach();
}

void NodeObservingPtr::Reset()
{
    Set(nullptr);
}

void NodeObservingPtr::Set(Node* node)
{
    if (node == get()) {
        return;
    }
    detach();
    NodePtr::Set(node);
    if (node) {
        node->AddObserver(m_client);
    }
}

void NodeObservingPtr::detach()
{
    if (Node* const node = get()) {
        node->DeleteObserver(m_client);
    }
}
