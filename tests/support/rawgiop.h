#pragma once

#include <QByteArray>
#include <QMutex>

#include <memory>
#include <thread>

class QTcpSocket;

/// GIOP 1.2 by hand, little end first: what a peer sees that knows the bytes and no ORB.
namespace giop {

enum ReplyStatus : quint32 { NoException, UserException, SystemException };

struct Request
{
    QByteArray operation;
    QByteArray body; // the parameters
};

struct Reply
{
    quint32 status = ~quint32{0}; // of none
    QByteArray body;              // the result and the out parameters, or an exception
};

/// The message of a request to the object `key`. It names UTF-8 and UTF-16 as its code sets.
QByteArray requestMessage(const QByteArray& key, const Request& request);

/// Sends a request to the object `key` at a port of this machine and waits for the reply.
Reply call(quint16 port, const QByteArray& key, const Request& request);

/// The bytes of that request, for whoever sends them himself.
QByteArray requestMessage(const QByteArray& key, const Request& request);

/// A string as it stands at an aligned place.
QByteArray string(const QByteArray& text);

/// Answers every request with the same reply, on a thread of its own.
class Server
{
public:
    explicit Server(const Reply& reply);
    ~Server();

    quint16 port() const { return m_port; }

    /// The last request, without those by which an ORB finds out whether the object is there.
    Request lastRequest() const;

private:
    void serve(QTcpSocket& socket, const std::stop_token& stop);
    void answer(QTcpSocket& socket, const QByteArray& message);

    const Reply m_reply;
    mutable QMutex m_mutex;
    Request m_lastRequest;
    quint16 m_port = 0;
    std::jthread m_thread; // the last: runs with what stands above
};

} // namespace giop
