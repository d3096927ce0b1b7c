#pragma once

#include <observerbase/changecode.h>

class IObserver;

/// Something whose notifications can be folded into one. Transactions nest; the outermost end notifies.
class ISupportTransaction
{
public:
    virtual ~ISupportTransaction() = default;

    virtual void StartTransaction(IObserver* origin) = 0;
    virtual void EndTransaction(TChangeCode code, IObserver* origin) = 0;
    virtual bool IsTransactionActive() const = 0;
};
