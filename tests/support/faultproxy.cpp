#include "faultproxy.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStringConverter>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <array>
#include <deque>

namespace {

constexpr int tickMilliseconds = 2;
constexpr qint64 maxWaiting = 1024 * 1024; // so that a frozen proxy fills the line, as a frozen host would

// One direction of a relayed connection.
class Lane
{
public:
    Lane(QTcpSocket* from, QTcpSocket* to, FaultProxy::Faults& faults)
        : m_from(from)
        , m_to(to)
        , m_faults(faults)
    {
        m_from->setReadBufferSize(64 * 1024);
        m_clock.start();
    }

    void run()
    {
        take();
        while (!m_faults.frozen && !m_waiting.empty() && m_waiting.front().first <= m_clock.elapsed()) {
            QByteArray& first = m_waiting.front().second;
            const int pieces = m_faults.pieces;
            const QByteArray part = pieces > 0 ? first.left(pieces) : first;
            keep(part);
            m_to->write(part);
            m_to->flush();
            m_faults.bytes += part.size();
            m_bytes -= part.size();
            first.remove(0, part.size());
            if (first.isEmpty()) {
                m_waiting.pop_front();
            }
        }
    }

private:
    void take()
    {
        if (m_bytes >= maxWaiting || m_to->bytesToWrite() > maxWaiting || m_from->bytesAvailable() == 0) {
            return;
        }
        QByteArray bytes = m_from->readAll();
        damage(bytes);
        hideCodeSets(bytes);
        m_bytes += bytes.size();
        m_waiting.emplace_back(m_clock.elapsed() + m_faults.delay, bytes);
    }

    // The service context of a request, of number 1 and 12 bytes, in the byte order of this machine.
    void hideCodeSets(QByteArray& bytes)
    {
        const QByteArray context("\x01\0\0\0\x0c\0\0\0\x01", 9);
        constexpr qsizetype codeSet = 12; // in it, of texts
        const qsizetype at = m_faults.codeSetsHidden ? bytes.indexOf(context) : -1;
        if (at >= 0 && at + codeSet < bytes.size()) {
            bytes[at + codeSet] = '\x7f';
            ++m_faults.damaged;
        }
    }

    void keep(const QByteArray& part)
    {
        if (!m_faults.keeping) {
            return;
        }
        const std::lock_guard lock(m_faults.keptMutex);
        if (m_kept < 0) {
            m_kept = m_faults.kept.size();
            m_faults.kept.emplace_back();
        }
        m_faults.kept[m_kept] += part;
    }

    void damage(QByteArray& bytes)
    {
        const int oneIn = m_faults.damage;
        for (m_untilDamage += oneIn > 0 ? bytes.size() : 0; oneIn > 0 && m_untilDamage >= oneIn;
             m_untilDamage -= oneIn) {
            const qsizetype at = QRandomGenerator::global()->bounded(bytes.size());
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << QRandomGenerator::global()->bounded(8)));
            ++m_faults.damaged;
        }
    }

    QTcpSocket* m_from;
    QTcpSocket* m_to;
    FaultProxy::Faults& m_faults;
    QElapsedTimer m_clock;
    std::deque<std::pair<qint64, QByteArray>> m_waiting;
    qint64 m_bytes = 0;
    qint64 m_untilDamage = 0;
    qsizetype m_kept = -1; // place of what is kept of it
};

class Relay : public QObject
{
    Q_OBJECT

public:
    Relay(QTcpSocket* client, std::shared_ptr<FaultProxy::Faults> faults, QObject* parent)
        : QObject(parent)
        , m_faults(std::move(faults))
        , m_client(client)
        , m_cuts(m_faults->cuts)
    {
        m_client->setParent(this);
        m_server.bind(QHostAddress((127u << 24) + m_faults->host));
        m_server.connectToHost(QHostAddress::LocalHost, m_faults->target);
        const auto end = [this] { deleteLater(); };
        connect(m_client, &QTcpSocket::disconnected, this, end);
        connect(&m_server, &QTcpSocket::disconnected, this, end);
        connect(&m_server, &QTcpSocket::errorOccurred, this, end);
        for (QTcpSocket* const socket : {m_client, &m_server}) {
            connect(socket, &QTcpSocket::readyRead, this, &Relay::run);
        }
        connect(&m_tick, &QTimer::timeout, this, &Relay::run);
        m_tick.start(tickMilliseconds);
    }

private:
    void run()
    {
        if (m_faults->cuts != m_cuts) {
            ++m_faults->cutConnections;
            m_tick.stop();
            m_client->abort();
            m_server.abort();
            deleteLater();
            return;
        }
        if (m_server.state() == QAbstractSocket::ConnectedState) {
            m_there.run();
            m_back.run();
        }
    }

    const std::shared_ptr<FaultProxy::Faults> m_faults;
    QTcpSocket* const m_client;
    QTcpSocket m_server;
    const int m_cuts;
    Lane m_there{m_client, &m_server, *m_faults};
    Lane m_back{&m_server, m_client, *m_faults};
    QTimer m_tick;
};

} // namespace

bool FaultProxy::hasRelayed(const QString& text) const
{
    const std::array codecs{QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE};
    const QList<QByteArray> lanes = relayed();
    return std::any_of(codecs.begin(), codecs.end(), [&](QStringConverter::Encoding codec) {
        const QByteArray encoded = QStringEncoder(codec).encode(text);
        return std::any_of(lanes.begin(), lanes.end(),
                           [&](const QByteArray& bytes) { return bytes.contains(encoded); });
    });
}

QList<QByteArray> FaultProxy::relayed() const
{
    const std::lock_guard lock(m_faults->keptMutex);
    return m_faults->kept;
}

FaultProxy::FaultProxy(quint16 targetPort)
{
    setTarget(targetPort);
    auto* const server = new QTcpServer;
    server->listen(QHostAddress::LocalHost);
    m_port = server->serverPort();
    server->moveToThread(&m_thread);
    QObject::connect(server, &QTcpServer::newConnection, server, [server, faults = m_faults] {
        while (QTcpSocket* const client = server->nextPendingConnection()) {
            new Relay(client, faults, server);
            ++faults->connections;
        }
    });
    QObject::connect(&m_thread, &QThread::finished, server, &QObject::deleteLater);
    m_thread.start();
}

FaultProxy::~FaultProxy()
{
    m_thread.quit();
    m_thread.wait();
}

#include "faultproxy.moc"
