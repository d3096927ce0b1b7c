#include <valuecore/valuenumeric.h>

#include <algorithm>

template <typename T>
class ValueNumeric<T>::CommandLimits final : public ValueBase::CommandOnValue
{
public:
    CommandLimits(ValueNumeric* value, T minimum, T maximum, IObserver* origin)
        : CommandOnValue(CommandIdLimits, value, origin)
        , m_minimum(minimum)
        , m_maximum(maximum)
    {}
    CommandLimits(ValueNumeric* value, CommandReader& reader, IObserver* origin)
        : CommandOnValue(CommandIdLimits, value, origin)
        , m_minimum(ValueFormat<T>::read(reader))
        , m_maximum(ValueFormat<T>::read(reader))
    {
        reader.eatSemicolon();
        if (!(m_minimum <= m_maximum)) {
            reader.fail();
        }
    }

    void Execute() override { static_cast<ValueNumeric&>(*value()).SetLimits(m_minimum, m_maximum, GetOrigin()); }
    void AddCommandString(std::string& out) const override
    {
        CommandOnValue::AddCommandString(out);
        ValueFormat<T>::write(out, m_minimum);
        ValueFormat<T>::write(out, m_maximum);
        out.push_back(';');
    }
    CommandLimits* Clone() const override { return new CommandLimits(*this); }

    // No limits supersede earlier ones: a content set in between may be possible within those alone.
    bool IsKept() const override { return true; }

private:
    T m_minimum;
    T m_maximum;
};

template <typename T>
ValueNumeric<T>::ValueNumeric(const QString& name, TValueState state)
    : Value<T>(name, state)
{}

template <typename T>
ValueNumeric<T>::ValueNumeric(const ValueNumeric&) = default;

template <typename T>
ValueNumeric<T>::~ValueNumeric() = default;

template <typename T>
ValueNumeric<T>& ValueNumeric<T>::operator=(const ValueNumeric&) = default;

template <typename T>
bool ValueNumeric<T>::SetLimits(T minimum, T maximum, IObserver* origin)
{
    if (!(minimum <= maximum)) {
        return false;
    }
    if (minimum == m_minimum && maximum == m_maximum) {
        return true;
    }
    this->StartTransaction(origin);
    m_minimum = minimum;
    m_maximum = maximum;
    if (this->Record()) {
        this->RecordCommand(new CommandLimits(this, minimum, maximum, origin));
    }
    this->SetValue(std::clamp(this->GetValue(), minimum, maximum), origin);
    this->EndTransaction(TChangeCode::ValueChanged, origin);
    return true;
}

template <typename T>
bool ValueNumeric<T>::operator==(const ValueNumeric& other) const
{
    return m_minimum == other.m_minimum && m_maximum == other.m_maximum && Value<T>::operator==(other);
}

template <typename T>
const char* ValueNumeric<T>::GetTypeName() const
{
    return std::is_same_v<T, double> ? "NumericDouble" : "NumericInteger64";
}

template <typename T>
int ValueNumeric<T>::GetType() const
{
    return std::is_same_v<T, double> ? 6 : 7;
}

template <typename T>
void ValueNumeric<T>::Assign(const ValueBase& other)
{
    *this = dynamic_cast<const ValueNumeric&>(other);
}

template <typename T>
bool ValueNumeric<T>::Compare(const ValueBase* other) const
{
    const auto* const same = dynamic_cast<const ValueNumeric*>(other);
    return same && *this == *same;
}

template <typename T>
void ValueNumeric<T>::AddObjectStateStringForTransmission(std::string& out, unsigned int flags)
{
    CommandLimits(this, m_minimum, m_maximum, nullptr).AddCommandString(out);
    Value<T>::AddObjectStateStringForTransmission(out, flags);
}

template <typename T>
Command* ValueNumeric<T>::CreateNextCommand(int id, const char** stream, IObserver* origin, int available)
{
    if (id != CommandIdLimits) {
        return Value<T>::CreateNextCommand(id, stream, origin, available);
    }
    CommandReader reader(stream, available);
    auto command = std::make_unique<CommandLimits>(this, reader, origin);
    return reader.ok() ? command.release() : nullptr;
}

// Written so that a NaN, which no comparison holds for, is refused.
template <typename T>
bool ValueNumeric<T>::accepts(const T& value) const
{
    return value >= m_minimum && value <= m_maximum;
}

template class ValueNumeric<double>;
template class ValueNumeric<qint64>;
