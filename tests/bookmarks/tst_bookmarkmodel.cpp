#include "bookmarksite.h"
#include "patience.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QtTest>

#include <optional>

using namespace std::chrono_literals;
using ZelkoGUI::BookmarkModel;
using Entries = BookmarkModel::Entries;

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();

Entries with(Entries entries, const BookmarkModel::Entry& another)
{
    entries.append(another);
    return entries;
}

} // namespace

class BookmarkModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    // The record

    void aNewModelShowsTheRowToAddTo();
    void aRecordWithoutBookmarksShowsTheRowToAddTo();
    void aRecordCanBeEditedAtOnce();
    void aDelayedRecordCanBeEditedLater();
    void aReadOnlyModelStaysLocked();
    void aRecordThatIsNotThereIsNone_data();
    void aRecordThatIsNotThereIsNone();
    void aModelOfAnotherRecordForgetsTheFirst();
    void theSameRecordModelIsHeardOnce();
    void anotherRecordModelIsNotHeardAnyMore();
    void noRecordEmptiesTheModel();
    void aProxyHearsOfHeadersThatItKnows();

    // What becomes of the record

    void anExternalChangeLeavesTheListAlone();
    void anExternalChangeThatIsTakenBackIsNone();
    void aLocalChangeOutlastsChangesOfTheRecord();
    void aLockedModelFollowsTheRecord();
    void aReadOnlyModelFollowsTheRecord();
    void otherRecordsAreOfNoInterest();
    void aDeletedRecordIsNone();
    void aRecordThatComesBackIsAnotherOne();
    void aListThatGoesWholeTakesTheRecord();
    void aRecordModelThatDiesTakesTheRecord();

    // Sending and taking back

    void sendingLocksTheModelForAWhile();
    void sendingAgainDoesNothing();
    void onlyALocalChangeIsSent();
    void theAnswerIsTakenWhileTheModelIsLocked();
    void withoutAnAnswerTheOldListStands();
    void whatIsSentIsNormalized_data();
    void whatIsSentIsNormalized();
    void resettingTakesTheListOfTheRecord_data();
    void resettingTakesTheListOfTheRecord();
    void resettingWithoutARecordEndsWithoutOne();
    void resettingAReadOnlyModelKeepsItLocked();
    void aTimerThatComesTooLateDoesNothing();
    void aTimerOpensALaterLockToo();
    void theRealTimerUnlocksTheModel();
    void aModelThatIsGoneIsNotUnlocked();

private:
    QStringList taken() { return m_site->log.take(); }

    std::optional<BookmarkSite> m_site;
};

void BookmarkModelTest::aNewModelShowsTheRowToAddTo()
{
    const BookmarkModel model(false);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.entryCount(), 0);
    QCOMPARE(model.getSynchState(), BookmarkModel::SynchNoRecord);
    QVERIFY(model.normalized());
    QVERIFY(!model.timesOutOfRange());
    QVERIFY(!model.readOnly());
    QCOMPARE(model.minDateTime().toMSecsSinceEpoch(), 0);
    QCOMPARE(model.maxDateTime().toMSecsSinceEpoch(), 0);
}

void BookmarkModelTest::aRecordWithoutBookmarksShowsTheRowToAddTo()
{
    m_site->show(Entries());
    QCOMPARE(m_site->model.rowCount(), 1);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
    QVERIFY(m_site->model.normalized());
    QVERIFY(!m_site->model.timesOutOfRange());
}

void BookmarkModelTest::aRecordCanBeEditedAtOnce()
{
    m_site->store(twoBookmarks);
    m_site->model.setRecord("R", m_site->records.get(), false, "D");
    QCOMPARE(taken(), QStringList({"begin reset", "state 4", "state 1", "end reset", "header changed"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    QCOMPARE(m_site->model.rowCount(), 3);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
    QCOMPARE(m_site->timer.pending(), std::size_t{0});
}

void BookmarkModelTest::aDelayedRecordCanBeEditedLater()
{
    m_site->store(twoBookmarks);
    m_site->model.setRecord("R", m_site->records.get(), true, "D");
    QCOMPARE(taken(), QStringList({"begin reset", "state 4", "end reset", "header changed"}) + inOrder);
    m_site->timer.advance(1999ms);
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchPending);
    const QSignalSpy header(&m_site->model, &BookmarkModel::headerDataChanged);
    m_site->timer.advance(1ms);
    QCOMPARE(taken(), QStringList({"state 1", "header changed"}));
    QCOMPARE(header.first(), QVariantList({QVariant::fromValue(Qt::Vertical), 0, 2}));
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkModelTest::aReadOnlyModelStaysLocked()
{
    for (const bool delayed : {false, true}) {
        m_site.emplace(true);
        QVERIFY(m_site->model.readOnly());
        m_site->store(twoBookmarks);
        m_site->model.setRecord("R", m_site->records.get(), delayed, "D");
        QCOMPARE(taken(), QStringList({"begin reset", "state 4", "end reset", "header changed"}) + inOrder);
        m_site->timer.advance(10s);
        QCOMPARE(taken(), QStringList());
        QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchPending);
        QCOMPARE(m_site->bookmarks(), textsOfTwo);
    }
}

void BookmarkModelTest::aRecordThatIsNotThereIsNone_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("hasModel");
    QTest::newRow("no ID") << QString() << true;
    QTest::newRow("an ID of no record") << "X" << true;
    QTest::newRow("a record without data") << "N" << true;
    QTest::newRow("no record model") << "R" << false;
}

void BookmarkModelTest::aRecordThatIsNotThereIsNone()
{
    QFETCH(const QString, id);
    QFETCH(const bool, hasModel);
    m_site->store(twoBookmarks);
    m_site->map->SetAt("N", zelko::recordmap::RecordMapData(), nullptr);
    m_site->model.setRecord(id, hasModel ? m_site->records.get() : nullptr, true, "D");
    QCOMPARE(taken(), QStringList({"begin reset", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchNoRecord);
    QCOMPARE(m_site->timer.pending(), std::size_t{0});
}

void BookmarkModelTest::aModelOfAnotherRecordForgetsTheFirst()
{
    m_site->store(m_site->record({bookmarkAt(5, "other")}, "S"));
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(30, "c"));
    m_site->model.setRecord("S", m_site->records.get(), false, "D");
    QCOMPARE(taken(),
             QStringList({"begin reset", "state 0", "state 4", "state 1", "end reset", "header changed"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList{"5000000 other"});
    m_site->store(Entries());
    QCOMPARE(taken(), QStringList());
}

void BookmarkModelTest::theSameRecordModelIsHeardOnce()
{
    m_site->show(twoBookmarks);
    m_site->show(twoBookmarks);
    m_site->store(Entries());
    QCOMPARE(taken(), QStringList({"state 3"}) + inOrder);
}

void BookmarkModelTest::anotherRecordModelIsNotHeardAnyMore()
{
    m_site->show(twoBookmarks);
    ZelkoGUI::RecordItemMapModel others(nullptr);
    m_site->model.setRecord("R", &others, false, "D");
    taken();
    m_site->store(Entries());
    m_site->records.reset();
    QCOMPARE(taken(), QStringList());
}

void BookmarkModelTest::noRecordEmptiesTheModel()
{
    m_site->show(twoBookmarks);
    m_site->model.resetRecord();
    QCOMPARE(taken(), QStringList({"begin reset", "state 0", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.rowCount(), 1);
    m_site->store(with(twoBookmarks, bookmarkAt(30, "c")));
    QCOMPARE(taken(), QStringList());
}

// It would read behind the rows of the record before.
void BookmarkModelTest::aProxyHearsOfHeadersThatItKnows()
{
    m_site->show(twoBookmarks);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&m_site->model);
    proxy.sort(BookmarkModel::TextColumn, Qt::DescendingOrder);
    const QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(columnTexts(proxy, BookmarkModel::TextColumn).filter("a"), QStringList{"a"});
    Entries longer;
    for (int second = 0; second < 80; ++second) {
        longer.append(bookmarkAt(second, QString::number(second)));
    }
    m_site->store(m_site->record(longer, "S"));
    QList<int> rowsToHear;
    connect(&m_site->model, &BookmarkModel::headerDataChanged, &proxy, [&] { rowsToHear.append(proxy.rowCount()); });
    m_site->model.setRecord("S", m_site->records.get(), false, "D");
    QCOMPARE(rowsToHear, QList<int>{81});
    QCOMPARE(columnTexts(proxy, BookmarkModel::TextColumn).filter("79"), QStringList{"79"});
}

void BookmarkModelTest::anExternalChangeLeavesTheListAlone()
{
    m_site->show(twoBookmarks);
    m_site->store(with(twoBookmarks, bookmarkAt(30, "c")));
    QCOMPARE(taken(), QStringList({"state 3"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    m_site->store(with(twoBookmarks, bookmarkAt(40, "d")));
    QCOMPARE(taken(), inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchExternalChange);
}

void BookmarkModelTest::anExternalChangeThatIsTakenBackIsNone()
{
    m_site->show(twoBookmarks);
    m_site->store(Entries());
    taken();
    m_site->store(twoBookmarks);
    QCOMPARE(taken(), QStringList({"state 1"}) + inOrder);
}

void BookmarkModelTest::aLocalChangeOutlastsChangesOfTheRecord()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(11, "mine"));
    m_site->store(Entries());
    QCOMPARE(taken(), inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList({"11000000 mine", "20000000 b"}));
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchLocalChange);
}

void BookmarkModelTest::aLockedModelFollowsTheRecord()
{
    m_site->store(twoBookmarks);
    m_site->model.setRecord("R", m_site->records.get(), true, "D");
    taken();
    m_site->store({bookmarkAt(1, "new")});
    QCOMPARE(taken(), QStringList({"begin reset", "end reset", "header changed"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList{"1000000 new"});
}

void BookmarkModelTest::aReadOnlyModelFollowsTheRecord()
{
    m_site.emplace(true);
    m_site->show(twoBookmarks);
    for (int second = 1; second < 4; ++second) {
        m_site->store({bookmarkAt(second, "new")});
        QCOMPARE(taken(), QStringList({"begin reset", "end reset", "header changed"}) + inOrder);
        QCOMPARE(m_site->bookmarks(), QStringList{QString::number(second) + QStringLiteral("000000 new")});
        QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchPending);
    }
}

void BookmarkModelTest::otherRecordsAreOfNoInterest()
{
    m_site->store(m_site->record({}, "S"));
    m_site->show(twoBookmarks);
    m_site->store(m_site->record({bookmarkAt(1, "new")}, "S"));
    m_site->map->EraseAt("S", nullptr);
    QCOMPARE(taken(), QStringList());
}

void BookmarkModelTest::aDeletedRecordIsNone()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(30, "c"));
    m_site->map->EraseAt("R", nullptr);
    QCOMPARE(taken(), QStringList({"begin reset", "state 0", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.rowCount(), 1);
    m_site->store(twoBookmarks);
    QCOMPARE(taken(), QStringList());
}

// The list is shown again, and stays locked: nobody has asked to edit this one.
void BookmarkModelTest::aRecordThatComesBackIsAnotherOne()
{
    m_site->show(twoBookmarks);
    m_site->map->Clear(nullptr);
    taken();
    m_site->store({bookmarkAt(1, "new")});
    QCOMPARE(taken(), QStringList({"begin reset", "end reset", "state 4", "header changed"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), QStringList{"1000000 new"});
    QCOMPARE(m_site->timer.pending(), std::size_t{0});
}

void BookmarkModelTest::aListThatGoesWholeTakesTheRecord()
{
    m_site->show(twoBookmarks);
    m_site->map->Clear(nullptr);
    QCOMPARE(taken(), QStringList({"begin reset", "state 0", "end reset"}) + inOrder);
    QCOMPARE(m_site->model.rowCount(), 1);
}

void BookmarkModelTest::aRecordModelThatDiesTakesTheRecord()
{
    m_site->show(twoBookmarks);
    m_site->records.reset();
    QCOMPARE(taken(), QStringList({"begin reset", "state 0", "end reset"}) + inOrder);
    m_site->model.sl_reset();
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchNoRecord);
}

void BookmarkModelTest::sendingLocksTheModelForAWhile()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(10, "changed"));
    const QSignalSpy header(&m_site->model, &BookmarkModel::headerDataChanged);
    m_site->model.sl_synchronize();
    QCOMPARE(taken(),
             QStringList({"state 4", "header changed", "update R of D: 10000000 changed, 20000000 b"}) + inOrder);
    QCOMPARE(header.first(), QVariantList({QVariant::fromValue(Qt::Vertical), 0, 2}));
    m_site->timer.advance(1999ms);
    QCOMPARE(taken(), QStringList());
    m_site->timer.advance(1ms);
    QCOMPARE(taken(), QStringList({"state 1", "header changed"}));
}

void BookmarkModelTest::sendingAgainDoesNothing()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(10, "changed"));
    m_site->model.sl_synchronize();
    taken();
    m_site->model.sl_synchronize();
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->timer.pending(), std::size_t{1});
}

void BookmarkModelTest::onlyALocalChangeIsSent()
{
    m_site->model.sl_synchronize();
    QCOMPARE(taken(), QStringList());
    m_site->show(twoBookmarks);
    m_site->model.sl_synchronize();
    QCOMPARE(taken(), QStringList());
    m_site->store(Entries());
    taken();
    m_site->model.sl_synchronize();
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchExternalChange);
}

void BookmarkModelTest::theAnswerIsTakenWhileTheModelIsLocked()
{
    m_site->show(twoBookmarks);
    m_site->edit(1, bookmarkAt(5, "c"));
    m_site->model.sl_synchronize();
    taken();
    m_site->store({bookmarkAt(5, "c"), bookmarkAt(10, "a")});
    QCOMPARE(taken(), QStringList({"begin reset", "end reset", "header changed"}) + inOrder);
    m_site->timer.advance(2s);
    QCOMPARE(taken(), QStringList({"state 1", "header changed"}));
    QCOMPARE(m_site->bookmarks(), QStringList({"5000000 c", "10000000 a"}));
}

void BookmarkModelTest::withoutAnAnswerTheOldListStands()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(10, "changed"));
    m_site->model.sl_synchronize();
    m_site->timer.advance(2s);
    taken();
    QCOMPARE(m_site->bookmarks(), QStringList({"10000000 changed", "20000000 b"}));
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
    m_site->store(with(twoBookmarks, bookmarkAt(30, "c")));
    QCOMPARE(taken(), QStringList({"state 3"}) + inOrder);
    m_site->store({bookmarkAt(10, "changed"), bookmarkAt(20, "b")});
    QCOMPARE(taken(), QStringList({"state 1"}) + inOrder);
}

void BookmarkModelTest::whatIsSentIsNormalized_data()
{
    QTest::addColumn<Entries>("local");
    QTest::addColumn<QString>("sent");
    QTest::newRow("nothing") << Entries() << "";
    QTest::newRow("one time twice") << Entries{bookmarkAt(1, "a"), bookmarkAt(1, "b")} << "1000000 a b";
    QTest::newRow("an empty text first") << Entries{bookmarkAt(1, ""), bookmarkAt(1, "b")} << "1000000 b";
    QTest::newRow("an empty text last") << Entries{bookmarkAt(1, "a"), bookmarkAt(1, "")} << "1000000 a";
    QTest::newRow("out of order") << Entries{bookmarkAt(3, "c"), bookmarkAt(1, "a"), bookmarkAt(2, "b")}
                                  << "1000000 a, 2000000 b, 3000000 c";
}

void BookmarkModelTest::whatIsSentIsNormalized()
{
    QFETCH(const Entries, local);
    QFETCH(const QString, sent);
    m_site->show(twoBookmarks);
    m_site->model.setEntries(local);
    QCOMPARE(m_site->model.normalized(), local.isEmpty());
    taken();
    m_site->model.sl_synchronize();
    QCOMPARE(taken().value(2), QStringLiteral("update R of D: ") + sent);
    QCOMPARE(m_site->bookmarks(), bookmarkTexts(local));
}

void BookmarkModelTest::resettingTakesTheListOfTheRecord_data()
{
    QTest::addColumn<int>("from");
    QTest::newRow("in sync") << int{BookmarkModel::SynchInSync};
    QTest::newRow("changed here") << int{BookmarkModel::SynchLocalChange};
    QTest::newRow("changed elsewhere") << int{BookmarkModel::SynchExternalChange};
    QTest::newRow("sent") << int{BookmarkModel::SynchPending};
}

void BookmarkModelTest::resettingTakesTheListOfTheRecord()
{
    QFETCH(const int, from);
    m_site->show(Entries());
    if (from == BookmarkModel::SynchLocalChange || from == BookmarkModel::SynchPending) {
        m_site->model.appendEntry(bookmarkAt(1, "mine"));
    }
    if (from == BookmarkModel::SynchPending) {
        m_site->model.sl_synchronize();
    }
    if (from == BookmarkModel::SynchExternalChange) {
        m_site->store(twoBookmarks);
    }
    QCOMPARE(int{m_site->model.getSynchState()}, from);
    taken();
    m_site->model.sl_reset();
    const QStringList lock =
        from == BookmarkModel::SynchPending ? QStringList() : QStringList{QStringLiteral("state 4")};
    QCOMPARE(taken(),
             lock + QStringList({"begin reset", "end reset", "header changed", "state 1", "header changed"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), from == BookmarkModel::SynchExternalChange ? textsOfTwo : QStringList());
}

void BookmarkModelTest::resettingWithoutARecordEndsWithoutOne()
{
    m_site->model.sl_reset();
    QCOMPARE(taken(), QStringList({"state 4", "begin reset", "state 0", "end reset"}) + inOrder);
}

void BookmarkModelTest::resettingAReadOnlyModelKeepsItLocked()
{
    m_site.emplace(true);
    m_site->show(twoBookmarks);
    m_site->model.sl_reset();
    QCOMPARE(taken(), QStringList({"begin reset", "end reset", "header changed"}) + inOrder);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchPending);
}

void BookmarkModelTest::aTimerThatComesTooLateDoesNothing()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(11, "mine"));
    m_site->model.sl_synchronize();
    m_site->model.sl_reset();
    m_site->edit(0, bookmarkAt(12, "mine"));
    m_site->timer.advance(2s);
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchLocalChange);
}

// Timers are not taken back, so one of an earlier list can end the lock of a later one before its time.
void BookmarkModelTest::aTimerOpensALaterLockToo()
{
    m_site->show(twoBookmarks);
    m_site->edit(0, bookmarkAt(11, "mine"));
    m_site->model.sl_synchronize();
    m_site->timer.advance(1500ms);
    m_site->model.sl_reset();
    m_site->edit(0, bookmarkAt(12, "mine"));
    m_site->model.sl_synchronize();
    m_site->timer.advance(500ms);
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchInSync);
    taken();
    m_site->timer.advance(1500ms);
    QCOMPARE(taken(), QStringList());
}

void BookmarkModelTest::theRealTimerUnlocksTheModel()
{
    BookmarkModel model(false);
    m_site->store(twoBookmarks);
    QElapsedTimer passed;
    passed.start();
    model.setRecord("R", m_site->records.get(), true, "D");
    QCOMPARE(model.getSynchState(), BookmarkModel::SynchPending);
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    QVERIFY(passed.elapsed() >= 1900); // what Qt allows a timer of 2 s to come too early
}

void BookmarkModelTest::aModelThatIsGoneIsNotUnlocked()
{
    auto model = std::make_unique<BookmarkModel>(false);
    model->setSingleShot(m_site->timer.singleShot());
    m_site->store(twoBookmarks);
    model->setRecord("R", m_site->records.get(), true, "D");
    model.reset();
    QCOMPARE(m_site->timer.pending(), std::size_t{1});
    m_site->timer.advance(2s);
}

QTEST_MAIN(BookmarkModelTest)
#include "tst_bookmarkmodel.moc"
