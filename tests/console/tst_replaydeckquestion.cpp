#include "deckhands.h"
#include "testbookmarks.h"

#include <console/devices/devicelistview.h>
#include <console/hands/dialoganswer.h>
#include <console/replay/bookmarktableview.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QMessageBox>
#include <QSignalSpy>

#include <functional>
#include <optional>

using namespace deckhands;
using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModel;

namespace {

const QString connectionIsGone = u"The bookmarks could not be sent: there is no connection to the recorder any more."_s;

/// A recorder that takes the bookmarks that are sent to it: the record comes back with them a turn later, and after
/// whatever happens `before`.
class TakingRecorder
{
public:
    using Before = std::function<void()>;

    explicit TakingRecorder(
        DeckConsole& console, Before before = [] {})
        : m_console(console)
        , m_before(std::move(before))
    {
        QObject::connect(
            console.deck().bookmarks(), &BookmarkModel::si_updateBookmarks, &m_context,
            [this](const QString& id, const BookmarkModel::Entries& bookmarks) { take(id, bookmarks); },
            Qt::QueuedConnection);
    }

    int taken() const { return m_taken; }

private:
    void take(const QString& id, const BookmarkModel::Entries& bookmarks)
    {
        m_before();
        ++m_taken;
        const auto record = RecordListSetting::record(id.mid(1).toInt());
        record->SetBookmarkEntry(bookmarks);
        m_console.site.setRecord(m_console.north, m_console.device, record);
    }

    DeckConsole& m_console;
    const Before m_before;
    int m_taken = 0;
    QObject m_context; // goes first
};

void clickDevice(const DeckConsole& console, int subSystem, int device)
{
    DeviceListView& list = *console.window->devices();
    const QModelIndex parent = list.model()->index(subSystem, 0);
    QTRY_VERIFY_WITH_TIMEOUT(list.model()->rowCount(parent) > device, patience);
    const QModelIndex index = list.model()->index(device, 0, parent);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, list.visualRect(index).center());
}

} // namespace

// What the console asks before bookmarks go that were not sent, with real events.
class TestReplayDeckQuestion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksBeforeItDropsWhatWasNotSent();
    void staysAtTheRecordWhenTheUserWantsThat();
    void staysAtTheDeviceWhenTheUserWantsThat();
    void staysOpenWhenTheUserWantsThat();
    void staysWithItsUserWhenHeWantsThat();
    void asksBeforeAnotherUserComes();
    void holdsTheOtherDeviceBackWhileItAsks();
    void hasABarWhenTheSubSystemChangesWhileItAsks();
    void asksBetweenDevicesOfTheSameName();
    void asksAboutWhatIsBeingTyped();
    void saysWhenNothingCanBeSentAnyMore();
    void sendsThoughTheRightsChangeWhileItAsks();
    void goesOnOnlyWhenTheRecorderHasThem();
    void staysWithWhatTheRecorderDoesNotTake();
    void staysWithWhatIsChangedWhileItWaits();
    void waitsNoLongerThanForTheConnection();
};

void TestReplayDeckQuestion::asksBeforeItDropsWhatWasNotSent()
{
    ChannelConsole console(2);
    choose(console, 1);
    barOf(console).setFocus();
    QTest::keyClick(&barOf(console), Qt::Key_Insert);
    const QSignalSpy sent(console.deck().bookmarks(), &BookmarkModel::si_updateBookmarks);
    const DialogAnswer answer([](QWidget* dialog) {
        QTest::mouseClick(qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::Discard), Qt::LeftButton);
    });
    choose(console, 0);
    QVERIFY(answer.wasGiven());
    QCOMPARE(sent.size(), 0);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 0);
}

void TestReplayDeckQuestion::staysAtTheRecordWhenTheUserWantsThat()
{
    const ChannelConsole console(2);
    bookmark(console, 1);
    const DialogAnswer answer(escape);
    clickRecord(console, 0);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    const QStringList stayed{RecordListSetting::id(1)};
    QTRY_COMPARE_WITH_TIMEOUT(console.window->records()->controller()->selectedRecords(), stayed, patience);
    letTurnsPass();
    QVERIFY(isShown(console, 1));
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayDeckQuestion::staysAtTheDeviceWhenTheUserWantsThat()
{
    ChannelConsole console(2);
    console.site.addDevice(console.north, u"A2"_s);
    bookmark(console, 1);
    const DialogAnswer answer(escape);
    clickDevice(console, 0, 1);
    QVERIFY(answer.wasGiven());
    letTurnsPass();
    const DeviceListView& list = *console.window->devices();
    QCOMPARE(list.chosenDevice(), console.device);
    QCOMPARE(list.selectionModel()->selectedRows(), QModelIndexList{list.currentIndex()});
    QCOMPARE(console.window->records()->controller()->activeDevice(), console.device);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayDeckQuestion::staysOpenWhenTheUserWantsThat()
{
    const ChannelConsole console(2);
    bookmark(console, 1);
    const DialogAnswer stay(escape);
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(stay.wasGiven());
    QVERIFY(console.window->isVisible());
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
    console.window->activateWindow(); // as a window manager does
    QVERIFY(QTest::qWaitForWindowActive(console.window.get(), patience));
    const DialogAnswer leave([](QWidget* dialog) { press(dialog, u"Discard"_s); });
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!console.window->isVisible());
}

void TestReplayDeckQuestion::staysWithItsUserWhenHeWantsThat()
{
    const ChannelConsole console(2);
    bookmark(console, 1);
    const DialogAnswer answer(escape);
    clickUser(console, 0);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QCOMPARE(console.user->name(), u"operator"_s);
    QVERIFY(console.window->userMenu()->actions().at(1)->isChecked());
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayDeckQuestion::asksBeforeAnotherUserComes()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    const TakingRecorder recorder(console);
    QString sender;
    const DialogAnswer answer([&](QWidget* dialog) {
        sender = console.user->name();
        press(dialog, u"Send"_s);
    });
    clickUser(console, 0);
    QTRY_COMPARE_WITH_TIMEOUT(console.user->name(), u"viewer"_s, patience);
    QCOMPARE(sender, u"operator"_s);
    QCOMPARE(recorder.taken(), 1);
}

void TestReplayDeckQuestion::holdsTheOtherDeviceBackWhileItAsks()
{
    ChannelConsole console(2);
    console.site.addDevice(console.north, u"A2"_s);
    bookmark(console, 1);
    const TakingRecorder recorder(console);
    const QSignalSpy sent(console.deck().bookmarks(), &BookmarkModel::si_updateBookmarks);
    const auto& controller = *console.window->records()->controller();
    QString meanwhile;
    const DialogAnswer answer([&](QWidget* dialog) {
        console.site.connectTo(console.north); // as each news of a connection
        meanwhile = controller.activeDevice();
        press(dialog, u"Send"_s);
    });
    clickDevice(console, 0, 1);
    QVERIFY(answer.wasGiven());
    QCOMPARE(meanwhile, console.device);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent.constFirst().constLast().toString(), console.device);
    QCOMPARE(controller.activeDevice(), u"A2"_s);
}

void TestReplayDeckQuestion::hasABarWhenTheSubSystemChangesWhileItAsks()
{
    const ChannelConsole console(2);
    bookmark(console, 1);
    bool hadBar = false;
    const DialogAnswer answer([&](QWidget* dialog) {
        console.deck().setSubSystem(QString());
        hadBar = console.deck().bar();
        press(dialog, u"Discard"_s);
    });
    clickRecord(console, 0);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QVERIFY(hadBar);
}

void TestReplayDeckQuestion::asksBetweenDevicesOfTheSameName()
{
    DeckConsole console(2, {u"south"_s});
    console.site.addDevice(u"south"_s, console.device);
    console.site.setRecord(u"south"_s, console.device, RecordListSetting::record(1));
    console.site.connectTo(u"south"_s);
    bookmark(console, 1);
    const DialogAnswer answer(escape);
    clickDevice(console, 1, 0);
    QVERIFY(answer.wasGiven());
    letTurnsPass();
    QCOMPARE(console.window->devices()->chosenSubSystem(), console.north);
    QCOMPARE(console.window->records()->controller()->activeSubsystem(), console.north);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayDeckQuestion::asksAboutWhatIsBeingTyped()
{
    ChannelConsole console(2);
    const auto record = RecordListSetting::record(1);
    record->SetBookmarkEntry({makeBookmark(DeckConsole::beginOf(1) + 1, u"a"_s)});
    console.site.setRecord(console.north, console.device, record);
    choose(console, 1);
    console.deck().showBookmarks(true);
    BookmarkTableView& table = *console.deck().table();
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, BookmarkModel::TextColumn));
    QTest::keyClick(&table, Qt::Key_F2);
    QTest::keyClicks(table.viewport()->findChild<QLineEdit*>(), u"echo"_s);
    const DialogAnswer answer(escape);
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(answer.wasGiven());
    QCOMPARE(console.deck().bookmarks()->entry(0).GetBookmark(), u"echo"_s);
}

void TestReplayDeckQuestion::saysWhenNothingCanBeSentAnyMore()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    QString said;
    std::optional<DialogAnswer> second;
    const DialogAnswer first([&](QWidget* dialog) {
        console.lose();
        second.emplace([&said](QWidget* box) {
            said = qobject_cast<QMessageBox*>(box)->text();
            escape(box);
        });
        press(dialog, u"Send"_s);
    });
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(first.wasGiven());
    QCOMPARE(said, connectionIsGone);
    QVERIFY(console.window->isVisible());
}

void TestReplayDeckQuestion::sendsThoughTheRightsChangeWhileItAsks()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    const TakingRecorder recorder(console);
    const DialogAnswer answer([&](QWidget* dialog) {
        console.user->switchTo(u"viewer"_s);
        letTurnsPass();
        press(dialog, u"Send"_s);
    });
    clickRecord(console, 0);
    QVERIFY(isShown(console, 0));
    QVERIFY(answer.wasGiven());
    QCOMPARE(recorder.taken(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().bookmarks()->readOnly(), patience);
}

void TestReplayDeckQuestion::goesOnOnlyWhenTheRecorderHasThem()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    bool hasWaited = false;
    const TakingRecorder recorder(console, [&] {
        letTurnsPass();
        hasWaited = console.deck().isAsking() &&
                    barOf(console).GetRecordingStart() == static_cast<double>(DeckConsole::beginOf(1));
    });
    const DialogAnswer answer([](QWidget* dialog) { press(dialog, u"Send"_s); });
    clickRecord(console, 0);
    QVERIFY(isShown(console, 0));
    QVERIFY(answer.wasGiven());
    QVERIFY(hasWaited);
    QCOMPARE(recorder.taken(), 1);
}

void TestReplayDeckQuestion::staysWithWhatTheRecorderDoesNotTake()
{
    const ChannelConsole console(2);
    bookmark(console, 1);
    console.deck().setSendLimit(std::chrono::milliseconds(50));
    const TwoAnswers answers(u"Send"_s);
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(answers.said(), u"The recorder has not taken the bookmarks. They are still there, and not sent."_s);
    QVERIFY(console.window->isVisible());
    QCOMPARE(console.deck().bookmarks()->getSynchState(), BookmarkModel::SynchLocalChange);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayDeckQuestion::staysWithWhatIsChangedWhileItWaits()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    BookmarkModel& bookmarks = *console.deck().bookmarks();
    std::function<void()> unlock;
    bookmarks.setSingleShot(
        [&unlock](std::chrono::milliseconds, QObject*, std::function<void()> call) { unlock = std::move(call); });
    const TakingRecorder recorder(console, [&] {
        unlock();
        QTest::keyClick(&barOf(console), Qt::Key_Insert);
    });
    const DialogAnswer answer([](QWidget* dialog) { press(dialog, u"Send"_s); });
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(answer.wasGiven());
    QCOMPARE(recorder.taken(), 1);
    QVERIFY(console.window->isVisible());
    QCOMPARE(bookmarks.getSynchState(), BookmarkModel::SynchLocalChange);
    QCOMPARE(bookmarks.entryCount(), 2);
}

void TestReplayDeckQuestion::waitsNoLongerThanForTheConnection()
{
    ChannelConsole console(2);
    bookmark(console, 1);
    console.deck().setSendLimit(std::chrono::hours(1));
    const QObject context;
    connect(
        console.deck().bookmarks(), &BookmarkModel::si_updateBookmarks, &context, [&] { console.lose(); },
        Qt::QueuedConnection);
    const TwoAnswers answers(u"Send"_s);
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(answers.said(), connectionIsGone);
    QVERIFY(console.window->isVisible());
}

QTEST_MAIN(TestReplayDeckQuestion)
#include "tst_replaydeckquestion.moc"
