#pragma once

#include <zelkoguibase/valueitemmap/valueitemmapbase.h>

/// ValueItemMapBase as a whole value: what is left to a concrete class is its type number and type name.
template <typename T, typename F, typename A>
class ValueItemMap : public ValueItemMapBase<T, F, A>
{
public:
    using Base = ValueItemMapBase<T, F, A>;

    ValueItemMap() = default;
    ValueItemMap(const QString& name, TValueState state)
        : Base(name, state)
    {}
    ValueItemMap(const ValueItemMap& other) = default;
    ValueItemMap& operator=(const ValueItemMap& other) = default;

    /// `operator=` from a value of the same instantiation; throws std::bad_cast on any other.
    void Assign(const ValueBase& other) override { *this = dynamic_cast<const ValueItemMap&>(other); }

    int GetType() const override = 0;
    const char* GetTypeName() const override = 0;
};
