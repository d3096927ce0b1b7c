#pragma once

#include <cstdint>
#include <vector>

class ValueBase;

template <typename Type, typename Key>
class ChangeLogTemplate;

namespace valueitemmap {

/// A keyed map value as its readers see it, whatever its items are.
template <typename K>
class IHasChangeLogValueTemplate
{
public:
    virtual ~IHasChangeLogValueTemplate() = default;

    virtual std::uint64_t Size() const = 0;
    virtual const ChangeLogTemplate<char, K>& GetChangeLog() const = 0;
    /// All keys, in iteration order.
    virtual std::vector<K> IndexVector() const = 0;
    virtual bool Contains(K key) const = 0;
    virtual ValueBase* GetValueBase() = 0;
};

} // namespace valueitemmap
