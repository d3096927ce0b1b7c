#include <recorder/source/regularfile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZelkoRecorder {

namespace {

// A file that was opened by its descriptor does not know its name.
class NamedFile final : public QFile
{
public:
    explicit NamedFile(const QString& path)
        : m_path(path)
    {}
    QString fileName() const override { return m_path; }

private:
    const QString m_path;
};

} // namespace

// Asked of what was opened: by the time a name is opened it may stand for something else. A pipe that nobody writes to
// would make an ordinary open wait for ever.
std::unique_ptr<QFile> openRegularFile(const QString& path, QString* error)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        *error = QStringLiteral("\"%1\" cannot be read: %2").arg(path, qt_error_string());
        return nullptr;
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        *error = QStringLiteral("\"%1\" is not a file").arg(path);
        ::close(descriptor);
        return nullptr;
    }
    auto file = std::make_unique<NamedFile>(path);
    if (!file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        *error = QStringLiteral("\"%1\" cannot be read: %2").arg(path, file->errorString());
        ::close(descriptor);
        return nullptr;
    }
    return file;
}

} // namespace ZelkoRecorder
