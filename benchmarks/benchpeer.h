#pragma once

#include <QProcess>
#include <QString>
#include <QtGlobal>

/// The other end of a benchmark over the network: the same program once more, with the argument "--serve", killed with
/// this object. It prints the port on which it listens, and a line end, once it can be called.
///
/// It keeps to the last processor of the machine.
class BenchPeer
{
public:
    BenchPeer();
    ~BenchPeer();
    BenchPeer(const BenchPeer&) = delete;
    BenchPeer& operator=(const BenchPeer&) = delete;

    /// Starts it and waits until it can be called, for a minute at most: then it has failed, and a line says so.
    bool start();

    /// Whether the arguments of this program say that it is such an end.
    static bool isMe(int argc, const char* const* argv);

    /// What the other end does with its port.
    static void announce(quint16 port);

    /// Where it listens; 0 before it was started.
    quint16 port() const { return m_port; }

private:
    QProcess m_process;
    quint16 m_port = 0;
};
