#pragma once

#include <QtGlobal>

namespace ZELKO_XML {
class ZELKO_RecordData;
}

namespace ZelkoGUI {

/// From when to when a record goes, in microseconds since the epoch, and from where to where in the recording. Each is
/// the lowest or the highest in the index of a record that has more than one entry there, and what the record says of
/// itself otherwise; all 0 without a record.
struct RecordSpan
{
    quint64 startTime = 0;
    quint64 stopTime = 0;
    quint64 startOffset = 0;
    quint64 stopOffset = 0;

    RecordSpan() = default;
    explicit RecordSpan(const ZELKO_XML::ZELKO_RecordData& record);

    /// Whether there is a position between the ends for each time between them.
    bool isRising() const { return stopTime > startTime && stopOffset > startOffset; }

    /// The position at a time, as if the recording had grown evenly; also outside of the ends. The start for each time
    /// of a record that takes none.
    quint64 offsetAt(quint64 time) const;
};

} // namespace ZelkoGUI
