#include "bookmarkbar.h"
#include "bookmarksite.h"

#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <optional>

using namespace std::chrono_literals;
using ZelkoGUI::BookmarkModel;
using Entries = BookmarkModel::Entries;

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();

using Use = std::function<void(BookmarkSite&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

/// A bookmark model and the replay bars that it keeps in step.
class BookmarkBarsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    void aBarGetsTheBookmarks();
    void theListIsShownWhateverChangesIt_data();
    void theListIsShownWhateverChangesIt();
    void signalsThatWereBlockedStayBlocked();
    void theBarIsOpenWhileTheListIs_data();
    void theBarIsOpenWhileTheListIs();
    void theBarOpensAgainAfterSending();

    void aUserSetsABookmark();
    void aUserDragsABookmark();
    void aUserRemovesABookmark();
    void aLockedListIsNotChangedByTheBar();
    void theSameBookmarksAreNoChange();

    void otherBarsShowTheBookmarksAlone();
    void otherBarsFollowTheListAndTheMainBar();
    void theMainBarIsNoneOfTheOthers();
    void anotherBarBecomesTheMainOne();
    void aBarIsListedOnce();
    void aBarThatWasTakenAwayKeepsWhatItShows_data();
    void aBarThatWasTakenAwayKeepsWhatItShows();
    void theBarBeforeIsNotHeardAnyMore_data();
    void theBarBeforeIsNotHeardAnyMore();
    void theSameBarIsLeftAlone();
    void barsMayGoFirst();

private:
    QStringList taken() { return m_site->log.take(); }

    std::optional<BookmarkSite> m_site;
};

void BookmarkBarsTest::aBarGetsTheBookmarks()
{
    BookmarkBar main;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main.bar);
    QCOMPARE(main.bookmarks(), textsOfTwo);
    QCOMPARE(main.enabled(), QList<bool>({true, true}));
    QCOMPARE(taken(), QStringList());
}

void BookmarkBarsTest::theListIsShownWhateverChangesIt_data()
{
    QTest::addColumn<Use>("use");
    const auto row = [](const char* name, Use use) { QTest::newRow(name) << use; };
    row("append", [](BookmarkSite& site) { site.model.appendEntry(bookmarkAt(5, "c")); });
    row("remove", [](BookmarkSite& site) { site.model.removeEntry(0); });
    row("change", [](BookmarkSite& site) { site.model.changeEntry(1, bookmarkAt(5, "c")); });
    row("set all", [](BookmarkSite& site) { site.model.setEntries({bookmarkAt(1, "c")}); });
    row("clear", [](BookmarkSite& site) { site.model.clear(); });
    row("edit a time", [](BookmarkSite& site) {
        site.model.setData(site.model.index(0, 0), BookmarkModel::datetimeFromEntry(bookmarkAt(30, {})));
    });
    row("edit a text", [](BookmarkSite& site) { site.model.setData(site.model.index(0, 1), "new"); });
    row("click on add", [](BookmarkSite& site) { site.model.sl_verticalHeaderClicked(2); });
    row("click on delete", [](BookmarkSite& site) { site.model.sl_verticalHeaderClicked(1); });
    row("normalize", [](BookmarkSite& site) {
        site.model.appendEntry(bookmarkAt(10, "c"));
        site.model.sl_normalize();
    });
    row("remove out of range", [](BookmarkSite& site) {
        site.model.appendEntry(bookmarkAt(95, "late"));
        site.model.sl_removeOutOfRange();
    });
    row("reset", [](BookmarkSite& site) {
        site.store({bookmarkAt(1, "new")});
        site.model.sl_reset();
    });
    row("answer of the recorder", [](BookmarkSite& site) {
        site.model.removeEntry(0);
        site.model.sl_synchronize();
        site.store({bookmarkAt(1, "new")});
    });
    row("another record", [](BookmarkSite& site) {
        site.store(site.record({bookmarkAt(7, "other")}, "S"));
        site.model.setRecord("S", site.records.get(), true, "D");
    });
    row("no record", [](BookmarkSite& site) { site.model.resetRecord(); });
}

void BookmarkBarsTest::theListIsShownWhateverChangesIt()
{
    QFETCH(const Use, use);
    BookmarkBar main;
    BookmarkBar other;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->model.connectAdditionalReplayBar(&other.bar);
    const QSignalSpy told(&main.bar, &VCReplayBar::signalBookmarksChanged);
    use(*m_site);
    QVERIFY(m_site->bookmarks() != textsOfTwo || m_site->model.getSynchState() == BookmarkModel::SynchLocalChange);
    QCOMPARE(main.bookmarks(), m_site->bookmarks());
    QCOMPARE(other.bookmarks(), m_site->bookmarks());
    QCOMPARE(told.count(), 0);
    QVERIFY(!main.bar.signalsBlocked());
}

void BookmarkBarsTest::signalsThatWereBlockedStayBlocked()
{
    BookmarkBar main;
    m_site->show(twoBookmarks);
    main.bar.blockSignals(true);
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->model.removeEntry(0);
    QVERIFY(main.bar.signalsBlocked());
}

void BookmarkBarsTest::theBarIsOpenWhileTheListIs_data()
{
    QTest::addColumn<Use>("reach");
    QTest::addColumn<int>("state");
    const auto row = [](const char* name, BookmarkModel::enSynchState state, Use reach) {
        QTest::newRow(name) << reach << int{state};
    };
    row("in sync", BookmarkModel::SynchInSync, [](BookmarkSite&) {});
    row("changed here", BookmarkModel::SynchLocalChange, [](BookmarkSite& site) { site.edit(0, bookmarkAt(11, "a")); });
    row("changed elsewhere", BookmarkModel::SynchExternalChange,
        [](BookmarkSite& site) { site.store({bookmarkAt(1, "new")}); });
    row("sent", BookmarkModel::SynchPending, [](BookmarkSite& site) {
        site.edit(0, bookmarkAt(11, "a"));
        site.model.sl_synchronize();
    });
    row("no record", BookmarkModel::SynchNoRecord, [](BookmarkSite& site) { site.model.resetRecord(); });
}

void BookmarkBarsTest::theBarIsOpenWhileTheListIs()
{
    QFETCH(const Use, reach);
    QFETCH(const int, state);
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    reach(*m_site);
    QCOMPARE(int{m_site->model.getSynchState()}, state);
    const bool isOpen = state != BookmarkModel::SynchNoRecord && state != BookmarkModel::SynchPending;
    const qsizetype before = m_site->model.entryCount();
    QCOMPARE(main.enabled(), QList<bool>(before, isOpen));
    main.insert();
    QCOMPARE(main.bookmarks().size(), before + (isOpen ? 1 : 0));
    QCOMPARE(main.bookmarks(), m_site->bookmarks());
}

void BookmarkBarsTest::theBarOpensAgainAfterSending()
{
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(11, "a"));
    m_site->model.sl_synchronize();
    QCOMPARE(main.enabled(), QList<bool>({false, false}));
    m_site->timer.advance(2s);
    QCOMPARE(main.enabled(), QList<bool>({true, true}));
    main.insert();
    QCOMPARE(m_site->model.entryCount(), 3);
}

void BookmarkBarsTest::aUserSetsABookmark()
{
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    main.insert();
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), textsOfTwo + QStringList{"50000000 Bookmark 3"});
    QCOMPARE(main.bookmarks(), m_site->bookmarks());
    QCOMPARE(main.enabled(), QList<bool>({true, true, true}));
}

// Once, when it is let go of: a list of thousands is not taken over with every pixel of the way.
void BookmarkBarsTest::aUserDragsABookmark()
{
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    main.press(10);
    main.moveTo(15);
    main.moveTo(30);
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    main.release(30);
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset", "normalized 0", "out of range 0"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"30000000 a", "20000000 b"}));
    QCOMPARE(main.bookmarks(), m_site->bookmarks());
}

void BookmarkBarsTest::aUserRemovesABookmark()
{
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    main.bar.SetCurrentMarker(VCReplayBar::FirstBookmarkMarker);
    QTest::keyClick(&main.bar, Qt::Key_Delete);
    QCOMPARE(m_site->bookmarks(), QStringList{"20000000 b"});
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchLocalChange);
}

void BookmarkBarsTest::aLockedListIsNotChangedByTheBar()
{
    m_site.emplace(true);
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    main.press(10);
    main.moveTo(30);
    main.release(30);
    main.insert();
    QCOMPARE(main.bookmarks(), textsOfTwo);
    main.bar.SetBookmarks({}, true);
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkBarsTest::theSameBookmarksAreNoChange()
{
    BookmarkBar main;
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->show(twoBookmarks);
    main.bar.SetBookmarks(main.bar.GetBookmarks(), true);
    QCOMPARE(taken(), inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
}

void BookmarkBarsTest::otherBarsShowTheBookmarksAlone()
{
    BookmarkBar other;
    m_site->show(twoBookmarks);
    m_site->model.connectAdditionalReplayBar(&other.bar);
    m_site->model.connectAdditionalReplayBar(nullptr);
    QCOMPARE(other.bookmarks(), textsOfTwo);
    QCOMPARE(other.enabled(), QList<bool>({false, false}));
    other.insert();
    other.press(10);
    other.moveTo(30);
    other.release(30);
    QCOMPARE(other.bookmarks(), textsOfTwo);
    m_site->model.appendEntry(bookmarkAt(30, "c"));
    QCOMPARE(other.enabled(), QList<bool>({false, false, false}));
    other.insert();
    QCOMPARE(other.bookmarks(), m_site->bookmarks());
}

void BookmarkBarsTest::otherBarsFollowTheListAndTheMainBar()
{
    BookmarkBar main;
    BookmarkBar other;
    BookmarkBar another;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->model.connectAdditionalReplayBar(&other.bar);
    m_site->model.connectAdditionalReplayBar(&another.bar);
    main.insert();
    for (const BookmarkBar* const bar : {&other, &another}) {
        QCOMPARE(bar->bookmarks(), main.bookmarks());
        QCOMPARE(bar->enabled(), QList<bool>({false, false, false}));
    }
    QCOMPARE(m_site->bookmarks(), main.bookmarks());
}

void BookmarkBarsTest::theMainBarIsNoneOfTheOthers()
{
    BookmarkBar main;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main.bar);
    m_site->model.connectAdditionalReplayBar(&main.bar);
    QCOMPARE(main.enabled(), QList<bool>({true, true}));
    m_site->model.removeEntry(0);
    QCOMPARE(main.enabled(), QList<bool>{true});
}

void BookmarkBarsTest::anotherBarBecomesTheMainOne()
{
    BookmarkBar bar;
    m_site->show(twoBookmarks);
    m_site->model.connectAdditionalReplayBar(&bar.bar);
    m_site->model.connectVCReplayBar(&bar.bar);
    QCOMPARE(bar.enabled(), QList<bool>({true, true}));
    m_site->model.removeEntry(0);
    QCOMPARE(bar.enabled(), QList<bool>{true});
    bar.insert();
    QCOMPARE(m_site->model.entryCount(), 2);
}

void BookmarkBarsTest::aBarIsListedOnce()
{
    BookmarkBar other;
    m_site->show(twoBookmarks);
    m_site->model.connectAdditionalReplayBar(&other.bar);
    other.bar.SetBookmarks({}, false);
    m_site->model.connectAdditionalReplayBar(&other.bar);
    QCOMPARE(other.bookmarks(), QStringList());
    m_site->model.disconnectAdditionalReplayBar(&other.bar);
    m_site->model.removeEntry(0);
    QCOMPARE(other.bookmarks(), QStringList());
}

void BookmarkBarsTest::aBarThatWasTakenAwayKeepsWhatItShows_data()
{
    QTest::addColumn<QList<bool>>("follow");
    QTest::addColumn<int>("way");
    QTest::newRow("one of two") << QList<bool>({false, true}) << 0;
    QTest::newRow("all, as no bar") << QList<bool>({false, false}) << 1;
    QTest::newRow("all") << QList<bool>({false, false}) << 2;
}

void BookmarkBarsTest::aBarThatWasTakenAwayKeepsWhatItShows()
{
    QFETCH(const QList<bool>, follow);
    QFETCH(const int, way);
    BookmarkBar others[2];
    m_site->show(twoBookmarks);
    for (BookmarkBar& other : others) {
        m_site->model.connectAdditionalReplayBar(&other.bar);
    }
    if (way == 2) {
        m_site->model.disconnectAllAdditionReplayBars();
    } else {
        m_site->model.disconnectAdditionalReplayBar(way == 0 ? &others[0].bar : nullptr);
    }
    m_site->model.removeEntry(0);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(others[i].bookmarks(), follow[i] ? m_site->bookmarks() : textsOfTwo);
    }
}

void BookmarkBarsTest::theBarBeforeIsNotHeardAnyMore_data()
{
    QTest::addColumn<bool>("hasNext");
    QTest::newRow("another bar") << true;
    QTest::newRow("no bar") << false;
}

void BookmarkBarsTest::theBarBeforeIsNotHeardAnyMore()
{
    QFETCH(const bool, hasNext);
    BookmarkBar before;
    BookmarkBar next;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&before.bar);
    m_site->model.connectVCReplayBar(hasNext ? &next.bar : nullptr);
    before.insert();
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    m_site->model.removeEntry(0);
    QCOMPARE(before.bookmarks().size(), 3);
    QCOMPARE(next.bookmarks(), hasNext ? m_site->bookmarks() : QStringList());
}

void BookmarkBarsTest::theSameBarIsLeftAlone()
{
    BookmarkBar main;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main.bar);
    main.bar.SetBookmarks({}, false);
    m_site->model.connectVCReplayBar(&main.bar);
    QCOMPARE(main.bookmarks(), QStringList());
    main.insert();
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset"}) + inOrder);
}

void BookmarkBarsTest::barsMayGoFirst()
{
    auto main = std::make_unique<BookmarkBar>();
    auto other = std::make_unique<BookmarkBar>();
    BookmarkBar last;
    m_site->show(twoBookmarks);
    m_site->model.connectVCReplayBar(&main->bar);
    m_site->model.connectAdditionalReplayBar(&other->bar);
    m_site->model.connectAdditionalReplayBar(&last.bar);
    main.reset();
    other.reset();
    m_site->model.removeEntry(0);
    m_site->model.sl_reset();
    QCOMPARE(last.bookmarks(), textsOfTwo);
    m_site->model.connectVCReplayBar(&last.bar);
    QCOMPARE(last.enabled(), QList<bool>({true, true}));
}

QTEST_MAIN(BookmarkBarsTest)
#include "tst_bookmarkbars.moc"
