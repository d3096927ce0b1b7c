#pragma once

#include <observerbase/iobserver.h>
#include <valuecore/valueptr.h>

#include <functional>

/// Calls a function on each notification of a value, until it goes out of scope or the value is gone.
class Watch final : public IObserver
{
public:
    explicit Watch(std::function<void()> what)
        : m_what(std::move(what))
    {}
    void on(ValueBase* value) { m_value = value; }
    void Update(Observable*, TChangeCode) override { m_what(); }

private:
    std::function<void()> m_what;
    ValueObservingPtr<ValueBase> m_value{this};
};
