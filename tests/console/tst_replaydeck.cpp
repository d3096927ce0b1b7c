#include "deckhands.h"
#include "testbookmarks.h"

#include <console/replay/bookmarktableview.h>
#include <console/replay/replaycontrols.h>

#include <zelkobase/maps/bookmarkitemmap.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QApplication>
#include <QSignalSpy>
#include <QToolButton>

#include <functional>

using namespace deckhands;
using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Replay = SampleChannel::Replay;
using zelko::bookmarkmap::BookmarkItemMap;
using ZelkoGUI::BookmarkModel;

namespace {

constexpr quint64 second = 1'000'000;

quint64 shownPosition(const DeckConsole& console)
{
    return static_cast<quint64>(barOf(console).GetMarker(VCReplayBar::PositionMarker)->GetPosition());
}

void click(QToolButton* button)
{
    QVERIFY(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
}

int bookmarksOnTree()
{
    const auto* const map = Tree::Instance()->Find<BookmarkItemMap>(ReplayDeck::bookmarkMapPath());
    return map ? static_cast<int>(map->data().size()) : -1;
}

using Use = std::function<void(VCReplayBar&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

// What stands under the record list of a console, with real events.
class TestReplayDeck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheOneRecordThatIsSelected();
    void putsThePositionToTheBeginOfTheRecord();
    void replaysTheRecord();
    void beginsWhereItsOwnOperatorPutThePosition_data();
    void beginsWhereItsOwnOperatorPutThePosition();
    void beginsAtTheStartOfARecordThatHasGrown();
    void goesOnWhereItsOwnReplayStopped();
    void takesNoPositionFromTheReplayOfSomebodyElse();
    void holdsAndEndsAReplay();
    void replaysNothingWithoutARecord();
    void movesThePositionWithTheReplay();
    void setsABookmarkWhereTheReplayStands();
    void setsABookmarkWhereAnotherChannelStands_data();
    void setsABookmarkWhereAnotherChannelStands();
    void setsABookmarkThatTheTableShows();
    void keepsTheCurrentBookmarkWhoseTextIsEdited();
    void mirrorsTheBookmarksOnTheTree();
    void letsAViewerChangeNothing();
    void standsByItselfWithoutAChannel();
    void keepsWhatWasNotSentWhenAChannelComes();
    void isReachedByKeys();
    void followsAChannelThatOnlyReplays();
    void showsTheRecordAgainAfterAReconnection();
    void foldsTheBookmarksAway();
    void goesFromPartToPartByTab();
    void leavesTheListMostOfTheWindow();
};

void TestReplayDeck::showsTheOneRecordThatIsSelected()
{
    ChannelConsole console(3);
    QCOMPARE(barOf(console).GetRecordingStart(), 0.0);
    choose(console, 2);
    QCOMPARE(barOf(console).GetRecordingStop(), static_cast<double>(DeckConsole::beginOf(2) + 3 * second));
    clickRecord(console, 1, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(barOf(console).GetRecordingStart(), 0.0, patience);
    QCOMPARE(console.deck().controls()->playButton()->statusTip(), u"More than one record is selected."_s);
    choose(console, 0);
}

void TestReplayDeck::putsThePositionToTheBeginOfTheRecord()
{
    ChannelConsole console(3);
    choose(console, 1);
    QCOMPARE(console.channel.position(), DeckConsole::beginOf(1));
    QCOMPARE(shownPosition(console), DeckConsole::beginOf(1));
}

void TestReplayDeck::replaysTheRecord()
{
    ChannelConsole console(3);
    choose(console, 2);
    ReplayBarHands hands(barOf(console));
    const auto begin = static_cast<double>(DeckConsole::beginOf(2));
    hands.dragPosition(begin, begin + 1'500'000);
    const quint64 position = console.channel.position();
    QVERIFY(position > DeckConsole::beginOf(2));
    click(console.deck().controls()->playButton());
    QCOMPARE(console.channel.replay(), Replay::Running);
    QCOMPARE(console.channel.record(), RecordListSetting::id(2));
    QCOMPARE(console.channel.device(), console.device);
    QCOMPARE(console.channel.position(), position);
}

// All who work with a channel share its position, and somebody else selects another record.
void TestReplayDeck::beginsWhereItsOwnOperatorPutThePosition_data()
{
    QTest::addColumn<Use>("put");
    QTest::addColumn<bool>("isLater");
    QTest::newRow("by selecting the record") << Use([](VCReplayBar&) {}) << false;
    QTest::newRow("by the mouse") << Use([](VCReplayBar& bar) {
        const double begin = bar.GetRecordingStart();
        ReplayBarHands(bar).dragPosition(begin, begin + 1'500'000);
    }) << true;
    QTest::newRow("by keys") << Use([](VCReplayBar& bar) {
        bar.setFocus();
        QTest::keyClick(&bar, Qt::Key_PageUp);
    }) << true;
    QTest::newRow("by keys, back to the start") << Use([](VCReplayBar& bar) {
        bar.setFocus();
        QTest::keyClick(&bar, Qt::Key_PageUp);
        QTest::keyClick(&bar, Qt::Key_Home);
    }) << false;
}

void TestReplayDeck::beginsWhereItsOwnOperatorPutThePosition()
{
    QFETCH(const Use, put);
    QFETCH(const bool, isLater);
    ChannelConsole console(3);
    choose(console, 2);
    put(barOf(console));
    const quint64 own = console.channel.position();
    QCOMPARE(own > DeckConsole::beginOf(2), isLater);
    console.channel.setPosition(DeckConsole::beginOf(2) + 2 * second);
    console.channel.setPosition(DeckConsole::beginOf(0));
    click(console.deck().controls()->playButton());
    QCOMPARE(console.channel.replay(), Replay::Running);
    QCOMPARE(console.channel.position(), own);
}

void TestReplayDeck::beginsAtTheStartOfARecordThatHasGrown()
{
    ChannelConsole console(3);
    choose(console, 2);
    ReplayBarHands(barOf(console)).dragPosition(barOf(console).GetRecordingStart(), barOf(console).GetRecordingStop());
    const auto record = RecordListSetting::record(2);
    record->SetStopTime(record->GetStopTime() + second);
    console.site.setRecord(console.north, console.device, record);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2), patience);
    console.channel.setPosition(DeckConsole::beginOf(0));
    click(console.deck().controls()->playButton());
    QCOMPARE(console.channel.position(), DeckConsole::beginOf(2));
}

void TestReplayDeck::goesOnWhereItsOwnReplayStopped()
{
    ChannelConsole console(3);
    choose(console, 2);
    click(console.deck().controls()->playButton());
    console.channel.setPosition(DeckConsole::beginOf(2) + second);
    console.channel.setReplay(Replay::Stopped);
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().controls()->playButton()->isEnabled(), patience);
    console.channel.setPosition(DeckConsole::beginOf(0));
    click(console.deck().controls()->playButton());
    QCOMPARE(console.channel.position(), DeckConsole::beginOf(2) + second);
}

void TestReplayDeck::takesNoPositionFromTheReplayOfSomebodyElse()
{
    ChannelConsole console(3);
    choose(console, 2);
    console.channel.setReplay(Replay::Running);
    console.channel.setPosition(DeckConsole::beginOf(2) + second);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2) + second, patience);
    console.channel.setReplay(Replay::Stopped);
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().controls()->playButton()->isEnabled(), patience);
    click(console.deck().controls()->playButton());
    QCOMPARE(console.channel.position(), DeckConsole::beginOf(2));
}

void TestReplayDeck::holdsAndEndsAReplay()
{
    ChannelConsole console(1);
    const ReplayControls& controls = *console.deck().controls();
    console.channel.setReplay(Replay::Running);
    QTRY_VERIFY_WITH_TIMEOUT(controls.pauseButton()->isEnabled(), patience);
    QVERIFY(!controls.playButton()->isEnabled());
    controls.pauseButton()->setFocus();
    QTest::keyClick(controls.pauseButton(), Qt::Key_Space);
    QCOMPARE(console.channel.replay(), Replay::Paused);
    QTRY_VERIFY_WITH_TIMEOUT(controls.playButton()->hasFocus(), patience);
    QCOMPARE(controls.playButton()->accessibleName(), u"Continue the replay"_s);
    QTest::keyClick(controls.playButton(), Qt::Key_Space);
    QCOMPARE(console.channel.replay(), Replay::Running);
    QCOMPARE(console.channel.record(), QString()); // whatever it was, it goes on
    click(controls.stopButton());
    QCOMPARE(console.channel.replay(), Replay::Stopped);
}

void TestReplayDeck::replaysNothingWithoutARecord()
{
    ChannelConsole console(1);
    const ReplayControls& controls = *console.deck().controls();
    QVERIFY(!controls.playButton()->isEnabled());
    QCOMPARE(controls.playButton()->statusTip(), u"No record is selected."_s);
    choose(console, 0);
    QVERIFY(controls.playButton()->isEnabled());
    console.channel.setMayReplay(false);
    QTRY_COMPARE_WITH_TIMEOUT(controls.playButton()->statusTip(), u"This channel does not replay."_s, patience);
}

void TestReplayDeck::movesThePositionWithTheReplay()
{
    ChannelConsole console(3);
    choose(console, 2);
    console.channel.setReplay(Replay::Running);
    console.channel.setPosition(DeckConsole::beginOf(2) + second);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2) + second, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!barOf(console).GetMarker(VCReplayBar::PositionMarker)->IsMoveable(), patience);
    console.channel.setReplay(Replay::Paused);
    console.channel.setPosition(DeckConsole::beginOf(2) + second + 5);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2) + second + 5, patience);
    console.channel.setReplay(Replay::Stopped);
    QTRY_VERIFY_WITH_TIMEOUT(barOf(console).GetMarker(VCReplayBar::PositionMarker)->IsMoveable(), patience);
    QCOMPARE(shownPosition(console), DeckConsole::beginOf(2) + second + 5);
}

void TestReplayDeck::setsABookmarkWhereTheReplayStands()
{
    ChannelConsole console(3);
    choose(console, 2);
    console.channel.setReplay(Replay::Running);
    console.channel.setPosition(DeckConsole::beginOf(2) + second);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2) + second, patience);
    console.deck().showBookmarks(true);
    console.deck().table()->setFocus();
    QTest::keyClick(console.deck().table(), Qt::Key_Insert);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
    QCOMPARE(console.deck().bookmarks()->entry(0).GetTimestamp(), DeckConsole::beginOf(2) + second);
}

void TestReplayDeck::setsABookmarkWhereAnotherChannelStands_data()
{
    QTest::addColumn<bool>("mayRecord");
    QTest::addColumn<Replay>("replay");
    QTest::newRow("at rest") << true << Replay::Stopped;
    QTest::newRow("only for replays") << false << Replay::Stopped;
    QTest::newRow("replaying") << true << Replay::Running;
    QTest::newRow("holding a replay") << true << Replay::Paused;
}

void TestReplayDeck::setsABookmarkWhereAnotherChannelStands()
{
    QFETCH(const bool, mayRecord);
    QFETCH(const Replay, replay);
    ChannelConsole console(3);
    const SampleChannel other = console.addChannel("C2", "Beacon");
    other.setMayRecord(mayRecord);
    other.setReplay(replay);
    other.setPosition(DeckConsole::beginOf(2) + second);
    choose(console, 2);
    console.deck().showBookmarks(true);
    QTRY_COMPARE_WITH_TIMEOUT(console.choice().count(), 2, patience);
    console.choice().setFocus();
    QTest::keyClick(&console.choice(), Qt::Key_Down);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(2) + second, patience);
    console.deck().table()->setFocus();
    QTest::keyClick(console.deck().table(), Qt::Key_Insert);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
    QCOMPARE(console.deck().bookmarks()->entry(0).GetTimestamp(), DeckConsole::beginOf(2) + second);
}

void TestReplayDeck::setsABookmarkThatTheTableShows()
{
    ChannelConsole console(3);
    choose(console, 1);
    barOf(console).setFocus();
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    QCOMPARE(console.deck().table()->model()->rowCount(), 2);
    QVERIFY(console.deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s)->isEnabled());
    click(console.deck().bar()->findChild<QToolButton*>(u"ResetBookmarks"_s));
    QCOMPARE(console.deck().table()->model()->rowCount(), 1);
}

void TestReplayDeck::keepsTheCurrentBookmarkWhoseTextIsEdited()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    QCOMPARE(barOf(console).GetCurrentMarker(), VCReplayBar::FirstBookmarkMarker);
    console.deck().showBookmarks(true);
    BookmarkTableView& table = *console.deck().table();
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, BookmarkModel::TextColumn));
    QTest::keyClick(&table, Qt::Key_F2);
    auto* const editor = table.viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    operatorhands::type(*editor, u"echo"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(console.deck().bookmarks()->entry(0).GetBookmark(), u"echo"_s, patience);
    QCOMPARE(barOf(console).GetCurrentMarker(), VCReplayBar::FirstBookmarkMarker);
}

void TestReplayDeck::mirrorsTheBookmarksOnTheTree()
{
    ChannelConsole console(2);
    QCOMPARE(bookmarksOnTree(), 0);
    const auto record = RecordListSetting::record(1);
    record->SetBookmarkEntry({makeBookmark(DeckConsole::beginOf(1) + 1, u"a"_s)});
    console.site.setRecord(console.north, console.device, record);
    choose(console, 1);
    QCOMPARE(bookmarksOnTree(), 1);
    choose(console, 0);
    QCOMPARE(bookmarksOnTree(), 0);
}

void TestReplayDeck::letsAViewerChangeNothing()
{
    ChannelConsole console(2);
    QVERIFY(console.user->switchTo(u"viewer"_s));
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().bookmarks()->readOnly(), patience);
    choose(console, 1);
    QVERIFY(!console.deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s));
    barOf(console).setFocus();
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 0);
    for (const QToolButton* const button : console.deck().controls()->findChildren<QToolButton*>()) {
        QVERIFY(!button->isEnabled());
        QCOMPARE(button->statusTip(), u"User viewer may not do this."_s);
    }
    QCOMPARE(bookmarksOnTree(), 0);
    QVERIFY(console.user->switchTo(u"operator"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!console.deck().bookmarks()->readOnly(), patience);
    QVERIFY(isShown(console, 1));
}

void TestReplayDeck::standsByItselfWithoutAChannel()
{
    DeckConsole console(3);
    QVERIFY(!console.deck().controls()->isVisible());
    choose(console, 2);
    QCOMPARE(shownPosition(console), DeckConsole::beginOf(2));
    ReplayBarHands hands(barOf(console));
    const auto begin = static_cast<double>(DeckConsole::beginOf(2));
    hands.dragPosition(begin, begin + 1'000'000);
    const quint64 position = shownPosition(console);
    QVERIFY(position > DeckConsole::beginOf(2));
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
    QCOMPARE(console.deck().bookmarks()->entry(0).GetTimestamp(), position);
}

void TestReplayDeck::keepsWhatWasNotSentWhenAChannelComes()
{
    DeckConsole console(2);
    choose(console, 1);
    barOf(console).setFocus();
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    const SampleChannel channel = console.addChannel("C1", "Antenna");
    QTRY_VERIFY_WITH_TIMEOUT(console.panel().isVisible(), patience);
    letTurnsPass();
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
    click(console.deck().bar()->findChild<QToolButton*>(u"ResetBookmarks"_s));
    QTRY_COMPARE_WITH_TIMEOUT(channel.position(), DeckConsole::beginOf(1), patience); // the bar is beside it by now
}

void TestReplayDeck::isReachedByKeys()
{
    const ChannelConsole console(1);
    QTest::keyClick(console.window.get(), Qt::Key_3, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(barOf(console).hasFocus(), patience);
    QTest::keyClick(console.window.get(), Qt::Key_4, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().table()->hasFocus(), patience);
}

void TestReplayDeck::followsAChannelThatOnlyReplays()
{
    DeckConsole console(2);
    const SampleChannel channel = console.addChannel("C1", "Antenna");
    channel.setMayRecord(false);
    QTRY_VERIFY_WITH_TIMEOUT(console.panel().isVisible(), patience);
    choose(console, 1);
    QCOMPARE(channel.position(), DeckConsole::beginOf(1));
    QVERIFY(console.deck().controls()->playButton()->isEnabled());
    channel.setReplay(Replay::Running);
    channel.setPosition(DeckConsole::beginOf(1) + second);
    QTRY_COMPARE_WITH_TIMEOUT(shownPosition(console), DeckConsole::beginOf(1) + second, patience);
}

void TestReplayDeck::showsTheRecordAgainAfterAReconnection()
{
    ChannelConsole console(2);
    choose(console, 1);
    console.lose();
    QTRY_COMPARE_WITH_TIMEOUT(barOf(console).GetRecordingStart(), 0.0, patience);
    console.channel = console.addChannel("C1", "Antenna");
    console.comeBack(2);
    QVERIFY(isShown(console, 1));
    QTRY_COMPARE_WITH_TIMEOUT(console.channel.position(), DeckConsole::beginOf(1), patience);
    QCOMPARE(shownPosition(console), DeckConsole::beginOf(1));
}

void TestReplayDeck::foldsTheBookmarksAway()
{
    ChannelConsole console(1);
    QVERIFY(!console.deck().table()->isVisible());
    click(console.deck().bookmarkButton());
    QVERIFY(console.deck().table()->isVisible());
    console.window->close();
    console.open();
    QVERIFY(console.deck().table()->isVisible());
    click(console.deck().bookmarkButton());
    QVERIFY(!console.deck().table()->isVisible());
}

void TestReplayDeck::goesFromPartToPartByTab()
{
    ChannelConsole console(1);
    choose(console, 0);
    console.deck().showBookmarks(true);
    const QWidget* const bar = &barOf(console);
    console.deck().controls()->playButton()->setFocus();
    QList<const QWidget*> visited;
    while (visited.size() < 10 && !console.deck().table()->hasFocus()) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited.append(QApplication::focusWidget());
    }
    const RecordingSettings& settings = *console.panel().settings();
    QCOMPARE(visited, (QList<const QWidget*>{bar, console.deck().bookmarkButton(), &console.choice(), settings.name(),
                                             settings.timeout(), settings.fileSize(), &console.record(),
                                             console.deck().table()}));
}

void TestReplayDeck::leavesTheListMostOfTheWindow()
{
    ChannelConsole console(30);
    console.window->resize(1280, 800);
    console.deck().showBookmarks(true);
    letTurnsPass();
    QVERIFY(console.window->records()->table()->height() > console.window->height() / 2);
    QVERIFY(console.deck().height() < console.window->height() / 3);
}

QTEST_MAIN(TestReplayDeck)
#include "tst_replaydeck.moc"
