#include <recorder/store/storelock.h>

#include <reportcore/durablefile.h>

#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace ZelkoRecorder {

StoreLock::~StoreLock()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool StoreLock::acquire(const QString& folder, QString* error)
{
    REPORTGENERATOR::makeFolderDurably(folder);
    const QString path = QDir(folder).filePath(QStringLiteral(".lock"));
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (m_descriptor < 0) {
        *error = QStringLiteral("the store %1 cannot be used: %2").arg(folder, qt_error_string());
        return false;
    }
    if (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        *error = errno == EWOULDBLOCK
                     ? QStringLiteral("another recorder works on the store %1").arg(folder)
                     : QStringLiteral("the store %1 cannot be locked: %2").arg(folder, qt_error_string());
        return false;
    }
    return true;
}

} // namespace ZelkoRecorder
