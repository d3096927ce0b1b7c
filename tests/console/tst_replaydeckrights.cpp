#include "deckhands.h"
#include "testbookmarks.h"

#include <console/hands/dialoganswer.h>
#include <console/replay/bookmarktableview.h>
#include <console/window/usermessages.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QToolButton>

using namespace deckhands;
using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoCommon::Role;
using ZelkoGUI::BookmarkModel;

namespace {

/// A console in which a bookmark of record 1 was set and not sent.
struct UnsentConsole : ChannelConsole
{
    UnsentConsole()
        : ChannelConsole(2)
    {
        bookmark(*this, 1);
        deck().showBookmarks(true);
    }

    /// The recorder takes the user for somebody else from now on.
    void take(Role role)
    {
        site.setRole(north, role);
        site.connectTo(north);
    }
    void withdraw()
    {
        take(Role::Viewer);
        QTRY_VERIFY_WITH_TIMEOUT(!barOf(*this).isEnabled(), patience);
    }

    BookmarkModel& bookmarks() const { return *deck().bookmarks(); }
    BookmarkTableView& table() const { return *deck().table(); }
    QToolButton* apply() const { return deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s); }
    QToolButton* reset() const { return deck().bar()->findChild<QToolButton*>(u"ResetBookmarks"_s); }
    bool isUnsent() const
    {
        return bookmarks().getSynchState() == BookmarkModel::SynchLocalChange && bookmarks().entryCount() == 1;
    }
    QString said() const
    {
        const QMessageBox* const box = window->messages()->box();
        return box ? box->text() : QString();
    }
};

void tryToEdit(BookmarkTableView& table)
{
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, BookmarkModel::TextColumn));
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Insert, Qt::Key_F2, Qt::Key_X}) {
        QTest::keyClick(&table, key);
    }
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(table.currentIndex()).center());
}

} // namespace

// What becomes of bookmarks that were not sent when the recorder takes something away: the right to send them, or the
// record with its connection.
class TestReplayDeckRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatMayNotBeSentAnyMore();
    void keepsWhatIsBeingTyped();
    void discardsItWhenTheOperatorWantsThat();
    void sendsItWhenTheRightIsBack();
    void offersNothingButToDiscardWhenHeLeaves();
    void waitsForAUserWhoMaySendIt();
    void changesNothingForWhoHasNothingUnsent();
    void bringsItBackWithTheConnection();
    void bringsItBackToLookAtWithoutTheRight();
    void keepsItWhenTheConnectionGoesBeforeTheAnswer();
    void forgetsItWithTheRecord();
    void asksBeforeItClosesWhileTheRecordIsAway();
};

void TestReplayDeckRights::showsWhatMayNotBeSentAnyMore()
{
    UnsentConsole console;
    const BookmarkModel::Entries before = console.bookmarks().entries();
    console.withdraw();
    QVERIFY(console.isUnsent());
    QCOMPARE(barOf(console).GetBookmarks().size(), std::size_t(1));
    QCOMPARE(console.said(),
             u"User operator may not do this. The bookmarks that were changed and not sent stay on show "
             "until they are discarded, or until they may be sent again."_s);
    console.window->messages()->box()->close();
    QVERIFY(!console.apply()->isEnabled());
    QVERIFY(!console.table().verticalHeader()->isVisible());
    tryToEdit(console.table());
    QCOMPARE(console.table().findChild<QLineEdit*>(), nullptr);
    QCOMPARE(console.bookmarks().entries(), before);
}

void TestReplayDeckRights::keepsWhatIsBeingTyped()
{
    UnsentConsole console;
    BookmarkTableView& table = console.table();
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, BookmarkModel::TextColumn));
    QTest::keyClick(&table, Qt::Key_F2);
    auto* const editor = table.viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    operatorhands::type(*editor, u"echo"_s);
    console.withdraw();
    QVERIFY(console.isUnsent());
    QCOMPARE(console.bookmarks().entry(0).GetBookmark(), u"echo"_s);
}

void TestReplayDeckRights::discardsItWhenTheOperatorWantsThat()
{
    UnsentConsole console;
    console.withdraw();
    console.window->messages()->box()->close();
    QTest::mouseClick(console.reset(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(console.bookmarks().readOnly(), patience);
    QCOMPARE(console.bookmarks().entryCount(), 0);
    QVERIFY(barOf(console).isEnabled());
    QVERIFY(isShown(console, 1));
}

void TestReplayDeckRights::sendsItWhenTheRightIsBack()
{
    UnsentConsole console;
    console.withdraw();
    console.window->messages()->box()->close();
    console.take(Role::Operator);
    QTRY_VERIFY_WITH_TIMEOUT(console.apply()->isEnabled(), patience);
    QVERIFY(console.isUnsent());
    QVERIFY(barOf(console).isEnabled());
    QVERIFY(console.table().verticalHeader()->isVisible());
    const QSignalSpy sent(&console.bookmarks(), &BookmarkModel::si_updateBookmarks);
    QTest::mouseClick(console.apply(), Qt::LeftButton);
    QCOMPARE(sent.size(), 1);
}

void TestReplayDeckRights::offersNothingButToDiscardWhenHeLeaves()
{
    UnsentConsole console;
    console.withdraw();
    console.window->messages()->box()->close();
    QStringList offered;
    const DialogAnswer answer([&offered](QWidget* dialog) {
        offered = buttonsOf(dialog);
        press(dialog, u"Discard"_s);
    });
    clickRecord(console, 0);
    QVERIFY(isShown(console, 0));
    QVERIFY(answer.wasGiven());
    offered.sort();
    QCOMPARE(offered, (QStringList{u"Cancel"_s, u"Discard"_s}));
    QVERIFY(console.bookmarks().readOnly());
}

void TestReplayDeckRights::waitsForAUserWhoMaySendIt()
{
    UnsentConsole console;
    console.withdraw();
    console.window->messages()->box()->close();
    console.site.setRole(console.north, Role::Administrator);
    clickUser(console, 2);
    QTRY_COMPARE_WITH_TIMEOUT(console.user->name(), u"administrator"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.apply()->isEnabled(), patience);
    QVERIFY(console.isUnsent());
}

void TestReplayDeckRights::changesNothingForWhoHasNothingUnsent()
{
    UnsentConsole console;
    QTest::mouseClick(console.reset(), Qt::LeftButton);
    console.take(Role::Viewer);
    QTRY_VERIFY_WITH_TIMEOUT(console.bookmarks().readOnly(), patience);
    QCOMPARE(console.said(), QString());
    QVERIFY(barOf(console).isEnabled());
}

void TestReplayDeckRights::bringsItBackWithTheConnection()
{
    UnsentConsole console;
    console.lose();
    QTRY_COMPARE_WITH_TIMEOUT(console.bookmarks().entryCount(), 0, patience);
    console.comeBack(2);
    QTRY_VERIFY_WITH_TIMEOUT(console.isUnsent(), patience);
    QVERIFY(console.apply()->isEnabled());
    QCOMPARE(console.said(), QString());
}

void TestReplayDeckRights::bringsItBackToLookAtWithoutTheRight()
{
    UnsentConsole console;
    console.lose();
    QTRY_COMPARE_WITH_TIMEOUT(console.bookmarks().entryCount(), 0, patience);
    console.site.setRole(console.north, Role::Viewer);
    console.comeBack(2);
    QTRY_VERIFY_WITH_TIMEOUT(console.isUnsent(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.said().startsWith(u"User operator may not do this."_s), patience);
    QVERIFY(!barOf(console).isEnabled());
    QVERIFY(!console.apply()->isEnabled());
}

void TestReplayDeckRights::keepsItWhenTheConnectionGoesBeforeTheAnswer()
{
    UnsentConsole console;
    const QObject context;
    connect(
        &console.bookmarks(), &BookmarkModel::si_updateBookmarks, &context, [&] { console.lose(); },
        Qt::QueuedConnection);
    const TwoAnswers answers(u"Send"_s);
    clickRecord(console, 0);
    QTRY_VERIFY_WITH_TIMEOUT(!answers.said().isEmpty(), patience);
    console.comeBack(2);
    QTRY_COMPARE_WITH_TIMEOUT(console.rows(), 2, patience);
    choose(console, 1);
    QVERIFY(console.isUnsent());
}

void TestReplayDeckRights::forgetsItWithTheRecord()
{
    UnsentConsole console;
    console.site.eraseRecord(console.north, console.device, RecordListSetting::id(1));
    QTRY_COMPARE_WITH_TIMEOUT(console.bookmarks().entryCount(), 0, patience);
    letTurnsPass();
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!console.window->isVisible()); // and nothing was asked
}

void TestReplayDeckRights::asksBeforeItClosesWhileTheRecordIsAway()
{
    UnsentConsole console;
    console.lose();
    QTRY_COMPARE_WITH_TIMEOUT(console.bookmarks().entryCount(), 0, patience);
    const DialogAnswer stay(escape);
    QTest::keyClick(console.window.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(stay.wasGiven());
    QVERIFY(console.window->isVisible());
    console.comeBack(2);
    QTRY_VERIFY_WITH_TIMEOUT(console.isUnsent(), patience);
}

QTEST_MAIN(TestReplayDeckRights)
#include "tst_replaydeckrights.moc"
