#pragma once

#include <observerbase/changecode.h>
#include <observerbase/observerbase_export.h>

class Observable;

/// The one entry by which changes of the value tree reach a client.
class OBSERVERBASE_EXPORT IObserver
{
public:
    virtual ~IObserver();

    /// Called synchronously, on the thread that made the change (the thread that owns the tree), once per notification.
    /// `source` is valid during the call. The observer may add and remove observers of any observable here, itself
    /// included, and may destroy `source`.
    virtual void Update(Observable* source, TChangeCode code) = 0;

protected:
    IObserver() = default;
    IObserver(const IObserver&) = default;
    IObserver& operator=(const IObserver&) = default;
};
