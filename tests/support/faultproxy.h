#pragma once

#include <QHostAddress>
#include <QThread>

#include <atomic>
#include <memory>
#include <mutex>

/// A TCP relay on the loopback interface that misbehaves as it is told. It runs on a thread of its own; all functions
/// may be called on any thread.
class FaultProxy
{
public:
    /// Relays to `targetPort`; it may be set later, before the first connection. Listens on a port that the system
    /// chooses.
    explicit FaultProxy(quint16 targetPort = 0);
    ~FaultProxy();

    quint16 port() const { return m_port; }
    void setTarget(quint16 port) { m_faults->target = port; }

    /// Reaches its target from an address of its own: from 127.0.0.2, where 2 is given. Set before the first
    /// connection.
    void setHost(quint8 number) { m_faults->host = number; }

    /// Holds every piece back for so long.
    void setDelay(int milliseconds) { m_faults->delay = milliseconds; }

    /// Passes on no more than so many bytes at once; 0 for as they come.
    void setPieces(int bytes) { m_faults->pieces = bytes; }

    /// Damages one byte out of so many that go to the target, or come back; 0 for none.
    void setDamage(int oneInBytes) { m_faults->damage = oneInBytes; }

    /// Makes what clients say of their code sets, once for a connection, into something that no server knows. Each time
    /// counts as damage.
    void setCodeSetsHidden(bool hidden) { m_faults->codeSetsHidden = hidden; }

    /// Passes nothing on, until it is set back.
    void setFrozen(bool frozen) { m_faults->frozen = frozen; }

    /// Cuts all connections.
    void cut() { ++m_faults->cuts; }

    /// How many connections were cut so far.
    int cutConnections() const { return m_faults->cutConnections; }

    /// Keeps what goes through, for the next two. Set before the first connection.
    void setKeeping(bool keeping) { m_faults->keeping = keeping; }

    /// Whether `text` went through since then, one way or the other, in UTF-8 or UTF-16 of either byte order.
    bool hasRelayed(const QString& text) const;

    /// What went through since then: of each connection one way and the other, those without a byte left out. One that
    /// was there keeps its place.
    QList<QByteArray> relayed() const;

    qint64 bytes() const { return m_faults->bytes; }
    int damaged() const { return m_faults->damaged; }

    /// How many connections it has taken so far.
    int connections() const { return m_faults->connections; }

    struct Faults
    {
        std::atomic<quint16> target = 0;
        std::atomic<quint8> host = 1;
        std::atomic<int> delay = 0;
        std::atomic<int> pieces = 0;
        std::atomic<int> damage = 0;
        std::atomic<bool> codeSetsHidden = false;
        std::atomic<bool> frozen = false;
        std::atomic<int> cuts = 0;
        std::atomic<int> cutConnections = 0;
        std::atomic<qint64> bytes = 0;
        std::atomic<int> damaged = 0;
        std::atomic<int> connections = 0;

        std::atomic<bool> keeping = false;

        std::mutex keptMutex;
        QList<QByteArray> kept; // of each lane
    };

private:
    std::shared_ptr<Faults> m_faults = std::make_shared<Faults>();
    quint16 m_port = 0;
    QThread m_thread;
};
