#pragma once

#include <zelkobase/data/zelko_recorddata.h>

namespace ZelkoRecorder {

/// The lowest data rate class that carries so many bytes (of 1000 to the kB) a second; the variable class for more than
/// any of them does.
ZELKO_XML::ZELKO_RecordData::DataRate dataRateClass(quint64 bytesPerSecond);

} // namespace ZelkoRecorder
