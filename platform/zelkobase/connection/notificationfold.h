#pragma once

#include <zelkobase/connection/zelkobaseconnection_export.h>

#include <array>
#include <cstddef>
#include <memory>

class Command;
class ValueBase;

namespace ZelkoCommon {

/// Folds the notifications of a keyed map that gets many commands at once, so that its observers work through many
/// changes in one go.
///
/// A fold never holds more changes than the map's log keeps: its observers read changes and are not driven into reading
/// the whole map again. It ends before a clear, before an erase of a key that was set in it, and before a set of a key
/// that was erased in it: an observer that puts all it has to add before all it has to remove would keep what is gone,
/// or lose what came back. Values without a log are not folded, since each of their changes matters.
class ZELKOBASECONNECTION_EXPORT NotificationFold
{
public:
    NotificationFold();
    ~NotificationFold(); ///< ends the fold

    /// Called right before `command` is executed on `value`. Going on to another value ends the fold. The
    /// observers of a fold that ends may take the value away.
    void prepare(ValueBase& value, const Command& command);

    /// Tells the observers what is folded so far.
    void end();

private:
    // The keys that one fold has touched, by their hashes: two keys with the same one end a fold early, no more.
    class Keys
    {
    public:
        bool contains(std::size_t hash) const;
        void insert(std::size_t hash);
        void clear();

    private:
        static constexpr std::size_t slotCount = 1024; // twice as many as a fold has changes, at least

        std::size_t slotOf(std::size_t hash) const;

        std::array<std::size_t, slotCount> m_slots{}; // 0 for a free slot
        bool m_used = false;
    };

    static constexpr std::size_t maxChanges = 512;

    bool endsBeside(const ValueBase& value);
    bool mustEndBefore(const Command& command, std::size_t key) const;
    void remember(const Command& command, std::size_t key);

    ValueBase* m_value = nullptr;
    std::weak_ptr<void> m_alive;
    std::size_t m_changes = 0;
    Keys m_setKeys;
    Keys m_erasedKeys;
};

} // namespace ZelkoCommon
