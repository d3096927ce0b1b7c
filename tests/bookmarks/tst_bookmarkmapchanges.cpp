#include "bookmarkmaptest.h"
#include "changelogger.h"
#include "tracemask.h"
#include "tracetexts.h"
#include "updatecounter.h"

#include <QScopeGuard>

#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using zelko::bookmarkmap::BookmarkItemMap;

// Any instance of the template may write to a log; this one writes what no map would.
template <>
class ValueItemMapBase<void, void, void>
{
public:
    static void append(BookmarkItemMap& map, char type, unsigned int key)
    {
        const_cast<BookmarkItemMap::ChangeLog&>(map.GetChangeLog()).append(type, key);
    }
};

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();
const QString revertTrace = u"BookmarkModelConnector::Update: ItemMap changes not accepted by model -> revert"_s;

using Use = std::function<void(BookmarkSite&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

/// What the connector takes from its map, and what it takes back.
class BookmarkMapChangesTest : public BookmarkMapTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    // From the map to the model

    void aNewItemIsARowAtTheEnd();
    void aChangedItemIsAChangedRow();
    void anErasedItemIsARowLess();
    void aClearedMapIsAnEmptyList();
    void aChangeIsTakenWhereTheRecordHasAnotherList();
    void foldedChangesAreTakenOneByOne();
    void anItemThatCameAndWentIsNoRow();
    void whatIsLostInTheLogIsReplacedWhole();
    void unknownChangesArePassedOver();
    void otherNotificationsChangeNothing();
    void aStateThatOthersSetIsTraced();

    // What the model refuses

    void whatIsRefusedIsTakenBack_data();
    void whatIsRefusedIsTakenBack();
    void aRefusalIsTracedIfWanted_data();
    void aRefusalIsTracedIfWanted();
    void muchThatIsRefusedIsTakenBackAtOnce();
    void aResetBeforehandTakesBackAtOnce();
    void whoeverChangesTheListMeanwhileIsFollowed_data();
    void whoeverChangesTheListMeanwhileIsFollowed();

    void noChangeMeetsAnotherRow();
    void whoeverHearsFirstIsFollowed();
    void whoeverTakesTheMapAwayIsFollowed();

    void bothSidesStayEqual();
    void longListsStayEqual();

private:
    /// Leaves the model, which shows two bookmarks, locked.
    void lock()
    {
        m_site->edit(1, bookmarkAt(20, "b2"));
        m_site->model.sl_synchronize();
        countAnew();
    }

    /// One change, on one of the two sides.
    void changeAtRandom(std::mt19937& random, const Entry& entry)
    {
        BookmarkModel& model = m_site->model;
        const int count = model.entryCount();
        const auto any = static_cast<int>(random() % static_cast<unsigned int>(std::max(count, 1)));
        const unsigned int newKey = 1'000'000 + static_cast<unsigned int>(random() % 1'000'000);
        const unsigned int key = count > 0 ? m_map->IndexVector()[static_cast<std::size_t>(any)] : newKey;
        switch (count > 0 ? random() % 6 : 0) {
        case 0:
            model.appendEntry(entry);
            break;
        case 1:
            model.changeEntry(any, entry);
            break;
        case 2:
            model.removeEntry(any);
            break;
        case 3:
            set(newKey, entry);
            break;
        case 4:
            set(key, entry);
            break;
        default:
            m_map->EraseAt(key, nullptr);
        }
    }
};

void BookmarkMapChangesTest::aNewItemIsARowAtTheEnd()
{
    connectMap(twoBookmarks);
    set(7, bookmarkAt(30, "c"));
    QCOMPARE(m_site->bookmarks(), textsOfTwo + QStringList{"30000000 c"});
    QCOMPARE(taken(), QStringList({"begin insert 2-2", "end insert 2-2", "state 2"}) + inOrder);
    QCOMPARE(changes(), QStringList{"1 7"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapSetAt});
    m_site->model.changeEntry(2, bookmarkAt(30, "new"));
    QCOMPARE(items().constLast(), u"7: 30000000 new"_s);
    QCOMPARE(changes(), QStringList{"1 7"});
}

void BookmarkMapChangesTest::aChangedItemIsAChangedRow()
{
    connectMap(twoBookmarks);
    set(0, bookmarkAt(15, "new"));
    QCOMPARE(m_site->bookmarks(), QStringList({"15000000 new", "20000000 b"}));
    QCOMPARE(taken(), QStringList({"state 2", "changed 0"}) + inOrder);
    QCOMPARE(changes(), QStringList{"1 0"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapSetAt});
}

void BookmarkMapChangesTest::anErasedItemIsARowLess()
{
    connectMap({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c")});
    m_map->EraseAt(1, nullptr);
    QCOMPARE(m_site->bookmarks(), QStringList({"1000000 a", "3000000 c"}));
    QCOMPARE(taken(), QStringList({"begin remove 1-1", "end remove 1-1", "state 2"}) + inOrder);
    QCOMPARE(changes(), QStringList{"2 1"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapEraseAt});
    set(2, bookmarkAt(3, "new"));
    QCOMPARE(m_site->bookmarks(), QStringList({"1000000 a", "3000000 new"}));
}

void BookmarkMapChangesTest::aClearedMapIsAnEmptyList()
{
    connectMap(twoBookmarks);
    m_map->Clear(nullptr);
    QCOMPARE(m_site->model.entryCount(), 0);
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset"}) + inOrder);
    QCOMPARE(changes().size(), 1);
    QCOMPARE(commands(), std::vector<int>{CommandIdMapClear});
    set(1, bookmarkAt(5, "new"));
    QCOMPARE(m_site->bookmarks(), QStringList{"5000000 new"});
}

void BookmarkMapChangesTest::aChangeIsTakenWhereTheRecordHasAnotherList()
{
    connectMap(twoBookmarks);
    m_site->store(Entries());
    QCOMPARE(m_site->model.getSynchState(), BookmarkModel::SynchExternalChange);
    taken();
    set(7, bookmarkAt(30, "c"));
    QCOMPARE(taken(), QStringList({"begin insert 2-2", "end insert 2-2", "state 2"}) + inOrder);
    QCOMPARE(m_site->bookmarks(), textsOfTwo + QStringList{"30000000 c"});
}

void BookmarkMapChangesTest::foldedChangesAreTakenOneByOne()
{
    connectMap(twoBookmarks);
    m_map->StartTransaction(nullptr);
    set(5, bookmarkAt(30, "c"));
    m_map->EraseAt(0, nullptr);
    set(1, bookmarkAt(21, "b"));
    set(5, bookmarkAt(31, "c"));
    QCOMPARE(taken(), QStringList());
    m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_site->bookmarks(), QStringList({"21000000 b", "31000000 c"}));
    QCOMPARE(taken(), QStringList({"begin insert 2-2", "end insert 2-2", "state 2"}) + inOrder +
                          QStringList({"begin remove 0-0", "end remove 0-0"}) + inOrder + QStringList{"changed 0"} +
                          inOrder + QStringList{"changed 1"} + inOrder);
    QCOMPARE(changes(), QStringList({"1 5", "2 0", "1 1", "1 5"}));
}

void BookmarkMapChangesTest::anItemThatCameAndWentIsNoRow()
{
    connectMap(twoBookmarks);
    m_map->StartTransaction(nullptr);
    set(5, bookmarkAt(30, "c"));
    m_map->EraseAt(5, nullptr);
    m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkMapChangesTest::whatIsLostInTheLogIsReplacedWhole()
{
    connectMap(twoBookmarks);
    m_map->SetChangeLogSize(2);
    m_map->StartTransaction(nullptr);
    for (unsigned int key = 10; key < 15; ++key) {
        set(key, bookmarkAt(static_cast<int>(key), "new"));
    }
    m_map->EraseAt(0, nullptr);
    m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QStringList answers{"begin reset", "state 2", "end reset"};
    answers.append(m_site->model.normalized() ? u"normalized 1"_s : u"normalized 0"_s);
    QCOMPARE(taken(), answers + QStringList{"out of range 0"});
    QVERIFY(areEqual());
    countAnew();
    for (int row = 0; row < m_site->model.entryCount(); ++row) {
        m_site->model.setData(m_site->model.index(row, 1), QString::number(row));
    }
    m_map->EraseAt(12, nullptr);
    set(14, bookmarkAt(14, "newer"));
    QVERIFY(areEqual());
    QCOMPARE(commands().size(), std::size_t{8});
    QCOMPARE(m_site->model.entryCount(), 5);
}

void BookmarkMapChangesTest::unknownChangesArePassedOver()
{
    connectMap(twoBookmarks);
    const TraceTexts traces;
    ValueItemMapBase<void, void, void>::append(*m_map, 9, 0);
    set(5, bookmarkAt(30, "c"));
    QCOMPARE(traces.withSources().size(), 1);
    QVERIFY(traces.contain(u"BookmarkModelConnector::Update() -> unhandled changeID 9"_s));
    QCOMPARE(m_site->bookmarks(), textsOfTwo + QStringList{"30000000 c"});
    const TraceMask mask(64);
    ValueItemMapBase<void, void, void>::append(*m_map, 9, 0);
    set(5, bookmarkAt(31, "c"));
    QCOMPARE(traces.withSources().size(), 1);
}

void BookmarkMapChangesTest::otherNotificationsChangeNothing()
{
    connectMap(twoBookmarks);
    const TraceTexts traces;
    m_map->NotifyObservers(TChangeCode::ValueChanged, nullptr);
    ValueItemMapBase<void, void, void>::append(*m_map, valueitemmap::ChangeSet, 0);
    m_map->NotifyObservers(TChangeCode::ValueRefreshed, nullptr);
    m_map->NotifyObservers(TChangeCode::ChildRemoved, nullptr);
    QCOMPARE(taken(), QStringList());
    m_map->NotifyObservers(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(taken(), QStringList{"changed 0"} + inOrder);
    QCOMPARE(traces.withSources(), QStringList());
}

void BookmarkMapChangesTest::aStateThatOthersSetIsTraced()
{
    connectMap(twoBookmarks);
    const TraceTexts traces;
    m_map->SetState(TValueState::Locked, nullptr);
    QCOMPARE(traces.withSources().size(), 1);
    QVERIFY(traces.contain(u"BookmarkModelConnector::Update: unexpected state change"_s));
    QCOMPARE(taken(), QStringList());
    const TraceMask mask(64);
    m_map->SetState(TValueState::Open, nullptr);
    QCOMPARE(traces.withSources().size(), 1);
}

void BookmarkMapChangesTest::whatIsRefusedIsTakenBack_data()
{
    using Change = std::function<void(BookmarkItemMap&)>;
    QTest::addColumn<Use>("change");
    const auto row = [](const char* name, const Change& change) {
        QTest::newRow(name) << Use([change](BookmarkSite&) { change(*mapAt(path())); });
    };
    const auto add = [](BookmarkItemMap& map) { map.AddEntry(bookmarkAt(30, "c"), nullptr); };
    const auto change = [](BookmarkItemMap& map) { map.SetAt(0, BookmarkMapData(0, bookmarkAt(11, "new")), nullptr); };
    const auto erase = [](BookmarkItemMap& map) { map.EraseAt(0, nullptr); };
    const auto clear = [](BookmarkItemMap& map) { map.Clear(nullptr); };
    row("a new item", add);
    row("a changed item", change);
    row("an erased item", erase);
    row("a clear", clear);
    row("a new item that changes", [](BookmarkItemMap& map) {
        map.SetAt(9, BookmarkMapData(9, bookmarkAt(30, "c")), nullptr);
        map.SetAt(9, BookmarkMapData(9, bookmarkAt(31, "c")), nullptr);
        map.EraseAt(9, nullptr);
    });
    row("an item that goes and comes", [=](BookmarkItemMap& map) {
        erase(map);
        change(map);
    });
    row("a clear and a new item", [=](BookmarkItemMap& map) {
        clear(map);
        add(map);
    });
    row("more than the log holds", [=](BookmarkItemMap& map) {
        map.SetChangeLogSize(1);
        map.StartTransaction(nullptr);
        erase(map);
        add(map);
        map.EndTransaction(TChangeCode::ValueChanged, nullptr);
    });
}

// With one bookmark, with several, and with none: a row that is refused has the number -1, which is also that of the
// last row of an empty list.
void BookmarkMapChangesTest::whatIsRefusedIsTakenBack()
{
    QFETCH(const Use, change);
    const TraceTexts traces;
    for (const Entries& bookmarks : {Entries(), Entries{bookmarkAt(1, "a")}, twoBookmarks}) {
        m_site.emplace(true);
        connectMap(bookmarks);
        change(*m_site);
        QCOMPARE(m_site->bookmarks(), bookmarkTexts(bookmarks));
        QCoreApplication::processEvents();
        QCOMPARE(items(), numbered(bookmarkTexts(bookmarks)));
        QCOMPARE(m_site->bookmarks(), bookmarkTexts(bookmarks));
        QCOMPARE(taken(), QStringList());
        changes();
        QCoreApplication::processEvents();
        QCOMPARE(changes(), QStringList());
    }
}

void BookmarkMapChangesTest::aRefusalIsTracedIfWanted_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("traced");
    QTest::newRow("errors") << 32U << true;
    QTest::newRow("warnings alone") << 64U << false;
}

void BookmarkMapChangesTest::aRefusalIsTracedIfWanted()
{
    QFETCH(const unsigned int, mask);
    QFETCH(const bool, traced);
    connectMap(twoBookmarks);
    lock();
    const TraceMask traceMask(mask);
    const TraceTexts traces;
    set(5, bookmarkAt(30, "c"));
    QCOMPARE(items().size(), 3);
    QCOMPARE(traces.withSources().size(), traced ? 1 : 0);
    QCOMPARE(traces.contain(revertTrace), traced);
    QCoreApplication::processEvents();
    QCOMPARE(items(), QStringList({"0: 10000000 a", "1: 20000000 b2"}));
    QCOMPARE(changes(), QStringList({"1 5", "2 5"}));
}

// With one notification for all of it, and again the next time.
void BookmarkMapChangesTest::muchThatIsRefusedIsTakenBackAtOnce()
{
    const TraceTexts traces;
    connectMap(twoBookmarks);
    lock();
    UpdateCounter observer;
    m_map->AddObserver(&observer);
    const auto leave = qScopeGuard([&] { m_map->DeleteObserver(&observer); });
    for (unsigned int round = 0; round < 2; ++round) {
        for (unsigned int key = 10; key < 60; ++key) {
            set(key, bookmarkAt(30, "c"));
        }
        QCOMPARE(observer.take().size(), std::size_t{50});
        QCoreApplication::processEvents();
        QCOMPARE(observer.take(), std::vector{TChangeCode::ValueChanged});
        QCOMPARE(items(), QStringList({"0: 10000000 a", "1: 20000000 b2"}));
    }
}

// The recorder's answer comes before the next turn of the event loop.
void BookmarkMapChangesTest::aResetBeforehandTakesBackAtOnce()
{
    const TraceTexts traces;
    connectMap(twoBookmarks);
    lock();
    m_map->EraseAt(0, nullptr);
    m_site->store({bookmarkAt(1, "answer")});
    QCOMPARE(items(), QStringList{"0: 1000000 answer"});
    m_site->timer.advance(2s);
    m_site->model.appendEntry(bookmarkAt(2, "more"));
    countAnew();
    QCoreApplication::processEvents();
    QVERIFY(areEqual());
    QCOMPARE(changes(), QStringList());
}

void BookmarkMapChangesTest::whoeverChangesTheListMeanwhileIsFollowed_data()
{
    QTest::addColumn<Use>("further");
    const auto row = [](const char* name, Use use) { QTest::newRow(name) << use; };
    row("puts it into order", [](BookmarkSite& site) { site.model.sl_normalize(); });
    row("changes a row", [](BookmarkSite& site) { site.model.changeEntry(1, bookmarkAt(2, "further")); });
    row("adds a row", [](BookmarkSite& site) { site.model.appendEntry(bookmarkAt(80, "further")); });
    row("removes a row", [](BookmarkSite& site) { site.model.removeEntry(0); });
    row("empties it", [](BookmarkSite& site) { site.model.clear(); });
}

// As a window does that puts a list into order by itself. What it hears of is a change that the map has made.
void BookmarkMapChangesTest::whoeverChangesTheListMeanwhileIsFollowed()
{
    QFETCH(const Use, further);
    const TraceTexts traces;
    connectMap(twoBookmarks);
    bool isDone = false;
    connect(&m_site->model, &BookmarkModel::si_normalizedChanged, &m_site->model, [&] {
        if (!std::exchange(isDone, true)) {
            further(*m_site);
        }
    });
    set(5, bookmarkAt(5, "c"));
    QCoreApplication::processEvents();
    QVERIFY(isDone);
    QVERIFY(areEqual());
    m_site->model.appendEntry(bookmarkAt(60, "at last"));
    m_site->model.changeEntry(0, bookmarkAt(1, "first"));
    QVERIFY(areEqual());
}

// The second change is of a row that stands elsewhere by then.
void BookmarkMapChangesTest::noChangeMeetsAnotherRow()
{
    const TraceTexts traces;
    connectMap({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c")});
    bool isDone = false;
    connect(&m_site->model, &BookmarkModel::si_normalizedChanged, &m_site->model, [&] {
        if (!std::exchange(isDone, true)) {
            m_site->model.removeEntry(0);
        }
    });
    m_map->StartTransaction(nullptr);
    set(0, bookmarkAt(1, "new"));
    set(1, bookmarkAt(2, "new"));
    m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(m_site->bookmarks(), QStringList({"2000000 b", "3000000 c"}));
    QCOMPARE(items(), numbered(m_site->bookmarks()));
}

// The signals reach the connector in another order than the rows have changed.
void BookmarkMapChangesTest::whoeverHearsFirstIsFollowed()
{
    connect(&m_site->model, &BookmarkModel::rowsInserted, &m_site->model,
            [this](const QModelIndex&, int first) { m_site->model.removeEntry(first); });
    connectMap(twoBookmarks);
    m_site->model.appendEntry(bookmarkAt(30, "c"));
    QCoreApplication::processEvents();
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    QCOMPARE(items(), numbered(textsOfTwo));
}

void BookmarkMapChangesTest::whoeverTakesTheMapAwayIsFollowed()
{
    connectMap(twoBookmarks);
    m_map->DeleteObservers(); // nobody tells the connector of the clear
    m_map->Clear(nullptr);
    QStringList log;
    ChangeLogger observer(u"map"_s, log);
    observer.react([](Observable*, TChangeCode code) {
        if (code == TChangeCode::ValueChanged) {
            Tree::Instance()->Remove(path());
        }
    });
    m_map->AddObserver(&observer);
    Q_EMIT m_site->model.dataChanged(m_site->model.index(0, 0), m_site->model.index(1, 1));
    QCOMPARE(log, QStringList({"map 3", "map 2"}));
    QCOMPARE(m_site->model.appendEntry(bookmarkAt(30, "c")), 2);
    QVERIFY(!mapAt(path()));
}

// Every change costs one entry in the log and one command, on whichever side it was made.
void BookmarkMapChangesTest::bothSidesStayEqual()
{
    connectMap(twoBookmarks);
    std::mt19937 random(1);
    for (int step = 0; step < 2000; ++step) {
        changeAtRandom(random, bookmarkAt(static_cast<int>(random() % 90), QString::number(step)));
        QCOMPARE(changes().size(), 1);
        QCOMPARE(commands().size(), std::size_t{1});
        QVERIFY(areEqual());
        if (step % 100 == 99) {
            m_site->model.sl_normalize();
            QVERIFY(areEqual());
        }
        countAnew();
    }
}

// In a model of its own: what checks the other one walks all rows at each signal.
void BookmarkMapChangesTest::longListsStayEqual()
{
    Entries many;
    for (int i = 0; i < 10'000; ++i) {
        many.append(bookmarkAt(i, QString::number(i)));
    }
    BookmarkModel model(false);
    m_site->store(many);
    model.setRecord("R", m_site->records.get(), false, "D");
    model.createItemMap(path());
    auto& map = *mapAt(path());
    QCOMPARE(map.Size(), std::uint64_t{10'000});
    for (unsigned int key = 0; key < 10'000; key += 2) {
        map.EraseAt(key, nullptr);
    }
    QCOMPARE(model.entryCount(), 5000);
    for (unsigned int key = 1; key < 10'000; key += 2) {
        map.SetAt(key, BookmarkMapData(key, bookmarkAt(static_cast<int>(key), "new")), nullptr);
    }
    for (int row = 0; row < model.entryCount(); ++row) {
        model.removeEntry(row);
        model.appendEntry(bookmarkAt(row, "newer"));
    }
    QCOMPARE(model.entryCount(), 5000);
    QVERIFY(areEqual(model, map));
    QVERIFY(model.clear());
    QCOMPARE(map.Size(), std::uint64_t{0});
}

QTEST_MAIN(BookmarkMapChangesTest)
#include "tst_bookmarkmapchanges.moc"
