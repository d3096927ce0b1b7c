#pragma once

#include <zelkoguibase/valueitemmap/valueitemmap.h>

/// A keyed map for items that change often: its commands go out at most once per update time, those left out that a
/// later one on the same key makes superfluous. The update time is set with ValueBase::SetUpdateTimerTime; observers on
/// this side are told of each change at once, and the log counts each.
///
/// `F` has `mapType` and `mapTypeName` besides, the type number and the type name of the map.
template <typename T, typename F, typename A>
class ValueFrequencyItemMap : public ValueItemMap<T, F, A>
{
public:
    /// The update time of a new map, in milliseconds.
    static constexpr int DefaultUpdateTime = 500;

    ValueFrequencyItemMap()
        : ValueFrequencyItemMap(QString(), TValueState::Open)
    {}
    ValueFrequencyItemMap(const QString& name, TValueState state)
        : ValueItemMap<T, F, A>(name, state)
    {
        setDefaultTime();
    }
    ValueFrequencyItemMap(const ValueFrequencyItemMap& other)
        : Observable()
        , ISupportTransaction()
        , valueitemmap::IHasChangeLogValueTemplate<typename T::KeyType>()
        , ValueItemMap<T, F, A>(other)
    {
        setDefaultTime();
    }
    ValueFrequencyItemMap& operator=(const ValueFrequencyItemMap& other) = default;

    void Assign(const ValueBase& other) override { *this = dynamic_cast<const ValueFrequencyItemMap&>(other); }
    int GetType() const override { return F::mapType; }
    const char* GetTypeName() const override { return F::mapTypeName; }

private:
    void setDefaultTime() { this->SetUpdateTimerTime(DefaultUpdateTime); }
};
