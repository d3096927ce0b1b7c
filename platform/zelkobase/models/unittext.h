#pragma once

#include <zelkobase/models/zelkobasemodels_export.h>

#include <QString>

/// Quantities as people read them. The texts are the same in every locale: decimal point, no grouping. Pure functions,
/// any thread.
namespace ZelkoCommon::unittext {

/// Bytes with the units of the size filter, steps of 1024: "512 Byte", "1.5 kByte", "2.25 GByte". Up to two decimals.
ZELKOBASEMODELS_EXPORT QString size(quint64 bytes);

/// A frequency, bandwidth or sample rate, to the hertz: "0 Hz", "12.5 kHz", "433.92 MHz".
ZELKOBASEMODELS_EXPORT QString hertz(quint64 hertz);

/// Below a minute seconds with up to three decimals, "2.5 s"; above, to the second, "00:01:30", "26:00:00" being
/// "1 d 02:00:00". What lies below the last digit is cut off.
ZELKOBASEMODELS_EXPORT QString duration(quint64 microseconds);

/// Local time as "yyyy-MM-dd hh:mm:ss"; empty for 0, which means "not known".
ZELKOBASEMODELS_EXPORT QString moment(quint64 microseconds);

} // namespace ZelkoCommon::unittext
