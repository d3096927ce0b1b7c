#include <callending.h>
#include <patience.h>
#include <processlog.h>
#include <publishedmanager.h>
#include <servicerecorder.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::fromCorba;

namespace {

// Whether the object is there, as its client sees it.
bool answers(CORBA::Object_ptr object)
{
    return onCallerThread([object] {
        try {
            return !object->_non_existent();
        } catch (const CORBA::OBJECT_NOT_EXIST&) {
            return false;
        }
    });
}

} // namespace

class TestServiceHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }
    void servesItsObjectsUntilItEnds();
    void servesTheSameObjectsAgain();
    void servesAChannelForAsLongAsItIsRegistered();
    void endsWithItsChannels();
    void asksForTheRightsOfEachCall();
    void tellsOfRefusalsThoughNobodyTriesAgain();

private:
    QString enterChannel();
    QD_ZLK::IF_ZLK_c_Chan_var channel(const QString& id) const
    {
        return m_recorder->remoteAs<QD_ZLK::IF_ZLK_c_Chan>(channelKey(id.toStdString()));
    }

    std::unique_ptr<ServiceRecorder> m_recorder;
    std::unique_ptr<PublishedManager> m_manager;
};

void TestServiceHost::init()
{
    m_recorder = ServiceRecorder::loaded();
    QVERIFY(m_recorder);
    m_manager = std::make_unique<PublishedManager>(m_recorder->orb);
}

// Gives its ID; empty when the recorder refuses.
QString TestServiceHost::enterChannel()
{
    return onCallerThread([this] {
        try {
            CORBA::String_var id;
            const QD_ZLK::IF_ZLK_c_Chan_var entered = m_recorder->entry()->registerChannel(
                m_manager->reference(), QD_ZLK::RATE_1_MB, QD_ZLK::FORMAT_IQ16, true, true, "Antenne", id.out());
            return fromCorba(id.in());
        } catch (const QD_ZLK::exGen&) {
            return QString();
        }
    });
}

void TestServiceHost::servesItsObjectsUntilItEnds()
{
    const auto entry = m_recorder->entry();
    const auto admin = m_recorder->admin();
    const auto replay = m_recorder->replay();
    QVERIFY(answers(entry) && answers(admin) && answers(replay));
    m_recorder->host.reset();
    QVERIFY(!answers(entry) && !answers(admin) && !answers(replay));
}

void TestServiceHost::servesTheSameObjectsAgain()
{
    const auto entry = m_recorder->entry();
    const auto admin = m_recorder->admin();
    const auto replay = m_recorder->replay();
    m_recorder->host.reset();
    m_recorder->serve();
    QVERIFY(answers(entry) && answers(admin) && answers(replay));
}

void TestServiceHost::servesAChannelForAsLongAsItIsRegistered()
{
    const QString id = enterChannel();
    const auto served = channel(id);
    QVERIFY(answers(served));
    QCOMPARE(m_recorder->host->channels().find(id)->remove(), Channel::Verdict::Done);
    QTRY_VERIFY_WITH_TIMEOUT(!answers(served), patience);
    QVERIFY(answers(m_recorder->entry()));
}

void TestServiceHost::endsWithItsChannels()
{
    const QString id = enterChannel();
    const auto served = channel(id);
    m_recorder->host.reset();
    QVERIFY(!answers(served));
    QVERIFY(m_manager->manager().calls().contains("going down"));
    m_recorder->serve();
    QVERIFY(!answers(served)); // a channel ends with the recorder
    QCOMPARE(m_recorder->host->channels().count(), 0);
}

void TestServiceHost::asksForTheRightsOfEachCall()
{
    m_recorder->role = ZelkoCommon::Role::Viewer;
    QCOMPARE(enterChannel(), QString());
    m_recorder->role = ZelkoCommon::Role::Operator;
    QVERIFY(!enterChannel().isEmpty());
}

void TestServiceHost::tellsOfRefusalsThoughNobodyTriesAgain()
{
    std::atomic<int> hours = 1;
    const RefusalLog::Options log{1, std::chrono::minutes(1),
                                  [&] { return RefusalLog::Clock::time_point(std::chrono::hours(hours)); }};
    const CallRights rights([] { return Caller{"anna", Role::Viewer}; }, std::make_shared<RefusalLog>(log));
    ServiceHost::Options options;
    options.refusalsTold = std::chrono::milliseconds(1);
    m_recorder->host.reset();
    m_recorder->host = std::make_unique<ServiceHost>(
        m_recorder->orb, servedBy(m_recorder->recorder, *m_recorder->channelDevices), rights, options);
    const ProcessLog written;
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(endingOf([&] { m_recorder->entry()->cancelExport("none", true); }), QStringLiteral("not permitted"));
    }
    ++hours;
    QTRY_VERIFY_WITH_TIMEOUT(written.lines().contains("refused: 2 times more"), patience);
    m_recorder->host.reset();
}

QTEST_GUILESS_MAIN(TestServiceHost)
#include "tst_servicehost.moc"
