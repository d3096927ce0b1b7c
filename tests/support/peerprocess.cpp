#include "peerprocess.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>

#include <csignal>

#include <unistd.h>

namespace {

constexpr int patience = 60000; // ms

void sendSignal(const QProcess& process, int signal)
{
    if (process.processId() > 0) {
        ::kill(static_cast<pid_t>(process.processId()), signal);
    }
}

// A number of the kernel's account of a process.
qint64 statusNumber(qint64 pid, const QByteArray& field)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const qsizetype begin = text.indexOf('\n' + field + ':');
    const QByteArray line = begin < 0 ? QByteArray() : text.mid(begin + field.size() + 2);
    return line.simplified().split(' ').first().toLongLong();
}

// A thread's letter stands behind the name in brackets, which may hold anything.
bool isThreadStopped(const QString& path)
{
    QFile file(path + QStringLiteral("/stat"));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.mid(text.lastIndexOf(')')).startsWith(") T");
}

bool isStopped(qint64 pid)
{
    const QDir threads(QStringLiteral("/proc/%1/task").arg(pid));
    const QStringList names = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return !names.isEmpty() && std::all_of(names.begin(), names.end(), [&](const QString& name) {
        return isThreadStopped(threads.filePath(name));
    });
}

} // namespace

QString PeerProcess::serverProgram()
{
    return QStringLiteral(ZELKO_LINK_PEER);
}

QString PeerProcess::clientProgram()
{
    return QStringLiteral(ZELKO_LINK_CLIENT);
}

std::unique_ptr<PeerProcess> PeerProcess::client(quint16 serverPort)
{
    return std::unique_ptr<PeerProcess>(new PeerProcess(Started(), clientProgram(), {QString::number(serverPort)}));
}

PeerProcess::PeerProcess(const QStringList& arguments, quint16 port, const QString& program)
    : PeerProcess(Started(), program, QStringList(arguments) << QStringLiteral("--port") << QString::number(port))
{}

PeerProcess::PeerProcess(Started, const QString& program, const QStringList& arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // Its memory is measured: under the address sanitizer it must not keep what was given back.
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("quarantine_size_mb=1"));
    m_process.setProcessEnvironment(environment);
    m_process.start(program, arguments);
    const QString ready = hear();
    if (ready.startsWith(QLatin1String("READY port="))) {
        m_port = ready.mid(11).toUShort();
    }
}

PeerProcess::~PeerProcess()
{
    kill();
}

QString PeerProcess::ask(const QString& line)
{
    say(line);
    return hear();
}

// At once: who waits for something else meanwhile lets no event loop run.
void PeerProcess::say(const QString& line)
{
    m_process.write(line.toUtf8() + '\n');
    m_process.waitForBytesWritten(patience);
}

void PeerProcess::kill()
{
    sendSignal(m_process, SIGKILL);
    m_process.waitForFinished(patience);
}

void PeerProcess::stop()
{
    sendSignal(m_process, SIGSTOP);
    const QDeadlineTimer deadline(patience);
    while (pid() > 0 && !isStopped(pid()) &&
           !deadline.hasExpired()) { // until then some of its threads may still answer
        QThread::yieldCurrentThread();
    }
}

void PeerProcess::continueIt()
{
    sendSignal(m_process, SIGCONT);
}

bool PeerProcess::terminate()
{
    m_process.terminate();
    return m_process.waitForFinished(patience) && m_process.exitStatus() == QProcess::NormalExit &&
           m_process.exitCode() == 0;
}

QString PeerProcess::hear()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patience)) {
            return {};
        }
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

qint64 residentBytes(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

qint64 peakResidentBytes(qint64 pid)
{
    return statusNumber(pid, "VmHWM") * 1024;
}

int threadCount(qint64 pid)
{
    return static_cast<int>(statusNumber(pid, "Threads"));
}

int openFileCount(qint64 pid)
{
    return static_cast<int>(QDir(QStringLiteral("/proc/%1/fd").arg(pid)).count());
}
