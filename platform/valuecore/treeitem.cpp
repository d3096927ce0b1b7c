#include <valuecore/treeitem.h>

#include <valuecore/node.h>
#include <valuecore/tree.h>

TreeItem::TreeItem(const QString& name)
    : m_name(name)
{}

// A copy stands in no tree and no handle points to it.
TreeItem::TreeItem(const TreeItem& other)
    : m_name(other.m_name)
{}

// An item keeps its name and its place when it takes over the content of another.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
TreeItem& TreeItem::operator=(const TreeItem&)
{
    return *this;
}

TreeItem::~TreeItem() = default;

void TreeItem::SetName(const QString& name)
{
    if (!m_tree) {
        m_name = name;
    }
}

QString TreeItem::GetPathName() const
{
    return m_tree ? m_path : m_name;
}

Node* TreeItem::GetNode(const QString& relativePath)
{
    if (relativePath.isEmpty()) {
        return dynamic_cast<Node*>(this);
    }
    return m_tree ? dynamic_cast<Node*>(m_tree->GetItem(m_path + QLatin1Char('/') + relativePath)) : nullptr;
}

std::weak_ptr<void> TreeItem::lifeline() const
{
    if (!m_lifeline) {
        m_lifeline = std::make_shared<char>();
    }
    return m_lifeline;
}
