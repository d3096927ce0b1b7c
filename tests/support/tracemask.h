#pragma once

#include <observerbase/errorhandler.h>

/// The trace mask for as long as it exists.
class TraceMask
{
public:
    explicit TraceMask(unsigned int mask)
        : m_before(ErrorHandler::Instance()->GetTraceMask())
    {
        ErrorHandler::Instance()->SetTraceMask(mask);
    }
    ~TraceMask() { ErrorHandler::Instance()->SetTraceMask(m_before); }
    TraceMask(const TraceMask&) = delete;
    TraceMask& operator=(const TraceMask&) = delete;

private:
    const unsigned int m_before;
};
