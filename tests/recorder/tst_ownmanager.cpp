#include <recorder/service/ownmanager.h>

#include <recorder/source/sourcefactory.h>

#include <callending.h>
#include <flowtaker.h>
#include <freeport.h>
#include <patience.h>
#include <sigmfpair.h>

#include <zelkobase/orb/orb.h>

#include <QTest>

#include <atomic>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using Contract = QD_ZLK::IF_ZLK_c_ChanMan;

namespace {

constexpr char channel[] = "C1";
const QString endless = QStringLiteral("generator:carrier,start=2021-06-18T23:17:51Z");

// What a call within the process ends with: "done", or the number and text of the refusal.
template <typename Call>
QString ending(Call call)
{
    try {
        call();
        return QStringLiteral("done");
    } catch (const Contract::exChanMan& refusal) {
        return QStringLiteral("%1 %2").arg(int{refusal.code}).arg(refusal.text.in());
    }
}

QByteArray beginOf(const QString& source, qsizetype bytes)
{
    QString error;
    const auto signal = SourceFactory::create(source, &error);
    const qint64 size = signal->description().format.bytesPerFrame();
    QByteArray result(bytes, '\0');
    return signal->read(result.data(), bytes / size) == bytes / size ? result : QByteArray();
}

} // namespace

// Called as the recorder does.
class TestOwnManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isAvailableWithItsSource();
    void isNotAvailableWithoutIt();
    void sendsAStreamToWhereItIsTold();
    void beginsItsSourceAnewEachTime();
    void stopsTheFlow_data();
    void stopsTheFlow();
    void tellsThatNobodyTakesItsData();
    void takesTheSamplesOfAReplay();
    void takesNoDatagramsOfAReplay_data();
    void takesNoDatagramsOfAReplay();
    void offersNothingElse();
    void servesNobodyThroughAConnection();

private:
    void startFlow() { m_manager->startDataFlowNG(channel, "127.0.0.1", m_taker->port()); }
    void makeWith(const QString& source)
    {
        m_guard = m_manager =
            new OwnManager(QStringLiteral("Own"), source, 1, [this](const QString&) { ++m_failures; });
    }

    std::atomic<int> m_failures = 0; // that it was told
    OwnManager* m_manager = nullptr;
    PortableServer::ServantBase_var m_guard;
    std::unique_ptr<FlowTaker> m_taker;
};

void TestOwnManager::init()
{
    makeWith(endless);
    m_failures = 0;
    m_taker = std::make_unique<FlowTaker>();
}

void TestOwnManager::isAvailableWithItsSource()
{
    QVERIFY(m_manager->isAvailableForRecord(channel, QD_ZLK::StringSeq()));
    QVERIFY(m_manager->isAvailableForReplay(channel, QD_ZLK::StringSeq()));
}

void TestOwnManager::isNotAvailableWithoutIt()
{
    const QTemporaryDir folder;
    const QString stem = folder.filePath(QStringLiteral("capture"));
    QVERIFY(SigmfPair().write(stem));
    makeWith(stem + QStringLiteral(".sigmf-meta"));
    QVERIFY(m_manager->isAvailableForRecord(channel, QD_ZLK::StringSeq()));
    QVERIFY(QFile::remove(stem + QStringLiteral(".sigmf-meta")));
    const QString refusal = QString::number(Contract::CHANMAN_NOT_AVAILABLE);
    QVERIFY(ending([&] { m_manager->isAvailableForRecord(channel, QD_ZLK::StringSeq()); }).startsWith(refusal));
    QVERIFY(ending([&] { startFlow(); }).startsWith(refusal));
}

void TestOwnManager::sendsAStreamToWhereItIsTold()
{
    QD_ZLK::DataEndpointNGSeq_var endpoints;
    QD_ZLK::LongSeq_var streams;
    QVERIFY(m_manager->connectForRecordNG(channel, endpoints.out(), streams.out()));
    QCOMPARE(endpoints->length(), 1U);
    QCOMPARE(endpoints[0].kind, QD_ZLK::ENDPOINT_TCP);
    QCOMPARE(QByteArray(endpoints[0].address), QByteArray());
    QCOMPARE(endpoints[0].streamId, 0);
    startFlow();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->size() > 0, patience);
    QCOMPARE(m_taker->samples(), beginOf(endless, m_taker->samples().size()));
    QCOMPARE(m_taker->frames()[0].time, 1'624'058'271'000'000U);
    QCOMPARE(m_taker->frames()[0].sampleRate, 48'000U);
}

void TestOwnManager::beginsItsSourceAnewEachTime()
{
    startFlow();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->size() > 0, patience);
    m_manager->stopDataFlow(channel);
    m_manager->disconnect(channel);
    m_taker = std::make_unique<FlowTaker>();
    startFlow();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->size() > 0, patience);
    QCOMPARE(m_taker->frames()[0].number, 0U);
    QCOMPARE(m_taker->samples(), beginOf(endless, m_taker->samples().size()));
}

void TestOwnManager::stopsTheFlow_data()
{
    QTest::addColumn<int>("way");
    int way = 0;
    for (const char* const name : {"when it is told to", "when it is disconnected", "when something has gone wrong",
                                   "when the channel is removed", "when the recorder ends"}) {
        QTest::newRow(name) << way++;
    }
}

void TestOwnManager::stopsTheFlow()
{
    QFETCH(const int, way);
    startFlow();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->size() > 0, patience);
    const std::array<std::function<void()>, 5> ways{
        [&] { m_manager->stopDataFlow(channel); },
        [&] { m_manager->disconnect(channel); },
        [&] { m_manager->ZelkoRecordReplaySessionFault(channel, 4, "the disk takes no more"); },
        [&] { m_manager->ChannelRemoved(channel); },
        [&] { m_manager->goingDown(); },
    };
    ways[static_cast<std::size_t>(way)]();
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->isClosed(), patience);
    QCOMPARE(m_failures, 0);
}

void TestOwnManager::tellsThatNobodyTakesItsData()
{
    m_manager->startDataFlowNG(channel, "127.0.0.1", freePort());
    QTRY_COMPARE_WITH_TIMEOUT(m_failures, 1, patience);
}

void TestOwnManager::takesTheSamplesOfAReplay()
{
    QString error;
    const auto socket = FlowSocket::open(FlowSocket::Kind::Stream, QStringLiteral("127.0.0.1"), 0, "127.0.0.1", &error);
    QD_ZLK::DataEndpointSeq endpoints;
    endpoints.length(1);
    endpoints[0] = {QD_ZLK::ENDPOINT_TCP, 0, socket->port(), 0};
    QVERIFY(m_manager->connectForReplay(channel, endpoints, QD_ZLK::LongSeq()));
    QTRY_VERIFY_WITH_TIMEOUT(socket->accept(), patience);
    QByteArray frame;
    ChannelFrame().appendTo(&frame, "samples.");
    std::size_t written = 0;
    QCOMPARE(socket->write(frame.constData(), static_cast<std::size_t>(frame.size()), &written),
             FlowSocket::Sent::Bytes);
    m_manager->disconnect(channel);
    char byte = 0;
    QTRY_COMPARE_WITH_TIMEOUT(socket->read(&byte, 1, &written), FlowSocket::Got::End, patience);
}

void TestOwnManager::takesNoDatagramsOfAReplay_data()
{
    QTest::addColumn<int>("endpoints");
    QTest::newRow("no endpoint") << 0;
    QTest::newRow("one for datagrams") << 1;
}

void TestOwnManager::takesNoDatagramsOfAReplay()
{
    QFETCH(const int, endpoints);
    QD_ZLK::DataEndpointSeq sequence;
    sequence.length(static_cast<CORBA::ULong>(endpoints));
    for (CORBA::ULong i = 0; i < sequence.length(); ++i) {
        sequence[i] = {QD_ZLK::ENDPOINT_UDP, 0, m_taker->port(), 0};
    }
    QVERIFY(ending([&] {
                m_manager->connectForReplay(channel, sequence, QD_ZLK::LongSeq());
            }).startsWith(QString::number(Contract::CHANMAN_BAD_ENDPOINT)));
}

void TestOwnManager::offersNothingElse()
{
    const QString refusal = QString::number(Contract::CHANMAN_NOT_SUPPORTED);
    QD_ZLK::DataEndpointSeq_var endpoints;
    QD_ZLK::LongSeq_var streams;
    QVERIFY(ending([&] { m_manager->startDataFlow(channel); }).startsWith(refusal));
    QVERIFY(ending([&] { m_manager->connectForRecord(channel, endpoints.out(), streams.out()); }).startsWith(refusal));
    QVERIFY(!m_manager->startXgReplayLegacy(QD_ZLK::DataEndpointNGSeq(), QD_ZLK::LongSeq()));
    QVERIFY(!m_manager->startXgReplay(channel, 0, 0, 100));
    QVERIFY(!m_manager->stopXgReplay());
}

void TestOwnManager::servesNobodyThroughAConnection()
{
    ZelkoCommon::Orb orb({});
    orb.publish("Manager", m_manager);
    const CORBA::Object_var object = orb.reference(QStringLiteral("corbaloc::1.2@127.1:%1/Manager").arg(orb.port()));
    const QD_ZLK::IF_ZLK_c_ChanMan_var stranger = Contract::_unchecked_narrow(object);
    QCOMPARE(endingOf([&] { stranger->startDataFlowNG(channel, "127.0.0.1", m_taker->port()); }),
             QStringLiteral("NO_PERMISSION"));
    const CORBA::Object_var own = orb.published("Manager");
    const QD_ZLK::IF_ZLK_c_ChanMan_var within = Contract::_narrow(own);
    QCOMPARE(endingOf([&] { within->startDataFlowNG(channel, "127.0.0.1", m_taker->port()); }), QStringLiteral("done"));
    QTRY_VERIFY_WITH_TIMEOUT(m_taker->size() > 0, patience);
}

QTEST_GUILESS_MAIN(TestOwnManager)
#include "tst_ownmanager.moc"
