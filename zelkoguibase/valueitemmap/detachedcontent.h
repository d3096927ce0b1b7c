#pragma once

#include <chrono>
#include <memory>

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

/// A value whose content can be destroyed after it.
class IHasDetachableContent
{
public:
    virtual ~IHasDetachableContent() = default;

    /// Takes the content out of a value whose deletion is announced, and which is about to be destroyed: it is empty
    /// afterwards, without a log entry and without telling anybody.
    virtual std::unique_ptr<IDetachedContent> DetachContent() = 0;
};

} // namespace valueitemmap
