#include "serverprocess.h"

#include <QFile>

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

} // namespace

QString ServerProcess::peerProgram()
{
    return QStringLiteral(ZELKO_LINK_PEER);
}

ServerProcess::ServerProcess(const QStringList& arguments, quint16 port, const QString& program)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, QStringList(arguments) << QStringLiteral("--port") << QString::number(port));
    const QString ready = readLine();
    if (ready.startsWith(QLatin1String("READY port="))) {
        m_port = ready.mid(11).toUShort();
    }
}

ServerProcess::~ServerProcess()
{
    kill();
}

QString ServerProcess::ask(const QString& line)
{
    m_process.write(line.toUtf8() + '\n');
    return readLine();
}

void ServerProcess::kill()
{
    sendSignal(m_process, SIGKILL);
    m_process.waitForFinished(patience);
}

void ServerProcess::stop()
{
    sendSignal(m_process, SIGSTOP);
}

void ServerProcess::continueIt()
{
    sendSignal(m_process, SIGCONT);
}

bool ServerProcess::terminate()
{
    m_process.terminate();
    return m_process.waitForFinished(patience) && m_process.exitStatus() == QProcess::NormalExit &&
           m_process.exitCode() == 0;
}

QString ServerProcess::readLine()
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
