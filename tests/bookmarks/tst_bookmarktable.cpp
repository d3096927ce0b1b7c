#include "bookmarksite.h"
#include "iconpicture.h"
#include "tracemask.h"
#include "tracetexts.h"

#include <resources/zelkoicons.h>

#include <QtTest>

#include <optional>

using ZelkoGUI::BookmarkModel;
using Entries = BookmarkModel::Entries;

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();

constexpr quint64 day = 24 * 3600 * quint64{1'000'000};

/// The record R of these bookmarks that is so much longer than usual.
BookmarkSite::RecordPtr longRecord(const Entries& bookmarks, quint64 more)
{
    auto record = BookmarkSite::record(bookmarks);
    record->SetStopTime(record->GetStopTime() + more);
    return record;
}

QDateTime atMillisecond(int milliseconds)
{
    return BookmarkModel::datetimeFromEntry(recordBegin + static_cast<quint64>(milliseconds) * 1000);
}

} // namespace

/// What a view gets of a bookmark model, and what it writes.
class BookmarkTableTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    void hasRowsAtTheTopOnly();
    void bookmarksCanBeEditedWhileTheListCan();
    void theRowToAddToHasNothingToShow();
    void aCellHasContentForRoles_data();
    void aCellHasContentForRoles();
    void theTimeIsShortWithinOneDay_data();
    void theTimeIsShortWithinOneDay();
    void aTimeOutOfRangeIsMarked_data();
    void aTimeOutOfRangeIsMarked();
    void aTimeOfAnUnfinishedRecordIsNotMarked_data();
    void aTimeOfAnUnfinishedRecordIsNotMarked();
    void columnsHaveTitles();
    void rowsHaveAButton();
    void rowsOfALockedListHaveNoButton_data();
    void rowsOfALockedListHaveNoButton();

    void aTimeIsSet();
    void aTimeIsSetWithinTheRecord_data();
    void aTimeIsSetWithinTheRecord();
    void aRefusedTimeIsTracedIfWanted_data();
    void aRefusedTimeIsTracedIfWanted();
    void theTimeOfAnUnfinishedRecordHasItsLimits_data() { aTimeOfAnUnfinishedRecordIsNotMarked_data(); }
    void theTimeOfAnUnfinishedRecordHasItsLimits();
    void theSameTimeIsNoChange();
    void microsecondsAreLostByAnEdit();
    void aTextIsSet();
    void theSameTextIsNoChange();
    void aTextOfNothingIsEmpty();
    void whatIsNoEntryIsNotSet_data();
    void whatIsNoEntryIsNotSet();

    void theButtonsRemoveAndAdd();
    void theButtonsOfALockedListDoNothing_data() { rowsOfALockedListHaveNoButton_data(); }
    void theButtonsOfALockedListDoNothing();
    void aNewBookmarkStandsWhereItIsWanted_data();
    void aNewBookmarkStandsWhereItIsWanted();
    void aNewBookmarkIsWithinAnyRecord_data();
    void aNewBookmarkIsWithinAnyRecord();

private:
    void lock();
    QStringList taken() { return m_site->log.take(); }
    QVariant cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return m_site->model.index(row, column).data(role);
    }
    bool set(int row, int column, const QVariant& value, int role = Qt::EditRole)
    {
        return m_site->model.setData(m_site->model.index(row, column), value, role);
    }

    std::optional<BookmarkSite> m_site;
};

void BookmarkTableTest::hasRowsAtTheTopOnly()
{
    m_site->show(twoBookmarks);
    const QModelIndex cell = m_site->model.index(0, 0);
    QCOMPARE(m_site->model.rowCount(), 3);
    QCOMPARE(m_site->model.columnCount(), 2);
    QCOMPARE(m_site->model.rowCount(cell), 0);
    QCOMPARE(m_site->model.columnCount(cell), 0);
}

void BookmarkTableTest::bookmarksCanBeEditedWhileTheListCan()
{
    const BookmarkModel& model = m_site->model;
    const Qt::ItemFlags always = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    m_site->show(twoBookmarks);
    QCOMPARE(model.flags({}), Qt::NoItemFlags);
    for (const int column : {0, 1}) {
        QCOMPARE(model.flags(model.index(1, column)), always | Qt::ItemIsEditable);
        QCOMPARE(model.flags(model.index(2, column)), always);
    }
    m_site->edit(0, bookmarkAt(11, "a"));
    m_site->model.sl_synchronize();
    QCOMPARE(model.flags(model.index(1, 0)), always);
}

void BookmarkTableTest::theRowToAddToHasNothingToShow()
{
    m_site->show(twoBookmarks);
    for (const int column : {0, 1}) {
        for (const int role :
             {int{Qt::DisplayRole}, int{Qt::EditRole}, int{Qt::DecorationRole}, int{Qt::ToolTipRole}}) {
            QVERIFY(!cell(2, column, role).isValid());
        }
    }
    QVERIFY(!m_site->model.data({}, Qt::DisplayRole).isValid());
}

void BookmarkTableTest::aCellHasContentForRoles_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("content");
    QTest::addColumn<QString>("typed");
    const QDateTime time = atMillisecond(10'500);
    const auto row = [](const char* name, int column, int role, const QVariant& content, const QString& text = "a") {
        QTest::newRow(name) << column << role << content << text;
    };
    const QString markup = "<b>loud</b> & clear";
    row("time", 0, Qt::DisplayRole, "23:13:30:500");
    row("time to edit", 0, Qt::EditRole, time);
    row("icon of a time", 0, Qt::DecorationRole, {});
    row("tool tip of a time", 0, Qt::ToolTipRole, "2023-11-14 23:13:30:500");
    row("tool tip of the time of a text that looks like markup", 0, Qt::ToolTipRole, "2023-11-14 23:13:30:500", markup);
    row("description of a time", 0, Qt::AccessibleDescriptionRole, {});
    row("anything else of a time", 0, Qt::BackgroundRole, {});
    row("text", 1, Qt::DisplayRole, "a");
    row("text that looks like markup", 1, Qt::DisplayRole, markup, markup);
    row("text to edit", 1, Qt::EditRole, "a");
    row("text to edit that looks like markup", 1, Qt::EditRole, markup, markup);
    row("icon of a text", 1, Qt::DecorationRole, {});
    row("tool tip of a text", 1, Qt::ToolTipRole, "a");
    row("tool tip of a text that looks like markup", 1, Qt::ToolTipRole, "<qt>&lt;b&gt;loud&lt;/b&gt; &amp; clear</qt>",
        markup);
    row("tool tip of a text with a sign of markup", 1, Qt::ToolTipRole, "a < b & c", "a < b & c");
    row("description of a text", 1, Qt::AccessibleDescriptionRole, {});
    row("anything else of a text", 1, Qt::BackgroundRole, {});
}

void BookmarkTableTest::aCellHasContentForRoles()
{
    QFETCH(const int, column);
    QFETCH(const int, role);
    QFETCH(const QString, typed);
    m_site->show({makeBookmark(recordBegin + 10'500'999, typed)});
    QTEST(cell(0, column, role), "content");
}

void BookmarkTableTest::theTimeIsShortWithinOneDay_data()
{
    QTest::addColumn<quint64>("more");
    QTest::addColumn<QString>("text");
    QTest::newRow("a record of one day") << quint64{0} << "23:13:30:000";
    QTest::newRow("a record to the last millisecond of the day") << quint64{2'709'999'999} << "23:13:30:000";
    QTest::newRow("a record to the next day") << quint64{2'710'000'000} << "2023-11-14 23:13:30:000";
    QTest::newRow("a record to the same time of another day") << day - 90'000'000 << "2023-11-14 23:13:30:000";
}

void BookmarkTableTest::theTimeIsShortWithinOneDay()
{
    QFETCH(const quint64, more);
    QFETCH(const QString, text);
    m_site->show(longRecord({bookmarkAt(10, "a")}, more));
    QCOMPARE(cell(0, 0).toString(), text);
    QCOMPARE(cell(0, 0, Qt::ToolTipRole).toString(), QStringLiteral("2023-11-14 23:13:30:000"));
}

void BookmarkTableTest::aTimeOutOfRangeIsMarked_data()
{
    QTest::addColumn<int>("second");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char* name, int second, const char* toolTip, const char* problem) {
        QTest::newRow(name) << second << QString(toolTip) << QString(problem);
    };
    row("at the start", 0, "2023-11-14 23:13:20:000", "");
    row("before the start", -1, "2023-11-14 23:13:19:000<br><b>timestamp to low</b>", "timestamp to low");
    row("at the stop", 90, "2023-11-14 23:14:50:000", "");
    row("behind the stop", 91, "2023-11-14 23:14:51:000<br><b>timestamp to high</b>", "timestamp to high");
}

void BookmarkTableTest::aTimeOutOfRangeIsMarked()
{
    QFETCH(const int, second);
    QFETCH(const QString, toolTip);
    QFETCH(const QString, problem);
    m_site->show({bookmarkAt(second, "a")});
    QCOMPARE(cell(0, 0, Qt::ToolTipRole).toString(), toolTip);
    const QVariant icon = cell(0, 0, Qt::DecorationRole);
    QCOMPARE(icon.isValid(), !problem.isEmpty());
    QCOMPARE(cell(0, 0, Qt::AccessibleDescriptionRole).isValid(), icon.isValid());
    QCOMPARE(cell(0, 0, Qt::AccessibleDescriptionRole).toString(), problem);
    if (icon.isValid()) {
        QCOMPARE(picture(icon.value<QIcon>()), picture(QIcon(":/Zelko/Cfg/Warning.svg")));
    }
    QVERIFY(!cell(0, 1, Qt::DecorationRole).isValid());
}

void BookmarkTableTest::aTimeOfAnUnfinishedRecordIsNotMarked_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("finished");
    QTest::newRow("not finished") << 5 << false;
    QTest::newRow("being recorded") << 2 << true;
    QTest::newRow("being recorded in a loop") << 3 << true;
}

void BookmarkTableTest::aTimeOfAnUnfinishedRecordIsNotMarked()
{
    QFETCH(const int, status);
    QFETCH(const bool, finished);
    const auto record = makeRecord("R", status);
    record->SetFinished(finished);
    record->SetBookmarkEntry({bookmarkAt(100, "a")});
    m_site->show(record);
    QVERIFY(!cell(0, 0, Qt::DecorationRole).isValid());
    QCOMPARE(cell(0, 0, Qt::ToolTipRole).toString(), QStringLiteral("2023-11-14 23:15:00:000"));
}

void BookmarkTableTest::columnsHaveTitles()
{
    const BookmarkModel& model = m_site->model;
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Time"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Text"));
    QVERIFY(!model.headerData(2, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(-1, Qt::Horizontal).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

void BookmarkTableTest::rowsHaveAButton()
{
    m_site->show(twoBookmarks);
    const auto header = [this](int section, int role) { return m_site->model.headerData(section, Qt::Vertical, role); };
    const QString remove = QStringLiteral("delete the bookmark entry");
    QCOMPARE(header(0, Qt::ToolTipRole).toString(), remove);
    QCOMPARE(header(1, Qt::AccessibleTextRole).toString(), remove);
    QCOMPARE(picture(header(1, Qt::DecorationRole).value<QIcon>()), picture(QIcon(":/Zelko/Bookmarks/Delete.svg")));
    QCOMPARE(header(2, Qt::ToolTipRole).toString(), QStringLiteral("add a new bookmark entry"));
    QCOMPARE(picture(header(2, Qt::DecorationRole).value<QIcon>()), picture(QIcon(":/Zelko/Bookmarks/Add.svg")));
    QVERIFY(!header(0, Qt::DisplayRole).isValid());
    QVERIFY(!header(3, Qt::DecorationRole).isValid());
    QVERIFY(!header(-1, Qt::DecorationRole).isValid());
    QCOMPARE(header(0, Qt::DecorationRole).value<QIcon>().cacheKey(),
             header(1, Qt::DecorationRole).value<QIcon>().cacheKey());
}

void BookmarkTableTest::rowsOfALockedListHaveNoButton_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("hasRecord");
    QTest::addColumn<bool>("wasSent");
    QTest::newRow("read only") << true << true << false;
    QTest::newRow("not unlocked yet") << false << true << false;
    QTest::newRow("sent") << false << true << true;
    QTest::newRow("no record") << false << false << false;
}

// As the row of the test wants it.
void BookmarkTableTest::lock()
{
    QFETCH(const bool, readOnly);
    QFETCH(const bool, hasRecord);
    QFETCH(const bool, wasSent);
    m_site.emplace(readOnly);
    m_site->store(twoBookmarks);
    m_site->model.setRecord(hasRecord ? "R" : "", m_site->records.get(), !wasSent, "D");
    if (wasSent) {
        m_site->edit(0, bookmarkAt(11, "a"));
        m_site->model.sl_synchronize();
    }
    taken();
}

void BookmarkTableTest::rowsOfALockedListHaveNoButton()
{
    lock();
    for (int section = 0; section < m_site->model.rowCount(); ++section) {
        for (const int role : {int{Qt::DecorationRole}, int{Qt::ToolTipRole}, int{Qt::DisplayRole}}) {
            QVERIFY(!m_site->model.headerData(section, Qt::Vertical, role).isValid());
        }
    }
}

void BookmarkTableTest::aTimeIsSet()
{
    m_site->show(twoBookmarks);
    QVERIFY(set(0, 0, atMillisecond(30'250)));
    QCOMPARE(taken(), QStringList({"state 2", "changed 0 columns 0-0", "normalized 0", "out of range 0"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"30250000 a", "20000000 b"}));
}

void BookmarkTableTest::aTimeIsSetWithinTheRecord_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("bookmark");
    QTest::newRow("the start") << atMillisecond(0) << "0 a";
    QTest::newRow("a millisecond before the start") << atMillisecond(-1) << "10000000 a";
    QTest::newRow("the stop") << atMillisecond(90'000) << "90000000 a";
    QTest::newRow("a millisecond behind the stop") << atMillisecond(90'001) << "10000000 a";
    QTest::newRow("no time") << QDateTime() << "10000000 a";
    QTest::newRow("the start in another zone") << atMillisecond(0).toUTC() << "0 a";
}

void BookmarkTableTest::aTimeIsSetWithinTheRecord()
{
    const TraceTexts traces;
    QFETCH(const QDateTime, time);
    QFETCH(const QString, bookmark);
    m_site->show({bookmarkAt(10, "a")});
    QVERIFY(set(0, 0, time));
    QCOMPARE(m_site->bookmarks(), QStringList{bookmark});
    const bool isRefused = bookmark == QLatin1String("10000000 a");
    const QStringList state = isRefused ? QStringList() : QStringList{"state 2"};
    QCOMPARE(taken(), state + QStringList{"changed 0 columns 0-0"} + inOrder);
}

void BookmarkTableTest::aRefusedTimeIsTracedIfWanted_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("traced");
    QTest::newRow("warnings") << 64U << true;
    QTest::newRow("errors alone") << 32U << false;
}

void BookmarkTableTest::aRefusedTimeIsTracedIfWanted()
{
    QFETCH(const unsigned int, mask);
    QFETCH(const bool, traced);
    m_site->show(twoBookmarks);
    const TraceMask traceMask(mask);
    const TraceTexts traces;
    QVERIFY(set(0, 0, atMillisecond(-1)));
    const QString text = QStringLiteral("BookmarkModel::setTime(2023-11-14 23:13:19:999) - invalid "
                                        "(min=2023-11-14 23:13:20:000,max=2023-11-14 23:14:50:000)");
    QCOMPARE(traces.withSources().size(), traced ? 1 : 0);
    QCOMPARE(traces.contain(text), traced);
}

// A record that goes on has no end that a bookmark could lie behind, but what is typed has.
void BookmarkTableTest::theTimeOfAnUnfinishedRecordHasItsLimits()
{
    QFETCH(const int, status);
    QFETCH(const bool, finished);
    const TraceTexts traces;
    const auto record = makeRecord("R", status);
    record->SetFinished(finished);
    record->SetBookmarkEntry({bookmarkAt(100, "late")});
    m_site->show(record);
    QVERIFY(!m_site->model.timesOutOfRange());
    QVERIFY(set(0, 0, atMillisecond(99'000)));
    QCOMPARE(m_site->bookmarks(), QStringList{"100000000 late"});
    QVERIFY(set(0, 0, atMillisecond(89'000)));
    QCOMPARE(m_site->bookmarks(), QStringList{"89000000 late"});
}

void BookmarkTableTest::theSameTimeIsNoChange()
{
    m_site->show(twoBookmarks);
    QVERIFY(set(0, 0, atMillisecond(10'000)));
    QCOMPARE(taken(), QStringList{"changed 0 columns 0-0"} + inOrder);
}

void BookmarkTableTest::microsecondsAreLostByAnEdit()
{
    m_site->show({makeBookmark(recordBegin + 10'000'999, "a")});
    QVERIFY(set(0, 0, cell(0, 0, Qt::EditRole)));
    QCOMPARE(taken(), QStringList({"state 2", "changed 0 columns 0-0"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList{"10000000 a"});
}

void BookmarkTableTest::aTextIsSet()
{
    m_site->show(twoBookmarks);
    QVERIFY(set(1, 1, "c"));
    QCOMPARE(taken(), QStringList({"state 2", "changed 1 columns 1-1"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList({"10000000 a", "20000000 c"}));
}

void BookmarkTableTest::theSameTextIsNoChange()
{
    m_site->show(twoBookmarks);
    QVERIFY(set(1, 1, "b"));
    QCOMPARE(taken(), QStringList{"changed 1 columns 1-1"} + inOrder);
}

void BookmarkTableTest::aTextOfNothingIsEmpty()
{
    m_site->show(twoBookmarks);
    QVERIFY(set(1, 1, QString()));
    QCOMPARE(m_site->bookmarks(), QStringList({"10000000 a", "20000000 "}));
    QVERIFY(!m_site->model.entry(1).GetBookmark().isNull());
}

void BookmarkTableTest::whatIsNoEntryIsNotSet_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("the row to add to") << 2 << int{Qt::EditRole} << false;
    QTest::newRow("no row") << -1 << int{Qt::EditRole} << false;
    QTest::newRow("what is not edited") << 0 << int{Qt::DisplayRole} << false;
    QTest::newRow("a read-only list") << 0 << int{Qt::EditRole} << true;
}

void BookmarkTableTest::whatIsNoEntryIsNotSet()
{
    QFETCH(const int, row);
    QFETCH(const int, role);
    QFETCH(const bool, readOnly);
    m_site.emplace(readOnly);
    m_site->show(twoBookmarks);
    QVERIFY(!set(row, 0, atMillisecond(0), role));
    QVERIFY(!set(row, 1, "c", role));
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkTableTest::theButtonsRemoveAndAdd()
{
    m_site->show(twoBookmarks);
    m_site->model.sl_verticalHeaderClicked(0);
    QCOMPARE(taken(), QStringList({"begin remove 0-0", "end remove 0-0", "state 2"}) + inOrder);
    m_site->model.sl_setNewBookmarkTime(recordBegin + 30'000'001);
    m_site->model.sl_verticalHeaderClicked(1);
    QCOMPARE(taken(), QStringList({"begin insert 1-1", "end insert 1-1"}) + inOrder);
    m_site->model.sl_setNewBookmarkTime(recordBegin + 40'000'000);
    m_site->model.sl_verticalHeaderClicked(99);
    QCOMPARE(m_site->bookmarks(), QStringList({"20000000 b", "30000001 ", "40000000 "}));
    taken();
    m_site->model.sl_verticalHeaderClicked(-1);
    QCOMPARE(taken(), QStringList());
}

void BookmarkTableTest::theButtonsOfALockedListDoNothing()
{
    lock();
    const QStringList before = m_site->bookmarks();
    for (int section = 0; section < m_site->model.rowCount(); ++section) {
        m_site->model.sl_verticalHeaderClicked(section);
    }
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), before);
}

void BookmarkTableTest::aNewBookmarkStandsWhereItIsWanted_data()
{
    QTest::addColumn<qint64>("wanted"); // microseconds behind the start
    QTest::addColumn<QString>("bookmark");
    QTest::newRow("nowhere") << -static_cast<qint64>(recordBegin) << "0 ";
    QTest::newRow("before the start") << qint64{-1} << "0 ";
    QTest::newRow("the start") << qint64{0} << "0 ";
    QTest::newRow("within") << qint64{1'234'567} << "1234567 ";
    QTest::newRow("the stop") << qint64{90'000'000} << "90000000 ";
    QTest::newRow("past the stop") << qint64{90'000'001} << "0 ";
    QTest::newRow("far past the stop") << qint64{1'000'000'000'000} << "0 ";
}

void BookmarkTableTest::aNewBookmarkStandsWhereItIsWanted()
{
    QFETCH(const qint64, wanted);
    QFETCH(const QString, bookmark);
    m_site->show(Entries());
    m_site->model.sl_setNewBookmarkTime(recordBegin + static_cast<quint64>(wanted));
    m_site->model.sl_verticalHeaderClicked(0);
    QCOMPARE(taken(), QStringList({"begin insert 0-0", "end insert 0-0", "state 2"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList{bookmark});
}

void BookmarkTableTest::aNewBookmarkIsWithinAnyRecord_data()
{
    QTest::addColumn<qint64>("cursor"); // microseconds, as those of the bookmark
    QTest::addColumn<QString>("bookmark");
    QTest::newRow("the start") << qint64{123} << "123 ";
    QTest::newRow("before the start in the same millisecond") << qint64{50} << "123 ";
    QTest::newRow("where that millisecond begins") << qint64{0} << "123 ";
    QTest::newRow("before that millisecond") << qint64{-1} << "123 ";
    QTest::newRow("the last whole millisecond") << qint64{90'000'000} << "90000000 ";
    QTest::newRow("the stop") << qint64{90'000'456} << "123 ";
}

// Of a record that neither begins nor ends with a whole millisecond.
void BookmarkTableTest::aNewBookmarkIsWithinAnyRecord()
{
    QFETCH(const qint64, cursor);
    QFETCH(const QString, bookmark);
    const auto record = makeRecord("R");
    record->SetStartTime(recordBegin + 123);
    record->SetStopTime(recordBegin + 90'000'456);
    m_site->show(record);
    m_site->model.sl_setNewBookmarkTime(recordBegin + static_cast<quint64>(cursor));
    m_site->model.sl_verticalHeaderClicked(0);
    QCOMPARE(m_site->bookmarks(), QStringList{bookmark});
    QVERIFY(!m_site->model.timesOutOfRange());
}

QTEST_MAIN(BookmarkTableTest)
#include "tst_bookmarktable.moc"
