#include <recorder/service/flowsource.h>

#include <publishedmanager.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZLK_c_ChanMan;

namespace {

const QStringList newer{"connect", "start"};
const QStringList older{"connect of old", "start of old"};
const QStringList newerThenOlder{"connect", "connect of old", "start of old"};

} // namespace

// A source asks a manager that is reached through a real connection.
class TestFlowSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_orb.reset(); }
    void asksTheNewerWayFirst_data();
    void asksTheNewerWayFirst();
    void asksNobodyTwiceWhoRefuses();
    void declinesWithTheManager_data();
    void declinesWithTheManager();
    void knowsWhereDataComeFrom_data();
    void knowsWhereDataComeFrom();
    void takesNoSuchEndpointOfAnOlderManager_data();
    void takesNoSuchEndpointOfAnOlderManager();

private:
    using Change = std::function<void(ChannelManager::Answers&)>;

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<PublishedManager> m_published;
    ChannelManager* m_manager = nullptr;
    IF_ZLK_c_ChanMan::_var_type m_reference;
    FlowSource m_source{"192.0.2.7"};
};

void TestFlowSource::init()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_published = std::make_unique<PublishedManager>(*m_orb);
    m_manager = &m_published->manager();
    m_manager->answers.olderPort = 20'000;
    m_reference = m_published->reference();
    m_source = FlowSource("192.0.2.7");
}

void TestFlowSource::asksTheNewerWayFirst_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<int>("portOfItsOwn");
    QTest::newRow("a newer manager") << Change([](auto&) {}) << newer << 0;
    QTest::newRow("one that knows no newer operation")
        << Change([](auto& answers) { answers.isOlder = true; }) << older << 20'000;
    QTest::newRow("one that has not got to it yet")
        << Change([](auto& answers) { answers.refusal = [] { throw CORBA::NO_IMPLEMENT(); }; }) << newerThenOlder
        << 20'000;
    QTest::newRow("one that says so itself") << Change([](auto& answers) {
        answers.refusal = [] { throw IF_ZLK_c_ChanMan::exChanMan(IF_ZLK_c_ChanMan::CHANMAN_NOT_SUPPORTED, "older"); };
    }) << newerThenOlder << 20'000;
}

void TestFlowSource::asksTheNewerWayFirst()
{
    QFETCH(const Change, change);
    change(m_manager->answers);
    QVERIFY(m_source.connect(m_reference, "C1"));
    QVERIFY(m_source.isUsable());
    QTEST(int{m_source.port()}, "portOfItsOwn");
    m_source.start(m_reference, "C1", "127.0.0.1", 30'000);
    QTEST(m_manager->calls(), "calls");
    QCOMPARE(m_manager->port(), m_source.port() == 0 ? 30'000 : m_source.port());
}

void TestFlowSource::asksNobodyTwiceWhoRefuses()
{
    m_manager->answers.refusal = [] { throw IF_ZLK_c_ChanMan::exChanMan(IF_ZLK_c_ChanMan::CHANMAN_BUSY, "busy"); };
    QVERIFY_EXCEPTION_THROWN(m_source.connect(m_reference, "C1"), IF_ZLK_c_ChanMan::exChanMan);
    QVERIFY(!m_source.isUsable());
    QCOMPARE(m_manager->calls(), QStringList("connect"));
}

void TestFlowSource::declinesWithTheManager_data()
{
    QTest::addColumn<bool>("isOlder");
    QTest::newRow("a newer one") << false;
    QTest::newRow("an older one") << true;
}

void TestFlowSource::declinesWithTheManager()
{
    QFETCH(const bool, isOlder);
    m_manager->answers.isOlder = isOlder;
    m_manager->answers.connects = false;
    QVERIFY(!m_source.connect(m_reference, "C1"));
    QVERIFY(!m_source.isUsable());
}

void TestFlowSource::knowsWhereDataComeFrom_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<std::string>("sender");
    QTest::addColumn<quint64>("stream");
    const Change nowhere = [](auto&) {};
    QTest::newRow("from where a newer one called") << nowhere << std::string("192.0.2.7") << quint64{7};
    QTest::newRow("from the address that it names")
        << Change([](auto& answers) { answers.address = "2001:DB8:0::1"; }) << std::string("2001:db8::1") << quint64{7};
    QTest::newRow("without an endpoint") << Change([](auto& answers) { answers.namesEndpoint = false; })
                                         << std::string("192.0.2.7") << quint64{0};
    QTest::newRow("from where an older one called")
        << Change([](auto& answers) { answers.isOlder = true; }) << std::string("192.0.2.7") << quint64{7};
    QTest::newRow("from the number that it names") << Change([](auto& answers) {
        answers.isOlder = true;
        answers.olderAddress = 0x0a010203;
    }) << std::string("10.1.2.3") << quint64{7};
    QTest::newRow("from a number beyond the half of them") << Change([](auto& answers) {
        answers.isOlder = true;
        answers.olderAddress = static_cast<CORBA::Long>(0xc6336405U);
    }) << std::string("198.51.100.5") << quint64{7};
}

void TestFlowSource::knowsWhereDataComeFrom()
{
    QFETCH(const Change, change);
    change(m_manager->answers);
    QVERIFY(m_source.connect(m_reference, "C1"));
    QVERIFY(m_source.isUsable());
    QTEST(m_source.sender(), "sender");
    QTEST(m_source.stream(), "stream");
}

void TestFlowSource::takesNoSuchEndpointOfAnOlderManager_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("none at all") << Change([](auto& answers) { answers.namesEndpoint = false; });
    QTest::newRow("no port") << Change([](auto& answers) { answers.olderPort = 0; });
    QTest::newRow("a port of the system") << Change([](auto& answers) { answers.olderPort = 1023; });
    QTest::newRow("a number that is no port") << Change([](auto& answers) { answers.olderPort = 65'536; });
    QTest::newRow("a number below all ports") << Change([](auto& answers) { answers.olderPort = -20'000; });
    QTest::newRow("an optical link") << Change([](auto& answers) { answers.kind = QD_ZLK::ENDPOINT_OPTICAL; });
    QTest::newRow("a group of receivers") << Change([](auto& answers) { answers.kind = QD_ZLK::ENDPOINT_MULTICAST; });
}

void TestFlowSource::takesNoSuchEndpointOfAnOlderManager()
{
    QFETCH(const Change, change);
    m_manager->answers.isOlder = true;
    change(m_manager->answers);
    QVERIFY(m_source.connect(m_reference, "C1"));
    QVERIFY(!m_source.isUsable());
    QCOMPARE(m_source.port(), 0);
}

QTEST_GUILESS_MAIN(TestFlowSource)
#include "tst_flowsource.moc"
