#pragma once

#include <QString>

namespace ZelkoRecorder {

/// Notes on disk which records a device's recorder is recording, by a file beside each of them in the device's folder.
/// So what it left unfinished when it was killed differs from a record that somebody has put there as it is: a copy of
/// a record's folder has no mark, whatever the record says of itself.
///
/// Any thread; blocks for as long as the disk takes.
class RecordingMarks
{
public:
    explicit RecordingMarks(const QString& deviceFolder);

    /// Durable when it returns true; false if the disk refuses, or the record has a mark.
    bool set(const QString& recordID) const;

    bool isSet(const QString& recordID) const;

    /// Nothing happens if the record has none.
    void clear(const QString& recordID) const;

    /// Removes the marks of records that are not in the device's folder. Not while one is about to be born.
    void clearOrphans() const;

private:
    QString fileOf(const QString& recordID) const;

    const QString m_folder;
};

} // namespace ZelkoRecorder
