#include <servicerecorder.h>

#include <recorder/service/overviewdesk.h>

#include <QTest>
#include <QUdpSocket>
#include <QtEndian>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::ServiceStatus;

namespace {

OverviewWish wishOf(const QUdpSocket& target, qint64 lines)
{
    OverviewWish wish;
    wish.device = "D1";
    wish.record = "r1";
    wish.fftLength = 64;
    wish.lineCount = lines;
    wish.port = target.localPort();
    return wish;
}

} // namespace

class TestOverviewDesk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { m_recorder.reset(); }
    void init();
    void sendsToTheClientThatAsks();
    void sendsToNobodyElse();
    void sendsToAClientOfTheNewerFamily();
    void beginsAnewWhenAClientAsksAgain();
    void sendsFewAtOnce();
    void beginsNothingOnceItIsClosed();

private:
    DeviceService& device() { return *m_recorder->recorder.service("D1"); }
    QList<quint32> receivedLines();

    std::unique_ptr<ServiceRecorder> m_recorder;
    std::unique_ptr<QUdpSocket> m_target;
};

void TestOverviewDesk::initTestCase()
{
    m_recorder =
        ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, finishedRecord("r1"), 4000); });
    QVERIFY(m_recorder);
}

void TestOverviewDesk::init()
{
    m_target = std::make_unique<QUdpSocket>();
    QVERIFY(m_target->bind(QHostAddress::LocalHost));
}

QList<quint32> TestOverviewDesk::receivedLines()
{
    QList<quint32> lines;
    while (m_target->hasPendingDatagrams()) {
        QByteArray datagram(2048, '\0');
        m_target->readDatagram(datagram.data(), datagram.size());
        lines.append(qFromLittleEndian<quint32>(datagram.constData() + 16));
    }
    return lines;
}

void TestOverviewDesk::sendsToTheClientThatAsks()
{
    OverviewDesk desk({});
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 5), "127.0.0.1"), ServiceStatus::None);
    QList<quint32> lines;
    QTRY_VERIFY_WITH_TIMEOUT((lines += receivedLines()).size() == 5, 30000);
    QCOMPARE(lines, QList<quint32>({0, 1, 2, 3, 4}));
}

void TestOverviewDesk::sendsToNobodyElse()
{
    OverviewDesk desk({});
    OverviewWish wish = wishOf(*m_target, 5);
    wish.host = "127.0.0.1";
    QCOMPARE(desk.begin(device(), wish, "192.0.2.7"), ServiceStatus::NotAllowed);
    wish.host = "localhost"; // a name may be anybody's
    QCOMPARE(desk.begin(device(), wish, "127.0.0.1"), ServiceStatus::NotAllowed);
    wish.host = "127.0.0.1";
    QCOMPARE(desk.begin(device(), wish, "127.0.0.1"), ServiceStatus::None);
}

void TestOverviewDesk::sendsToAClientOfTheNewerFamily()
{
    QUdpSocket target;
    const bool comesHere = target.bind(QHostAddress::LocalHostIPv6); // not on a machine without that family
    QVERIFY(comesHere || target.bind(QHostAddress::LocalHost));
    OverviewDesk desk({});
    OverviewWish wish = wishOf(target, 1);
    wish.host = "[0::1]";
    QCOMPARE(desk.begin(device(), wish, "::1"), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(target.hasPendingDatagrams(), comesHere, 30000);
}

// The first of them would take half an hour.
void TestOverviewDesk::beginsAnewWhenAClientAsksAgain()
{
    OverviewDesk desk({.mostAtOnce = 1, .datagramsPerSecond = 50});
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 100'000), "127.0.0.1"), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(m_target->hasPendingDatagrams(), 30000);
    QUdpSocket second;
    QVERIFY(second.bind(QHostAddress::LocalHost));
    QCOMPARE(desk.begin(device(), wishOf(second, 1), "127.0.0.1"), ServiceStatus::None);
    receivedLines(); // what the first one had sent
    QTRY_VERIFY_WITH_TIMEOUT(second.hasPendingDatagrams(), 30000);
    QVERIFY(!m_target->hasPendingDatagrams());
}

void TestOverviewDesk::sendsFewAtOnce()
{
    OverviewDesk desk({.mostAtOnce = 2, .datagramsPerSecond = 10});
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1000), "127.0.0.1"), ServiceStatus::None);
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1000), "127.0.0.2"), ServiceStatus::None);
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1000), "127.0.0.3"), ServiceStatus::LimitReached);
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1000), "127.0.0.1"), ServiceStatus::None);
}

void TestOverviewDesk::beginsNothingOnceItIsClosed()
{
    OverviewDesk desk({.mostAtOnce = 2, .datagramsPerSecond = 10});
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1000), ""), ServiceStatus::None);
    desk.close();
    QCOMPARE(desk.begin(device(), wishOf(*m_target, 1), ""), ServiceStatus::ShuttingDown);
}

QTEST_GUILESS_MAIN(TestOverviewDesk)
#include "tst_overviewdesk.moc"
