#include <reportcore/durablefile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace REPORTGENERATOR {

namespace {

// The bytes are on disk when it returns true; whether the folder's entry leads to them is open.
bool replaceFile(const QString& fileName, const QByteArray& bytes)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return false;
    }
    return file.flush() && ::fsync(file.handle()) == 0 && file.commit();
}

// A file as it is before it is replaced: kept open, its bytes live on without a name.
class ReplacedFile
{
public:
    explicit ReplacedFile(const QString& name)
        : m_existed(QFileInfo::exists(name))
        , m_file(name)
    {
        if (QFileInfo(name).isFile()) {
            m_file.open(QIODevice::ReadOnly);
        }
    }

    void putBack()
    {
        if (!m_existed) {
            QFile::remove(m_file.fileName());
        } else if (m_file.isOpen()) {
            replaceFile(m_file.fileName(), m_file.readAll());
        }
    }

private:
    const bool m_existed;
    QFile m_file;
};

} // namespace

bool writeDurably(const QString& fileName, const QByteArray& bytes)
{
    ReplacedFile before(fileName);
    if (!replaceFile(fileName, bytes)) {
        return false;
    }
    const bool isDurable = syncFolder(QFileInfo(fileName).absolutePath());
    if (!isDurable) {
        before.putBack();
    }
    return isDurable;
}

// Each new folder is an entry of the one above it, and that is what must be synced. One whose entry may be lost is
// taken away again, so that the next try does not find it and believe it durable.
bool makeFolderDurably(const QString& folder)
{
    if (QFileInfo(folder).isDir()) {
        return true;
    }
    const QString above = QFileInfo(QDir::cleanPath(folder)).absolutePath();
    if (above == folder || !makeFolderDurably(above) || !QDir().mkdir(folder)) {
        return false;
    }
    const bool isDurable = syncFolder(above);
    if (!isDurable) {
        QDir().rmdir(folder);
    }
    return isDurable;
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
