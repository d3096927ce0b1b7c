#pragma once

#include "overviewpieces.h"

#include <QSet>
#include <QUdpSocket>

namespace ZelkoTest {

/// Plays the recorder that sends an overview, at this host.
class OverviewPeer
{
public:
    explicit OverviewPeer(quint64 cookie = 7, const QString& address = QStringLiteral("127.0.0.1"))
        : m_cookie(cookie)
    {
        m_socket.bind(QHostAddress(address));
    }

    QUdpSocket& socket() { return m_socket; }

    /// Sends the lines of the answer to a wish but those that are lost on the way.
    void answer(const SPECTRUM_OVERVIEW::OverviewWish& wish, uint port, const QSet<int>& lost = {})
    {
        for (int line = 0; line < static_cast<int>(wish.lineCount); ++line) {
            if (!lost.contains(line)) {
                sendLine(wish, port, line);
            }
        }
    }
    void sendLine(const SPECTRUM_OVERVIEW::OverviewWish& wish, uint port, int line)
    {
        const QList<QByteArray> all = datagrams(AnswerPieces{wish, wish.fftLength, m_cookie}, line);
        for (const QByteArray& datagram : all) {
            m_socket.writeDatagram(datagram, QHostAddress::LocalHost, static_cast<quint16>(port));
        }
    }

private:
    const quint64 m_cookie;
    QUdpSocket m_socket;
};

} // namespace ZelkoTest
