#pragma once

namespace ZelkoRecorder {

/// How an operation on a store ended. Whoever serves clients turns these into the codes of the service.
enum class StoreStatus {
    Done,
    UnknownRecord, ///< no such record, or its files are gone or are no record
    UnknownEntry,  ///< the record has no such bookmark or comment
    InUse,         ///< being recorded, replayed, copied, exported or deleted, or recorded without an end on disk
    NotAllowed,    ///< the record is of a kind with which this cannot be done
    Damaged,       ///< the record's end is not on disk, or samples are missing
    TooLong,       ///< a text is longer than it may be
    TooMany,   ///< more entries than a record takes, its metadata would become too large, or more exports than may wait
    BadRange,  ///< ranges that are none, reversed, empty, out of order, or not of this record
    BadFolder, ///< not below a folder that exports may go to
    Exists,    ///< there is something of that name already, which stays
    NoSpace,   ///< the disk has not enough room
    DiskRefused, ///< the disk failed in another way; what was there before is there
    Uncertain,   ///< the disk failed twice: what was asked for is there, and may be gone when the machine goes down
    Cancelled,   ///< given up at somebody's wish
    Ending       ///< the recorder is about to end
};

} // namespace ZelkoRecorder
