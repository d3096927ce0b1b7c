#pragma once

#include <QtGlobal>

/// A moment without its fraction, to be compared. QCOMPARE takes two doubles for the same that differ by a part in a
/// million million, which of today's microseconds since the epoch are 1700.
inline qint64 microseconds(double moment)
{
    return static_cast<qint64>(moment);
}
