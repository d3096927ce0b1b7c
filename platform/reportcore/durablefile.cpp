#include <reportcore/durablefile.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace REPORTGENERATOR {

bool writeDurably(const QString& fileName, const QByteArray& bytes)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return false;
    }
    if (!file.flush() || ::fsync(file.handle()) != 0) {
        return false;
    }
    return file.commit() && syncFolder(QFileInfo(QFileInfo(fileName).absoluteFilePath()).path());
}

bool syncFolder(const QString& folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    // Some network file systems have no such operation for folders and say so with EINVAL.
    const bool synced = ::fsync(descriptor) == 0 || errno == EINVAL;
    ::close(descriptor);
    return synced;
}

} // namespace REPORTGENERATOR
