#include <valuecore/tree.h>

#include <valuecore/ideletesubject.h>
#include <valuecore/itreelistener.h>
#include <valuecore/node.h>

#include <QHash>

#include <algorithm>
#include <unordered_map>

namespace {

const QLatin1Char separator('/');

QString normalized(const QString& path)
{
    QString result = path;
    while (result.endsWith(separator)) {
        result.chop(1);
    }
    if (!result.isEmpty() && !result.startsWith(separator)) {
        result.prepend(separator);
    }
    return result;
}

bool isName(const QString& name)
{
    return !name.isEmpty() && !name.contains(separator);
}

} // namespace

struct Tree::Private
{
    explicit Private(Tree* owner);

    TreeItem* find(const QString& path) const;
    TreeItem* insert(Node& parent, std::unique_ptr<TreeItem> item);
    Node* nodeAt(const QString& path);
    void removeChildren(const QString& path);
    void detach(TreeItem& item);

    Tree* owner;
    std::unordered_map<QString, std::unique_ptr<TreeItem>> items; // by normalized path; the root under an empty one
    Node* root = nullptr;
    ITreeListener* listener = nullptr;
};

Tree::Private::Private(Tree* tree)
    : owner(tree)
{
    auto top = std::make_unique<Node>(QString());
    root = top.get();
    root->m_tree = tree;
    items.emplace(QString(), std::move(top));
}

TreeItem* Tree::Private::find(const QString& path) const
{
    const auto found = items.find(path);
    return found == items.end() ? nullptr : found->second.get();
}

TreeItem* Tree::Private::insert(Node& parent, std::unique_ptr<TreeItem> item)
{
    const QString path = parent.m_path + separator + item->m_name;
    if (parent.m_leaving || path.size() > MaximumPathLength) {
        return nullptr;
    }
    const auto [place, inserted] = items.try_emplace(path, nullptr);
    if (!inserted) {
        return nullptr;
    }
    TreeItem* const result = item.get();
    result->m_path = path;
    result->m_tree = owner;
    result->m_parent = &parent;
    place->second = std::move(item);
    parent.m_children.push_back(result);
    const auto alive = result->lifeline();
    if (listener) {
        listener->ItemInserted(*result);
    }
    parent.NotifyObservers(TChangeCode::ChildAdded, nullptr);
    return alive.expired() ? nullptr : result; // an observer may have removed it again
}

Node* Tree::Private::nodeAt(const QString& path)
{
    if (TreeItem* const item = find(path)) {
        return dynamic_cast<Node*>(item);
    }
    const qsizetype cut = path.lastIndexOf(separator);
    Node* const parent = nodeAt(path.left(cut));
    return parent ? static_cast<Node*>(insert(*parent, std::make_unique<Node>(path.mid(cut + 1)))) : nullptr;
}

// Observers may take items away themselves, so the children are looked at anew for each of them.
void Tree::Private::removeChildren(const QString& path)
{
    for (;;) {
        const auto* const node = dynamic_cast<Node*>(find(path));
        if (!node || node->m_children.empty()) {
            return;
        }
        owner->Remove(node->m_children.back()->m_path);
    }
}

void Tree::Private::detach(TreeItem& item)
{
    const QString path = item.m_path;
    Node* const parent = item.m_parent;
    auto& siblings = parent->m_children;
    siblings.erase(std::find(siblings.rbegin(), siblings.rend(), &item).base() - 1);
    const auto place = items.find(path);
    const std::weak_ptr<void> parentAlive = parent->lifeline();
    std::unique_ptr<TreeItem> last = std::move(place->second);
    items.erase(place);
    last.reset(); // handles on the item are null when the parent's observers look at them
    if (parentAlive.expired()) {
        return;
    }
    parent->NotifyObservers(TChangeCode::ChildRemoved, nullptr);
}

Tree::Tree()
    : d(std::make_unique<Private>(this))
{}

Tree::~Tree()
{
    d->listener = nullptr;
    d->root->m_leaving = true;
    while (!d->root->m_children.empty()) {
        Remove(d->root->m_children.back()->m_path);
    }
}

Tree* Tree::Instance()
{
    static Tree tree;
    return &tree;
}

TreeItem* Tree::GetItem(const QString& path) const
{
    return d->find(normalized(path));
}

TreeItem* Tree::Insert(const QString& parentPath, std::unique_ptr<TreeItem> item)
{
    if (!item || item->m_tree || !isName(item->m_name)) {
        return nullptr;
    }
    Node* const parent = CreateOrGetNode(parentPath);
    return parent ? d->insert(*parent, std::move(item)) : nullptr;
}

Node* Tree::CreateOrGetNode(const QString& path)
{
    const QString wanted = normalized(path);
    if (wanted.size() > MaximumPathLength || wanted.contains(QLatin1String("//"))) {
        return nullptr;
    }
    return d->nodeAt(wanted);
}

bool Tree::Remove(const QString& path)
{
    const QString wanted = normalized(path);
    TreeItem* item = d->find(wanted);
    if (!item || item == d->root) {
        return false;
    }
    const auto alive = item->lifeline();
    item->m_leaving = true;
    d->removeChildren(wanted);
    if (!alive.expired()) {
        if (auto* const subject = dynamic_cast<IDeleteSubject*>(item)) {
            subject->AnnounceDeletion();
        }
    }
    if (!alive.expired() && d->listener) {
        d->listener->ItemRemoving(*item);
    }
    if (!alive.expired()) {
        d->detach(*item);
    }
    return true;
}

void Tree::SetListener(ITreeListener* listener)
{
    d->listener = listener;
}

Node* Tree::GetRoot() const
{
    return d->root;
}
