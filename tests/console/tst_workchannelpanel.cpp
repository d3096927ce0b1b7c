#include "channelconsole.h"

#include <zelkoguibase/state/devicecombo.h>

#include <QApplication>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Recording = SampleChannel::Recording;
using Replay = SampleChannel::Replay;

namespace {

void click(QWidget& widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
}

void alt(const ChannelConsole& console, Qt::Key key)
{
    QTest::keyClick(console.window.get(), key, Qt::AltModifier);
}

} // namespace

// The panel as it stands in the console, with real events.
class TestWorkChannelPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isThereWithChannelsOnly();
    void recordsOnTheDeviceToWorkOn();
    void endsARecordingByKey();
    void keepsTheFocusWithTheButtonThatIsNext();
    void writesWhatIsTyped();
    void writesTheNameBeforeItRecords();
    void showsWhatOthersWriteUnlessSomebodyTypes();
    void showsTheNumbersOfOthersWhenTheTypingIsDone();
    void writesTheNumberThatItWasBefore_data();
    void writesTheNumberThatItWasBefore();
    void saysWhatTheChannelDoes();
    void letsAViewerDoNothing();
    void takesUpTheChannelForWhoMayUseItNow();
    void saysThatTheConnectionIsLost();
    void worksOnAnotherChannel();
    void saysThatTheChannelIsGone();
    void takesUpAChannelOfTheSameName();
    void seesAChannelThatComesPieceByPiece();
    void disablesTheDeviceBoxOfABusyChannel_data();
    void disablesTheDeviceBoxOfABusyChannel();
};

void TestWorkChannelPanel::isThereWithChannelsOnly()
{
    DeckConsole console;
    QVERIFY(!console.panel().isVisible());
    const SampleChannel channel = console.addChannel("C1", "Antenna");
    QTRY_VERIFY_WITH_TIMEOUT(console.panel().isVisible(), patience);
    QCOMPARE(console.choice().currentText(), u"Antenna"_s);
    channel.remove();
    QTRY_VERIFY_WITH_TIMEOUT(!console.panel().isVisible(), patience);
}

void TestWorkChannelPanel::recordsOnTheDeviceToWorkOn()
{
    ChannelConsole console;
    click(console.record());
    QCOMPARE(console.channel.recording(), Recording::StartRequested);
    QCOMPARE(console.channel.device(), console.device);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Recording starts"_s, patience);
    QVERIFY(!console.record().isEnabled());
}

void TestWorkChannelPanel::endsARecordingByKey()
{
    ChannelConsole console;
    console.channel.setRecording(Recording::NormalRecording);
    QTRY_VERIFY_WITH_TIMEOUT(console.stop().isEnabled(), patience);
    alt(console, Qt::Key_T);
    QTRY_COMPARE_WITH_TIMEOUT(console.channel.recording(), Recording::Stopping, patience);
}

void TestWorkChannelPanel::keepsTheFocusWithTheButtonThatIsNext()
{
    ChannelConsole console;
    console.record().setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTRY_VERIFY_WITH_TIMEOUT(console.stop().hasFocus(), patience);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(console.channel.recording(), Recording::Stopping);
    console.channel.setRecording(Recording::Stopped);
    QTRY_VERIFY_WITH_TIMEOUT(console.record().hasFocus(), patience);
}

void TestWorkChannelPanel::writesWhatIsTyped()
{
    ChannelConsole console;
    const RecordingSettings& settings = *console.panel().settings();
    operatorhands::type(*settings.name(), u"Morning"_s);
    QCOMPARE(console.channel.recordName(), QString());
    QTest::keyClick(settings.name(), Qt::Key_Return);
    QCOMPARE(console.channel.recordName(), u"Morning"_s);
    settings.timeout()->selectAll();
    operatorhands::type(*settings.timeout(), u"90"_s);
    QTest::keyClick(settings.timeout(), Qt::Key_Tab);
    QCOMPARE(console.channel.recordTimeout(), 90);
    QTest::keyClick(settings.fileSize(), Qt::Key_Up);
    QCOMPARE(console.channel.fileSizeInKB(), 1);
    QTest::keyClick(settings.fileSize(), Qt::Key_Down);
    QCOMPARE(console.channel.fileSizeInKB(), 0);
    QCOMPARE(settings.fileSize()->text(), u"no limit"_s);
}

void TestWorkChannelPanel::writesTheNameBeforeItRecords()
{
    ChannelConsole console;
    operatorhands::type(*console.panel().settings()->name(), u"Evening"_s);
    alt(console, Qt::Key_C);
    QTRY_COMPARE_WITH_TIMEOUT(console.channel.recording(), Recording::StartRequested, patience);
    QCOMPARE(console.channel.recordName(), u"Evening"_s);
}

void TestWorkChannelPanel::showsWhatOthersWriteUnlessSomebodyTypes()
{
    ChannelConsole console;
    QLineEdit& name = *console.panel().settings()->name();
    console.channel.setRecordName(u"Theirs"_s);
    console.channel.setRecordTimeout(30);
    console.channel.setFileSizeInKB(2000);
    QTRY_COMPARE_WITH_TIMEOUT(name.text(), u"Theirs"_s, patience);
    QCOMPARE(console.panel().settings()->timeout()->value(), 30);
    QCOMPARE(console.panel().settings()->fileSize()->value(), 2000);
    name.clear();
    operatorhands::type(name, u"Mi"_s);
    console.channel.setRecordName(u"Theirs again"_s);
    letTurnsPass();
    QCOMPARE(name.text(), u"Mi"_s);
    QTest::keyClicks(&name, u"ne"_s);
    QTest::keyClick(&name, Qt::Key_Return);
    QCOMPARE(console.channel.recordName(), u"Mine"_s);
}

void TestWorkChannelPanel::showsTheNumbersOfOthersWhenTheTypingIsDone()
{
    ChannelConsole console;
    QSpinBox& timeout = *console.panel().settings()->timeout();
    console.channel.setRecordTimeout(90);
    QTRY_COMPARE_WITH_TIMEOUT(timeout.value(), 90, patience);
    timeout.selectAll();
    operatorhands::type(timeout, u"90"_s);
    QTest::keyClick(&timeout, Qt::Key_Tab);
    timeout.setFocus();
    console.channel.setRecordTimeout(30);
    QTRY_COMPARE_WITH_TIMEOUT(timeout.value(), 30, patience);
    QVERIFY(timeout.hasFocus());
}

void TestWorkChannelPanel::writesTheNumberThatItWasBefore_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("when the typing is done") << Qt::Key_Return << Qt::KeyboardModifiers();
    QTest::newRow("before it records") << Qt::Key_C << Qt::KeyboardModifiers(Qt::AltModifier);
}

void TestWorkChannelPanel::writesTheNumberThatItWasBefore()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    ChannelConsole console;
    QSpinBox& size = *console.panel().settings()->fileSize();
    console.channel.setFileSizeInKB(70);
    QTRY_COMPARE_WITH_TIMEOUT(size.value(), 70, patience);
    size.selectAll();
    operatorhands::type(size, u"70"_s);
    console.channel.setFileSizeInKB(500);
    letTurnsPass();
    QTest::keyClick(&size, key, modifiers);
    QTRY_COMPARE_WITH_TIMEOUT(console.channel.fileSizeInKB(), 70, patience);
}

void TestWorkChannelPanel::saysWhatTheChannelDoes()
{
    ChannelConsole console;
    QCOMPARE(console.state(), u"Stopped"_s);
    console.channel.setRecording(Recording::ContinuousRecording);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Recording in a loop"_s, patience);
    console.channel.setRecording(Recording::Stopped);
    console.channel.setError(u"the disk does not take it"_s);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped: the disk does not take it"_s, patience);
    console.channel.setError(QString());
    console.channel.setReplay(Replay::Paused);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Replay paused"_s, patience);
    console.channel.setReplay(Replay::Stopped);
    console.channel.setMayRecord(false);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped, does not record"_s, patience);
    QCOMPARE(console.record().statusTip(), u"This channel does not record."_s);
}

void TestWorkChannelPanel::letsAViewerDoNothing()
{
    ChannelConsole console;
    QVERIFY(console.user->switchTo(u"viewer"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!console.record().isEnabled(), patience);
    QCOMPARE(console.record().statusTip(), u"User viewer may not do this."_s);
    const RecordingSettings& settings = *console.panel().settings();
    QVERIFY(!console.stop().isEnabled());
    QVERIFY(!settings.name()->isEnabled());
    QVERIFY(!settings.timeout()->isEnabled());
    QVERIFY(!settings.fileSize()->isEnabled());
    QCOMPARE(console.state(), u"Stopped"_s);
    QVERIFY(console.choice().isEnabled()); // looking is for everybody
}

void TestWorkChannelPanel::takesUpTheChannelForWhoMayUseItNow()
{
    ChannelConsole console;
    QVERIFY(console.user->switchTo(u"viewer"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!console.record().isEnabled(), patience);
    QVERIFY(console.user->switchTo(u"operator"_s));
    console.waitForChannel();
    click(console.record());
    QCOMPARE(console.channel.recording(), Recording::StartRequested);
}

void TestWorkChannelPanel::saysThatTheConnectionIsLost()
{
    ChannelConsole console;
    console.lose();
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"No connection to north"_s, patience);
    QVERIFY(console.panel().isVisible());
    QVERIFY(!console.record().isEnabled());
    const SampleChannel again = console.addChannel("C1", "Antenna");
    console.comeBack(0);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
    click(console.record());
    QCOMPARE(again.recording(), Recording::StartRequested);
}

void TestWorkChannelPanel::worksOnAnotherChannel()
{
    ChannelConsole console;
    const SampleChannel second = console.addChannel("C2", "Mast");
    QTRY_COMPARE_WITH_TIMEOUT(console.choice().count(), 2, patience);
    alt(console, Qt::Key_N);
    QTRY_VERIFY_WITH_TIMEOUT(console.choice().hasFocus(), patience);
    QTest::keyClick(&console.choice(), Qt::Key_Down);
    QTRY_COMPARE_WITH_TIMEOUT(console.deck().channel()->id(), u"C2"_s, patience);
    click(console.record());
    QCOMPARE(second.recording(), Recording::StartRequested);
    QCOMPARE(console.channel.recording(), Recording::Stopped);
}

void TestWorkChannelPanel::saysThatTheChannelIsGone()
{
    ChannelConsole console;
    const SampleChannel second = console.addChannel("C2", "Mast");
    console.channel.setRecording(Recording::NormalRecording);
    console.channel.remove();
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Channel Antenna is not there at the moment"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(console.choice().currentIndex(), -1, patience);
    QVERIFY(!console.record().isEnabled());
    QVERIFY(console.window->records()->workDevice()->combo()->isEnabled());
    const SampleChannel again = console.addChannel("C1", "Antenna");
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
    QCOMPARE(console.choice().currentText(), u"Antenna"_s);
}

void TestWorkChannelPanel::takesUpAChannelOfTheSameName()
{
    ChannelConsole console;
    const SampleChannel second = console.addChannel("C2", "Mast");
    console.channel.remove();
    const SampleChannel again = console.addChannel("C3", "Antenna");
    QTRY_COMPARE_WITH_TIMEOUT(console.deck().channel()->id(), u"C3"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
}

void TestWorkChannelPanel::seesAChannelThatComesPieceByPiece()
{
    ChannelConsole console;
    const QString path = u"/SubSystems/north/ZELKO/Channel/C1/"_s;
    QVERIFY(Tree::Instance()->Remove(path + u"RecordID"_s));
    QVERIFY(Tree::Instance()->Remove(path + u"AllRecordReplayModes"_s));
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Channel Antenna is not there at the moment"_s, patience);
    console.channel.remove();
    console.channel = console.addChannel("C1", "Antenna");
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
}

void TestWorkChannelPanel::disablesTheDeviceBoxOfABusyChannel_data()
{
    QTest::addColumn<int>("recording");
    QTest::addColumn<int>("replay");
    QTest::newRow("asked to record") << 0 << 0;
    QTest::newRow("stopping") << 3 << 0;
    QTest::newRow("paused") << 4 << 2;
    QTest::newRow("replaying") << 4 << 4;
}

void TestWorkChannelPanel::disablesTheDeviceBoxOfABusyChannel()
{
    QFETCH(int, recording);
    QFETCH(int, replay);
    ChannelConsole console;
    const QWidget& box = *console.window->records()->workDevice()->combo();
    QVERIFY(box.isEnabled());
    console.channel.setRecording(static_cast<Recording>(recording));
    console.channel.setReplay(static_cast<Replay>(replay));
    QTRY_VERIFY_WITH_TIMEOUT(!box.isEnabled(), patience);
    console.channel.setRecording(Recording::Stopped);
    console.channel.setReplay(Replay::Stopped);
    QTRY_VERIFY_WITH_TIMEOUT(box.isEnabled(), patience);
}

QTEST_MAIN(TestWorkChannelPanel)
#include "tst_workchannelpanel.moc"
