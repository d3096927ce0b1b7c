#pragma once

#include <observerbase/iobserver.h>

#include <vector>

/// Keeps the codes of the notifications it gets.
class UpdateCounter final : public IObserver
{
public:
    void Update(Observable*, TChangeCode code) override { m_codes.push_back(code); }

    /// What came since the last call.
    std::vector<TChangeCode> take() { return std::exchange(m_codes, {}); }

private:
    std::vector<TChangeCode> m_codes;
};
