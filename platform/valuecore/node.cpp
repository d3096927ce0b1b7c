#include <valuecore/node.h>

Node::Node(const QString& name)
    : TreeItem(name)
{}

Node::~Node() = default;
