#pragma once

#include <valuecore/value.h>
#include <valuecore/valuecore_export.h>

#include <limits>

/// A number with limits. A number outside of them, and one that is not a number at all, is refused.
template <typename T>
class ValueNumeric : public Value<T>
{
public:
    enum CommandId : int { CommandIdLimits = 11 };
    class CommandLimits;

    explicit ValueNumeric(const QString& name = QString(), TValueState state = TValueState::Open);
    ValueNumeric(const ValueNumeric&);
    ~ValueNumeric() override;
    ValueNumeric& operator=(const ValueNumeric&);

    T GetMinimum() const { return m_minimum; }
    T GetMaximum() const { return m_maximum; }

    /// Sets the limits, both inclusive; the whole range of T at first. False, and no change, when `minimum` is not at
    /// most `maximum`. A content that lies outside of the new limits moves to the nearer one. Observers hear
    /// ValueChanged once if the limits differ.
    bool SetLimits(T minimum, T maximum, IObserver* origin);

    bool operator==(const ValueNumeric& other) const;

    const char* GetTypeName() const override;
    int GetType() const override;
    void Assign(const ValueBase& other) override;
    bool Compare(const ValueBase* other) const override;
    void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) override;
    Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) override;

protected:
    bool accepts(const T& value) const override;

private:
    T m_minimum = std::numeric_limits<T>::lowest();
    T m_maximum = std::numeric_limits<T>::max();
};

extern template class VALUECORE_EXPORT ValueNumeric<double>;
extern template class VALUECORE_EXPORT ValueNumeric<qint64>;
