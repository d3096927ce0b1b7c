#include <vornappstartup/inifile_p.h>

#include <observerbase/errorhandler.h>
#include <reportcore/durablefile.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryFile>

#include <utility>

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;

bool makeFolderOf(const QString& fileName)
{
    return QDir().mkpath(QFileInfo(fileName).absolutePath());
}

// What is no file, as a pipe, is not opened: that may block.
std::optional<IniValues> valuesIn(const QString& fileName)
{
    const QFileInfo info(fileName);
    QFile file(fileName);
    const bool opens = info.isFile() && info.size() <= largestFile && file.open(QIODevice::ReadOnly);
    return opens ? parseIni(file.readAll()) : std::nullopt;
}

/// A name beside the file that is free; empty if there is none.
QString freeName(const QString& fileName)
{
    constexpr int manyEnough = 1000;
    const QString first = fileName + QStringLiteral(".unreadable");
    for (int number = 1; number <= manyEnough; ++number) {
        QString name = number == 1 ? first : first + QStringLiteral("-%1").arg(number);
        if (!QFileInfo::exists(name)) {
            return name;
        }
    }
    return QString();
}

} // namespace

IniFile::IniFile(const QString& fileName)
    : m_fileName(fileName)
{
    if (!read()) {
        mend();
        tellUser();
    }
}

IniFile::~IniFile()
{
    write();
}

void IniFile::setValue(const QString& key, const QString& value)
{
    if (!key.isEmpty()) {
        m_values[key] = value;
        m_changes[key] = value;
    }
}

QString IniFile::lockName() const
{
    return m_fileName + QStringLiteral(".lock");
}

// A file that is not there leaves the values as they are known, and so does one that cannot be read.
bool IniFile::read()
{
    if (!QFileInfo::exists(m_fileName)) {
        return true;
    }
    if (const auto values = valuesIn(m_fileName)) {
        m_values = *values;
        m_values.insert(m_changes);
        return true;
    }
    return false;
}

bool IniFile::readOrSetAside()
{
    return read() || setAside();
}

// Without the lock it could be the good file that another process has put in the place of the damaged one meanwhile.
void IniFile::mend()
{
    QLockFile lock(lockName());
    if (lock.tryLock(lockPatience)) {
        readOrSetAside();
    } else if (lock.error() != QLockFile::LockFailedError) {
        leaveInPlace();
    }
}

bool IniFile::setAside()
{
    const QString name = freeName(m_fileName);
    if (!name.isEmpty() && QFile::rename(m_fileName, name)) {
        m_changes = m_values;
        m_toTell =
            QCoreApplication::translate("CfgCenter", "The settings in %1 cannot be read. They were set aside as %2.")
                .arg(m_fileName, name);
        return true;
    }
    leaveInPlace();
    return false;
}

void IniFile::leaveInPlace()
{
    if (!m_isStuck) {
        m_isStuck = true;
        m_toTell = QCoreApplication::translate(
                       "CfgCenter", "The settings in %1 cannot be read, nor set aside. Changes are not kept.")
                       .arg(m_fileName);
    }
}

void IniFile::tellUser()
{
    if (!m_toTell.isEmpty()) {
        ErrorHandler::Instance()->ShowMessage(std::exchange(m_toTell, QString()));
    }
}

bool IniFile::isWritable() const
{
    return makeFolderOf(m_fileName) && QTemporaryFile(m_fileName + QStringLiteral(".XXXXXX")).open();
}

bool IniFile::write()
{
    if (m_changes.isEmpty()) {
        return true;
    }
    makeFolderOf(m_fileName);
    const bool isWritten = writeWithLock();
    tellUser();
    return isWritten;
}

bool IniFile::writeWithLock()
{
    QLockFile lock(lockName());
    if (!lock.tryLock(lockPatience) || !readOrSetAside() ||
        !REPORTGENERATOR::writeDurably(m_fileName, iniText(m_values))) {
        return false;
    }
    m_changes.clear();
    return true;
}
