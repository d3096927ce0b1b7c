#include "channelsite.h"

#include <zelkoguibase/state/zelkochannelmodel.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Recording = SampleChannel::Recording;
using Replay = SampleChannel::Replay;
using ZelkoCommon::Role;

class TestWorkChannel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNotOfferedWithoutAChannel();
    void worksOnTheFirstThatIsServed();
    void staysWithWhatWasChosen();
    void isOfferedWhileTheConnectionIsGone();
    void takesUpAChannelOfTheSameName();
    void waitsForAChannelThatWent();
    void saysHowTheChannelStands();
    void saysWhatTheNextRecordingIsToBe();
    void tellsOnceOfWhatChangesTogether();
    void recordsOnTheDeviceOfTheWorkstation();
    void showsWhereTheChannelStands();
    void isUsedByWhoMayChangeSomething();
};

void TestWorkChannel::isNotOfferedWithoutAChannel()
{
    const ChannelSite site;
    const WorkChannel channel(site.north, site.site.connectionData());
    QVERIFY(!channel.isOffered());
    QCOMPARE(channel.id(), QString());
    QCOMPARE(channel.situation().state, ZelkoGlobal::ChannelNotSet);
    QCOMPARE(channel.recordName(), QString());
    QCOMPARE(channel.recordTimeout(), 0);
    QCOMPARE(channel.fileSizeInKB(), 0);
}

void TestWorkChannel::worksOnTheFirstThatIsServed()
{
    const ChannelSite site;
    const WorkChannel channel(site.north, site.site.connectionData());
    site.addChannel("C1", "Antenna");
    site.addChannel("C2", "Mast");
    QTRY_COMPARE_WITH_TIMEOUT(channel.id(), u"C1"_s, patience);
    QVERIFY(channel.isOffered());
    QCOMPARE(channel.channels().size(), std::size_t(2));
    QCOMPARE(channel.situation().name, u"Antenna"_s);
}

void TestWorkChannel::staysWithWhatWasChosen()
{
    WorkChannelSite site;
    const SampleChannel mast = site.addChannel("C2", "Mast");
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.channels().size(), std::size_t(2), patience);
    site.channel.choose(u"C2"_s);
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.situation().name, u"Mast"_s, patience);
    mast.setRecording(Recording::NormalRecording);
    QVERIFY(site.channel.situation().hasRecording());
    const WorkChannel another(site.north, site.site.connectionData()); // of the same workstation
    QCOMPARE(another.id(), u"C2"_s);
}

void TestWorkChannel::isOfferedWhileTheConnectionIsGone()
{
    WorkChannelSite site;
    QVERIFY(site.channel.situation().isThere());
    site.site.lose(site.north, QString());
    letTurnsPass();
    QVERIFY(site.channel.isOffered());
    QCOMPARE(site.channel.situation().state, ZelkoGlobal::ChannelDisconnected);
    QCOMPARE(site.channel.situation().name, u"Antenna"_s);
    site.addChannel("C1", "Antenna");
    site.site.connectTo(site.north);
    QTRY_VERIFY_WITH_TIMEOUT(site.channel.situation().isThere(), patience);
}

void TestWorkChannel::takesUpAChannelOfTheSameName()
{
    WorkChannelSite site;
    site.addChannel("C2", "Mast");
    site.antenna.remove();
    const SampleChannel again = site.addChannel("C3", "Antenna");
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.id(), u"C3"_s, patience);
    again.setError(u"no signal"_s);
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.situation().error, u"no signal"_s, patience);
}

void TestWorkChannel::waitsForAChannelThatWent()
{
    WorkChannelSite site;
    site.addChannel("C2", "Mast");
    site.antenna.remove();
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.situation().state, ZelkoGlobal::ChannelValuesMissing, patience);
    QCOMPARE(site.channel.id(), u"C1"_s);
    QCOMPARE(site.channel.situation().name, u"Antenna"_s);
}

void TestWorkChannel::saysHowTheChannelStands()
{
    const WorkChannelSite site;
    site.antenna.setRecording(Recording::Stopping);
    site.antenna.setReplay(Replay::Paused);
    site.antenna.setMayRecord(false);
    site.antenna.setError(u"full"_s);
    ChannelSituation expected;
    expected.state = ZelkoGlobal::ChannelRecordFlagOff;
    expected.name = u"Antenna"_s;
    expected.subSystem = site.north;
    expected.mayUse = true;
    expected.canReplay = true;
    expected.recording = static_cast<int>(Recording::Stopping);
    expected.replay = static_cast<int>(Replay::Paused);
    expected.error = u"full"_s;
    QTRY_COMPARE_WITH_TIMEOUT(site.channel.situation(), expected, patience);
}

void TestWorkChannel::saysWhatTheNextRecordingIsToBe()
{
    const WorkChannelSite site;
    site.antenna.setRecordName(u"Morning"_s);
    site.antenna.setRecordTimeout(90);
    site.antenna.setFileSizeInKB(2000);
    QCOMPARE(site.channel.recordName(), u"Morning"_s);
    QCOMPARE(site.channel.recordTimeout(), 90);
    QCOMPARE(site.channel.fileSizeInKB(), 2000);
}

void TestWorkChannel::tellsOnceOfWhatChangesTogether()
{
    const WorkChannelSite site;
    letTurnsPass();
    const QSignalSpy changed(&site.channel, &WorkChannel::changed);
    site.antenna.setRecordTimeout(90);
    site.antenna.setError(u"full"_s);
    site.antenna.setReplay(Replay::Running);
    QCOMPARE(changed.size(), 0);
    letTurnsPass();
    QCOMPARE(changed.size(), 1);
}

void TestWorkChannel::recordsOnTheDeviceOfTheWorkstation()
{
    WorkChannelSite site;
    site.channel.localValues().valueDeviceId()->SetValue(u"A1"_s, nullptr);
    site.channel.startRecording();
    QCOMPARE(site.antenna.recording(), Recording::StartRequested);
    QCOMPARE(site.antenna.device(), u"A1"_s);
}

void TestWorkChannel::showsWhereTheChannelStands()
{
    const WorkChannelSite site;
    site.antenna.setPosition(1'700'000'000'000'000);
    QCOMPARE(site.channel.localValues().valueWaterfallTimestamp()->GetValue(), 1.7e15);
}

void TestWorkChannel::isUsedByWhoMayChangeSomething()
{
    const WorkChannelSite site;
    QVERIFY(site.channel.situation().mayUse);
    const QSignalSpy changed(&site.channel, &WorkChannel::changed);
    ChannelSite::become(Role::Viewer);
    QVERIFY(!site.channel.situation().mayUse);
    QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), patience);
    QVERIFY(site.channel.situation().isThere()); // to be looked at
    ChannelSite::become(Role::Operator);
    QVERIFY(site.channel.situation().mayUse);
    site.channel.model()->startRecording();
    QCOMPARE(site.antenna.recording(), Recording::StartRequested);
}

QTEST_MAIN(TestWorkChannel)
#include "tst_workchannel.moc"
