#include "rawgiop.h"

#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtEndian>

#include <latch>

namespace giop {
namespace {

constexpr int headerSize = 12;
constexpr int patience = 30000; // in ms
constexpr int step = 20;        // likewise, between two looks whether to stop

enum MessageType : char { RequestMessage, ReplyMessage, CancelRequest, LocateRequest, LocateReply };

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

quint32 numberAt(const QByteArray& message, qsizetype at)
{
    return at + 4 <= message.size() ? qFromLittleEndian<quint32>(message.constData() + at) : 0;
}

qsizetype aligned(qsizetype at, qsizetype to)
{
    return (at + to - 1) / to * to;
}

void pad(QByteArray& message, qsizetype to)
{
    message.append(aligned(message.size(), to) - message.size(), '\0');
}

QByteArray begun(MessageType type)
{
    return QByteArray("GIOP\x01\x02\x01", 7) + type + number(0);
}

QByteArray finished(QByteArray message)
{
    message.replace(8, 4, number(static_cast<quint32>(message.size() - headerSize)));
    return message;
}

// The parameters begin at a multiple of 8; without any there is no padding either.
QByteArray withBody(QByteArray message, const QByteArray& body)
{
    if (!body.isEmpty()) {
        pad(message, 8);
    }
    return finished(message + body);
}

bool fill(QTcpSocket& socket, qint64 size, const std::stop_token& stop)
{
    const QDeadlineTimer deadline(patience);
    while (socket.bytesAvailable() < size) {
        if (stop.stop_requested() || deadline.hasExpired() || socket.state() != QAbstractSocket::ConnectedState) {
            return false;
        }
        socket.waitForReadyRead(step);
    }
    return true;
}

// Empty when the connection ends, or when it is told to stop.
QByteArray read(QTcpSocket& socket, const std::stop_token& stop = {})
{
    if (!fill(socket, headerSize, stop)) {
        return {};
    }
    const QByteArray header = socket.read(headerSize);
    const auto size = static_cast<qint64>(numberAt(header, 8));
    return fill(socket, size, stop) ? header + socket.read(size) : QByteArray();
}

void write(QTcpSocket& socket, const QByteArray& message)
{
    socket.write(message);
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(patience)) {
    }
}

// Where the service contexts that begin here end.
qsizetype behindContexts(const QByteArray& message, qsizetype at)
{
    const quint32 count = numberAt(message, at);
    at += 4;
    for (quint32 i = 0; i < count && at < message.size(); ++i) {
        at = aligned(at, 4) + 4;
        at += 4 + numberAt(message, at);
    }
    return at;
}

QByteArray bodyBehindContexts(const QByteArray& message, qsizetype at)
{
    return message.mid(aligned(behindContexts(message, aligned(at, 4)), 8));
}

// Behind the header: number, flags, kind of target, key, operation, contexts.
Request parsed(const QByteArray& message)
{
    qsizetype at = headerSize + 12;
    at = aligned(at + 4 + numberAt(message, at), 4);
    const qsizetype size = numberAt(message, at);
    return {message.mid(at + 4, size - 1), bodyBehindContexts(message, at + 4 + size)};
}

Reply parsedReply(const QByteArray& message)
{
    return message.isEmpty() ? Reply() : Reply{numberAt(message, headerSize + 4), bodyBehindContexts(message, 20)};
}

// UTF-8 and UTF-16 are what this side sends and reads.
QByteArray codeSetContext()
{
    constexpr quint32 tag = 1;
    constexpr quint32 utf8 = 0x05010001;
    constexpr quint32 utf16 = 0x00010109;
    const QByteArray content = QByteArray("\x01\0\0\0", 4) + number(utf8) + number(utf16);
    return number(1) + number(tag) + number(static_cast<quint32>(content.size())) + content;
}

} // namespace

QByteArray string(const QByteArray& text)
{
    return number(static_cast<quint32>(text.size() + 1)) + text + '\0';
}

QByteArray requestMessage(const QByteArray& key, const Request& request)
{
    QByteArray message = begun(RequestMessage) + number(1) + number(3) + number(0); // number, reply wanted, by key
    message += number(static_cast<quint32>(key.size())) + key;
    pad(message, 4);
    message += string(request.operation);
    pad(message, 4);
    return withBody(message + codeSetContext(), request.body);
}

Reply call(quint16 port, const QByteArray& key, const Request& request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.waitForConnected(patience);
    write(socket, requestMessage(key, request));
    return parsedReply(read(socket));
}

Server::Server(const Reply& reply)
    : m_reply(reply)
{
    std::latch listening(1);
    m_thread = std::jthread([this, &listening](std::stop_token stop) {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        m_port = server.serverPort();
        listening.count_down();
        while (!stop.stop_requested()) {
            if (server.waitForNewConnection(step)) {
                const std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
                serve(*socket, stop);
            }
        }
    });
    listening.wait();
}

Server::~Server() = default;

Request Server::lastRequest() const
{
    const QMutexLocker lock(&m_mutex);
    return m_lastRequest;
}

void Server::serve(QTcpSocket& socket, const std::stop_token& stop)
{
    for (QByteArray message = read(socket, stop); !message.isEmpty(); message = read(socket, stop)) {
        answer(socket, message);
    }
}

void Server::answer(QTcpSocket& socket, const QByteArray& message)
{
    const QByteArray id = message.mid(headerSize, 4);
    if (message[7] == LocateRequest) {
        write(socket, finished(begun(LocateReply) + id + number(1))); // it is here
        return;
    }
    const Request request = parsed(message);
    const bool asksForType = request.operation == "_is_a";
    const Reply reply = asksForType ? Reply{NoException, QByteArray(1, '\x01')} : m_reply;
    if (!asksForType) {
        const QMutexLocker lock(&m_mutex);
        m_lastRequest = request;
    }
    write(socket, withBody(begun(ReplyMessage) + id + number(reply.status) + number(0), reply.body));
}

} // namespace giop
