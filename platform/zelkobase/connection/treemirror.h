#pragma once

#include <zelkobase/connection/notificationfold.h>
#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class IObserver;
class Tree;
class TreeItem;
class ValueBase;

namespace valueitemmap {
class IDetachedContent;
}

namespace ZelkoCommon {

namespace link {
enum class FrameType : std::uint8_t;
}

/// The client's copy of a server's tree: applies the frames of a tree link below a root path of a local tree.
///
/// Works on the thread of the tree, in slices, so that a large state does not hold the thread up. The frames come from
/// a peer and are not trusted: what cannot be understood stops the mirror, and what was applied before stands until
/// `clear()`.
class ZELKOBASECONNECTION_EXPORT TreeMirror
{
public:
    enum class Progress {
        Idle,     ///< everything that came is applied
        MoreToDo, ///< the time was over before
        Malformed ///< the peer sent what is no frame or no command; nothing more is applied
    };

    /// What the owner wants to hear of, called in between two commands. A callback must not destroy the mirror.
    struct Callbacks
    {
        std::function<void()> ready;                          ///< each time the whole tree was announced
        std::function<void(const QString& path)> nodeCreated; ///< full path of an announced node
    };

    /// `origin` stands for the peer: commands are executed in its name.
    TreeMirror(Tree* tree, const QString& rootPath, IObserver* origin, Callbacks callbacks);
    ~TreeMirror();

    /// Takes over a batch; nothing is applied yet.
    void append(std::string batch);

    /// Applies what came until all is done or `budget` is over, and tells observers of what it did. Makes some headway
    /// even when there is no time. An observer or callback must not come back here.
    Progress apply(std::chrono::microseconds budget);

    /// Removes every item that the mirror made, but for a node in which somebody else has put something, and forgets
    /// what was not applied. The contents of large maps are out of sight then, but not destroyed; see `tidy`.
    void clear();

    /// Destroys what maps held that are gone, until all is done or `budget` is over. Makes some headway even when there
    /// is no time. True when there is more to do.
    bool tidy(std::chrono::microseconds budget);

    /// Handle of a mirrored value; 0 for any other.
    std::uint32_t handleOf(const ValueBase& value) const;

    /// Bytes that wait to be applied.
    std::size_t pendingBytes() const;

private:
    struct Item
    {
        TreeItem* item = nullptr;
        std::weak_ptr<void> alive;
        QString path;
        std::string typeName;
    };

    bool nextFrame();
    bool takeNextBatch();
    void applyFrame(link::FrameType type, std::uint32_t handle, std::string_view payload);
    void beginCommands(std::uint32_t handle, std::string_view commands);
    bool announce(std::uint32_t handle, std::string_view payload);
    void makeWay(const QString& path);
    void create(std::uint32_t handle, const QString& path, const std::string& typeName);
    TreeItem* insertValue(const QString& path, const std::string& typeName);
    void noteMissingNodes(const QString& path);
    void removeEmptyNodes();
    bool applyCommand();
    void spend(Command& command);
    void withdraw(std::uint32_t handle);
    void detachContent(const Item& item);
    void beginState();
    void finishAnnouncements();

    Tree* const m_tree;
    const QString m_rootPath;
    IObserver* const m_origin;
    const Callbacks m_callbacks;

    std::deque<std::string> m_batches; // not looked at yet
    std::string m_bytes;               // being read
    std::size_t m_position = 0;        // in m_bytes
    std::string_view m_commands;       // rest of the Commands frame being applied; points into m_bytes
    ValueBase* m_value = nullptr;      // that the commands are for
    std::weak_ptr<void> m_valueAlive;
    bool m_malformed = false;

    std::unordered_map<std::uint32_t, Item> m_items;
    std::unordered_map<const TreeItem*, std::uint32_t> m_handles;
    std::vector<QString> m_unannounced;        // nodes that came only because a value stands below them, top first
    std::unordered_set<std::uint32_t> m_stale; // known before StateBegin and not announced again so far
    NotificationFold m_fold;
    std::deque<std::unique_ptr<valueitemmap::IDetachedContent>> m_detached;
};

} // namespace ZelkoCommon
