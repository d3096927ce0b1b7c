#include <recorder/service/replaysink.h>

#include <recorder/service/flowsocket.h>

#include <frames.h>
#include <freeport.h>
#include <patience.h>

#include <QTest>

#include <atomic>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

// What is replayed is written to the socket that the sink connects to.
class TestReplaySink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_sink.reset(); }
    void takesSamplesUntilTheLastFrame();
    void takesFramesInPieces();
    void endsWithTheConnection();
    void endsWithWhatIsNoFrame();
    void endsWhereNobodyIs();
    void takesNoMoreWhenItGoes();

private:
    void connectTo(quint16 port)
    {
        m_sink = std::make_unique<ReplaySink>(port, [this](const ReplaySink::Taken& taken) {
            m_taken = taken;
            ++m_ends;
        });
    }
    void write(const QByteArray& bytes)
    {
        std::size_t written = 0;
        QCOMPARE(m_socket->write(bytes.constData(), static_cast<std::size_t>(bytes.size()), &written),
                 FlowSocket::Sent::Bytes);
        QCOMPARE(static_cast<qsizetype>(written), bytes.size());
    }
    static QByteArray lastFrame()
    {
        ChannelFrame frame = frameOf(9, 0);
        frame.isLast = true;
        return wire(frame);
    }

    std::unique_ptr<FlowSocket> m_socket;
    ReplaySink::Taken m_taken; // read when it has ended
    std::atomic<int> m_ends = 0;
    std::unique_ptr<ReplaySink> m_sink;
};

void TestReplaySink::init()
{
    QString error;
    m_taken = {};
    m_ends = 0;
    m_socket = FlowSocket::open(FlowSocket::Kind::Stream, QStringLiteral("127.0.0.1"), 0, "127.0.0.1", &error);
    QVERIFY2(m_socket, qPrintable(error));
    connectTo(m_socket->port());
    QTRY_VERIFY_WITH_TIMEOUT(m_socket->accept(), patience);
}

void TestReplaySink::takesSamplesUntilTheLastFrame()
{
    write(wire(frameOf(0)) + wire(frameOf(1)) + lastFrame());
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QCOMPARE(m_taken.sampleBytes, 800U);
    QVERIFY(m_taken.isWhole);
}

void TestReplaySink::takesFramesInPieces()
{
    const QByteArray bytes = wire(frameOf(0)) + lastFrame();
    for (const char byte : bytes) {
        write(QByteArray(1, byte));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QCOMPARE(m_taken.sampleBytes, 400U);
    QVERIFY(m_taken.isWhole);
}

void TestReplaySink::endsWithTheConnection()
{
    write(wire(frameOf(0)));
    m_socket.reset();
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QCOMPARE(m_taken.sampleBytes, 400U);
    QVERIFY(!m_taken.isWhole);
}

void TestReplaySink::endsWithWhatIsNoFrame()
{
    write(wire(frameOf(0)) + QByteArray(100, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QCOMPARE(m_taken.sampleBytes, 400U);
    QVERIFY(!m_taken.isWhole);
}

void TestReplaySink::endsWhereNobodyIs()
{
    m_sink.reset();
    m_ends = 0;
    connectTo(freePort());
    QTRY_COMPARE_WITH_TIMEOUT(m_ends, 1, patience);
    QVERIFY(!m_taken.isWhole);
}

void TestReplaySink::takesNoMoreWhenItGoes()
{
    m_sink.reset();
    QCOMPARE(m_ends, 1);
    QVERIFY(!m_taken.isWhole);
    char byte = 0;
    std::size_t size = 0;
    QTRY_COMPARE_WITH_TIMEOUT(m_socket->read(&byte, 1, &size), FlowSocket::Got::End, patience);
}

QTEST_GUILESS_MAIN(TestReplaySink)
#include "tst_replaysink.moc"
