#pragma once

#include <recorder/store/recordpointer.h>

#include <QString>

namespace ZelkoRecorder {

/// Whether samples are still to come, or were when the recorder died.
bool isUnfinished(const ZELKO_XML::ZELKO_RecordData& record);

/// Puts a record at rest: finished, of the size and until the moment of its last index entry. A record without an index
/// is empty and ends when it began. Whether it may be deleted stays as it is.
void closeAtLastIndexEntry(ZELKO_XML::ZELKO_RecordData& record);

/// Closes a record in `folder` that a recorder left unfinished: drops index entries beyond the samples that are there,
/// cuts the file of samples at the last one left, and only then saves the metadata, so that it may be interrupted and
/// repeated at any point. If `wasRecordedHere` it was only protected by its recording, and may be deleted now. False,
/// and a text for people in `error`, if the disk refuses.
bool repairRecord(const QString& folder, bool wasRecordedHere, ZELKO_XML::ZELKO_RecordData& record, QString* error);

} // namespace ZelkoRecorder
