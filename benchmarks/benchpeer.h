#pragma once

#include <QProcess>
#include <QString>
#include <QtGlobal>

#include <functional>

class QCoreApplication;

/// The other end of a benchmark over the network: the same program once more, with the argument "--serve", killed with
/// this object. It prints the port on which it listens, and a line end, once it can be called.
///
/// It keeps to the last processor of the machine.
class BenchPeer
{
public:
    BenchPeer(const BenchPeer&) = delete;
    BenchPeer& operator=(const BenchPeer&) = delete;

    /// What differs from one program of that kind to the next.
    struct Program
    {
        std::function<int(QCoreApplication&)> serve; ///< as the other end, until it is killed
        std::function<void(quint16 port)> begin;     ///< in front of the benchmarks; where the other end listens
        std::function<void()> end;                   ///< behind them
    };

    /// The whole of such a program: the other end if its arguments say so, and else its benchmarks. Gives the exit
    /// code.
    static int run(int argc, char** argv, const Program& program);

    /// What the other end does with its port.
    static void announce(quint16 port);

private:
    BenchPeer();
    ~BenchPeer();

    /// Starts it and waits until it can be called, for a minute at most: then it has failed, and a line says so.
    bool start();

    QProcess m_process;
    quint16 m_port = 0;
};
