#pragma once

#include "testusers.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStringList>

#include <csignal>

#include <sys/wait.h>

namespace ZelkoTest {

/// A recorder process, which is killed with this object. It has the users of TestUsers.
class RecorderProcess
{
public:
    explicit RecorderProcess(const QString& program)
        : m_program(program)
    {}
    ~RecorderProcess() { kill(); }

    /// Starts it at a port of its own and waits until it serves; false if it ends instead or takes too long.
    bool start(const QStringList& arguments) { return startWithUsers(m_users.path(), arguments); }

    /// The same with another users file, or with none where the path is empty.
    bool startWithUsers(const QString& path, const QStringList& arguments)
    {
        const QStringList users = path.isEmpty() ? QStringList() : QStringList{QStringLiteral("--users"), path};
        launch(QStringList{QStringLiteral("--port"), QStringLiteral("0")} + users + arguments);
        static const QRegularExpression ready(QStringLiteral("^READY port=(\\d+)\n$"));
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(timeout)) {
                return false;
            }
        }
        const auto match = ready.match(QString::fromLatin1(m_process.readLine()));
        m_port = static_cast<quint16>(match.captured(1).toUInt());
        return match.hasMatch();
    }

    /// Starts it just so.
    void launch(const QStringList& arguments)
    {
        m_process.setReadChannel(QProcess::StandardOutput);
        m_process.start(m_program, arguments);
    }

    quint16 port() const { return m_port; }
    QProcess& process() { return m_process; }

    /// Waits for it to end by itself; -1 if it does not, or not by itself.
    int exitCode()
    {
        const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(timeout);
        return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    void send(int signal) { ::kill(static_cast<pid_t>(m_process.processId()), signal); }

    /// SIGSTOP; returns when it stands still with all its threads, which is false if it does not.
    bool stop()
    {
        send(SIGSTOP);
        siginfo_t state;
        return ::waitid(P_PID, static_cast<id_t>(m_process.processId()), &state, WSTOPPED | WNOWAIT) == 0;
    }

    /// SIGKILL; returns when it is dead.
    void kill()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(timeout);
        }
    }

private:
    static constexpr int timeout = 30'000;

    const TestUsers m_users;
    const QString m_program;
    QProcess m_process;
    quint16 m_port = 0;
};

} // namespace ZelkoTest
