#pragma once

#include <valuecore/valuebase.h>
#include <zelkoguibase/valueitemmap/keyformat.h>

#include <QHash>

#include <functional>
#include <optional>
#include <string>
#include <utility>

template <typename T, typename F, typename A>
class ValueItemMapBase;

/// Ids of the commands of a keyed map.
enum ItemMapCommandId : int { CommandIdMapSetAt = 20, CommandIdMapEraseAt = 21, CommandIdMapClear = 22 };

/// What the two commands on one item share: the key, and what follows from it.
template <typename T, typename F, typename A>
class CommandOnMapItem : public ValueBase::CommandOnValue
{
public:
    using Map = ValueItemMapBase<T, F, A>;
    using Key = typename T::KeyType;

    void AddCommandString(std::string& out) const override { appendStart(out, GetCommandId(), m_key); }
    std::optional<std::size_t> TargetHash() const override { return valueitemmap::KeyFormat<Key>::hash(m_key); }
    bool Supersedes(const CommandOnValue& earlier) const override
    {
        const auto* const onItem = dynamic_cast<const CommandOnMapItem*>(&earlier);
        return onItem && onItem->m_key == m_key;
    }

    const Key& key() const { return m_key; }

protected:
    CommandOnMapItem(int id, Map* map, Key key, IObserver* origin)
        : CommandOnValue(id, map, origin)
        , m_key(std::move(key))
    {}
    CommandOnMapItem(int id, Map* map, CommandReader& reader, IObserver* origin)
        : CommandOnValue(id, map, origin)
        , m_key(valueitemmap::KeyFormat<Key>::read(reader))
    {
        reader.eatSemicolon();
    }

    static void appendStart(std::string& out, int id, const Key& key)
    {
        appendHeader(out, id);
        valueitemmap::KeyFormat<Key>::write(out, key);
        out.push_back(';');
    }

    void setKey(Key key) { m_key = std::move(key); }
    Key takeKey() { return std::move(m_key); }

    Map& map() const { return static_cast<Map&>(*this->value()); }

private:
    Key m_key;
};

/// Sets or inserts one item.
template <typename T, typename F, typename A>
class CommandMapSetAt final : public CommandOnMapItem<T, F, A>
{
public:
    using Base = CommandOnMapItem<T, F, A>;
    using typename Base::Key;
    using typename Base::Map;

    CommandMapSetAt(Map* map, const Key& key, const T& item, IObserver* origin)
        : Base(CommandIdMapSetAt, map, key, origin)
        , m_item(item)
    {}

    // An item announces its size, so its bytes are known to be there before its own format reads them. What that format
    // then makes of them is its affair: an item that it cannot read in full is set as far as it was read.
    CommandMapSetAt(Map* map, CommandReader& reader, IObserver* origin)
        : Base(CommandIdMapSetAt, map, Key(), origin)
    {
        using KeyFormat = valueitemmap::KeyFormat<Key>;
        const auto key = KeyFormat::take(reader);
        reader.eatSemicolon();
        const std::size_t size = reader.itemSize();
        if (reader.ok()) {
            const char* const end = *reader.stream() + size;
            F::fromCharStream(reader.stream(), m_item);
            *reader.stream() = end;
            reader.eatSemicolon();
        }
        this->setKey(KeyFormat::make(key, m_item.GetKey()));
    }

    // Only an invalid key can make SetAt throw, and a stream that holds one was refused when it was read.
    void Execute() override { this->map().SetAt(this->key(), m_item, this->GetOrigin()); }
    void Spend() override { this->map().TakeAt(this->takeKey(), std::move(m_item), this->GetOrigin()); }
    void AddCommandString(std::string& out) const override { append(out, this->key(), m_item); }

    /// Appends the string of the command that would set `item`, without making one: a state has many.
    static void append(std::string& out, const Key& key, const T& item)
    {
        Base::appendStart(out, CommandIdMapSetAt, key);
        if constexpr (requires { F::appendTo(out, item); }) {
            F::appendTo(out, item);
        } else {
            out += F::toStandardString(item);
        }
        out.push_back(';');
    }
    CommandMapSetAt* Clone() const override { return new CommandMapSetAt(*this); }

private:
    T m_item;
};

/// Erases one item.
template <typename T, typename F, typename A>
class CommandMapEraseAt final : public CommandOnMapItem<T, F, A>
{
public:
    using Base = CommandOnMapItem<T, F, A>;
    using typename Base::Key;
    using typename Base::Map;

    CommandMapEraseAt(Map* map, const Key& key, IObserver* origin)
        : Base(CommandIdMapEraseAt, map, key, origin)
    {}
    CommandMapEraseAt(Map* map, CommandReader& reader, IObserver* origin)
        : Base(CommandIdMapEraseAt, map, reader, origin)
    {}

    void Execute() override { this->map().EraseAt(this->key(), this->GetOrigin()); }
    CommandMapEraseAt* Clone() const override { return new CommandMapEraseAt(*this); }
};

/// Removes all items.
template <typename T, typename F, typename A>
class CommandMapClear final : public ValueBase::CommandOnValue
{
public:
    using Map = ValueItemMapBase<T, F, A>;

    CommandMapClear(Map* map, IObserver* origin)
        : CommandOnValue(CommandIdMapClear, map, origin)
    {}

    void Execute() override { static_cast<Map&>(*this->value()).Clear(this->GetOrigin()); }
    CommandMapClear* Clone() const override { return new CommandMapClear(*this); }
    bool SupersedesContent() const override { return true; }
};
