#pragma once

#include <zelkobase/data/zelko_recorddata.h>

namespace ZelkoGUI {

/// Whether samples of the record are being written.
inline bool isBeingRecorded(const ZELKO_XML::ZELKO_RecordData& record)
{
    using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;
    return record.GetRecordStatus() == Status::Recording || record.GetRecordStatus() == Status::LoopRecording;
}

/// A record counts as finished unless it says otherwise.
inline bool isFinished(const ZELKO_XML::ZELKO_RecordData& record)
{
    return !record.IsFinishedSet() || record.GetFinished();
}

/// Whether the samples have a format of which a spectrum can be computed.
inline bool hasSpectrum(const ZELKO_XML::ZELKO_RecordData& record)
{
    using Format = ZELKO_XML::ZELKO_RecordData::DataFormat;
    return record.GetDataFormat() == Format::IQ16 || record.GetDataFormat() == Format::IQ32;
}

} // namespace ZelkoGUI
