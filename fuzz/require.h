#pragma once

#include <cstdlib>

/// What must hold whatever the input; a fuzzer takes the abort for a finding.
inline void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}
