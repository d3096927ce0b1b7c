#pragma once

#include <QtGlobal>

/// When the records of tests begin, see makeRecord, in microseconds since the epoch: the 14th of November 2023, at
/// 23:13:20 of the local time of tests.
inline constexpr quint64 recordBegin = 1'700'000'000'000'000;
