#pragma once

#include <zelkobase/data/zelko_recorddata.h>

namespace ZELKO_XML {

/// Whether samples of the record are being written.
inline bool isBeingRecorded(const ZELKO_RecordData& record)
{
    using Status = ZELKO_RecordData::RecordStatus;
    return record.GetRecordStatus() == Status::Recording || record.GetRecordStatus() == Status::LoopRecording;
}

/// A record counts as finished unless it says otherwise.
inline bool isFinished(const ZELKO_RecordData& record)
{
    return !record.IsFinishedSet() || record.GetFinished();
}

/// Whether the samples have a format for which a client offers a spectrum.
inline bool hasSpectrum(const ZELKO_RecordData& record)
{
    using Format = ZELKO_RecordData::DataFormat;
    return record.GetDataFormat() == Format::IQ16 || record.GetDataFormat() == Format::IQ32;
}

} // namespace ZELKO_XML
