#include <channeltest.h>
#include <faultproxy.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::toWideCorba;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

// How channels end: by force, with their manager, or with the recorder.
class TestChannelEnds : public ChannelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }
    void isRemovedByForce();
    void forgetsAManagerThatHasNoSuchObjectAnyMore();
    void forgetsAManagerThatCannotBeReached();
    void keepsNobodyWaitingForAManagerThatHangs();
    void closesTheRecordOfAManagerThatDies();
    void tellsItsManagersThatTheRecorderEnds();
};

void TestChannelEnds::isRemovedByForce()
{
    const Registered registered = enter("Antenne 1");
    startRecording(registered);
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    QCOMPARE(endingOf([&] { registered.channel->removeChannelForced(); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().last(), QStringLiteral("removed"), patience);
    QVERIFY(isFinished());
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
}

void TestChannelEnds::forgetsAManagerThatHasNoSuchObjectAnyMore()
{
    begin(watchful());
    enter("Antenne 1");
    m_published->vanish();
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
}

void TestChannelEnds::forgetsAManagerThatCannotBeReached()
{
    begin(watchful());
    FaultProxy proxy(m_recorder->orb.port());
    enter("1", "", proxy.port());
    QCOMPARE(m_recorder->host->channels().count(), 1);
    proxy.setTarget(1); // where nobody listens
    proxy.cut();
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
}

void TestChannelEnds::keepsNobodyWaitingForAManagerThatHangs()
{
    ServiceHost::Options options = watchful();
    options.channels.channel.callLimit = std::chrono::milliseconds(500);
    begin(options);
    m_manager->answers.hangs = true;
    FaultProxy proxy(m_recorder->orb.port());
    const Registered hanging = enter("1", "", proxy.port());
    QCOMPARE(endingOf([&] { hanging.channel->startRecording(0, toWideCorba("x"), 0); }), QStringLiteral("done"));
    proxy.setFrozen(true); // no sign of life comes through either
    QCOMPARE(endingOf([&] { CORBA::String_var(entry()->getWorkstationName()); }), QStringLiteral("done"));
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
}

void TestChannelEnds::closesTheRecordOfAManagerThatDies()
{
    begin(watchful());
    startRecording(enter("Antenne 1"));
    send({0, 1});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    m_published->vanish();
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(onlyRecord()->GetSize(), 800U);
    QTRY_COMPARE_WITH_TIMEOUT(m_recorder->host->channels().count(), 0, patience);
}

void TestChannelEnds::tellsItsManagersThatTheRecorderEnds()
{
    ServiceHost::Options options;
    options.channels.farewell = std::chrono::seconds(30);
    begin(options);
    startRecording(enter("Antenne 1"));
    enter("Antenne 2");
    send({0, 1});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord() != nullptr, patience);
    const QString id = onlyRecord()->GetRecordID();
    m_recorder->host.reset();
    QCOMPARE(m_manager->calls().count("going down"), 2);
    QString error;
    const RecordPointer stored = DeviceStore(m_recorder->deviceFolder("D1")).read(id, &error);
    QVERIFY2(stored, qPrintable(error));
    QCOMPARE(stored->GetRecordStatus(), Status::Finished);
}

QTEST_GUILESS_MAIN(TestChannelEnds)
#include "tst_channelends.moc"
