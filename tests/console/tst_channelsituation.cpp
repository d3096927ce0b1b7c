#include <console/channel/channelsituation.h>

#include <host/userrights.h>

#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Recording = ChannelSituation::Recording;
using Replay = ChannelSituation::Replay;

namespace {

ChannelSituation atRest()
{
    ChannelSituation situation;
    situation.state = ZelkoGlobal::ChannelReady;
    situation.name = u"Antenna"_s;
    situation.subSystem = u"north"_s;
    situation.mayUse = situation.canRecord = situation.canReplay = true;
    situation.recording = static_cast<int>(Recording::Stopped);
    situation.replay = static_cast<int>(Replay::Stopped);
    return situation;
}

ChannelSituation recording(int state)
{
    ChannelSituation situation = atRest();
    situation.recording = state;
    return situation;
}

ChannelSituation recording(Recording state)
{
    return recording(static_cast<int>(state));
}

ChannelSituation replaying(int state)
{
    ChannelSituation situation = atRest();
    situation.replay = state;
    return situation;
}

ChannelSituation replaying(Replay state)
{
    return replaying(static_cast<int>(state));
}

ChannelSituation without(bool ChannelSituation::*ability)
{
    ChannelSituation situation = atRest();
    situation.*ability = false;
    return situation;
}

ChannelSituation missing(ZelkoGlobal::ChannelAvailableState state)
{
    ChannelSituation situation = atRest();
    situation.state = state;
    return situation;
}

ChannelSituation failed()
{
    ChannelSituation situation = atRest();
    situation.error = u"the disk does not take it"_s;
    return situation;
}

// Somebody has asked for more than it does already.
ChannelSituation refusedMore(ChannelSituation situation)
{
    situation.error = u"the channel is busy"_s;
    return situation;
}

/// What can be done: "record stop settings replay pause halt".
QString possible(const ChannelSituation& situation)
{
    QStringList words;
    const auto add = [&words](const char* word, const QString& whyNot) {
        if (whyNot.isEmpty()) {
            words.append(QLatin1String(word));
        }
    };
    add("record", whyNoRecording(situation));
    add("stop", whyNoStop(situation));
    add("settings", whyNoSettings(situation));
    add("replay", whyNoReplay(situation, 1));
    add("pause", whyNoPause(situation));
    add("halt", whyNoReplayStop(situation));
    return words.join(u' ');
}

} // namespace

Q_DECLARE_METATYPE(ZelkoConsole::ChannelSituation)

class TestChannelSituation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { UserRights::Instance()->SetUser({}, {}); }
    void saysHowItIsAndWhatCanBeDone_data();
    void saysHowItIsAndWhatCanBeDone();
    void saysWhyARecordCannotBeReplayed();
    void saysWhoMayNot();
    void saysWhatIsMissingAsASentence();
};

void TestChannelSituation::saysHowItIsAndWhatCanBeDone_data()
{
    QTest::addColumn<ChannelSituation>("situation");
    QTest::addColumn<QString>("text");
    QTest::addColumn<Glyph>("glyph");
    QTest::addColumn<QString>("can");

    const QString all = u"record settings replay"_s;
    const QString recordingCan = u"stop settings"_s;
    QTest::newRow("at rest") << atRest() << u"Stopped"_s << Glyph::Idle << all;
    QTest::newRow("asked to record") << recording(Recording::StartRequested) << u"Recording starts"_s << Glyph::Busy
                                     << recordingCan;
    QTest::newRow("recording") << recording(Recording::NormalRecording) << u"Recording"_s << Glyph::Recording
                               << recordingCan;
    QTest::newRow("a loop") << recording(Recording::ContinuousRecording) << u"Recording in a loop"_s << Glyph::Recording
                            << recordingCan;
    QTest::newRow("stopping") << recording(Recording::Stopping) << u"Recording stops"_s << Glyph::Busy << recordingCan;
    QTest::newRow("a state of a newer recorder")
        << recording(9) << u"In a state that this console does not know"_s << Glyph::Busy << recordingCan;

    const QString runningCan = u"settings pause halt"_s;
    const QString heldCan = u"settings replay halt"_s;
    QTest::newRow("asked to replay") << replaying(Replay::Started) << u"Replay starts"_s << Glyph::Busy << runningCan;
    QTest::newRow("replaying") << replaying(Replay::Running) << u"Replaying"_s << Glyph::Play << runningCan;
    QTest::newRow("pausing") << replaying(Replay::Pausing) << u"Replay pauses"_s << Glyph::Pause << heldCan;
    QTest::newRow("paused") << replaying(Replay::Paused) << u"Replay paused"_s << Glyph::Pause << heldCan;
    QTest::newRow("replay stopping") << replaying(Replay::Stopping) << u"Replay stops"_s << Glyph::Busy
                                     << u"settings halt"_s;
    QTest::newRow("a replay of a newer recorder")
        << replaying(8) << u"In a state that this console does not know"_s << Glyph::Busy << u"settings halt"_s;

    QTest::newRow("something went wrong") << failed() << u"Stopped: the disk does not take it"_s << Glyph::Bad << all;
    QTest::newRow("refused more while it records")
        << refusedMore(recording(Recording::NormalRecording)) << u"Recording: the channel is busy"_s << Glyph::Recording
        << recordingCan;
    QTest::newRow("refused more while it replays")
        << refusedMore(replaying(Replay::Running)) << u"Replaying: the channel is busy"_s << Glyph::Play << runningCan;
    QTest::newRow("does not record") << without(&ChannelSituation::canRecord) << u"Stopped, does not record"_s
                                     << Glyph::Idle << u"replay"_s;
    QTest::newRow("does not replay") << without(&ChannelSituation::canReplay) << u"Stopped"_s << Glyph::Idle
                                     << u"record settings"_s;
    QTest::newRow("may not be used") << without(&ChannelSituation::mayUse) << u"Stopped"_s << Glyph::Idle << QString();
    QTest::newRow("none chosen") << missing(ZelkoGlobal::ChannelNotSet) << u"No channel chosen"_s << Glyph::Idle
                                 << QString();
    QTest::newRow("gone") << missing(ZelkoGlobal::ChannelValuesMissing)
                          << u"Channel Antenna is not there at the moment"_s << Glyph::Bad << QString();
    QTest::newRow("out of reach") << missing(ZelkoGlobal::ChannelDisconnected) << u"No connection to north"_s
                                  << Glyph::Bad << QString();
}

void TestChannelSituation::saysHowItIsAndWhatCanBeDone()
{
    QFETCH(ChannelSituation, situation);
    QTEST(stateText(situation), "text");
    QTEST(stateGlyph(situation), "glyph");
    QTEST(possible(situation), "can");
}

void TestChannelSituation::saysWhyARecordCannotBeReplayed()
{
    QCOMPARE(whyNoReplay(atRest(), 0), u"No record is selected."_s);
    QVERIFY(!whyNoReplay(atRest(), 2).isEmpty());
    QCOMPARE(whyNoReplay(replaying(Replay::Paused), 0), QString());
    QCOMPARE(whyNoReplay(recording(Recording::NormalRecording), 1), u"The channel is busy."_s);
    QCOMPARE(whyNoReplay(without(&ChannelSituation::canReplay), 1), u"This channel does not replay."_s);
}

void TestChannelSituation::saysWhoMayNot()
{
    UserRights::Instance()->SetUser(u"visitor"_s, {});
    QCOMPARE(whyNoRecording(without(&ChannelSituation::mayUse)), u"User visitor may not do this."_s);
}

void TestChannelSituation::saysWhatIsMissingAsASentence()
{
    QCOMPARE(whyNoStop(missing(ZelkoGlobal::ChannelDisconnected)), u"No connection to north."_s);
    QCOMPARE(whyNoSettings(without(&ChannelSituation::canRecord)), u"This channel does not record."_s);
}

QTEST_MAIN(TestChannelSituation)
#include "tst_channelsituation.moc"
