#pragma once

#include <observerbase/changecode.h>
#include <observerbase/observerbase_export.h>

#include <cstddef>
#include <memory>

class IObserver;

/// Something whose changes can be observed. Not thread safe: an observable and its observers live on one thread.
///
/// Observers are held by plain pointer; whoever adds one removes it before it dies (ValueObservingPtr and
/// NodeObservingPtr do so by themselves). The list may change in the middle of a notification: an observer that was
/// removed is not called any more, one that was added is called from the next notification on, and the observable
/// itself may die, which ends the notification.
class OBSERVERBASE_EXPORT Observable
{
public:
    Observable();
    virtual ~Observable();

    /// Adds `observer` behind the others. Null and an observer that is already there are ignored.
    virtual void AddObserver(IObserver* observer);

    /// Removes `observer`; nothing happens when it is not there.
    virtual void DeleteObserver(IObserver* observer);

    /// Removes all observers.
    virtual void DeleteObservers();

    /// Moves `observer` in front of all others, so that it is notified first; nothing happens when it is not there.
    virtual void MakeFirstObserver(IObserver* observer);

    /// Calls `IObserver::Update` of every observer but `origin`, in order, before it returns. `origin` is the observer
    /// that made the change and so knows of it; null tells everybody.
    virtual void NotifyObservers(TChangeCode code, IObserver* origin);

    /// Number of observers at this moment.
    std::size_t ObserverCount() const;

protected:
    /// A copy starts without observers: they subscribed to the original.
    Observable(const Observable&);
    Observable& operator=(const Observable&);

private:
    struct List;
    std::shared_ptr<List> m_list;
};
