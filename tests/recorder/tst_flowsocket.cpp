#include <recorder/service/flowsocket.h>

#include <freeport.h>
#include <patience.h>

#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using Got = FlowSocket::Got;
using Kind = FlowSocket::Kind;

namespace {

const QString loopback = QStringLiteral("127.0.0.1");
const QHostAddress stranger(QStringLiteral("127.0.0.2"));

} // namespace

Q_DECLARE_METATYPE(Kind)

// Senders are sockets of their own, the one that is wanted at 127.0.0.1.
class TestFlowSocket : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensAtAPortOfTheSystem_data();
    void listensAtAPortOfTheSystem();
    void listensAtThePortThatIsWanted_data();
    void listensAtThePortThatIsWanted();
    void refusesAPortThatSomebodyHas_data();
    void refusesAPortThatSomebodyHas();
    void refusesAnAddressThatIsNotItsOwn();
    void takesDatagramsOneByOne();
    void cutsADatagramThatIsTooLarge();
    void emptiesTheDatagramsOfStrangers();
    void takesAStreamAsItComes();
    void tellsTheEndOfAStream();
    void takesNoStreamOfAStranger();
    void takesOneStreamOnly();
    void listensAgainWhereAStreamWas();
    void writesToTheSenderOfAStream();
    void tellsThatNobodyTakesAStream();

private:
    void open(Kind kind, quint16 port = 0)
    {
        m_socket.reset();
        m_socket = FlowSocket::open(kind, loopback, port, "127.0.0.1", &m_error);
        QVERIFY2(m_socket, qPrintable(m_error));
    }
    Got read(std::size_t room = 1000)
    {
        m_bytes.assign(room, '\0');
        std::size_t size = 0;
        const Got got = m_socket->read(m_bytes.data(), room, &size);
        m_bytes.resize(got == Got::Bytes ? size : 0);
        return got;
    }
    // The next thing that comes; nothing if none does.
    Got await(std::size_t room = 1000)
    {
        Got got = Got::Nothing;
        const auto hasCome = [&] {
            got = read(room);
            return got != Got::Nothing;
        };
        return QTest::qWaitFor(hasCome, patience) ? got : Got::Nothing;
    }
    void connectTo(QTcpSocket& sender) const
    {
        sender.connectToHost(QHostAddress::LocalHost, m_socket->port());
        QVERIFY(sender.waitForConnected(patience));
    }
    static void write(QTcpSocket& sender, const QByteArray& bytes)
    {
        sender.write(bytes);
        QTRY_COMPARE_WITH_TIMEOUT(sender.bytesToWrite(), 0, patience);
    }
    void send(QUdpSocket& sender, const QByteArray& datagram) const
    {
        QCOMPARE(sender.writeDatagram(datagram, QHostAddress::LocalHost, m_socket->port()), datagram.size());
    }

    std::unique_ptr<FlowSocket> m_socket;
    QString m_error;
    std::string m_bytes;
};

void TestFlowSocket::listensAtAPortOfTheSystem_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::newRow("for datagrams") << Kind::Datagrams;
    QTest::newRow("for a stream") << Kind::Stream;
}

void TestFlowSocket::listensAtAPortOfTheSystem()
{
    QFETCH(const Kind, kind);
    open(kind);
    QCOMPARE(m_socket->kind(), kind);
    QVERIFY(m_socket->port() != 0);
    QVERIFY(m_socket->descriptor() >= 0);
    QCOMPARE(read(), Got::Nothing); // and does not wait for any
}

void TestFlowSocket::listensAtThePortThatIsWanted_data()
{
    listensAtAPortOfTheSystem_data();
}

void TestFlowSocket::listensAtThePortThatIsWanted()
{
    QFETCH(const Kind, kind);
    const quint16 port = freePort();
    open(kind, port);
    QCOMPARE(m_socket->port(), port);
}

void TestFlowSocket::refusesAPortThatSomebodyHas_data()
{
    listensAtAPortOfTheSystem_data();
}

void TestFlowSocket::refusesAPortThatSomebodyHas()
{
    QFETCH(const Kind, kind);
    open(kind);
    const quint16 port = m_socket->port();
    QVERIFY(!FlowSocket::open(kind, loopback, port, "127.0.0.1", &m_error));
    QVERIFY2(m_error.contains(QString::number(port)), qPrintable(m_error));
}

void TestFlowSocket::refusesAnAddressThatIsNotItsOwn()
{
    for (const char* const address : {"192.0.2.1", "2001:db8::1"}) {
        QVERIFY(!FlowSocket::open(Kind::Datagrams, address, 0, "127.0.0.1", &m_error));
        QVERIFY2(m_error.contains(address), qPrintable(m_error));
    }
}

void TestFlowSocket::takesDatagramsOneByOne()
{
    open(Kind::Datagrams);
    QUdpSocket sender;
    send(sender, "one");
    send(sender, "and two");
    QCOMPARE(await(), Got::Bytes);
    QCOMPARE(m_bytes, std::string("one"));
    QCOMPARE(await(), Got::Bytes);
    QCOMPARE(m_bytes, std::string("and two"));
    QCOMPARE(read(), Got::Nothing);
}

void TestFlowSocket::cutsADatagramThatIsTooLarge()
{
    open(Kind::Datagrams);
    QUdpSocket sender;
    send(sender, "0123456789");
    send(sender, "next");
    QCOMPARE(await(4), Got::Bytes);
    QCOMPARE(m_bytes, std::string("0123"));
    QCOMPARE(await(4), Got::Bytes);
    QCOMPARE(m_bytes, std::string("next"));
}

void TestFlowSocket::emptiesTheDatagramsOfStrangers()
{
    open(Kind::Datagrams);
    QUdpSocket other;
    QVERIFY(other.bind(stranger));
    send(other, "strange");
    QCOMPARE(await(), Got::Bytes);
    QCOMPARE(m_bytes, std::string());
    QCOMPARE(read(), Got::Nothing);
}

void TestFlowSocket::takesAStreamAsItComes()
{
    open(Kind::Stream);
    QTcpSocket sender;
    connectTo(sender);
    write(sender, "0123456789");
    std::string all;
    const auto isWhole = [&] {
        read(3);
        all += m_bytes;
        return all.size() >= 10;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isWhole(), patience);
    QCOMPARE(all, std::string("0123456789"));
    QCOMPARE(read(), Got::Nothing);
}

void TestFlowSocket::tellsTheEndOfAStream()
{
    open(Kind::Stream);
    const int listening = m_socket->descriptor();
    QTcpSocket sender;
    connectTo(sender);
    write(sender, "last");
    sender.disconnectFromHost();
    QCOMPARE(await(), Got::Bytes);
    QVERIFY(m_socket->descriptor() != listening); // what is to be polled is the stream from here on
    QCOMPARE(await(), Got::End);
    QCOMPARE(read(), Got::End);
}

void TestFlowSocket::takesNoStreamOfAStranger()
{
    open(Kind::Stream);
    QTcpSocket other;
    QVERIFY(other.bind(stranger));
    connectTo(other);
    write(other, "strange");
    const auto isTurnedAway = [&] { return read() == Got::Nothing && other.state() != QTcpSocket::ConnectedState; };
    QTRY_VERIFY_WITH_TIMEOUT(isTurnedAway(), patience);
    QTcpSocket sender;
    connectTo(sender);
    write(sender, "mine");
    QCOMPARE(await(), Got::Bytes);
    QCOMPARE(m_bytes, std::string("mine"));
}

void TestFlowSocket::takesOneStreamOnly()
{
    open(Kind::Stream);
    QTcpSocket first;
    connectTo(first);
    write(first, "first");
    QCOMPARE(await(), Got::Bytes);
    QTcpSocket second;
    connectTo(second); // as far as the system is concerned
    write(second, "second");
    write(first, "again");
    QCOMPARE(await(), Got::Bytes);
    QCOMPARE(m_bytes, std::string("again"));
    first.disconnectFromHost();
    QCOMPARE(await(), Got::End);
    QCOMPARE(read(), Got::End);
}

// The connection that was closed first lingers at its port for a while.
void TestFlowSocket::listensAgainWhereAStreamWas()
{
    const quint16 port = freePort();
    open(Kind::Stream, port);
    QTcpSocket sender;
    connectTo(sender);
    write(sender, "x");
    QCOMPARE(await(), Got::Bytes);
    m_socket.reset();
    QTRY_COMPARE_WITH_TIMEOUT(sender.state(), QTcpSocket::UnconnectedState, patience);
    open(Kind::Stream, port);
    QCOMPARE(m_socket->port(), port);
}

void TestFlowSocket::writesToTheSenderOfAStream()
{
    open(Kind::Stream);
    QVERIFY(!m_socket->accept());
    QTcpSocket receiver;
    receiver.connectToHost(loopback, m_socket->port());
    QTRY_VERIFY_WITH_TIMEOUT(m_socket->accept(), patience);
    std::size_t written = 0;
    QCOMPARE(m_socket->write("abc", 3, &written), FlowSocket::Sent::Bytes);
    QCOMPARE(written, 3U);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.bytesAvailable(), 3, patience);
    QCOMPARE(receiver.readAll(), QByteArray("abc"));
}

// Who does not read is waited for, who has gone is not.
void TestFlowSocket::tellsThatNobodyTakesAStream()
{
    open(Kind::Stream);
    QTcpSocket receiver;
    receiver.setReadBufferSize(1);
    receiver.connectToHost(loopback, m_socket->port());
    QTRY_VERIFY_WITH_TIMEOUT(m_socket->accept(), patience);
    const QByteArray bytes(1024 * 1024, 'x');
    std::size_t written = 0;
    FlowSocket::Sent sent = FlowSocket::Sent::Bytes;
    for (int i = 0; i < 1000 && sent == FlowSocket::Sent::Bytes; ++i) {
        sent = m_socket->write(bytes.constData(), static_cast<std::size_t>(bytes.size()), &written);
    }
    QCOMPARE(sent, FlowSocket::Sent::Nothing);
    QCOMPARE(written, 0U);
    receiver.abort();
    const auto hasGone = [&] { return m_socket->write(bytes.constData(), 1, &written) == FlowSocket::Sent::End; };
    QTRY_VERIFY_WITH_TIMEOUT(hasGone(), patience);
}

QTEST_GUILESS_MAIN(TestFlowSocket)
#include "tst_flowsocket.moc"
