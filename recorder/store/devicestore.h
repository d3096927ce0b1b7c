#pragma once

#include <recorder/store/recordingmarks.h>
#include <recorder/store/recordpointer.h>

#include <QString>
#include <QStringList>

namespace ZelkoRecorder {

/// The records of one device on disk: below the device's folder a folder per record, named after its ID, with
/// "RecordData.xml" and the file of samples.
///
/// It keeps nothing in memory and takes no lock: any thread may call it, and each operation sees the disk as it is. All
/// of them block for as long as the disk takes. Names that begin with "." are the store's own.
class DeviceStore
{
public:
    /// Makes the names in a folder durable; false if the disk refuses.
    using Sync = bool (*)(const QString& folder);

    /// `sync` takes care of records that come and go as a whole.
    explicit DeviceStore(const QString& folder, Sync sync = syncFolder);

    const QString& folder() const { return m_folder; }
    QString recordFolder(const QString& recordID) const;

    /// Makes the folder if it is missing, and those above it, durably. False, and a text for people in `error`, if it
    /// cannot be used.
    bool open(QString* error) const;

    /// Removes what births and deletions left that were interrupted: nothing of it was ever a record for anybody.
    void removeLeftovers() const;

    /// Names of the folders that may hold a record, in no order. What cannot be one is told to the log.
    QStringList recordIds() const;

    /// The record, just as its metadata says. Null, and a text for people in `error`, if its files are no regular
    /// files, cannot be read, are no record, or are one of another ID.
    RecordPointer read(const QString& recordID, QString* error) const;

    /// As `read`, but a record that was left unfinished is closed on disk first, and what an interrupted save left in
    /// its folder is removed. One that was recorded here may be deleted from then on; one that somebody has put there
    /// keeps its protection. Not while somebody may be recording or saving it.
    RecordPointer readAtRest(const QString& recordID, QString* error) const;

    /// Replaces a record's metadata, durably.
    bool save(const ZELKO_XML::ZELKO_RecordData& record) const;

    /// Removes records with all their files. When it returns those in the result are gone for good, whatever happens to
    /// the machine; the others are there.
    QStringList remove(const QStringList& recordIDs) const;

    /// Whether the record may be deleted as a client asks: it is marked so, and nobody is writing, reading or
    /// copying it as far as its status tells.
    static bool mayDelete(const ZELKO_XML::ZELKO_RecordData& record);

    /// Which records are being recorded here, or were when the recorder died.
    const RecordingMarks& marks() const { return m_marks; }

    /// Where a record is built before it appears under its own name.
    QString birthFolder(const QString& recordID) const;

    /// Lets a record that is whole and durable in its birth folder appear in the store; durable when it returns true.
    /// False if the disk refuses, or there is such a record; then the birth folder is as it was. Only if the
    /// record is there all the same it could not be taken back, and whether it is durable is not known.
    bool publish(const QString& recordID) const;

private:
    static bool syncFolder(const QString& folder);
    QString tombstone(const QString& recordID) const;
    QStringList restore(const QStringList& recordIDs) const;

    const QString m_folder;
    const RecordingMarks m_marks;
    const Sync m_sync;
};

} // namespace ZelkoRecorder
