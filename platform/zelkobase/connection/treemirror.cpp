#include <zelkobase/connection/treemirror.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <valuecore/valuebase.h>
#include <valuecore/valuefactory.h>
#include <zelkobase/connection/linkframe.h>
#include <zelkoguibase/valueitemmap/detachedcontent.h>
#include <zelkoguibase/valueitemmap/itemmapcommands.h>

#include <algorithm>
#include <utility>

namespace ZelkoCommon {
namespace {

// A tree of a recorder has some hundred items; who announces more than this is not a recorder.
constexpr std::size_t maxItems = 100'000;

// Looking at the clock costs about as much as applying a small command.
constexpr int commandsPerLook = 8;

void traceWarning(const QString& text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(text, __FILE__, line);
    }
}

QString parentOf(const QString& path)
{
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

} // namespace

TreeMirror::TreeMirror(Tree* tree, const QString& rootPath, IObserver* origin, Callbacks callbacks)
    : m_tree(tree)
    , m_rootPath(rootPath)
    , m_origin(origin)
    , m_callbacks(std::move(callbacks))
{}

TreeMirror::~TreeMirror() = default;

void TreeMirror::append(std::string batch)
{
    m_batches.push_back(std::move(batch));
}

TreeMirror::Progress TreeMirror::apply(std::chrono::microseconds budget)
{
    const auto end = std::chrono::steady_clock::now() + budget;
    int steps = 0;
    while (!m_malformed) {
        if (m_commands.empty() && !nextFrame()) {
            break;
        }
        if (!m_commands.empty()) {
            m_malformed = !applyCommand();
        }
        if (++steps % commandsPerLook == 0 && std::chrono::steady_clock::now() >= end) {
            m_fold.end();
            return Progress::MoreToDo;
        }
    }
    m_fold.end();
    return m_malformed ? Progress::Malformed : Progress::Idle;
}

void TreeMirror::clear()
{
    m_batches.clear();
    m_bytes.clear();
    m_position = 0;
    m_commands = {};
    m_malformed = false;
    m_stale.clear();
    m_fold.end();
    auto items = std::exchange(m_items, {});
    m_handles.clear();
    // Before any node is removed, which takes all below it along.
    for (const auto& [handle, item] : items) {
        detachContent(item);
    }
    for (const auto& [handle, item] : items) {
        if (!item.alive.expired()) {
            m_tree->Remove(item.path);
        }
    }
    removeEmptyNodes();
}

bool TreeMirror::tidy(std::chrono::microseconds budget)
{
    const auto end = std::chrono::steady_clock::now() + budget;
    while (!m_detached.empty()) {
        if (m_detached.front()->destroySome(end)) {
            return true;
        }
        m_detached.pop_front();
    }
    return false;
}

std::uint32_t TreeMirror::handleOf(const ValueBase& value) const
{
    const auto found = m_handles.find(&value);
    if (found == m_handles.end()) {
        return 0;
    }
    // Of an item that somebody here took away the address may be another's by now.
    const auto item = m_items.find(found->second);
    return item == m_items.end() || item->second.alive.expired() ? 0 : found->second;
}

std::size_t TreeMirror::pendingBytes() const
{
    std::size_t bytes = m_bytes.size() - m_position;
    for (const std::string& batch : m_batches) {
        bytes += batch.size();
    }
    return bytes;
}

// Reads one frame and applies it, or makes its commands the ones being applied. False when there is no whole frame.
bool TreeMirror::nextFrame()
{
    link::Frame frame;
    for (;;) {
        std::string_view rest = std::string_view(m_bytes).substr(m_position);
        const link::ReadResult result = link::readFrame(rest, frame);
        if (result == link::ReadResult::Frame) {
            m_position = m_bytes.size() - rest.size();
            applyFrame(frame.type, frame.handle, frame.payload);
            return true;
        }
        m_malformed = result == link::ReadResult::Malformed;
        if (m_malformed || !takeNextBatch()) {
            return false;
        }
    }
}

// Puts the next batch behind the frame that has not come whole, if there is one.
bool TreeMirror::takeNextBatch()
{
    if (m_batches.empty()) {
        return false;
    }
    m_bytes.erase(0, m_position);
    m_position = 0;
    if (m_bytes.empty()) {
        m_bytes = std::move(m_batches.front());
    } else {
        m_bytes += m_batches.front();
    }
    m_batches.pop_front();
    return true;
}

void TreeMirror::applyFrame(link::FrameType type, std::uint32_t handle, std::string_view payload)
{
    if (type == link::FrameType::Commands) {
        beginCommands(handle, payload);
        return;
    }
    m_fold.end();
    if (type == link::FrameType::StateBegin) {
        beginState();
    } else if (type == link::FrameType::Announce) {
        m_malformed = !announce(handle, payload);
    } else if (type == link::FrameType::Ready) {
        finishAnnouncements();
    } else if (type == link::FrameType::Withdraw) {
        withdraw(handle);
    }
}

// Commands for an item that has gone, or that an observer here took away, are passed over.
void TreeMirror::beginCommands(std::uint32_t handle, std::string_view commands)
{
    const auto found = m_items.find(handle);
    m_value = found == m_items.end() || found->second.alive.expired() ? nullptr
                                                                      : dynamic_cast<ValueBase*>(found->second.item);
    if (m_value) {
        m_valueAlive = m_value->lifeline();
        m_commands = commands;
    }
}

bool TreeMirror::announce(std::uint32_t handle, std::string_view payload)
{
    link::Announcement what;
    if (handle == 0 || !link::readAnnouncement(payload, what)) {
        return false;
    }
    const QString path = m_rootPath + what.path;
    m_stale.erase(handle);
    if (const auto known = m_items.find(handle); known != m_items.end()) {
        if (known->second.path != path || known->second.typeName != what.typeName) {
            return false;
        }
        if (!known->second.alive.expired()) {
            return true;
        }
        withdraw(handle); // somebody here took it away; a fresh state brings it back
    }
    makeWay(path);
    create(handle, path, what.typeName);
    return m_items.size() <= maxItems;
}

// What went on the server and came again in its place has a new handle, and the old one was not withdrawn when the
// client was too slow to hear of it.
void TreeMirror::makeWay(const QString& path)
{
    const auto standing = m_handles.find(m_tree->GetItem(path));
    if (standing != m_handles.end() && m_stale.count(standing->second) > 0) {
        withdraw(standing->second);
    }
}

// A node may stand there already: somebody here may have asked for it, or a value below it came first. A value of a
// type that is not known here, or whose place is taken, is passed over: the rest of the tree is of use without it.
void TreeMirror::create(std::uint32_t handle, const QString& path, const std::string& typeName)
{
    TreeItem* const item = typeName.empty() ? m_tree->CreateOrGetNode(path) : insertValue(path, typeName);
    if (!item) {
        traceWarning(
            QStringLiteral("TreeMirror: no place for %1 of type \"%2\"").arg(path, QString::fromStdString(typeName)),
            __LINE__);
        return;
    }
    m_items[handle] = {item, item->lifeline(), path, typeName};
    m_handles[item] = handle;
    if (typeName.empty() && m_callbacks.nodeCreated) {
        m_callbacks.nodeCreated(path);
    }
}

TreeItem* TreeMirror::insertValue(const QString& path, const std::string& typeName)
{
    auto value = valuefactory::create(typeName);
    if (!value) {
        return nullptr;
    }
    const QString parent = parentOf(path);
    noteMissingNodes(parent);
    value->SetName(path.mid(parent.size() + 1));
    return m_tree->Insert(parent, std::move(value));
}

// The tree makes them for the value.
void TreeMirror::noteMissingNodes(const QString& path)
{
    if (path.size() > m_rootPath.size() && !m_tree->GetItem(path)) {
        noteMissingNodes(parentOf(path));
        m_unannounced.push_back(path);
    }
}

void TreeMirror::removeEmptyNodes()
{
    std::vector<QString> paths = std::exchange(m_unannounced, {});
    std::reverse(paths.begin(), paths.end()); // what stands below another came behind it
    for (const QString& path : paths) {
        const auto* const node = m_tree->Find<Node>(path);
        if (node && node->GetTreeItems().empty()) {
            m_tree->Remove(path);
        }
    }
}

bool TreeMirror::applyCommand()
{
    if (m_valueAlive.expired()) {
        m_commands = {};
        return true;
    }
    const char* position = m_commands.data();
    CommandReader reader(&position, static_cast<std::ptrdiff_t>(m_commands.size()));
    const std::unique_ptr<Command> command = m_value->ReadCommand(reader, m_origin);
    if (!command) {
        return false;
    }
    m_commands.remove_prefix(static_cast<std::size_t>(position - m_commands.data()));
    m_fold.prepare(*m_value, *command);
    if (!m_valueAlive.expired()) { // an observer of the fold may have taken it away
        spend(*command);
    }
    return true;
}

// What a clear takes away is destroyed bit by bit.
void TreeMirror::spend(Command& command)
{
    auto* const content = command.GetCommandId() == CommandIdMapClear
                              ? dynamic_cast<valueitemmap::IHasDetachableContent*>(m_value)
                              : nullptr;
    if (!content) {
        command.Spend();
    } else if (auto detached = content->ClearAndDetach(m_origin)) {
        m_detached.push_back(std::move(detached));
    }
}

void TreeMirror::withdraw(std::uint32_t handle)
{
    m_stale.erase(handle);
    const auto found = m_items.find(handle);
    if (found == m_items.end()) {
        return;
    }
    const Item item = found->second;
    m_items.erase(found);
    if (const auto known = m_handles.find(item.item); known != m_handles.end() && known->second == handle) {
        m_handles.erase(known);
    }
    detachContent(item);
    if (!item.alive.expired()) {
        m_tree->Remove(item.path);
    }
}

// Whoever observes a map sees what it held when he hears that it goes, as ever. It goes at once; only then its content
// is nobody's.
void TreeMirror::detachContent(const Item& item)
{
    if (item.alive.expired()) {
        return;
    }
    auto* const value = dynamic_cast<ValueBase*>(item.item);
    auto* const content = dynamic_cast<valueitemmap::IHasDetachableContent*>(item.item);
    if (!value || !content) {
        return;
    }
    value->AnnounceDeletion();
    if (!item.alive.expired()) {
        m_detached.push_back(content->DetachContent());
    }
}

void TreeMirror::beginState()
{
    m_stale.clear();
    for (const auto& [handle, item] : m_items) {
        m_stale.insert(handle);
    }
}

void TreeMirror::finishAnnouncements()
{
    for (const std::uint32_t handle : std::exchange(m_stale, {})) {
        withdraw(handle);
    }
    if (m_callbacks.ready) {
        m_callbacks.ready();
    }
}

} // namespace ZelkoCommon
