#pragma once

#include <chrono>
#include <memory>

class IObserver;

namespace valueitemmap {

/// What a value held that is gone. To destroy a long list takes tens of milliseconds, more than a window can spare at
/// once.
class IDetachedContent
{
public:
    virtual ~IDetachedContent() = default;

    /// Destroys some of it, until `end` and a few items beyond; false when nothing is left.
    virtual bool destroySome(std::chrono::steady_clock::time_point end) = 0;
};

/// A value whose content can be destroyed apart from it.
class IHasDetachableContent
{
public:
    virtual ~IHasDetachableContent() = default;

    /// Takes the content out of a value whose deletion is announced, and which is about to be destroyed: it is empty
    /// afterwards, without a log entry and without telling anybody.
    virtual std::unique_ptr<IDetachedContent> DetachContent() = 0;

    /// Clears the value, which is logged and told as every clear, and gives what it held; null if it held nothing. Who
    /// is told may destroy the value.
    virtual std::unique_ptr<IDetachedContent> ClearAndDetach(IObserver* origin) = 0;
};

} // namespace valueitemmap
