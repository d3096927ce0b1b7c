#pragma once

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <functional>
#include <utility>

#include <sys/syscall.h>
#include <unistd.h>

namespace ZelkoTest {

/// Notes which folders this process makes durable while it lives, and may have the disk refuse to. Files are none of
/// its business. For tests with one thread that syncs; one at a time.
class FolderSyncs
{
public:
    /// The disk refuses to make the folder `refusing` durable whenever `refuses` says so; all other folders it takes.
    explicit FolderSyncs(
        const QString& refusing = {}, std::function<bool()> refuses = [] { return true; })
        : m_refusing(refusing)
        , m_refuses(std::move(refuses))
    {
        present = this;
    }
    ~FolderSyncs() { present = nullptr; }
    FolderSyncs(const FolderSyncs&) = delete;
    FolderSyncs& operator=(const FolderSyncs&) = delete;

    /// In the order of their syncs.
    const QStringList& folders() const { return m_folders; }

    /// What stands in the place of the system's call.
    static int sync(int descriptor)
    {
        const QFileInfo file(QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor)));
        if (!present || !file.isDir()) {
            return static_cast<int>(::syscall(SYS_fsync, descriptor));
        }
        return present->syncFolder(file.filePath(), descriptor);
    }

private:
    int syncFolder(const QString& folder, int descriptor)
    {
        m_folders.append(folder);
        if (folder == m_refusing && m_refuses()) {
            errno = EIO;
            return -1;
        }
        return static_cast<int>(::syscall(SYS_fsync, descriptor));
    }

    static inline FolderSyncs* present = nullptr;
    const QString m_refusing;
    const std::function<bool()> m_refuses;
    QStringList m_folders;
};

} // namespace ZelkoTest

// The linker finds this one before the system's, for the libraries of the process as well.
extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
    return ZelkoTest::FolderSyncs::sync(descriptor);
}
