#include <console/session/storefolder.h>

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

namespace ZelkoConsole {
namespace {

constexpr int mostConsoles = 100;

QString numbered(const QString& wanted, int number)
{
    return number == 1 ? wanted : QStringLiteral("%1-%2").arg(wanted).arg(number);
}

} // namespace

StoreFolder::StoreFolder(const QString& wanted)
    : m_path(wanted)
{
    QDir().mkpath(QFileInfo(wanted).path());
    for (int number = 1; number <= mostConsoles; ++number) {
        const QString path = numbered(wanted, number);
        auto lock = std::make_unique<QLockFile>(path + QLatin1String(".lock"));
        lock->setStaleLockTime(0); // a console may run for weeks
        if (lock->tryLock()) {
            m_path = path;
            m_lock = std::move(lock);
            return;
        }
        if (lock->error() != QLockFile::LockFailedError) {
            return;
        }
    }
}

StoreFolder::~StoreFolder() = default;

} // namespace ZelkoConsole
