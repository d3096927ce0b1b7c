#include <recorder/store/deviceclock.h>

#include <recorder/source/regularfile.h>
#include <recorder/store/recorderlog.h>

#include <reportcore/durablefile.h>

#include <QDir>
#include <QFileInfo>

#include <chrono>

namespace ZelkoRecorder {

namespace {

constexpr qint64 longestLine = 32;

} // namespace

DeviceClock::DeviceClock(const QString& folder, MachineClock machine)
    : m_path(QDir(folder).filePath(QStringLiteral(".clock-shift")))
    , m_machine(std::move(machine))
    , m_shift(readShift())
{}

qint64 DeviceClock::now() const
{
    const std::lock_guard lock(m_mutex);
    return m_machine() + m_shift;
}

bool DeviceClock::isShifted() const
{
    const std::lock_guard lock(m_mutex);
    return m_shift != 0;
}

bool DeviceClock::set(qint64 time)
{
    if (!isSettable(time)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    const qint64 shift = time - m_machine();
    if (!REPORTGENERATOR::writeDurably(m_path, QByteArray::number(shift) + '\n')) {
        m_shift = readShift(); // the disk may refuse to take the new one back
        return false;
    }
    m_shift = shift;
    return true;
}

qint64 DeviceClock::machineTime()
{
    using std::chrono::duration_cast;
    return duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

qint64 DeviceClock::readShift() const
{
    if (!QFileInfo::exists(m_path)) {
        return 0;
    }
    QString error;
    const auto file = openRegularFile(m_path, &error);
    bool isNumber = false;
    const qint64 shift = file ? file->read(longestLine).trimmed().toLongLong(&isNumber) : 0;
    if (!isNumber || shift > latest || shift < -latest) {
        qCWarning(recorderLog).noquote() << "the shift of the clock in" << m_path << "cannot be read" << error;
        return 0;
    }
    return shift;
}

} // namespace ZelkoRecorder
