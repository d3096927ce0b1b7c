#pragma once

#include <recorder/store/storestatus.h>

#include <QFile>

#include <functional>

namespace ZelkoRecorder {

/// Moves bytes from file to file, part by part, so that it can be watched and given up. For one thread.
class ByteTransfer
{
public:
    /// Told how many bytes have been moved in all, before the first part and after each one. False gives the transfer
    /// up.
    using Watcher = std::function<bool(quint64 moved)>;

    /// `watcher` may be empty.
    explicit ByteTransfer(Watcher watcher = {});

    /// Adds `size` bytes of `source` from `offset` on to `target`, which was opened unbuffered, where it stands.
    /// `Damaged` if the source has fewer, `NoSpace` if the disk of the target is full. Not durable by itself. Blocks.
    StoreStatus append(QFile& source, quint64 offset, quint64 size, QFile& target);

    /// Bytes moved by all calls so far.
    quint64 moved() const { return m_moved; }

    /// Makes what was written to a file durable; false if the disk refuses.
    static bool flush(QFile& file);

    /// Whether the disk of this folder has room for so many bytes more, with some left over for the metadata of others.
    static bool hasRoomFor(quint64 bytes, const QString& folder);

private:
    StoreStatus movePart(QFile& source, qint64 size, QFile& target);

    const Watcher m_watcher;
    QByteArray m_buffer;
    quint64 m_moved = 0;
};

} // namespace ZelkoRecorder
