#pragma once

#include <QtGlobal>

namespace SPECTRUM_OVERVIEW {

/// How far two times lie apart, whichever is the earlier one.
inline quint64 timeDistance(quint64 a, quint64 b)
{
    return a < b ? b - a : a - b;
}

} // namespace SPECTRUM_OVERVIEW
