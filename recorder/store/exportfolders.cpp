#include <recorder/store/exportfolders.h>

#include <recorder/store/recorderlog.h>

#include <reportcore/durablefile.h>

#include <QDir>
#include <QFile>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZelkoRecorder {

namespace {

constexpr qsizetype longestPath = 2000;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

bool isPlainPath(const QString& path)
{
    return path.startsWith(QLatin1Char('/')) && path.size() <= longestPath && !path.contains(QLatin1Char('@')) &&
           !path.contains(QChar::Null);
}

// Without what "//" and a "/" at the end make.
QStringList stepsOf(const QString& path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

bool isDotted(const QStringList& steps)
{
    return steps.contains(QStringLiteral(".")) || steps.contains(QStringLiteral(".."));
}

// What leads from the folder to the path; nothing, and false, if the path is not below it.
bool stepsBelow(const QString& folder, const QStringList& path, QStringList* below)
{
    const QStringList steps = stepsOf(folder);
    *below = path.mid(steps.size());
    return path.mid(0, steps.size()) == steps;
}

// Why a folder could not be opened.
StoreStatus reasonOfErrno()
{
    return errno == ELOOP || errno == ENOTDIR ? StoreStatus::BadFolder : StoreStatus::DiskRefused;
}

} // namespace

OpenFolder::OpenFolder(int descriptor)
    : m_descriptor(descriptor)
{}

OpenFolder::~OpenFolder()
{
    if (isOpen()) {
        ::close(m_descriptor);
    }
}

OpenFolder::OpenFolder(OpenFolder&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{}

OpenFolder& OpenFolder::operator=(OpenFolder&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

QString OpenFolder::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
}

bool OpenFolder::has(const QString& name) const
{
    struct stat status = {};
    return ::fstatat(m_descriptor, QFile::encodeName(name).constData(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

OpenFolder OpenFolder::open(const QString& name) const
{
    return OpenFolder(::openat(m_descriptor, QFile::encodeName(name).constData(), folderFlags | O_NOFOLLOW));
}

OpenFolder OpenFolder::make(const QString& name) const
{
    constexpr mode_t everybodyAsMasked = 0777;
    const QByteArray encoded = QFile::encodeName(name);
    const bool isNew = ::mkdirat(m_descriptor, encoded.constData(), everybodyAsMasked) == 0;
    if (isNew && !REPORTGENERATOR::syncFolder(path())) {
        ::unlinkat(m_descriptor, encoded.constData(), AT_REMOVEDIR);
        errno = EIO;
        return OpenFolder();
    }
    return open(name);
}

bool OpenFolder::rename(const QString& from, const QString& to) const
{
    const QByteArray before = QFile::encodeName(from);
    const QByteArray after = QFile::encodeName(to);
    if (::renameat(m_descriptor, before.constData(), m_descriptor, after.constData()) != 0) {
        return false;
    }
    const bool isDurable = REPORTGENERATOR::syncFolder(path());
    if (!isDurable && ::renameat(m_descriptor, after.constData(), m_descriptor, before.constData()) != 0) {
        qCWarning(recorderLog).noquote() << "whether" << to << "outlives the machine is not known: the disk refuses";
    }
    return isDurable;
}

void OpenFolder::remove(const QString& name) const
{
    const QByteArray encoded = QFile::encodeName(name);
    if (::unlinkat(m_descriptor, encoded.constData(), 0) == 0) {
        return;
    }
    if (const OpenFolder folder = open(name); folder.isOpen()) {
        QDir(folder.path()).removeRecursively(); // but for the folder itself, which has another name there
        ::unlinkat(m_descriptor, encoded.constData(), AT_REMOVEDIR);
    }
}

ExportFolders::ExportFolders(const QStringList& folders)
    : m_folders(folders)
{}

StoreStatus ExportFolders::open(const QString& path, OpenFolder* folder) const
{
    QStringList below;
    const StoreStatus status = begin(path, folder, &below);
    return status == StoreStatus::Done ? descend(below, folder) : status;
}

StoreStatus ExportFolders::look(const QString& path, OpenFolder* folder, bool* isWhole) const
{
    QStringList below;
    const StoreStatus status = begin(path, folder, &below);
    *isWhole = status == StoreStatus::Done;
    for (qsizetype i = 0; *isWhole && i < below.size(); ++i) {
        OpenFolder next = folder->open(below.at(i));
        *isWhole = next.isOpen();
        if (*isWhole) {
            *folder = std::move(next);
        } else if (errno != ENOENT) {
            return reasonOfErrno();
        }
    }
    return status;
}

// Opens the allowed folder; `below` leads from there to the path.
StoreStatus ExportFolders::begin(const QString& path, OpenFolder* folder, QStringList* below) const
{
    const QStringList steps = stepsOf(path);
    if (!isPlainPath(path) || isDotted(steps)) {
        return StoreStatus::BadFolder;
    }
    for (const QString& allowed : m_folders) {
        if (stepsBelow(allowed, steps, below)) {
            *folder = OpenFolder(::open(QFile::encodeName(allowed).constData(), folderFlags));
            return folder->isOpen() ? StoreStatus::Done : reasonOfErrno();
        }
    }
    return StoreStatus::BadFolder;
}

// Step by step, as the kernel sees the folders: a path that was looked at first may lead elsewhere once it is used.
StoreStatus ExportFolders::descend(const QStringList& steps, OpenFolder* folder)
{
    for (const QString& step : steps) {
        if (folder->isOpen()) {
            *folder = folder->make(step);
        }
    }
    return folder->isOpen() ? StoreStatus::Done : reasonOfErrno();
}

} // namespace ZelkoRecorder
