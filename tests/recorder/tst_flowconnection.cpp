#include <recorder/service/flowconnection.h>
#include <recorder/service/flowsocket.h>

#include <freeport.h>
#include <patience.h>

#include <QTest>

#include <atomic>
#include <thread>

using namespace ZelkoRecorder;
using Moved = FlowConnection::Moved;

// Against the socket that it is the other end of.
class TestFlowConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void connectsToWhoeverListens();
    void isNoneWhereNobodyListens();
    void endsTheWaitForRoomWhenItIsToStop();
    void givesBytes();
    void takesBytes();
    void waitsWhereThereIsNothingToTake();
    void waitsWhereThereIsNoRoom();
    void tellsThatNobodyGivesAnyMore();
    void tellsThatNobodyTakesAnyMore();

private:
    // Until something has come, or the end has.
    Moved await()
    {
        Moved moved = Moved::Nothing;
        const auto hasCome = [&] {
            moved = m_connection->read(m_buffer.data(), m_buffer.size(), &m_moved);
            return moved != Moved::Nothing;
        };
        return QTest::qWaitFor(hasCome, patience) ? moved : Moved::Nothing;
    }
    QByteArray bytes() const { return {m_buffer.data(), static_cast<qsizetype>(m_moved)}; }
    bool isAccepted()
    {
        return QTest::qWaitFor([this] { return m_socket->accept(); }, patience);
    }

    QString m_error;
    std::unique_ptr<FlowSocket> m_socket;
    std::unique_ptr<FlowConnection> m_connection;
    std::array<char, 100> m_buffer{};
    std::size_t m_moved = 0;
};

void TestFlowConnection::init()
{
    m_socket = FlowSocket::open(FlowSocket::Kind::Stream, QStringLiteral("127.0.0.1"), 0, "127.0.0.1", &m_error);
    QVERIFY2(m_socket, qPrintable(m_error));
    m_connection = FlowConnection::open(m_socket->port());
    QVERIFY(m_connection);
}

void TestFlowConnection::connectsToWhoeverListens()
{
    QVERIFY(isAccepted());
}

void TestFlowConnection::isNoneWhereNobodyListens()
{
    QVERIFY(!FlowConnection::open(ZelkoTest::freePort()));
}

// Nobody takes the connections, of which the system keeps only some.
void TestFlowConnection::endsTheWaitForRoomWhenItIsToStop()
{
    constexpr int beyondRoom = 100;
    std::atomic<int> opened = 0;
    std::atomic<bool> hasEnded = false;
    std::jthread thread([&, port = m_socket->port()](const std::stop_token& stop) {
        std::vector<std::unique_ptr<FlowConnection>> connections(1);
        while (opened < beyondRoom && (connections.back() = FlowConnection::open(port, stop))) {
            connections.emplace_back();
            ++opened;
        }
        hasEnded = true;
    });
    QTRY_VERIFY_WITH_TIMEOUT(opened > 0, patience);
    QVERIFY(!hasEnded);
    thread.request_stop();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded, patience);
    QVERIFY(opened < beyondRoom);
}

void TestFlowConnection::givesBytes()
{
    QCOMPARE(m_connection->write("samples", 7, &m_moved), Moved::Bytes);
    QCOMPARE(m_moved, 7U);
    const auto hasCome = [&] {
        return m_socket->read(m_buffer.data(), m_buffer.size(), &m_moved) == FlowSocket::Got::Bytes;
    };
    QVERIFY(QTest::qWaitFor(hasCome, patience));
    QCOMPARE(bytes(), QByteArray("samples"));
}

void TestFlowConnection::takesBytes()
{
    QVERIFY(isAccepted());
    QCOMPARE(m_socket->write("samples", 7, &m_moved), FlowSocket::Sent::Bytes);
    QCOMPARE(await(), Moved::Bytes);
    QCOMPARE(bytes(), QByteArray("samples"));
}

void TestFlowConnection::waitsWhereThereIsNothingToTake()
{
    m_moved = 1;
    QCOMPARE(m_connection->read(m_buffer.data(), m_buffer.size(), &m_moved), Moved::Nothing);
    QCOMPARE(m_moved, 0U);
}

void TestFlowConnection::waitsWhereThereIsNoRoom()
{
    const QByteArray much(1024 * 1024, 's');
    Moved moved = Moved::Bytes;
    for (int i = 0; i < 1000 && moved == Moved::Bytes; ++i) {
        moved = m_connection->write(much.constData(), static_cast<std::size_t>(much.size()), &m_moved);
    }
    QCOMPARE(moved, Moved::Nothing);
    QCOMPARE(m_moved, 0U);
}

void TestFlowConnection::tellsThatNobodyGivesAnyMore()
{
    QVERIFY(isAccepted());
    m_socket.reset();
    QCOMPARE(await(), Moved::End);
    QCOMPARE(m_moved, 0U);
}

void TestFlowConnection::tellsThatNobodyTakesAnyMore()
{
    QVERIFY(isAccepted());
    m_socket.reset();
    QTRY_COMPARE_WITH_TIMEOUT(m_connection->write("samples", 7, &m_moved), Moved::End, patience);
}

QTEST_GUILESS_MAIN(TestFlowConnection)
#include "tst_flowconnection.moc"
