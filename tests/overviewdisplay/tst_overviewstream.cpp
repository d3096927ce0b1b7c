#include <overviewdisplay/overviewstream.h>

#include "overviewpieces.h"
#include "patience.h"

#include <QNetworkInterface>
#include <QUdpSocket>
#include <QtTest>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

using SPECTRUM_OVERVIEW::OverviewStream;
using SPECTRUM_OVERVIEW::OverviewWish;
using ZelkoCommon::OverviewPiece;
using ZelkoDataTypes::eFFT_Window;
using ZelkoTest::AnswerPieces;

namespace {

constexpr quint64 cookie = 7;
const QString thisHost = QStringLiteral("127.0.0.1");
const OverviewWish wish{1'700'000'000'000'000, 1'700'000'060'000'000, 100, 1024, eFFT_Window::Hann};
const AnswerPieces answer{wish};

/// What a recorder sends of a line.
QList<QByteArray> datagramsOf(int line, const AnswerPieces& of = answer)
{
    return ZelkoTest::datagrams(of, line);
}

/// An IPv4 address of this host that others can reach; none if it has no network.
/// Those by which others reach it, if there are any.
QStringList addressesOfThisHost()
{
    QStringList own;
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback()) {
            own << address.toString();
        }
    }
    return own;
}

/// What a recorder sends by: it hears that a port is closed.
class ConnectedSocket
{
public:
    explicit ConnectedSocket(quint16 port)
        : m_socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        ::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
    ~ConnectedSocket() { ::close(m_socket); }
    ConnectedSocket(const ConnectedSocket&) = delete;
    ConnectedSocket& operator=(const ConnectedSocket&) = delete;

    bool send(const char* text) const { return ::send(m_socket, text, std::strlen(text), MSG_NOSIGNAL) >= 0; }

private:
    const int m_socket;
};

QString nameOf(const OverviewPiece& piece)
{
    return QStringLiteral("%1.%2").arg(piece.line).arg(piece.firstBin / 512);
}

} // namespace

class OverviewStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tellsWhereItHears();
    void twoStreamsHaveTwoPorts();
    void givesWhatComesInItsOrder();
    void passesOverWhatIsNotOfTheAnswer_data();
    void passesOverWhatIsNotOfTheAnswer();
    void passesOverOtherAddresses();
    void theFirstPieceFixesThePort();
    void whatIsNoPieceFixesNoPort();
    void anUnknownRecorderIsTheOneThatAnswers_data();
    void anUnknownRecorderIsTheOneThatAnswers();
    void aRecorderOnThisHostMayUseTheLoopback_data();
    void aRecorderOnThisHostMayUseTheLoopback();
    void aRecorderWithoutAWayIsWaitedForAnywhere();
    void takesNoMoreThanAskedFor();
    void wakesOnceUntilItWasEmpty();
    void aFloodTakesBoundedMemory();
    void closingEndsTheSending();
    void isNotHeardOfAfterItsEnd();

private:
    void open(const QString& recorder = thisHost)
    {
        m_stream = std::make_unique<OverviewStream>(recorder, cookie, wish, [this] { ++m_wakeUps; });
    }
    void send(QUdpSocket& from, const QByteArray& datagram)
    {
        QCOMPARE(from.writeDatagram(datagram, QHostAddress::LocalHost, m_stream->port()), datagram.size());
    }
    void sendLine(int line)
    {
        const QList<QByteArray> all = datagramsOf(line);
        for (const QByteArray& datagram : all) {
            send(m_recorder, datagram);
        }
    }

    /// The names of the next pieces, as soon as there are so many.
    QStringList next(int count)
    {
        QStringList names;
        const auto takeSome = [&] {
            for (const OverviewPiece& piece : m_stream->take(1000)) {
                names << nameOf(piece);
            }
            return names.size() >= count;
        };
        return QTest::qWaitFor(takeSome, patience) ? names : names << QStringLiteral("and no more");
    }

    QUdpSocket m_recorder;
    QUdpSocket m_stranger;
    std::atomic<int> m_wakeUps = 0;
    std::unique_ptr<OverviewStream> m_stream;
};

void OverviewStreamTest::init()
{
    QVERIFY(m_recorder.bind(QHostAddress::LocalHost));
    QVERIFY(m_stranger.bind(QHostAddress(QStringLiteral("127.0.0.2"))));
    m_wakeUps = 0;
    open();
    QVERIFY(m_stream->port() != 0);
}

void OverviewStreamTest::cleanup()
{
    m_stream.reset();
    m_recorder.close();
    m_stranger.close();
}

void OverviewStreamTest::tellsWhereItHears()
{
    QCOMPARE(m_stream->ownAddress(), thisHost);
    QVERIFY(m_stream->take(10).empty());
    QCOMPARE(m_stream->refused(), 0u);
}

void OverviewStreamTest::twoStreamsHaveTwoPorts()
{
    const OverviewStream other(thisHost, cookie, wish, [] {});
    QVERIFY(other.port() != 0);
    QVERIFY(other.port() != m_stream->port());
}

void OverviewStreamTest::givesWhatComesInItsOrder()
{
    sendLine(0);
    sendLine(2);
    sendLine(1);
    sendLine(2);
    QCOMPARE(next(8), (QStringList{"0.0", "0.1", "2.0", "2.1", "1.0", "1.1", "2.0", "2.1"}));
    sendLine(99);
    QCOMPARE(next(2), (QStringList{"99.0", "99.1"}));
    QVERIFY(m_wakeUps >= 1);
}

void OverviewStreamTest::passesOverWhatIsNotOfTheAnswer_data()
{
    QTest::addColumn<QByteArray>("datagram");
    const QByteArray good = datagramsOf(3).first();
    AnswerPieces other = answer;
    other.cookie = cookie + 1;
    QTest::newRow("another record") << datagramsOf(3, other).first();
    other = answer;
    other.wish.lineCount = 101;
    QTest::newRow("more lines") << datagramsOf(3, other).first();
    other = answer;
    other.bins = 2048;
    QTest::newRow("other bins") << datagramsOf(3, other).first();
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("nonsense") << QByteArray(100, 'x');
    QTest::newRow("a byte too much") << good + 'x';
    QTest::newRow("a byte too few") << good.chopped(1);
    QTest::newRow("too large") << good + QByteArray(60'000, 'x');
}

void OverviewStreamTest::passesOverWhatIsNotOfTheAnswer()
{
    QFETCH(QByteArray, datagram);
    send(m_recorder, datagram);
    sendLine(4);
    QCOMPARE(next(2), (QStringList{"4.0", "4.1"}));
    QCOMPARE(m_stream->refused(), 1u);
}

void OverviewStreamTest::passesOverOtherAddresses()
{
    send(m_stranger, datagramsOf(3).first());
    sendLine(4);
    send(m_stranger, datagramsOf(5).first());
    sendLine(6);
    QCOMPARE(next(4), (QStringList{"4.0", "4.1", "6.0", "6.1"}));
    QCOMPARE(m_stream->refused(), 2u);
}

void OverviewStreamTest::theFirstPieceFixesThePort()
{
    QUdpSocket other;
    QVERIFY(other.bind(QHostAddress::LocalHost));
    sendLine(4);
    send(other, datagramsOf(5).first());
    sendLine(6);
    QCOMPARE(next(4), (QStringList{"4.0", "4.1", "6.0", "6.1"}));
    QCOMPARE(m_stream->refused(), 1u);
}

void OverviewStreamTest::whatIsNoPieceFixesNoPort()
{
    QUdpSocket other;
    QVERIFY(other.bind(QHostAddress::LocalHost));
    send(other, QByteArray(100, 'x'));
    sendLine(4);
    QCOMPARE(next(2), (QStringList{"4.0", "4.1"}));
}

void OverviewStreamTest::anUnknownRecorderIsTheOneThatAnswers_data()
{
    QTest::addColumn<QString>("recorder");
    QTest::newRow("a name") << QStringLiteral("recorder.example");
    QTest::newRow("nothing") << QString();
    QTest::newRow("markup") << QStringLiteral("<b>127.0.0.1</b>");
}

void OverviewStreamTest::anUnknownRecorderIsTheOneThatAnswers()
{
    QFETCH(QString, recorder);
    open(recorder);
    QVERIFY(m_stream->port() != 0);
    QCOMPARE(m_stream->ownAddress(), QString());
    send(m_stranger, datagramsOf(3).first());
    sendLine(4);
    send(m_stranger, datagramsOf(5).first());
    QCOMPARE(next(2), (QStringList{"3.0", "5.0"}));
    QCOMPARE(m_stream->refused(), 2u);
}

void OverviewStreamTest::aRecorderOnThisHostMayUseTheLoopback_data()
{
    QTest::addColumn<QString>("recorder");
    QTest::addColumn<QString>("told");
    QTest::newRow("known by the loopback") << "127.0.0.1"
                                           << "127.0.0.1";
    for (const QString& own : addressesOfThisHost()) {
        QTest::addRow("known by %s", qPrintable(own)) << own << QString();
    }
}

// Its device has the address by which others reach it, and this client may have called it by the other one.
void OverviewStreamTest::aRecorderOnThisHostMayUseTheLoopback()
{
    QFETCH(QString, recorder);
    QFETCH(QString, told);
    open(recorder);
    QCOMPARE(m_stream->ownAddress(), told);
    send(m_stranger, datagramsOf(3).first());
    sendLine(4);
    QCOMPARE(next(2), (QStringList{"4.0", "4.1"}));
    QCOMPARE(m_stream->refused(), 1u);
}

// An address of a kind for which there is no way, whatever the host is connected to.
void OverviewStreamTest::aRecorderWithoutAWayIsWaitedForAnywhere()
{
    open(QStringLiteral("255.255.255.255"));
    QVERIFY(m_stream->port() != 0);
    sendLine(4);
    send(m_recorder, QByteArray(10, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(m_stream->refused(), 3u, patience);
    QVERIFY(m_stream->take(10).empty());
}

void OverviewStreamTest::takesNoMoreThanAskedFor()
{
    sendLine(0);
    sendLine(1);
    QCOMPARE(next(4).size(), 4);
    sendLine(2);
    sendLine(3);
    send(m_recorder, QByteArray(10, 'x')); // the last that it hears
    QTRY_COMPARE_WITH_TIMEOUT(m_stream->refused(), 1u, patience);
    QCOMPARE(m_stream->take(3).size(), 3u);
    QCOMPARE(m_stream->take(0).size(), 0u);
    QCOMPARE(m_stream->take(3).size(), 1u);
    QCOMPARE(m_stream->take(3).size(), 0u);
}

void OverviewStreamTest::wakesOnceUntilItWasEmpty()
{
    for (int line = 0; line < 10; ++line) {
        sendLine(line);
    }
    send(m_recorder, QByteArray(10, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(m_stream->refused(), 1u, patience);
    QCOMPARE(m_wakeUps.load(), 1);
    QCOMPARE(m_stream->take(1000).size(), 20u);
    sendLine(10);
    QTRY_COMPARE_WITH_TIMEOUT(m_wakeUps.load(), 2, patience);
}

// The first pieces are kept; how many of the others the system has lost by itself is not known.
void OverviewStreamTest::aFloodTakesBoundedMemory()
{
    const QByteArray datagram = datagramsOf(0).first();
    const auto isFull = [&] {
        for (int i = 0; i < 500; ++i) {
            m_recorder.writeDatagram(datagram, QHostAddress::LocalHost, m_stream->port());
        }
        return m_stream->refused() > 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isFull(), patience);
    QCOMPARE(m_stream->take(10 * OverviewStream::mostWaiting).size(), OverviewStream::mostWaiting);
}

void OverviewStreamTest::closingEndsTheSending()
{
    const ConnectedSocket recorder(m_stream->port());
    QVERIFY(recorder.send("x"));
    m_stream.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!recorder.send("x") && errno == ECONNREFUSED, patience);
}

void OverviewStreamTest::isNotHeardOfAfterItsEnd()
{
    const quint16 port = m_stream->port();
    sendLine(0);
    QTRY_COMPARE_WITH_TIMEOUT(m_wakeUps.load(), 1, patience);
    m_stream.reset();
    m_recorder.writeDatagram(datagramsOf(1).first(), QHostAddress::LocalHost, port);
    open();
    sendLine(2);
    QCOMPARE(next(2), (QStringList{"2.0", "2.1"}));
    QCOMPARE(m_wakeUps.load(), 2);
}

QTEST_GUILESS_MAIN(OverviewStreamTest)

#include "tst_overviewstream.moc"
