#pragma once

#include <observerbase/iobserver.h>

#include <functional>

namespace ZelkoConsole {

/// Passes the notifications of the tree on to a function, so that one class can tell several sources apart.
class TreeObserver final : public IObserver
{
public:
    using Function = std::function<void(TChangeCode code)>;

    explicit TreeObserver(Function function);
    ~TreeObserver() override;

    void Update(Observable* source, TChangeCode code) override;

private:
    const Function m_function;
};

} // namespace ZelkoConsole
