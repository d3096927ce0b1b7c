#pragma once

#include <valuecore/valuebase.h>
#include <valuecore/valuecore_export.h>
#include <valuecore/valueformat.h>

#include <type_traits>
#include <typeinfo>

/// A plain typed value. `F` is its form in commands and as text.
template <typename T, typename F = ValueFormat<T>>
class Value : public ValueBase
{
public:
    enum CommandId : int { CommandIdSet = 10 };
    class CommandSet;

    explicit Value(const QString& name = QString(), TValueState state = TValueState::Open)
        : ValueBase(name, state)
    {}
    Value(const Value&) = default;
    Value& operator=(const Value&) = default;

    const T& GetValue() const { return m_value; }

    /// Sets the content. False, and no change, when `accepts` refuses it; true also when nothing changed.
    bool SetValue(const T& value, IObserver* origin)
    {
        if (!accepts(value)) {
            return false;
        }
        if (!(value == m_value)) {
            apply(value, false, origin);
        }
        return true;
    }

    bool operator==(const Value& other) const { return m_value == other.m_value && ValueBase::operator==(other); }

    // A peer that holds another content by now gets this one with the notification.
    void HasChanged(TChangeCode code, IObserver* origin) override
    {
        if (code == TChangeCode::ValueChanged) {
            apply(m_value, true, origin);
        } else {
            ValueBase::HasChanged(code, origin);
        }
    }

    bool SetStringValue(const QString& text, IObserver* origin) override
    {
        const std::optional<T> value = F::fromText(text);
        return value && SetValue(*value, origin);
    }
    QString GetStringValue() const override { return F::toText(m_value); }
    int GetType() const override { return F::type; }
    const char* GetTypeName() const override { return F::typeName; }

    // A value with limits is a plain value too, but not one of the same type.
    void Assign(const ValueBase& other) override
    {
        if (typeid(*this) != typeid(other)) {
            throw std::bad_cast();
        }
        *this = static_cast<const Value&>(other);
    }
    bool Compare(const ValueBase* other) const override
    {
        return other && typeid(*this) == typeid(*other) && *this == static_cast<const Value&>(*other);
    }

    void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) override
    {
        ValueBase::AddObjectStateStringForTransmission(out, flags);
        CommandSet(this, m_value, false, nullptr).AddCommandString(out);
    }

    Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) override
    {
        if (id != CommandIdSet) {
            return ValueBase::CreateNextCommand(id, stream, origin, available);
        }
        CommandReader reader(stream, available);
        auto command = std::make_unique<CommandSet>(this, reader, origin);
        return reader.ok() ? command.release() : nullptr;
    }

protected:
    /// Whether the value may hold `value`. What differs from itself, as "not a number" does, could never be compared
    /// with what a peer holds, so no value holds it.
    virtual bool accepts(const T& value) const { return value == value; }

private:
    // `repeat` keeps the notification although the content is the same on the other side.
    void apply(const T& value, bool repeat, IObserver* origin)
    {
        m_value = value;
        if (Record()) {
            RecordCommand(new CommandSet(this, value, repeat, origin));
        }
        NotifyObservers(TChangeCode::ValueChanged, origin);
    }

    T m_value{};
};

/// Sets the content of a plain value, or repeats the notification of it.
template <typename T, typename F>
class Value<T, F>::CommandSet final : public ValueBase::CommandOnValue
{
public:
    CommandSet(Value* value, const T& content, bool repeat, IObserver* origin)
        : CommandOnValue(CommandIdSet, value, origin)
        , m_content(content)
        , m_repeat(repeat)
    {}
    CommandSet(Value* value, CommandReader& reader, IObserver* origin)
        : CommandOnValue(CommandIdSet, value, origin)
    {
        m_repeat = reader.boolean();
        m_content = F::read(reader);
        reader.eatSemicolon();
    }

    void Execute() override
    {
        auto& target = static_cast<Value&>(*value());
        if (m_repeat && target.accepts(m_content)) {
            target.apply(m_content, true, GetOrigin());
        } else {
            target.SetValue(m_content, GetOrigin());
        }
    }
    void AddCommandString(std::string& out) const override
    {
        CommandOnValue::AddCommandString(out);
        commandwriter::number(out, static_cast<std::uint8_t>(m_repeat));
        F::write(out, m_content);
        out.push_back(';');
    }
    CommandSet* Clone() const override { return new CommandSet(*this); }

    // A repeated command is an order given twice: none of the two is left out.
    bool IsKept() const override { return m_repeat; }
    bool Supersedes(const CommandOnValue& earlier) const override
    {
        return earlier.GetCommandId() == CommandIdSet && !earlier.IsKept();
    }

private:
    T m_content{};
    bool m_repeat = false;
};

// The plain values are compiled once, in ValueCore, so that a dynamic cast finds one and the same type everywhere.
extern template class VALUECORE_EXPORT Value<QString>;
extern template class VALUECORE_EXPORT Value<int>;
extern template class VALUECORE_EXPORT Value<bool>;
extern template class VALUECORE_EXPORT Value<double>;
extern template class VALUECORE_EXPORT Value<qint64>;
