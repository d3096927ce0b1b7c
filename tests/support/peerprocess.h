#pragma once

#include <QProcess>
#include <QStringList>

#include <memory>

/// A process at the other end of a link, from its READY line to its end. Killed when it goes out of scope.
class PeerProcess
{
public:
    /// The link server of the tests.
    static QString serverProgram();

    /// The link client of the tests; its argument is the port of its server.
    static QString clientProgram();

    /// Starts a server and waits until it is ready. With a port it comes back under the same one.
    explicit PeerProcess(const QStringList& arguments = {}, quint16 port = 0, const QString& program = serverProgram());

    /// Starts a client of the server at `serverPort`.
    static std::unique_ptr<PeerProcess> client(quint16 serverPort);
    ~PeerProcess();

    /// 0 when it did not become ready.
    quint16 port() const { return m_port; }
    qint64 pid() const { return m_process.processId(); }

    /// Says a line to it and gives the line that it answers with; empty when none comes.
    QString ask(const QString& line);

    /// The two halves of that: what else there is to do can be done in between.
    void say(const QString& line);
    QString hear();

    void kill();
    void stop();       ///< SIGSTOP; returns when every thread stands still
    void continueIt(); ///< SIGCONT

    /// SIGTERM, and whether it ended with 0 in time.
    bool terminate();

private:
    struct Started
    {};
    PeerProcess(Started, const QString& program, const QStringList& arguments);

    QProcess m_process;
    quint16 m_port = 0;
};

/// Resident memory of a process in bytes; 0 when it is not there.
qint64 residentBytes(qint64 pid);

/// The most that it ever was.
qint64 peakResidentBytes(qint64 pid);

/// Threads, and open files and sockets; 0 when the process is not there.
int threadCount(qint64 pid);
int openFileCount(qint64 pid);
