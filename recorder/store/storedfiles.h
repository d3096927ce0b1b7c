#pragma once

#include <recorder/store/devicestore.h>
#include <recorder/store/storestatus.h>

namespace ZelkoRecorder {

/// The file of samples of a record whose files are in `folder`.
QString sampleFilePath(const QString& folder, const ZELKO_XML::ZELKO_RecordData& record);

/// Replaces the metadata in `folder`, durably. False, with a line in the log, if the disk refuses or the record is none
/// that could be read again.
bool saveMetaData(const QString& folder, const ZELKO_XML::ZELKO_RecordData& record);

/// Removes from a record's folder what saves left there that were interrupted. Not while somebody saves the record.
void removeTemporaries(const QString& folder);

/// Reads a record whose samples are to be copied elsewhere. `Done`, `UnknownRecord`, `InUse` if it is being recorded,
/// or `Damaged` if its end is not on disk or samples are missing. Null in `record` if there is none.
StoreStatus readWhole(const DeviceStore& store, const QString& recordID, RecordPointer* record);

} // namespace ZelkoRecorder
