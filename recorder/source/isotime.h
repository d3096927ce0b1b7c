#pragma once

#include <QStringView>

#include <optional>

namespace ZelkoRecorder {

/// Microseconds since the epoch of an ISO 8601 moment, "yyyy-mm-ddThh:mm:ss", an optional fraction of any number of
/// digits, and a zone, "Z" or "+hh:mm" or "-hh:mm"; without a zone it is UTC. Digits below the microsecond are cut off.
/// Nothing for any other text, for dates that do not exist, and for moments before 1970.
std::optional<quint64> microsecondsFromIsoTime(QStringView text);

} // namespace ZelkoRecorder
