#include "bookmarksite.h"

#include <QtTest>

#include <functional>
#include <optional>

using ZelkoGUI::BookmarkModel;
using Entries = BookmarkModel::Entries;

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();

using Use = std::function<bool(BookmarkModel&)>;

/// All that changes a list for others than views, each of which would change the two bookmarks.
std::vector<std::pair<const char*, Use>> listOperations()
{
    return {{"append", [](BookmarkModel& model) { return model.appendEntry(bookmarkAt(30, "c")) >= 0; }},
            {"remove", [](BookmarkModel& model) { return model.removeEntry(0); }},
            {"change", [](BookmarkModel& model) { return model.changeEntry(0, bookmarkAt(30, "c")); }},
            {"set all", [](BookmarkModel& model) { return model.setEntries({bookmarkAt(30, "c")}); }},
            {"clear", [](BookmarkModel& model) { return model.clear(); }}};
}

} // namespace

Q_DECLARE_METATYPE(Use)

/// Changing the list of a bookmark model by its operations, and what it says of the whole list.
class BookmarkEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    // List operations

    void aListThatIsNotEditableIsNotChanged_data();
    void aListThatIsNotEditableIsNotChanged();
    void appendingAddsARowAtTheEnd();
    void removingTakesARow();
    void changingARowIsTold();
    void aChangeToTheSameIsToldAndNoChange();
    void settingAllResetsTheModel();
    void settingTheSameIsAResetAndNoChange();
    void clearingLeavesNothing();
    void aRowThatIsNotThereIsRefused_data();
    void aRowThatIsNotThereIsRefused();
    void anExternalChangeCanBeEdited_data();
    void anExternalChangeCanBeEdited();

    // Order and range

    void normalizingPutsAChangedListIntoOrder();
    void normalizingLeavesAListThatWasNotChanged();
    void normalizingAListInOrderIsAnsweredAlone();
    void bookmarksOutOfRangeAreRemoved();
    void removingNothingIsAnsweredAlone();
    void aLockedListKeepsWhatIsOutOfRange_data();
    void aLockedListKeepsWhatIsOutOfRange();
    void anUnfinishedRecordHasNoRange_data();
    void anUnfinishedRecordHasNoRange();
    void limitsAreThoseOfTheRecord_data();
    void limitsAreThoseOfTheRecord();
    void limitsFollowTheRecord();

    void timesAreConvertedToTheMillisecond_data();
    void timesAreConvertedToTheMillisecond();

private:
    QStringList taken() { return m_site->log.take(); }

    std::optional<BookmarkSite> m_site;
};

void BookmarkEditingTest::aListThatIsNotEditableIsNotChanged_data()
{
    QTest::addColumn<Use>("use");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("readOnly");
    for (const auto& [name, use] : listOperations()) {
        QTest::addRow("%s without a record", name) << use << int{BookmarkModel::SynchNoRecord} << false;
        QTest::addRow("%s in a list that was sent", name) << use << int{BookmarkModel::SynchPending} << false;
        QTest::addRow("%s in a read-only list", name) << use << int{BookmarkModel::SynchPending} << true;
    }
}

void BookmarkEditingTest::aListThatIsNotEditableIsNotChanged()
{
    QFETCH(const Use, use);
    QFETCH(const int, state);
    QFETCH(const bool, readOnly);
    m_site.emplace(readOnly);
    if (state != BookmarkModel::SynchNoRecord) {
        m_site->store(twoBookmarks);
        m_site->model.setRecord("R", m_site->records.get(), true, "D");
    }
    taken();
    const QStringList before = m_site->bookmarks();
    QVERIFY(!use(m_site->model));
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), before);
    QCOMPARE(int{m_site->model.getSynchState()}, state);
}

void BookmarkEditingTest::appendingAddsARowAtTheEnd()
{
    m_site->show(twoBookmarks);
    QCOMPARE(m_site->model.appendEntry(bookmarkAt(30, "c")), 2);
    QCOMPARE(taken(), QStringList({"begin insert 2-2", "end insert 2-2", "state 2"}) + inOrder);
    QCOMPARE(m_site->model.appendEntry(bookmarkAt(5, "d")), 3);
    QCOMPARE(taken(), QStringList({"begin insert 3-3", "end insert 3-3", "normalized 0", "out of range 0"}));
    QCOMPARE(m_site->bookmarks(), textsOfTwo + QStringList({"30000000 c", "5000000 d"}));
    QCOMPARE(m_site->model.rowCount(), 5);
}

void BookmarkEditingTest::removingTakesARow()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.removeEntry(0));
    QCOMPARE(taken(), QStringList({"begin remove 0-0", "end remove 0-0", "state 2"}) + inOrder);
    QVERIFY(m_site->model.removeEntry(0));
    QCOMPARE(taken(), QStringList({"begin remove 0-0", "end remove 0-0"}) + inOrder);
    QCOMPARE(m_site->model.rowCount(), 1);
}

void BookmarkEditingTest::changingARowIsTold()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.changeEntry(1, bookmarkAt(10, "c")));
    QCOMPARE(taken(), QStringList({"state 2", "changed 1", "normalized 0", "out of range 0"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"10000000 a", "10000000 c"}));
}

void BookmarkEditingTest::aChangeToTheSameIsToldAndNoChange()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.changeEntry(1, twoBookmarks[1]));
    QCOMPARE(taken(), QStringList({"changed 1"}) + inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
}

void BookmarkEditingTest::settingAllResetsTheModel()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.setEntries({bookmarkAt(100, "late")}));
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset", "normalized 1", "out of range 1"}));
    QCOMPARE(m_site->bookmarks(), QStringList{"100000000 late"});
}

void BookmarkEditingTest::settingTheSameIsAResetAndNoChange()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.setEntries(Entries(twoBookmarks.begin(), twoBookmarks.end())));
    QCOMPARE(taken(), QStringList({"begin reset", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
}

void BookmarkEditingTest::clearingLeavesNothing()
{
    m_site->show(twoBookmarks);
    QVERIFY(m_site->model.clear());
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.entryCount(), 0);
}

void BookmarkEditingTest::aRowThatIsNotThereIsRefused_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("in front of the first") << -1;
    QTest::newRow("the one to add to") << 2;
    QTest::newRow("behind the last") << 3;
}

void BookmarkEditingTest::aRowThatIsNotThereIsRefused()
{
    QFETCH(const int, row);
    m_site->show(twoBookmarks);
    QVERIFY(!m_site->model.removeEntry(row));
    QVERIFY(!m_site->model.changeEntry(row, bookmarkAt(30, "c")));
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkEditingTest::anExternalChangeCanBeEdited_data()
{
    QTest::addColumn<Use>("use");
    for (const auto& [name, use] : listOperations()) {
        QTest::addRow("%s", name) << use;
    }
}

void BookmarkEditingTest::anExternalChangeCanBeEdited()
{
    QFETCH(const Use, use);
    m_site->show(twoBookmarks);
    m_site->store(Entries());
    QVERIFY(use(m_site->model));
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchLocalChange);
}

void BookmarkEditingTest::normalizingPutsAChangedListIntoOrder()
{
    m_site->show(twoBookmarks);
    m_site->model.appendEntry(bookmarkAt(10, "c"));
    QVERIFY(!m_site->model.normalized());
    taken();
    m_site->model.sl_normalize();
    QCOMPARE(taken(), QStringList({"begin reset", "end reset", "normalized 1"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"10000000 a c", "20000000 b"}));
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchLocalChange);
}

void BookmarkEditingTest::normalizingLeavesAListThatWasNotChanged()
{
    m_site->show({bookmarkAt(2, "b"), bookmarkAt(1, "a")});
    m_site->model.sl_normalize();
    QCOMPARE(taken(), QStringList{"normalized 0"});
    m_site->edit(0, bookmarkAt(3, "b"));
    m_site->model.sl_normalize();
    QCOMPARE(m_site->bookmarks(), QStringList({"1000000 a", "3000000 b"}));
}

void BookmarkEditingTest::normalizingAListInOrderIsAnsweredAlone()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(1, "a"));
    m_site->model.sl_normalize();
    QCOMPARE(taken(), QStringList{"normalized 1"});
}

void BookmarkEditingTest::bookmarksOutOfRangeAreRemoved()
{
    m_site->show({bookmarkAt(-1, "early"), bookmarkAt(0, "first"), bookmarkAt(90, "last"), bookmarkAt(91, "late")});
    QVERIFY(m_site->model.timesOutOfRange());
    m_site->model.sl_removeOutOfRange();
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset", "out of range 0"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"0 first", "90000000 last"}));
}

void BookmarkEditingTest::removingNothingIsAnsweredAlone()
{
    m_site->show(twoBookmarks);
    m_site->model.sl_removeOutOfRange();
    QCOMPARE(taken(), QStringList{"out of range 0"});
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
}

void BookmarkEditingTest::aLockedListKeepsWhatIsOutOfRange_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("read only") << true;
    QTest::newRow("not unlocked yet") << false;
}

void BookmarkEditingTest::aLockedListKeepsWhatIsOutOfRange()
{
    QFETCH(const bool, readOnly);
    m_site.emplace(readOnly);
    m_site->store({bookmarkAt(-1, "early")});
    m_site->model.setRecord("R", m_site->records.get(), true, "D");
    taken();
    m_site->model.sl_removeOutOfRange();
    QCOMPARE(taken(), QStringList{"out of range 1"});
    QCOMPARE(m_site->bookmarks(), QStringList{"-1000000 early"});
}

void BookmarkEditingTest::anUnfinishedRecordHasNoRange_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("finished"); // -1: not set
    QTest::addColumn<bool>("hasRange");
    QTest::newRow("at rest") << 5 << -1 << true;
    QTest::newRow("at rest and said to be finished") << 5 << 1 << true;
    QTest::newRow("not finished") << 5 << 0 << false;
    QTest::newRow("being recorded") << 2 << -1 << false;
    QTest::newRow("being recorded in a loop") << 3 << -1 << false;
    QTest::newRow("being recorded and said to be finished") << 2 << 1 << false;
    QTest::newRow("another status") << 4 << -1 << true;
}

void BookmarkEditingTest::anUnfinishedRecordHasNoRange()
{
    QFETCH(const int, status);
    QFETCH(const int, finished);
    QFETCH(const bool, hasRange);
    auto record = makeRecord("R", status);
    record->SetBookmarkEntry({bookmarkAt(-1, "early"), bookmarkAt(91, "late")});
    if (finished >= 0) {
        record->SetFinished(finished != 0);
    }
    m_site->show(record);
    QCOMPARE(m_site->model.timesOutOfRange(), hasRange);
    m_site->model.sl_removeOutOfRange();
    QCOMPARE(m_site->model.entryCount(), hasRange ? 0 : 2);
}

void BookmarkEditingTest::limitsAreThoseOfTheRecord_data()
{
    QTest::addColumn<QList<int>>("index");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::newRow("no index") << QList<int>() << 0 << 90;
    QTest::newRow("an index of one entry") << QList<int>{50} << 0 << 90;
    QTest::newRow("an index") << QList<int>{5, 80} << 5 << 80;
    QTest::newRow("an index out of order") << QList<int>{40, 80, 5, 60} << 5 << 80;
}

void BookmarkEditingTest::limitsAreThoseOfTheRecord()
{
    QFETCH(const QList<int>, index);
    QFETCH(const int, first);
    QFETCH(const int, last);
    const auto record = makeRecord("R", 2);
    for (const int second : index) {
        ZELKO_XML::IndexEntry entry;
        entry.SetTimestamp(bookmarkAt(second, {}).GetTimestamp());
        record->AppendIndexEntry(entry);
    }
    m_site->show(record);
    QCOMPARE(m_site->model.minDateTime(), BookmarkModel::datetimeFromEntry(bookmarkAt(first, {})));
    QCOMPARE(m_site->model.maxDateTime(), BookmarkModel::datetimeFromEntry(bookmarkAt(last, {})));
}

// Whatever the state: also under a list that was changed here.
void BookmarkEditingTest::limitsFollowTheRecord()
{
    m_site->show({bookmarkAt(10, "a"), bookmarkAt(95, "late")});
    m_site->edit(0, bookmarkAt(11, "a"));
    QVERIFY(m_site->model.timesOutOfRange());
    const auto record = m_site->record({});
    record->SetStopTime(recordBegin + 100'000'000);
    m_site->store(record);
    QCOMPARE(taken(), inOrder);
    QCOMPARE(m_site->model.maxDateTime().toMSecsSinceEpoch(), 1700000100000);
}

void BookmarkEditingTest::timesAreConvertedToTheMillisecond_data()
{
    QTest::addColumn<quint64>("timestamp");
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<quint64>("back");
    QTest::newRow("the epoch") << quint64{0} << qint64{0} << quint64{0};
    QTest::newRow("a whole millisecond") << quint64{1700000000123000} << qint64{1700000000123}
                                         << quint64{1700000000123000};
    QTest::newRow("just below the next one")
        << quint64{1700000000123999} << qint64{1700000000123} << quint64{1700000000123000};
    QTest::newRow("less than one") << quint64{999} << qint64{0} << quint64{0};
}

void BookmarkEditingTest::timesAreConvertedToTheMillisecond()
{
    QFETCH(const quint64, timestamp);
    const QDateTime time = BookmarkModel::datetimeFromEntry(timestamp);
    QTEST(time.toMSecsSinceEpoch(), "milliseconds");
    QCOMPARE(BookmarkModel::datetimeFromEntry(makeBookmark(timestamp, {})), time);
    QTEST(BookmarkModel::toBookmarkEntry(time), "back");
}

QTEST_MAIN(BookmarkEditingTest)
#include "tst_bookmarkediting.moc"
