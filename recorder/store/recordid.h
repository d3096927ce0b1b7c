#pragma once

#include <QString>

namespace ZelkoRecorder {

/// A new record ID: when the recording began, to the millisecond in UTC, and 48 random bits, so that neither two
/// devices nor two recorders make the same one. `startTime` is in microseconds since the epoch. Any thread.
QString createRecordId(quint64 startTime);

/// Whether a text can be a record's ID and the name of its folder: 1 to 128 letters, digits, "_", "-" and "." of ASCII,
/// not beginning with ".".
bool isRecordId(QStringView text);

} // namespace ZelkoRecorder
