#include "channelsite.h"

#include <console/replay/replaycontrols.h>

#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Recording = SampleChannel::Recording;
using Replay = SampleChannel::Replay;

namespace {

/// The buttons, shown, for a channel and one record that is chosen.
struct Shown : WorkChannelSite
{
    Shown()
    {
        controls.setChannel(&channel);
        controls.setSelected(1);
        controls.activateWindow();
    }

    QStringList enabled() const
    {
        QStringList names;
        for (const QToolButton* const button : {controls.playButton(), controls.pauseButton(), controls.stopButton()}) {
            if (button->isEnabled()) {
                names.append(button->objectName());
            }
        }
        return names;
    }

    ReplayControls controls;
};

void click(QToolButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

class TestReplayControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areNotSeenWithoutAChannel();
    void areNotSeenWithoutChannelsToOffer();
    void offerWhatCanBeDone_data();
    void offerWhatCanBeDone();
    void sayWhyNothingIsReplayed_data();
    void sayWhyNothingIsReplayed();
    void askForAStart();
    void haveAReplayThatHoldsGoOn();
    void holdAndEndAReplay();
    void passTheFocusOn();
    void outliveTheirChannel();
};

void TestReplayControls::areNotSeenWithoutAChannel()
{
    Shown shown;
    QVERIFY(shown.controls.isVisible());
    shown.controls.setChannel(nullptr);
    QVERIFY(!shown.controls.isVisible());
    QCOMPARE(shown.enabled(), QStringList());
}

void TestReplayControls::areNotSeenWithoutChannelsToOffer()
{
    const Shown shown;
    shown.antenna.remove();
    QTRY_VERIFY_WITH_TIMEOUT(!shown.controls.isVisible(), patience);
}

void TestReplayControls::offerWhatCanBeDone_data()
{
    QTest::addColumn<Replay>("replay");
    QTest::addColumn<QStringList>("enabled");
    QTest::addColumn<QString>("play");
    const QString begins = u"Replay the record"_s;
    const QString goesOn = u"Continue the replay"_s;
    QTest::newRow("at rest") << Replay::Stopped << QStringList(u"startReplay"_s) << begins;
    QTest::newRow("starting") << Replay::Started << QStringList{u"pauseReplay"_s, u"stopReplay"_s} << begins;
    QTest::newRow("running") << Replay::Running << QStringList{u"pauseReplay"_s, u"stopReplay"_s} << begins;
    QTest::newRow("pausing") << Replay::Pausing << QStringList{u"startReplay"_s, u"stopReplay"_s} << goesOn;
    QTest::newRow("paused") << Replay::Paused << QStringList{u"startReplay"_s, u"stopReplay"_s} << goesOn;
    QTest::newRow("stopping") << Replay::Stopping << QStringList(u"stopReplay"_s) << begins;
}

void TestReplayControls::offerWhatCanBeDone()
{
    QFETCH(const Replay, replay);
    QFETCH(const QStringList, enabled);
    QFETCH(const QString, play);
    const Shown shown;
    shown.antenna.setReplay(replay);
    QTRY_COMPARE_WITH_TIMEOUT(shown.enabled(), enabled, patience);
    QCOMPARE(shown.controls.playButton()->toolTip(), play);
    QCOMPARE(shown.controls.playButton()->accessibleName(), play);
}

void TestReplayControls::sayWhyNothingIsReplayed_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("mayReplay");
    QTest::addColumn<QString>("tip");
    QTest::newRow("nothing chosen") << 0 << true << u"No record is selected."_s;
    QTest::newRow("several chosen") << 2 << true << u"More than one record is selected."_s;
    QTest::newRow("a channel that does not") << 1 << false << u"This channel does not replay."_s;
    QTest::newRow("nothing in the way") << 1 << true
                                        << u"Replays the record from where you put the position on the bar."_s;
}

void TestReplayControls::sayWhyNothingIsReplayed()
{
    QFETCH(const int, selected);
    QFETCH(const bool, mayReplay);
    QFETCH(const QString, tip);
    Shown shown;
    shown.antenna.setMayReplay(mayReplay);
    shown.controls.setSelected(selected);
    QTRY_COMPARE_WITH_TIMEOUT(shown.controls.playButton()->statusTip(), tip, patience);
    QCOMPARE(shown.controls.playButton()->isEnabled(), selected == 1 && mayReplay);
}

void TestReplayControls::askForAStart()
{
    const Shown shown;
    const QSignalSpy wanted(&shown.controls, &ReplayControls::startWanted);
    click(shown.controls.playButton());
    QCOMPARE(wanted.size(), 1);
    QCOMPARE(shown.antenna.replay(), Replay::Stopped); // which record it is they do not know
}

void TestReplayControls::haveAReplayThatHoldsGoOn()
{
    Shown shown;
    shown.controls.setSelected(0); // whatever is chosen
    const QSignalSpy wanted(&shown.controls, &ReplayControls::startWanted);
    shown.antenna.setReplay(Replay::Paused);
    QTRY_VERIFY_WITH_TIMEOUT(shown.controls.playButton()->isEnabled(), patience);
    click(shown.controls.playButton());
    QCOMPARE(shown.antenna.replay(), Replay::Running);
    QCOMPARE(wanted.size(), 0);
}

void TestReplayControls::holdAndEndAReplay()
{
    const Shown shown;
    shown.antenna.setReplay(Replay::Running);
    QTRY_VERIFY_WITH_TIMEOUT(shown.controls.pauseButton()->isEnabled(), patience);
    click(shown.controls.pauseButton());
    QCOMPARE(shown.antenna.replay(), Replay::Paused);
    click(shown.controls.stopButton());
    QCOMPARE(shown.antenna.replay(), Replay::Stopped);
}

void TestReplayControls::passTheFocusOn()
{
    const Shown shown;
    QVERIFY(QTest::qWaitForWindowActive(shown.controls.window(), patience));
    shown.antenna.setReplay(Replay::Running);
    QTRY_VERIFY_WITH_TIMEOUT(shown.controls.pauseButton()->isEnabled(), patience);
    shown.controls.pauseButton()->setFocus();
    QTest::keyClick(shown.controls.pauseButton(), Qt::Key_Space);
    QTRY_VERIFY_WITH_TIMEOUT(shown.controls.playButton()->hasFocus(), patience);
}

void TestReplayControls::outliveTheirChannel()
{
    const ChannelSite site;
    site.addChannel("C1", "Antenna");
    ReplayControls controls;
    auto channel = std::make_unique<WorkChannel>(site.north, site.site.connectionData());
    controls.setChannel(channel.get());
    QVERIFY(controls.isVisible());
    channel.reset();
    controls.setSelected(1);
    QVERIFY(!controls.isVisible());
}

QTEST_MAIN(TestReplayControls)
#include "tst_replaycontrols.moc"
