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
/// or lose what came back. A fold that follows one without an erase ends before its first erase, whatever was set in
/// it. Values without a log are not folded, since each of their changes matters.
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
    // The keys of the commands of one fold, by their hashes: two keys with the same one end a fold early, no more.
    class Keys
    {
    public:
        bool isEmpty() const { return !m_used; }
        bool containsThatOf(const Command& command) const;
        void insertThatOf(const Command& command);
        void clear();

    private:
        static constexpr std::size_t slotCount = 1024; // twice as many as a fold has changes, at least

        std::size_t slotOf(std::size_t hash) const;

        std::array<std::size_t, slotCount> m_slots{}; // 0 for a free slot
        bool m_used = false;
    };

    static constexpr std::size_t maxChanges = 512;

    bool endsBeside(const ValueBase& value);
    bool mustEndBefore(const Command& command) const;
    void remember(const Command& command);

    ValueBase* m_value = nullptr;
    std::weak_ptr<void> m_alive;
    std::size_t m_changes = 0;
    Keys m_setKeys;
    Keys m_erasedKeys;
    bool m_keepsSetKeys = true; // not where nothing is erased, as in a first load, which has many sets
};

} // namespace ZelkoCommon
