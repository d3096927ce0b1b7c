#include <recorder/store/bytetransfer.h>

#include <algorithm>
#include <cerrno>

#include <sys/statvfs.h>
#include <unistd.h>

namespace ZelkoRecorder {

namespace {

constexpr qint64 partSize = 1024 * 1024;

// Left to recordings and metadata when everything else is full.
constexpr quint64 reserve = 16 * 1024 * 1024;

// Past the file object, which cannot tell a full disk from another failure.
bool writeAll(int descriptor, const char* bytes, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, static_cast<std::size_t>(size));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes += std::max<ssize_t>(written, 0);
        size -= std::max<ssize_t>(written, 0);
    }
    return true;
}

bool isFull(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

} // namespace

ByteTransfer::ByteTransfer(Watcher watcher)
    : m_watcher(std::move(watcher))
{}

StoreStatus ByteTransfer::append(QFile& source, quint64 offset, quint64 size, QFile& target)
{
    if (!source.seek(static_cast<qint64>(offset))) {
        return StoreStatus::Damaged;
    }
    const quint64 end = m_moved + size;
    do {
        if (m_watcher && !m_watcher(m_moved)) {
            return StoreStatus::Cancelled;
        }
        const auto part = static_cast<qint64>(std::min<quint64>(end - m_moved, partSize));
        if (const StoreStatus status = movePart(source, part, target); status != StoreStatus::Done) {
            return status;
        }
    } while (m_moved < end);
    if (m_watcher) {
        m_watcher(m_moved);
    }
    return StoreStatus::Done;
}

StoreStatus ByteTransfer::movePart(QFile& source, qint64 size, QFile& target)
{
    m_buffer.resize(size);
    if (source.read(m_buffer.data(), size) != size) {
        return StoreStatus::Damaged;
    }
    if (!writeAll(target.handle(), m_buffer.constData(), size)) {
        return isFull(errno) ? StoreStatus::NoSpace : StoreStatus::DiskRefused;
    }
    m_moved += static_cast<quint64>(size);
    return StoreStatus::Done;
}

bool ByteTransfer::flush(QFile& file)
{
    return file.flush() && ::fsync(file.handle()) == 0;
}

bool ByteTransfer::hasRoomFor(quint64 bytes, const QString& folder)
{
    struct statvfs disk = {};
    if (::statvfs(QFile::encodeName(folder).constData(), &disk) != 0) {
        return false;
    }
    const quint64 available = quint64{disk.f_bavail} * disk.f_frsize;
    return bytes < available && available - bytes >= reserve;
}

} // namespace ZelkoRecorder
