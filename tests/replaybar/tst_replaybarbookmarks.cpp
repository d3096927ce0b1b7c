#include <zelkoguibase/replaybar/replaybarwidget.h>

#include "dialogbar.h"
#include "iconpicture.h"
#include "microseconds.h"
#include "patience.h"

#include <resources/zelkoicons.h>

#include <QApplication>
#include <QToolButton>
#include <QtTest>

#include <functional>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::ReplayBarWidget;

namespace {

const auto momentAt = ShownReplayBar::momentAt;
const auto timeAt = ShownReplayBar::timeAt;

void click(QToolButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

using Use = std::function<void(BookmarkSite&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

// The bookmarks of a record on the bar, and the buttons that send them or take them back.
class ReplayBarBookmarksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void hasButtonsForAListThatCanBeEditedOnly_data();
    void hasButtonsForAListThatCanBeEditedOnly();
    void buttonsFollowTheList_data();
    void buttonsFollowTheList();
    void applyTakesTheFocusBeforeItSends();
    void aBookmarkGoesToTheRecorderAndBack();
    void noBookmarkIsSetUntilTheRecorderHasAnswered();
    void anExternalChangeWaitsForTheUser();
};

void ReplayBarBookmarksTest::hasButtonsForAListThatCanBeEditedOnly_data()
{
    QTest::addColumn<bool>("hasModel");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("hasButtons");
    QTest::newRow("no list") << false << false << false;
    QTest::newRow("a list to look at") << true << true << false;
    QTest::newRow("a list to edit") << true << false << true;
}

void ReplayBarBookmarksTest::hasButtonsForAListThatCanBeEditedOnly()
{
    QFETCH(bool, hasModel);
    QFETCH(bool, readOnly);
    QFETCH(bool, hasButtons);
    BookmarkSite site(readOnly);
    const ShownReplayBar shown(std::make_unique<ReplayBarWidget>(hasModel ? &site.model : nullptr));
    site.store(twoBookmarks);
    shown.widget->setRecord(u"R"_s, site.records.get(), u"D"_s);
    QCOMPARE(shown.apply() != nullptr, hasButtons);
    QCOMPARE(shown.reset() != nullptr, hasButtons);
    QCOMPARE(shown.bar().GetBookmarks().size(), std::size_t(hasModel ? 2 : 0));
    QCOMPARE(microseconds(shown.bar().GetRecordingStop()), timeAt(90));
}

void ReplayBarBookmarksTest::buttonsFollowTheList_data()
{
    QTest::addColumn<Use>("reach");
    QTest::addColumn<bool>("canApply");
    QTest::addColumn<bool>("canReset");
    QTest::addColumn<bool>("isExternal");
    QTest::newRow("no record") << Use([](BookmarkSite& site) { site.model.resetRecord(); }) << false << false << false;
    QTest::newRow("in step") << Use([](BookmarkSite&) {}) << false << false << false;
    QTest::newRow("changed here") << Use([](BookmarkSite& site) { site.edit(0, bookmarkAt(11, u"a"_s)); }) << true
                                  << true << false;
    QTest::newRow("changed elsewhere") << Use([](BookmarkSite& site) { site.store({bookmarkAt(11, u"a"_s)}); }) << false
                                       << true << true;
    QTest::newRow("sent") << Use([](BookmarkSite& site) {
        site.edit(0, bookmarkAt(11, u"a"_s));
        site.model.sl_synchronize();
    }) << false << false << false;
}

void ReplayBarBookmarksTest::buttonsFollowTheList()
{
    QFETCH(Use, reach);
    QFETCH(bool, canApply);
    QFETCH(bool, canReset);
    QFETCH(bool, isExternal);
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    reach(dialog.site);
    const QToolButton& reset = *dialog.shown.reset();
    const QString name = isExternal ? u"Refresh"_s : u"Reset"_s;
    QCOMPARE(dialog.shown.apply()->isEnabled(), canApply);
    QCOMPARE(reset.isEnabled(), canReset);
    QCOMPARE(picture(reset.icon()), picture(QIcon(u":/Zelko/Bookmarks/%1Bookmarks.svg"_s.arg(name))));
    QCOMPARE(reset.toolTip(), isExternal ? u"bookmarks changed by an external application - reload from ZELKO"_s
                                         : u"reset bookmarks from ZELKO"_s);
    QCOMPARE(picture(dialog.shown.apply()->icon()), picture(QIcon(u":/Zelko/Bookmarks/ApplyBookmarks.svg"_s)));
    QCOMPARE(dialog.shown.apply()->toolTip(), u"send bookmarks to ZELKO"_s);
    QCOMPARE(dialog.shown.apply()->accessibleName(), dialog.shown.apply()->toolTip());
    QCOMPARE(reset.accessibleName(), reset.toolTip());
}

// The button loses the focus again as soon as it is disabled, which is before anything else can be seen of the sending.
void ReplayBarBookmarksTest::applyTakesTheFocusBeforeItSends()
{
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    dialog.site.edit(0, bookmarkAt(11, u"a"_s));
    dialog.shown.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(dialog.shown.widget.get(), patience));
    QStringList happened;
    const QObject context;
    connect(qApp, &QApplication::focusChanged, &context, [&](const QWidget*, const QWidget* now) {
        happened.append(now == nullptr ? QString() : now->objectName());
    });
    dialog.shown.apply()->setFocusPolicy(Qt::NoFocus);
    connect(&dialog.site.model, &BookmarkModel::si_updateBookmarks, &context, [&] { happened.append(u"sent"_s); });
    click(dialog.shown.apply());
    QCOMPARE(happened.constFirst(), u"ApplyBookmarks"_s);
    QCOMPARE(happened.count(u"sent"_s), 1);
}

void ReplayBarBookmarksTest::aBookmarkGoesToTheRecorderAndBack()
{
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    constexpr int first = VCReplayBar::FirstBookmarkMarker;
    const VCReplayBar& bar = dialog.shown.bar();
    BookmarkSite::Entries sent;
    QStringList addressed;
    connect(&dialog.site.model, &BookmarkModel::si_updateBookmarks, this,
            [&](const QString& record, const BookmarkSite::Entries& bookmarks, const QString& device) {
                sent = bookmarks;
                addressed << record << device;
            });
    dialog.shown.hands.dragFlag(momentAt(10), momentAt(45));
    QCOMPARE(bar.GetCurrentMarker(), first);
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchLocalChange);
    click(dialog.shown.apply());
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchPending);
    QCOMPARE(bookmarkTexts(sent).constFirst(), u"20000000 b"_s);
    QCOMPARE(sent.size(), 2);
    QCOMPARE(addressed, QStringList({u"R"_s, u"D"_s}));
    QVERIFY(!bar.GetMarker(first)->IsEnabled());

    dialog.site.store(sent);
    QCOMPARE(bar.GetBookmarks().front().text, u"b"_s);
    QCOMPARE(bar.GetCurrentMarker(), first + 1); // the list comes back in order
    QCOMPARE(bar.GetMarker(first + 1)->GetName(), u"a"_s);
    dialog.site.timer.advance(2s);
    QCOMPARE(dialog.site.model.getSynchState(), BookmarkModel::SynchInSync);
    QVERIFY(bar.GetMarker(first)->IsEnabled());
    QCOMPARE(bookmarkTexts(dialog.site.model.entries()), bookmarkTexts(sent));
}

void ReplayBarBookmarksTest::noBookmarkIsSetUntilTheRecorderHasAnswered()
{
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    VCReplayBar& bar = dialog.shown.bar();
    const auto doubleClick = [&] {
        QTest::mouseDClick(&bar, Qt::LeftButton, {}, dialog.shown.hands.flagAt(momentAt(70)));
    };
    dialog.shown.hands.dragFlag(momentAt(10), momentAt(45));
    click(dialog.shown.apply());
    doubleClick();
    bar.setFocus();
    QTest::keyClick(&bar, Qt::Key_Insert);
    QCOMPARE(bar.GetBookmarks().size(), std::size_t(2));
    dialog.site.timer.advance(2s);
    doubleClick();
    QCOMPARE(bar.GetBookmarks().size(), std::size_t(3));
}

void ReplayBarBookmarksTest::anExternalChangeWaitsForTheUser()
{
    DialogBar dialog;
    dialog.showRecord(twoBookmarks);
    dialog.site.store({bookmarkAt(30, u"c"_s)});
    QCOMPARE(dialog.shown.bar().GetBookmarks().size(), std::size_t(2));
    click(dialog.shown.reset());
    QCOMPARE(dialog.shown.bar().GetBookmarks().size(), std::size_t(1));
    QVERIFY(!dialog.shown.reset()->isEnabled());
}

QTEST_MAIN(ReplayBarBookmarksTest)
#include "tst_replaybarbookmarks.moc"
