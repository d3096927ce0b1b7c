#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QVector>

#include <memory>

namespace ZelkoRecorder {

/// A record as it was at one moment. Nobody changes it once it is shared: a new state is a new object, so that threads
/// may pass it on without a lock.
using RecordPointer = std::shared_ptr<ZELKO_XML::ZELKO_RecordData>;

using RecordPointers = QVector<RecordPointer>;

} // namespace ZelkoRecorder
