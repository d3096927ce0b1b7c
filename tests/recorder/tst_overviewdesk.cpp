#include <servicerecorder.h>

#include <recorder/service/overviewdesk.h>

#include <zelkobase/service/overviewline.h>

#include <QTest>
#include <QUdpSocket>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::OverviewPiece;
using ZelkoCommon::ServiceStatus;

namespace {

// A client's window, with a port of its own.
class Target
{
public:
    explicit Target(const char* address = "127.0.0.1")
        : m_address(address)
    {
        const bool isBound = m_socket.bind(QHostAddress(QLatin1String(address)));
        Q_ASSERT(isBound);
        Q_UNUSED(isBound)
    }

    const char* address() const { return m_address; }

    OverviewWish wish(qint64 lines) const
    {
        OverviewWish wish;
        wish.device = "D1";
        wish.record = "r1";
        wish.fftLength = 64;
        wish.lineCount = lines;
        wish.port = m_socket.localPort();
        return wish;
    }

    // What has come since it was last asked.
    QList<OverviewPiece> takePieces()
    {
        QList<OverviewPiece> pieces;
        while (m_socket.hasPendingDatagrams()) {
            QByteArray datagram(m_socket.pendingDatagramSize(), '\0');
            m_socket.readDatagram(datagram.data(), datagram.size());
            pieces.append(ZelkoCommon::overviewPiece(datagram).value_or(OverviewPiece()));
        }
        return pieces;
    }

    // From where the next one comes, which is taken.
    QString takeSender()
    {
        QHostAddress sender;
        char first = 0;
        m_socket.readDatagram(&first, 1, &sender);
        return sender.toString();
    }

    bool hasPieces() const { return m_socket.hasPendingDatagrams(); }
    void close() { m_socket.close(); }

private:
    const char* m_address;
    QUdpSocket m_socket;
};

ServiceStatus begin(OverviewDesk& desk, DeviceService& device, const Target& target, qint64 lines)
{
    return desk.begin(device, target.wish(lines), {target.address(), {}});
}

// At 50 datagrams a second, longer than any test may take.
constexpr qint64 endless = 100'000;

} // namespace

class TestOverviewDesk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_recorder.reset(); }
    void sendsToTheClientThatAsks();
    void sendsFromTheAddressThatWasCalled_data();
    void sendsFromTheAddressThatWasCalled();
    void sendsToNobodyElse();
    void sendsToNoPort();
    void sendsToAClientOfTheNewerFamily();
    void servesWindowsOfAClientSideBySide();
    void replacesTheOneToTheSamePort();
    void endsTheOldestOfAClientForOneMore();
    void sendsFewAtOnce();
    void makesRoomForAClientAmongItsOwnOnly();
    void endsWhenNobodyHasThePort();
    void givesAPlaceBackAfterTheLastLine();
    void leavesTheRecorderToItsOtherWork();
    void beginsNothingOnceItIsClosed();

private:
    DeviceService& device() { return *m_recorder->recorder.service("D1"); }

    std::unique_ptr<ServiceRecorder> m_recorder;
};

// The samples of r2 are 1 TiB, of which the disk has none.
void TestOverviewDesk::initTestCase()
{
    m_recorder = ServiceRecorder::loaded([](const QString& folder) {
        constexpr quint64 size = quint64{1} << 40;
        ZELKO_XML::ZELKO_RecordData large = finishedRecord("r2");
        const quint64 stop = 10'000'000 + size / 4 * 1000;
        large.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(stop, size)});
        large.SetStopTime(stop);
        large.SetSize(size);
        large.SetStopPosition(size);
        storeRecord(folder, finishedRecord("r1"), 4000);
        storeRecord(folder, large, 0);
        QFile::resize(folder + QLatin1String("/r2/r2.dat"), size);
    });
    QVERIFY(m_recorder);
}

void TestOverviewDesk::sendsToTheClientThatAsks()
{
    Target target;
    OverviewDesk desk({});
    QCOMPARE(begin(desk, device(), target, 5), ServiceStatus::None);
    QList<OverviewPiece> pieces;
    QTRY_VERIFY_WITH_TIMEOUT((pieces += target.takePieces()).size() == 5, patience);
    for (quint32 line = 0; line < 5; ++line) {
        QCOMPARE(pieces.at(line).line, line);
        QCOMPARE(pieces.at(line).isLast, line == 4);
        QCOMPARE(pieces.at(line).cookie, ZelkoCommon::overviewCookie("D1", "r1"));
    }
}

void TestOverviewDesk::sendsFromTheAddressThatWasCalled_data()
{
    QTest::addColumn<QByteArray>("called");
    QTest::addColumn<QString>("sender");
    QTest::newRow("another one than the client's") << QByteArray("127.0.0.5") << "127.0.0.5";
    QTest::newRow("the client's") << QByteArray("127.0.0.1") << "127.0.0.1";
    QTest::newRow("one that is not known") << QByteArray() << "127.0.0.1";
    QTest::newRow("one that this host does not have") << QByteArray("192.0.2.7") << "127.0.0.1";
    QTest::newRow("one of the newer family") << QByteArray("::1") << "127.0.0.1";
}

void TestOverviewDesk::sendsFromTheAddressThatWasCalled()
{
    QFETCH(QByteArray, called);
    Target target;
    OverviewDesk desk({});
    QCOMPARE(desk.begin(device(), target.wish(1), {target.address(), called.toStdString()}), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(target.hasPieces(), patience);
    QTEST(target.takeSender(), "sender");
}

void TestOverviewDesk::sendsToNobodyElse()
{
    const Target target;
    OverviewDesk desk({});
    OverviewWish wish = target.wish(5);
    wish.host = "127.0.0.1";
    QCOMPARE(desk.begin(device(), wish, {"192.0.2.7", {}}), ServiceStatus::NotAllowed);
    wish.host = "localhost"; // a name may be anybody's
    QCOMPARE(desk.begin(device(), wish, {"127.0.0.1", {}}), ServiceStatus::NotAllowed);
    wish.host = "127.0.0.1";
    QCOMPARE(desk.begin(device(), wish, {"127.0.0.1", {}}), ServiceStatus::None);
}

void TestOverviewDesk::sendsToNoPort()
{
    OverviewDesk desk({});
    OverviewWish wish = Target().wish(5);
    wish.port = 0;
    QCOMPARE(desk.begin(device(), wish, {"127.0.0.1", {}}), ServiceStatus::BadArgument);
}

void TestOverviewDesk::sendsToAClientOfTheNewerFamily()
{
    QUdpSocket target;
    const bool comesHere = target.bind(QHostAddress::LocalHostIPv6); // not on a machine without that family
    QVERIFY(comesHere || target.bind(QHostAddress::LocalHost));
    OverviewDesk desk({});
    OverviewWish wish = Target().wish(1);
    wish.port = target.localPort();
    wish.host = "[0::1]";
    QCOMPARE(desk.begin(device(), wish, {"::1", {}}), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(target.hasPendingDatagrams(), comesHere, patience);
}

void TestOverviewDesk::servesWindowsOfAClientSideBySide()
{
    Target first;
    Target second;
    OverviewDesk desk({.datagramsPerSecond = 50});
    QCOMPARE(begin(desk, device(), first, endless), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(first.hasPieces(), patience);
    QCOMPARE(begin(desk, device(), second, endless), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(second.hasPieces(), patience);
    first.takePieces();
    QTRY_VERIFY_WITH_TIMEOUT(first.hasPieces(), patience);
}

void TestOverviewDesk::replacesTheOneToTheSamePort()
{
    Target target;
    OverviewDesk desk({.mostAtOnce = 1, .datagramsPerSecond = 50});
    QCOMPARE(begin(desk, device(), target, endless), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(target.hasPieces(), patience);
    QCOMPARE(begin(desk, device(), target, 5), ServiceStatus::None);
    target.takePieces(); // what the first one had sent
    QList<OverviewPiece> pieces;
    QTRY_VERIFY_WITH_TIMEOUT(!(pieces += target.takePieces()).isEmpty() && pieces.last().isLast, patience);
    for (const OverviewPiece& piece : pieces) {
        QCOMPARE(piece.lineCount, 5U);
    }
}

void TestOverviewDesk::endsTheOldestOfAClientForOneMore()
{
    Target first;
    Target second;
    Target third;
    OverviewDesk desk({.mostOfClient = 2, .datagramsPerSecond = 50});
    for (Target* const target : {&first, &second, &third}) {
        QCOMPARE(begin(desk, device(), *target, endless), ServiceStatus::None);
    }
    for (Target* const target : {&first, &second, &third}) {
        target->takePieces();
    }
    for (int i = 0; i < 3; ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(second.hasPieces(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(third.hasPieces(), patience);
        second.takePieces();
        third.takePieces();
    }
    QVERIFY(!first.hasPieces());
}

void TestOverviewDesk::sendsFewAtOnce()
{
    OverviewDesk desk({.datagramsPerSecond = 10});
    std::list<Target> targets;
    for (const char* const client : {"127.0.0.1", "127.0.0.2"}) {
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(begin(desk, device(), targets.emplace_back(client), endless), ServiceStatus::None);
        }
    }
    const Target other("127.0.0.3");
    QCOMPARE(begin(desk, device(), other, endless), ServiceStatus::LimitReached);
    for (const Target& target : targets) {
        QTRY_VERIFY_WITH_TIMEOUT(target.hasPieces(), patience);
    }
    QCOMPARE(begin(desk, device(), targets.front(), endless), ServiceStatus::None);
    QCOMPARE(begin(desk, device(), Target(), endless), ServiceStatus::None);
}

// Who is refused ends nobody's overview, whosever it is.
void TestOverviewDesk::makesRoomForAClientAmongItsOwnOnly()
{
    OverviewDesk desk({.mostAtOnce = 3, .mostOfClient = 2, .datagramsPerSecond = 50});
    std::list<Target> targets;
    for (const char* const client : {"127.0.0.1", "127.0.0.2", "127.0.0.2"}) {
        QCOMPARE(begin(desk, device(), targets.emplace_back(client), endless), ServiceStatus::None);
    }
    const Target other("127.0.0.1");
    QCOMPARE(begin(desk, device(), other, endless), ServiceStatus::LimitReached);
    for (Target& target : targets) {
        target.takePieces();
        QTRY_VERIFY_WITH_TIMEOUT(target.hasPieces(), patience);
    }
}

void TestOverviewDesk::endsWhenNobodyHasThePort()
{
    OverviewDesk desk({.mostAtOnce = 1, .datagramsPerSecond = 50});
    Target target;
    QCOMPARE(begin(desk, device(), target, endless), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(target.hasPieces(), patience);
    const Target other("127.0.0.2");
    QCOMPARE(begin(desk, device(), other, 1), ServiceStatus::LimitReached);
    target.close();
    QTRY_COMPARE_WITH_TIMEOUT(begin(desk, device(), other, 1), ServiceStatus::None, patience);
}

void TestOverviewDesk::givesAPlaceBackAfterTheLastLine()
{
    OverviewDesk desk({.mostAtOnce = 1});
    const Target target;
    QCOMPARE(begin(desk, device(), target, 2), ServiceStatus::None);
    const Target other("127.0.0.2");
    QTRY_COMPARE_WITH_TIMEOUT(begin(desk, device(), other, 2), ServiceStatus::None, patience);
}

// A line of 1 TiB takes longer than any test.
void TestOverviewDesk::leavesTheRecorderToItsOtherWork()
{
    const Target target;
    const auto admin = m_recorder->admin();
    const auto ask = [](const auto& call) { return static_cast<ServiceStatus>(onCallerThread(call)); };
    for (int i = 0; i < 4; ++i) {
        const auto status = ask([&] {
            return admin->getOverviewSpectrumStreamed("D1", "r2", 0, 0, 1, 4096, QD_ZLK::WINDOW_HANN, "",
                                                      target.wish(1).port);
        });
        QCOMPARE(status, ServiceStatus::None);
    }
    QCOMPARE(ask([&] { return admin->setRecordComment("D1", "r1", L"heard"); }), ServiceStatus::None);
    QCOMPARE(ask([&] { return admin->setRecordComment("D1", "r2", L"heard"); }), ServiceStatus::None);
    QCOMPARE(ask([&] { return admin->requestRecordDataDetail("D1", "r1"); }), ServiceStatus::None);
    QVERIFY(!target.hasPieces()); // it is being made
}

void TestOverviewDesk::beginsNothingOnceItIsClosed()
{
    const Target target;
    OverviewDesk desk({.mostAtOnce = 2, .datagramsPerSecond = 10});
    QCOMPARE(desk.begin(device(), target.wish(endless), {"", {}}), ServiceStatus::None);
    desk.close();
    QCOMPARE(desk.begin(device(), target.wish(1), {"", {}}), ServiceStatus::ShuttingDown);
}

QTEST_GUILESS_MAIN(TestOverviewDesk)
#include "tst_overviewdesk.moc"
