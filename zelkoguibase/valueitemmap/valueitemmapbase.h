#pragma once

#include <valuecore/iobjectstatecursor.h>
#include <valuecore/valuebase.h>
#include <zelkoguibase/valueitemmap/changelog.h>
#include <zelkoguibase/valueitemmap/detachedcontent.h>
#include <zelkoguibase/valueitemmap/ihaschangelogvalue.h>
#include <zelkoguibase/valueitemmap/itemmapcommands.h>
#include <zelkoguibase/valueitemmap/keyformat.h>

#include <QHash>
#include <QString>

#include <algorithm>
#include <array>
#include <exception>
#include <list>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

namespace valueitemmap {

/// Thrown when a map is given no key and cannot make one.
class NoUniqueKeyError final : public std::exception
{
public:
    const char* what() const noexcept override
    {
        return "Cannot create unique key for this KeyType. Override CreateNewUnqiqueKey() method in your item map "
               "specialization";
    }
};

} // namespace valueitemmap

/// A keyed map on the value tree with a numbered log of its changes.
///
/// `T` is the item. It has a `KeyType`, a virtual accessor `GetKey()`, copies, and an equality that compares content.
/// `F`, its format, has the static functions
///
///     std::string toStandardString(const T&);
///     bool fromCharStream(const char** stream, T&);
///     QString GetString(const T&);
///
/// The first begins with its own size: four bytes in the machine's order, the number of bytes behind them. When the
/// second is called, that many are known to be there. The third is one line for people. A format may also have
///
///     void appendTo(std::string& out, const T&);
///
/// which appends what the first gives: a state of many items is then made without a string for each. And it may have
///
///     void fetch(const T&);
///     void fetchContent(const T&);
///
/// which have the processor fetch from memory what `appendTo` is going to read, for whoever walks many items: the first
/// what the item itself leads to, and the second, some time later, what that leads to.
///
/// `A`, its text adapter, is carried along for other users of the type; the map does not call it.
///
/// An observer of the map is told only that it changed (ValueChanged) and reads from the log, from a cursor of its own,
/// what did. Any number of changes can so be folded into one notification, and an observer that fell too far behind
/// learns that it has to read the whole map. Operations that change nothing log nothing and tell nobody.
///
/// Not thread safe; observers are called synchronously.
template <typename T, typename F, typename A>
class ValueItemMapBase : public ValueBase,
                         public virtual valueitemmap::IHasChangeLogValueTemplate<typename T::KeyType>,
                         public valueitemmap::IHasDetachableContent
{
public:
    using KeyType = typename T::KeyType;
    using K = KeyType;
    using MapType = std::unordered_map<K, T>;
    using ChangeLog = ChangeLogTemplate<char, K>;
    using SetAtCommand = CommandMapSetAt<T, F, A>;
    using EraseAtCommand = CommandMapEraseAt<T, F, A>;
    using ClearCommand = CommandMapClear<T, F, A>;

    /// The key that is none.
    static const K InvalidKey;
    static const K& GetInvalidKey() { return InvalidKey; }

    ValueItemMapBase()
        : ValueItemMapBase(QString(), TValueState::Open)
    {}
    ValueItemMapBase(const QString& name, TValueState state)
        : ValueBase(name, state)
        , m_map(bucketsAtFirst)
    {}
    ValueItemMapBase(const ValueItemMapBase& other)
        : Observable()
        , ISupportTransaction()
        , valueitemmap::IHasChangeLogValueTemplate<K>()
        , ValueBase(other)
        , valueitemmap::IHasDetachableContent()
        , m_map(bucketsAtFirst)
    {
        *this = other;
    }

    /// Takes over state, items and file name. The log is not copied, nothing is logged and nobody is told.
    ValueItemMapBase& operator=(const ValueItemMapBase& other)
    {
        ValueBase::operator=(other);
        m_map = other.m_map;
        itemsReplaced();
        m_filename = other.m_filename;
        return *this;
    }

    bool operator==(const ValueItemMapBase& other) const
    {
        return m_map == other.m_map && m_filename == other.m_filename && ValueBase::operator==(other);
    }

    // Changing one item

    /// Sets or inserts the item under `key` and returns the key. With InvalidKey a new key is made; a type of key that
    /// cannot be made throws valueitemmap::NoUniqueKeyError and nothing changes. An item equal to the present one
    /// changes nothing.
    virtual K SetAt(K key, const T& item, IObserver* origin)
    {
        if (key == InvalidKey) {
            key = CreateNewUniqueKey();
        }
        put(key, item, origin);
        return key;
    }

    /// As `SetAt`, of an item that the caller needs no more and whose key is none that has to be made.
    virtual void TakeAt(K key, T&& item, IObserver* origin) { put(std::move(key), std::move(item), origin); }

    /// Erases the item under `key`, if there is one.
    virtual void EraseAt(K key, IObserver* origin)
    {
        const auto found = m_map.find(key);
        if (found == m_map.end()) {
            return;
        }
        forEachState([&](StatePosition& state) {
            if (state.next == found) {
                ++state.next;
            }
        });
        m_map.erase(found);
        m_changeLog.append(valueitemmap::ChangeErased, key);
        m_recent.forget(m_changeLog.NextNumber());
        if (Record()) {
            RecordCommand(new EraseAtCommand(this, key, origin));
        }
        NotifyObservers(TChangeCode::ValueChanged, origin);
    }

    /// Removes all items, if there are any. `ClearAndDetach` is the one to override: each clear goes by it, and a
    /// mirror of a tree calls that one alone.
    virtual void Clear(IObserver* origin) { ClearAndDetach(origin); }

    /// `SetAt` under the item's own key; `PushBack` and this form of `Set` are the same.
    K Add(const T& item, IObserver* origin) { return SetAt(item.GetKey(), item, origin); }
    K PushBack(const T& item, IObserver* origin) { return Add(item, origin); }
    K Set(const T& item, IObserver* origin) { return Add(item, origin); }

    /// The same as `SetAt`.
    K InsertAt(K key, const T& item, IObserver* origin) { return SetAt(std::move(key), item, origin); }

    // Changing many items, with one notification

    /// Sets the items of the list under their own keys. `removeOthers`: the map holds nothing else afterwards.
    /// `onlyDifferences`: items that are there already are left alone, instead of being set again after a clear.
    void Set(const std::list<T>& items, bool removeOthers, bool onlyDifferences, IObserver* origin)
    {
        inTransaction(origin, [&] {
            if (onlyDifferences) {
                setDifferences(
                    items, [](const T& item) { return std::pair<K, const T&>(item.GetKey(), item); }, removeOthers,
                    origin);
            } else {
                setAll(items, removeOthers, origin);
            }
        });
    }

    /// The same with keys given. Without `onlyDifferences` the given map always replaces the held one, whatever
    /// `removeOthers` says, and no transaction is opened.
    void Set(const MapType& items, bool removeOthers, bool onlyDifferences, IObserver* origin)
    {
        if (!onlyDifferences) {
            if (removeOthers) {
                Clear(origin);
            }
            SetMap(items, origin);
            return;
        }
        inTransaction(origin, [&] {
            setDifferences(
                items, [](const auto& item) { return std::pair<K, const T&>(item.first, item.second); }, removeOthers,
                origin);
        });
    }

    /// Replaces the whole map, which must not hold InvalidKey. Always logs a clear and notifies once, also when both
    /// maps are empty.
    void SetMap(const MapType& items, IObserver* origin)
    {
        logCleared(origin);
        if (&items != &m_map) {
            m_map = items;
            itemsReplaced();
        }
        for (const auto& [key, item] : m_map) {
            logSet(key, item);
            recordSet(key, item, origin);
        }
        NotifyObservers(TChangeCode::ValueChanged, origin);
    }

    // Reading

    /// The item under `key`; throws std::out_of_range when there is none.
    const T& At(const K& key) const
    {
        const auto found = m_map.find(key);
        if (found == m_map.end()) {
            throw std::out_of_range("invalid unordered_map<K, T> key");
        }
        return found->second;
    }

    bool Contains(K key) const override { return m_map.find(key) != m_map.end(); }

    /// Key of the first item in iteration order that equals `item`, InvalidKey if none does. A walk over all items.
    K find(const T& item) const
    {
        for (const auto& [key, held] : m_map) {
            if (held == item) {
                return key;
            }
        }
        return InvalidKey;
    }

    bool Empty() const { return m_map.empty(); }
    std::uint64_t Size() const override { return m_map.size(); }

    std::vector<K> IndexVector() const override
    {
        std::vector<K> keys;
        keys.reserve(m_map.size());
        for (const auto& entry : m_map) {
            keys.push_back(entry.first);
        }
        return keys;
    }

    const MapType& data() const { return m_map; }

    const QString& GetFilename() const { return m_filename; }
    void SetFilename(const QString& filename) { m_filename = filename; }

    // The log

    const ChangeLog& GetChangeLog() const override { return m_changeLog; }

    /// The item under `key`, null if there is none, for a reader of the log to whom change `number` gave that key. The
    /// item of a change that was read soon is found without looking for it.
    const T* ItemOfChange(std::uint64_t number, const K& key) const
    {
        if (const T* const item = m_recent.find(number)) {
            return item;
        }
        const auto found = m_map.find(key);
        return found == m_map.end() ? nullptr : &found->second;
    }

    /// Sets how many changes the log keeps. Growing loses nothing; shrinking drops the newest changes, which a reader
    /// that had not seen them is not told. Throws std::length_error "circular_buffer", and leaves the log as it was,
    /// for a log of 2 GiB and more.
    void SetChangeLogSize(unsigned int size)
    {
        m_changeLog.setCapacity(size);
        m_recent.forget(m_changeLog.NextNumber()); // numbers of dropped changes may be given with other keys
    }

    std::size_t ChangeLogCapacity() const override { return m_changeLog.Capacity(); }

    ValueBase* GetValueBase() override { return this; }

    /// How many items were announced to come, as far as that was believed; 0 where nothing was.
    std::uint64_t ExpectedSize() const { return m_expectedSize; }

    // Growing step by step would move all items again and again, each time in one long step. There are two buckets for
    // each item: a new one then mostly finds an empty one, and need not look at the keys of its neighbours. A peer that
    // exaggerates gets no more room than the largest list that anybody keeps.
    void ExpectSize(std::uint64_t parts) override
    {
        constexpr std::uint64_t largest = 1'000'000;
        m_expectedSize = std::min(parts, largest);
        const std::uint64_t room = 2 * m_expectedSize;
        if (room > m_map.bucket_count()) {
            m_map.reserve(static_cast<std::size_t>(room));
            restartStates();
        }
    }

    // IHasDetachableContent

    std::unique_ptr<valueitemmap::IDetachedContent> DetachContent() override
    {
        auto content = std::make_unique<DetachedItems>(std::exchange(m_map, MapType(bucketsAtFirst)));
        itemsReplaced();
        return content;
    }

    std::unique_ptr<valueitemmap::IDetachedContent> ClearAndDetach(IObserver* origin) override
    {
        if (m_map.empty()) {
            return nullptr;
        }
        auto content = DetachContent();
        logCleared(origin);
        NotifyObservers(TChangeCode::ValueChanged, origin);
        return content;
    }

    // IValue

    /// The first item in iteration order and how many more there are; empty for an empty map.
    QString GetStringValue() const override
    {
        return m_map.empty() ? QString()
                             : F::GetString(m_map.begin()->second) + QStringLiteral(" - ") +
                                   QStringLiteral("%1 more items...").arg(m_map.size() - 1, 0, 10, QLatin1Char(' '));
    }

    bool Compare(const ValueBase* other) const override
    {
        const auto* const same = dynamic_cast<const ValueItemMapBase*>(other);
        return same && *this == *same;
    }

    // A new subscriber gets the map in the form in which later changes come.
    void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) override
    {
        addStateBeforeItems(out, flags);
        for (const auto& [key, item] : m_map) {
            SetAtCommand::append(out, key, item);
        }
    }

    std::unique_ptr<IObjectStateCursor> OpenObjectState() override { return std::make_unique<StateCursor>(*this); }

    Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) override
    {
        switch (id) {
        case CommandIdMapSetAt:
            return readCommand<SetAtCommand>(stream, origin, available);
        case CommandIdMapEraseAt:
            return readCommand<EraseAtCommand>(stream, origin, available);
        case CommandIdMapClear:
            return new ClearCommand(this, origin);
        default:
            return ValueBase::CreateNextCommand(id, stream, origin, available);
        }
    }

protected:
    /// A key that no item has. Keys that cannot be counted up cannot be made.
    virtual K CreateNewUniqueKey() { throw valueitemmap::NoUniqueKeyError(); }

private:
    static constexpr std::size_t bucketsAtFirst = 8;

    // Where the items of the last sets stand, by the number of the change. Items keep their place until they go.
    class RecentItems
    {
    public:
        void note(std::uint64_t number, const T& item)
        {
            m_items[number % m_items.size()] = &item;
            m_end = number + 1;
        }

        /// Of all changes before that one.
        void forget(std::uint64_t number) { m_begin = number; }

        /// Null where that is not known.
        const T* find(std::uint64_t number) const
        {
            return number >= m_begin && number < m_end && m_end - number <= m_items.size()
                       ? m_items[number % m_items.size()]
                       : nullptr;
        }

    private:
        std::array<const T*, 256> m_items{};
        std::uint64_t m_begin = 0;
        std::uint64_t m_end = 0;
    };

    // Where a state stands that is made in pieces: the item that comes next. Who removes that item moves it on.
    struct StatePosition
    {
        typename MapType::const_iterator next;
    };

    // Walks some items ahead of the one that is written. What a map holds stands all over the memory, and waiting for
    // it takes longer than writing it.
    class Ahead
    {
    public:
        Ahead(typename MapType::const_iterator from, typename MapType::const_iterator end)
            : m_item(from)
            , m_content(from)
            , m_end(end)
        {
            for (int i = 0; i < contentDistance; ++i) {
                stepItem();
            }
            for (int i = contentDistance; i < itemDistance; ++i) {
                step();
            }
        }

        void step()
        {
            stepItem();
            if constexpr (requires { F::fetchContent(m_content->second); }) {
                if (m_content != m_end) {
                    F::fetchContent((m_content++)->second);
                }
            }
        }

    private:
        static constexpr int itemDistance = 4;
        static constexpr int contentDistance = 2;

        void stepItem()
        {
            if constexpr (requires { F::fetch(m_item->second); }) {
                if (m_item != m_end) {
                    F::fetch((m_item++)->second);
                }
            }
        }

        typename MapType::const_iterator m_item;
        typename MapType::const_iterator m_content;
        const typename MapType::const_iterator m_end;
    };

    // Walks the items. One that went in the meantime is passed over, one that changed is given as it is now, and one
    // that came behind is known from its own command. When the items are laid out anew the walk begins again: the
    // receiver has some of them already, which is no harm.
    class StateCursor final : public IObjectStateCursor
    {
    public:
        explicit StateCursor(ValueItemMapBase& map)
            : m_map(map)
            , m_position(map.openState())
        {}

        bool AppendNext(std::string& out, std::size_t bytes) override
        {
            const std::size_t enough = out.size() + bytes;
            auto& next = m_position->next;
            if (!std::exchange(m_started, true)) {
                m_map.addStateBeforeItems(out, 0);
                next = m_map.m_map.cbegin();
            }
            const auto end = m_map.m_map.cend();
            Ahead ahead(next, end);
            while (next != end) {
                ahead.step();
                SetAtCommand::append(out, next->first, next->second);
                ++next;
                if (out.size() >= enough) {
                    break;
                }
            }
            return next != end;
        }

    private:
        ValueItemMapBase& m_map;
        const std::shared_ptr<StatePosition> m_position;
        bool m_started = false;
    };

    std::shared_ptr<StatePosition> openState()
    {
        auto position = std::make_shared<StatePosition>(StatePosition{m_map.cend()});
        m_states.push_back(position);
        return position;
    }

    // Of the states that are being made; those that have ended are forgotten on the way.
    template <typename Use>
    void forEachState(Use use)
    {
        std::erase_if(m_states, [&](const std::weak_ptr<StatePosition>& state) {
            const auto position = state.lock();
            if (position) {
                use(*position);
            }
            return !position;
        });
    }

    // To be called when the map may have laid out its items anew.
    void restartStates()
    {
        forEachState([this](StatePosition& state) { state.next = m_map.cbegin(); });
    }

    // To be called when all items went, and others may have come.
    void itemsReplaced()
    {
        m_recent.forget(m_changeLog.NextNumber());
        restartStates();
    }

    class DetachedItems final : public valueitemmap::IDetachedContent
    {
    public:
        explicit DetachedItems(MapType items)
            : m_items(std::move(items))
        {}

        bool destroySome(std::chrono::steady_clock::time_point end) override
        {
            constexpr int itemsPerLook = 32;
            do {
                for (int i = 0; i < itemsPerLook && !m_items.empty(); ++i) {
                    m_items.erase(m_items.begin());
                }
            } while (!m_items.empty() && std::chrono::steady_clock::now() < end);
            return !m_items.empty();
        }

    private:
        MapType m_items;
    };

    void addStateBeforeItems(std::string& out, unsigned int flags)
    {
        ValueBase::AddObjectStateStringForTransmission(out, flags);
        ClearCommand(this, nullptr).AddCommandString(out);
        if (!m_map.empty()) {
            CommandExpectSize(this, m_map.size()).AddCommandString(out); // behind the clear, which gives up all room
        }
    }

    // A command without a key could only be executed by making one up, which differs on both sides.
    template <typename C>
    Command* readCommand(const char** stream, IObserver* origin, int available)
    {
        CommandReader reader(stream, available);
        auto command = std::make_unique<C>(this, reader, origin);
        return reader.ok() && command->key() != InvalidKey ? command.release() : nullptr;
    }

    template <typename Key, typename Item>
    void put(Key&& key, Item&& item, IObserver* origin)
    {
        const std::size_t bucketsBefore = m_map.bucket_count();
        const auto [place, inserted] = m_map.try_emplace(key, std::forward<Item>(item));
        if (!inserted) {
            if (place->second == item) {
                return;
            }
            place->second = std::forward<Item>(item);
        }
        if (m_map.bucket_count() != bucketsBefore) {
            restartStates();
        }
        logSet(std::forward<Key>(key), place->second);
        recordSet(place->first, place->second, origin);
        NotifyObservers(TChangeCode::ValueChanged, origin);
    }

    // `held` is the item in the map.
    void logSet(K key, const T& held)
    {
        m_recent.note(m_changeLog.NextNumber(), held);
        m_changeLog.append(valueitemmap::ChangeSet, std::move(key));
    }

    void logCleared(IObserver* origin)
    {
        m_changeLog.append(valueitemmap::ChangeCleared, InvalidKey);
        m_recent.forget(m_changeLog.NextNumber());
        if (Record()) {
            RecordCommand(new ClearCommand(this, origin));
        }
    }

    void recordSet(const K& key, const T& item, IObserver* origin)
    {
        if (Record()) {
            RecordCommand(new SetAtCommand(this, key, item, origin));
        }
    }

    // An item without a key ends the operation, but never leaves the map in a transaction that nobody ends.
    template <typename Changes>
    void inTransaction(IObserver* origin, Changes change)
    {
        StartTransaction(origin);
        try {
            change();
        } catch (...) {
            EndTransaction(TChangeCode::ValueChanged, origin);
            throw;
        }
        EndTransaction(TChangeCode::ValueChanged, origin);
    }

    void setAll(const std::list<T>& items, bool removeOthers, IObserver* origin)
    {
        if (removeOthers) {
            Clear(origin);
        }
        for (const T& item : items) {
            Add(item, origin);
        }
    }

    bool holds(const K& key, const T& item) const
    {
        const auto found = m_map.find(key);
        return found != m_map.end() && found->second == item;
    }

    // `split` gives key and item of an element. The old keys are struck out by a hash look-up, so that the cost does
    // not grow with the square of the list.
    template <typename Items, typename Split>
    void setDifferences(const Items& items, Split split, bool removeOthers, IObserver* origin)
    {
        std::vector<K> oldKeys = IndexVector();
        std::unordered_map<K, std::size_t> places;
        for (std::size_t i = 0; removeOthers && i < oldKeys.size(); ++i) {
            places.emplace(oldKeys[i], i);
        }
        for (const auto& element : items) {
            const auto& [key, item] = split(element);
            if (const auto old = places.find(key); old != places.end()) {
                oldKeys[old->second] = InvalidKey;
            }
            if (!holds(key, item)) {
                SetAt(key, item, origin);
            }
        }
        for (std::size_t i = 0; removeOthers && i < oldKeys.size(); ++i) {
            if (oldKeys[i] != InvalidKey) {
                EraseAt(oldKeys[i], origin);
            }
        }
    }

    MapType m_map;
    std::vector<std::weak_ptr<StatePosition>> m_states;
    std::uint64_t m_expectedSize = 0;
    ChangeLog m_changeLog;
    RecentItems m_recent;
    QString m_filename;
};

template <typename T, typename F, typename A>
const typename T::KeyType
    ValueItemMapBase<T, F, A>::InvalidKey = valueitemmap::KeyFormat<typename T::KeyType>::invalid();
