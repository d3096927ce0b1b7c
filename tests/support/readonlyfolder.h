#pragma once

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <sys/fsuid.h>
#include <unistd.h>

namespace ZelkoTest {

/// While it lives this thread can read the folder but not write in it, not even as root. The folder above it becomes
/// readable for everybody.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString& folder)
        : m_folder(folder)
        , m_before(QFile::permissions(folder))
    {
        constexpr uid_t nobody = 65534;
        const QFile::Permissions read = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                                        QFile::ReadOther | QFile::ExeOther;
        QFile::setPermissions(QFileInfo(folder).path(), read | QFile::WriteOwner);
        QFile::setPermissions(folder, read);
        if (::geteuid() == 0) {
            ::setfsuid(nobody);
        }
    }
    ~ReadOnlyFolder()
    {
        ::setfsuid(::geteuid());
        QFile::setPermissions(m_folder, m_before);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

private:
    const QString m_folder;
    const QFile::Permissions m_before;
};

} // namespace ZelkoTest
