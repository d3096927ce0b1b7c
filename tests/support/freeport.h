#pragma once

#include <QRandomGenerator>
#include <QTcpServer>
#include <QUdpSocket>

namespace ZelkoTest {

/// A port that nobody uses, out of those that the system gives to nobody of its own accord: it stays free until whoever
/// is told of it comes to listen there.
inline quint16 freePort()
{
    constexpr int lowest = 10'000;
    constexpr int behindHighest = 30'000;
    for (;;) {
        const auto port = static_cast<quint16>(QRandomGenerator::global()->bounded(lowest, behindHighest));
        if (QUdpSocket().bind(QHostAddress::LocalHost, port) && QTcpServer().listen(QHostAddress::LocalHost, port)) {
            return port;
        }
    }
}

} // namespace ZelkoTest
