#pragma once

#include "require.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QTcpSocket>
#include <QtEndian>

/// Sends messages of GIOP on one connection, as long as that lives, on the thread that the recorder answers on.
class ServiceCaller
{
public:
    explicit ServiceCaller(quint16 port)
        : m_port(port)
    {}

    /// Gives what comes back; nothing, or only a part, where the connection ends before that.
    QByteArray call(const QByteArray& message)
    {
        if (m_socket.state() != QAbstractSocket::ConnectedState) {
            m_socket.connectToHost(QHostAddress::LocalHost, m_port);
            require(m_socket.waitForConnected());
        }
        m_socket.write(message);
        QByteArray answer;
        while (!isWhole(answer) && m_socket.state() == QAbstractSocket::ConnectedState) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            answer += m_socket.readAll();
        }
        constexpr char reply = 1; // anything else ends a connection
        if (!isWhole(answer) || answer[7] != reply) {
            m_socket.abort();
        }
        return answer;
    }

private:
    static bool isWhole(const QByteArray& message)
    {
        constexpr qsizetype headSize = 12;
        return message.size() >= headSize &&
               message.size() >= headSize + qFromLittleEndian<qint32>(message.constData() + 8);
    }

    const quint16 m_port;
    QTcpSocket m_socket;
};
