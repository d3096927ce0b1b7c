#pragma once

#include <recorder/store/bytetransfer.h>
#include <recorder/store/devicestore.h>
#include <recorder/store/exportfolders.h>

namespace ZelkoRecorder {

/// Exports the files of one record at rest into a folder that is named after its ID, below the folder that was asked
/// for. That folder appears with all files in it, durably, or not at all; nothing that stands there is ever replaced.
class RecordExport
{
public:
    /// What becomes of the files of an export that is given up.
    enum class Partial {
        Removed,
        Kept ///< under the record's ID with ".partial" behind it, and a number if that is taken
    };

    /// Looks at target and record. `path` is absolute. Blocks.
    RecordExport(const DeviceStore& store, const QString& recordID, const ExportFolders& folders, const QString& path);

    /// What the look has found: `Done`, or why `run` is not to be called: `UnknownRecord`, `InUse` for a record that is
    /// being recorded, `Damaged`, `BadFolder`, `Exists`, `NoSpace` or `DiskRefused`.
    StoreStatus status() const { return m_status; }

    /// The record to be exported; null if there is none.
    const RecordPointer& record() const { return m_record; }

    /// Bytes of samples to be exported; 0 if there are none.
    quint64 size() const;

    /// Makes what is missing of the target, and writes the files. `watcher` may give it up, after which `partial` is
    /// asked what to do with them. With `Uncertain` the folder appeared and may not be durable. `Exists` if somebody
    /// else has made the folder meanwhile. The record must not be deleted meanwhile. Blocks.
    StoreStatus run(const ByteTransfer::Watcher& watcher = {}, const std::function<Partial()>& partial = {});

private:
    StoreStatus prepare(const QString& recordID);
    StoreStatus write(const ByteTransfer::Watcher& watcher) const;
    StoreStatus publish() const;
    void keepPartial() const;
    QString builtIn() const;

    const DeviceStore m_store;
    const ExportFolders m_folders;
    const QString m_path;
    RecordPointer m_record;
    OpenFolder m_target;
    StoreStatus m_status;
};

} // namespace ZelkoRecorder
