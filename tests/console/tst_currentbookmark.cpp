#include "bookmarksite.h"
#include "patience.h"
#include "shownreplaybar.h"

#include <console/hands/operatorhands.h>
#include <console/replay/bookmarktableview.h>
#include <console/replay/currentbookmark.h>

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModel;

namespace {

constexpr int first = VCReplayBar::FirstBookmarkMarker;

const auto momentAt = ShownReplayBar::momentAt;

/// A bar and a table of a record of 90 seconds with four bookmarks, in one window.
struct Setting
{
    Setting()
    {
        site.store({bookmarkAt(10, u"a"_s), bookmarkAt(30, u"b"_s), bookmarkAt(50, u"c"_s), bookmarkAt(70, u"d"_s)});
        shown.widget->setRecord(u"R"_s, site.records.get(), u"D"_s);
        table.setBookmarks(&site.model);
        current.emplace(bar, table, site.model);
        auto* const rows = new QVBoxLayout(&window);
        rows->addWidget(shown.widget.get());
        rows->addWidget(&table);
        window.resize(800, 500);
        window.show();
        window.activateWindow();
    }
    ~Setting()
    {
        table.setParent(nullptr);
        shown.widget->setParent(nullptr);
    }
    bool isActive() { return QTest::qWaitForWindowActive(&window, patience); }

    void clickFlag(int second) { QTest::mouseClick(&bar, Qt::LeftButton, {}, shown.hands.flagAt(momentAt(second))); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {}) { operatorhands::clickRow(table, row, modifiers); }
    void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        widget.setFocus();
        QTest::keyClick(&widget, key, modifiers);
    }

    /// The current bookmark here and there; -1 for none.
    int onBar() const { return std::max(bar.GetCurrentMarker() - first, -1); }
    int inTable() const { return table.currentIndex().row(); }
    bool areAt(int row) const { return onBar() == row && inTable() == row; }

    QWidget window;
    BookmarkSite site;
    ShownReplayBar shown{std::make_unique<ZelkoGUI::ReplayBarWidget>(&site.model)};
    VCReplayBar& bar{shown.bar()};
    BookmarkTableView table;
    std::optional<CurrentBookmark> current;
};

} // namespace

class TestCurrentBookmark : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheMouseOnTheBar();
    void followsTheKeysOfTheBar();
    void followsTheTable();
    void isToldOnce();
    void leavesWhatIsSelectedBesideIt();
    void staysWithWhatIsDragged();
    void isTheNewOne_data();
    void isTheNewOne();
    void isTheNextOfOneThatIsTakenAway();
    void staysWithItsBookmarkInAnotherList();
    void leavesThePositionToTheBar();
    void isNoneThatTheListDoesNotHave();
};

void TestCurrentBookmark::followsTheMouseOnTheBar()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.clickFlag(50);
    QVERIFY(setting.areAt(2));
    QVERIFY(setting.bar.hasFocus());
    QCOMPARE(setting.table.currentIndex().column(), int{BookmarkModel::TextColumn});
    setting.clickFlag(10);
    QVERIFY(setting.areAt(0));
}

void TestCurrentBookmark::followsTheKeysOfTheBar()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.key(setting.bar, Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(setting.areAt(0));
    setting.key(setting.bar, Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(setting.areAt(1));
    setting.key(setting.bar, Qt::Key_Right); // which moves it
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(1), patience);
}

void TestCurrentBookmark::followsTheTable()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.clickRow(1);
    QVERIFY(setting.areAt(1));
    setting.key(setting.table, Qt::Key_Down);
    QVERIFY(setting.areAt(2));
    setting.key(setting.table, Qt::Key_End, Qt::ControlModifier); // the row that adds
    QCOMPARE(setting.inTable(), 4);
    QCOMPARE(setting.onBar(), 2);
}

void TestCurrentBookmark::isToldOnce()
{
    Setting setting;
    QVERIFY(setting.isActive());
    const QSignalSpy onBar(&setting.bar, &VCReplayBar::signalCurrentMarkerChanged);
    const QSignalSpy inTable(setting.table.selectionModel(), &QItemSelectionModel::currentRowChanged);
    setting.clickFlag(50);
    QCOMPARE(onBar, (QList<QVariantList>{{first + 2}}));
    QCOMPARE(inTable.size(), 1);
    setting.clickRow(1);
    QCOMPARE(onBar, (QList<QVariantList>{{first + 2}, {first + 1}}));
    QCOMPARE(inTable.size(), 2);
}

void TestCurrentBookmark::leavesWhatIsSelectedBesideIt()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.clickRow(1);
    setting.key(setting.table, Qt::Key_Down, Qt::ShiftModifier);
    setting.clickRow(0, Qt::ControlModifier);
    QVERIFY(setting.areAt(0));
    QCOMPARE(setting.table.selectionModel()->selectedIndexes().size(), 3);
}

void TestCurrentBookmark::staysWithWhatIsDragged()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.shown.hands.dragFlag(momentAt(50), momentAt(60));
    QVERIFY(setting.site.model.entry(2).GetTimestamp() > bookmarkAt(55, {}).GetTimestamp());
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(2), patience);
}

void TestCurrentBookmark::isTheNewOne_data()
{
    using Hand = std::function<void(Setting&)>;
    QTest::addColumn<Hand>("set");
    QTest::newRow("by a double click on the bar")
        << Hand([](Setting& setting) { setting.shown.hands.doubleClick(momentAt(80)); });
    QTest::newRow("by a key on the bar") << Hand([](Setting& setting) { setting.key(setting.bar, Qt::Key_Insert); });
    QTest::newRow("by a key in the table")
        << Hand([](Setting& setting) { setting.key(setting.table, Qt::Key_Insert); });
}

void TestCurrentBookmark::isTheNewOne()
{
    QFETCH(const std::function<void(Setting&)>, set);
    Setting setting;
    QVERIFY(setting.isActive());
    set(setting);
    QCOMPARE(setting.site.model.entryCount(), 5);
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(4), patience);
}

void TestCurrentBookmark::isTheNextOfOneThatIsTakenAway()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.clickFlag(30);
    setting.key(setting.bar, Qt::Key_Delete);
    QCOMPARE(setting.site.bookmarks().size(), 3);
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(1), patience);
    setting.key(setting.table, Qt::Key_Delete);
    QCOMPARE(setting.site.bookmarks().size(), 2);
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(1), patience);
    QCOMPARE(setting.site.model.entry(1).GetBookmark(), u"d"_s);
}

void TestCurrentBookmark::staysWithItsBookmarkInAnotherList()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.clickRow(1);
    setting.site.store({bookmarkAt(5, u"new"_s), bookmarkAt(10, u"a"_s), bookmarkAt(30, u"b"_s)});
    QTest::mouseClick(setting.shown.reset(), Qt::LeftButton);
    QCOMPARE(setting.site.model.entryCount(), 3);
    QTRY_VERIFY_WITH_TIMEOUT(setting.areAt(2), patience);
}

void TestCurrentBookmark::leavesThePositionToTheBar()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.bar.setFocus();
    setting.table.setFocus(Qt::TabFocusReason);
    QCOMPARE(setting.inTable(), 0);
    QCOMPARE(setting.bar.GetCurrentMarker(), VCReplayBar::PositionMarker);
    setting.clickRow(2);
    QTest::mouseClick(&setting.bar, Qt::LeftButton, {}, setting.shown.hands.handleAt(momentAt(0)));
    QCOMPARE(setting.bar.GetCurrentMarker(), VCReplayBar::PositionMarker);
    QCOMPARE(setting.inTable(), 2);
    setting.clickRow(2);
    QVERIFY(setting.areAt(2));
}

// A bar has its bookmarks from whoever shows them there.
void TestCurrentBookmark::isNoneThatTheListDoesNotHave()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.bar.SetBookmarks(std::vector<BookmarkType>(9, BookmarkType(ShownReplayBar::timeAt(80), u"x"_s)), false);
    setting.bar.SetCurrentMarker(first + 8);
    QCOMPARE(setting.inTable(), -1);
    setting.bar.SetCurrentMarker(first + 4); // where the table has the row that adds
    QCOMPARE(setting.inTable(), -1);
}

QTEST_MAIN(TestCurrentBookmark)
#include "tst_currentbookmark.moc"
