#include "bookmarkmaptest.h"
#include "tracetexts.h"
#include "updatecounter.h"

#include <valuecore/valuetypes.h>
#include <zelkoguibase/bookmarks/bookmarkmodelconnector.h>

using namespace Qt::StringLiterals;
using ZelkoGUI::BookmarkModelConnector;

namespace {

const QStringList inOrder = BookmarkSignalLog::inOrder();

using Use = std::function<void(BookmarkSite&)>;

} // namespace

Q_DECLARE_METATYPE(Use)

/// Where the connector finds or makes its map, and what it writes to it.
class BookmarkModelConnectorTest : public BookmarkMapTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    // Binding

    void makesAMapThatIsNotThere();
    void emptiesAndFillsAMapThatIsThere();
    void thereIsNoMapWhereNoneCanStand_data();
    void thereIsNoMapWhereNoneCanStand();
    void turnsToAnotherMap();
    void turnsToAMapThatIsNotThere();
    void theMapGoesWithTheModel_data();
    void theMapGoesWithTheModel();
    void aMapThatIsRemovedIsLetGo();
    void theMapIsOpenWhileTheListIs_data();
    void theMapIsOpenWhileTheListIs();
    void aStateThatNobodyKnowsLocksTheMap();

    // From the model to the map

    void aTextKeepsItsKey();
    void severalRowsAreWrittenTogether();
    void aNewRowGetsANewKey();
    void aRowThatGoesLeavesTheOtherKeys();
    void aResetNumbersTheKeys_data();
    void aResetNumbersTheKeys();
    void onlyDifferencesOfAResetAreWritten();
    void whatIsSentMakesTheSameMap();
};

void BookmarkModelConnectorTest::makesAMapThatIsNotThere()
{
    m_site->show(twoBookmarks);
    const BookmarkModelConnector connector(path(), &m_site->model);
    QCOMPARE(connector.path(), path());
    QCOMPARE(connector.parent(), &m_site->model);
    const auto* const map = mapAt(path());
    QVERIFY(map);
    QCOMPARE(map->GetName(), u"Bookmarks"_s);
    QCOMPARE(map->GetState(), TValueState::Open);
    QCOMPARE(itemTexts(*map), numbered(textsOfTwo));
}

void BookmarkModelConnectorTest::emptiesAndFillsAMapThatIsThere()
{
    m_map = Tree::Instance()->Emplace(folder(), std::make_unique<BookmarkItemMap>(u"Bookmarks"_s, TValueState::Open));
    set(7, bookmarkAt(1, "old"));
    set(1, bookmarkAt(2, "old"));
    UpdateCounter observer;
    m_map->AddObserver(&observer);
    m_site->show(twoBookmarks);
    countAnew();
    const BookmarkModelConnector connector(path(), &m_site->model);
    QCOMPARE(mapAt(path()), m_map);
    QCOMPARE(items(), numbered(textsOfTwo));
    QCOMPARE(changes().constFirst(), QStringLiteral("3 %1").arg(BookmarkItemMap::InvalidKey));
    QCOMPARE(observer.take().size(), std::size_t{2});
    QCOMPARE(taken(), QStringList());
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
}

void BookmarkModelConnectorTest::thereIsNoMapWhereNoneCanStand_data()
{
    QTest::addColumn<QString>("place");
    QTest::newRow("no path") << QString();
    QTest::newRow("the root") << u"/"_s;
    QTest::newRow("a path without a name") << path() + u"/"_s;
    QTest::newRow("a node") << u"/SubSystems/north"_s;
    QTest::newRow("another value") << folder() + u"/Number"_s;
    QTest::newRow("below a value") << folder() + u"/Number/Bookmarks"_s;
}

void BookmarkModelConnectorTest::thereIsNoMapWhereNoneCanStand()
{
    QFETCH(const QString, place);
    Tree::Instance()->Emplace(folder(), std::make_unique<Value<int>>(u"Number"_s));
    m_site->show(twoBookmarks);
    BookmarkModelConnector connector(place, &m_site->model);
    QCOMPARE(connector.path(), QString());
    QVERIFY(m_site->model.removeEntry(0));
    m_site->model.appendEntry(bookmarkAt(30, "c"));
    m_site->model.sl_reset();
    connector.bind(path());
    QCOMPARE(connector.path(), path());
    QCOMPARE(itemTexts(*mapAt(path())), numbered(textsOfTwo));
}

void BookmarkModelConnectorTest::turnsToAnotherMap()
{
    connectMap(twoBookmarks);
    auto* const next =
        Tree::Instance()->Emplace(folder(), std::make_unique<BookmarkItemMap>(u"Next"_s, TValueState::Open));
    next->SetAt(9, BookmarkMapData(9, bookmarkAt(1, "old")), nullptr);
    m_site->model.createItemMap(folder() + u"/Next"_s);
    QCOMPARE(itemTexts(*next), numbered(textsOfTwo));
    m_site->model.removeEntry(0);
    QCOMPARE(itemTexts(*next), QStringList{"1: 20000000 b"});
    set(5, bookmarkAt(5, "ignored"));
    QCOMPARE(items(), QStringList({"0: 10000000 a", "1: 20000000 b", "5: 5000000 ignored"}));
    QCOMPARE(m_site->bookmarks(), QStringList{"20000000 b"});
}

void BookmarkModelConnectorTest::turnsToAMapThatIsNotThere()
{
    connectMap(twoBookmarks);
    m_site->model.removeEntry(0);
    const QString far = u"/SubSystems/south/Bookmarks/New"_s;
    m_site->model.createItemMap(far);
    const auto* const next = mapAt(far);
    QVERIFY(next);
    QCOMPARE(next->GetName(), u"New"_s);
    QCOMPARE(itemTexts(*next), QStringList{"0: 20000000 b"});
}

void BookmarkModelConnectorTest::theMapGoesWithTheModel_data()
{
    QTest::addColumn<bool>("remove");
    QTest::newRow("goes") << true;
    QTest::newRow("stays") << false;
}

void BookmarkModelConnectorTest::theMapGoesWithTheModel()
{
    QFETCH(const bool, remove);
    const TraceTexts traces;
    m_site->store(twoBookmarks);
    auto model = std::make_unique<BookmarkModel>(false);
    model->setRecord("R", m_site->records.get(), false, "D");
    auto connector = std::make_unique<BookmarkModelConnector>(path(), model.get());
    QVERIFY(connector->removesMapOnDestruction());
    connector->setRemoveMapOnDestruction(remove);
    QCOMPARE(connector->removesMapOnDestruction(), remove);
    connector.reset();
    const auto* const map = mapAt(path());
    QCOMPARE(map == nullptr, remove);
    model->removeEntry(0);
    if (!remove) {
        QCOMPARE(itemTexts(*map), numbered(textsOfTwo));
        QCOMPARE(map->ObserverCount(), std::size_t{0});
    }
    model->createItemMap(path());
    QVERIFY(mapAt(path()));
    model.reset();
    QVERIFY(!Tree::Instance()->GetItem(path()));
    QCOMPARE(traces.withSources(), QStringList());
}

void BookmarkModelConnectorTest::aMapThatIsRemovedIsLetGo()
{
    const TraceTexts traces;
    m_site->show(twoBookmarks);
    BookmarkModelConnector connector(path(), &m_site->model);
    QVERIFY(Tree::Instance()->Remove(path()));
    QCOMPARE(connector.path(), QString());
    QVERIFY(traces.contain(u"BookmarkModelConnector::Update: unexpected state change"_s));
    m_site->model.removeEntry(0);
    m_site->model.sl_reset();
    QCOMPARE(m_site->bookmarks(), textsOfTwo);
    connector.bind(path());
    QCOMPARE(itemTexts(*mapAt(path())), numbered(textsOfTwo));
}

void BookmarkModelConnectorTest::theMapIsOpenWhileTheListIs_data()
{
    QTest::addColumn<Use>("reach");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("isOpen");
    const auto row = [](const char* name, BookmarkModel::enSynchState state, bool isOpen, Use reach) {
        QTest::newRow(name) << reach << int{state} << isOpen;
    };
    row("in sync", BookmarkModel::SynchInSync, true, [](BookmarkSite&) {});
    row("changed here", BookmarkModel::SynchLocalChange, true, [](BookmarkSite& site) { site.model.removeEntry(0); });
    row("changed elsewhere", BookmarkModel::SynchExternalChange, true,
        [](BookmarkSite& site) { site.store(Entries()); });
    row("no record", BookmarkModel::SynchNoRecord, false, [](BookmarkSite& site) { site.model.resetRecord(); });
    row("sent", BookmarkModel::SynchPending, false, [](BookmarkSite& site) {
        site.model.removeEntry(0);
        site.model.sl_synchronize();
    });
}

void BookmarkModelConnectorTest::theMapIsOpenWhileTheListIs()
{
    QFETCH(const Use, reach);
    QFETCH(const int, state);
    QFETCH(const bool, isOpen);
    const TraceTexts traces;
    connectMap(twoBookmarks);
    reach(*m_site);
    QCOMPARE(int{m_site->model.getSynchState()}, state);
    QCOMPARE(m_map->GetState(), isOpen ? TValueState::Open : TValueState::Locked);
    m_site->model.createItemMap(folder() + u"/Other"_s);
    QCOMPARE(mapAt(folder() + u"/Other"_s)->GetState(), m_map->GetState());
    QCOMPARE(traces.withSources(), QStringList());
}

void BookmarkModelConnectorTest::aStateThatNobodyKnowsLocksTheMap()
{
    connectMap(twoBookmarks);
    Q_EMIT m_site->model.si_synchStateChanged(static_cast<BookmarkModel::enSynchState>(5));
    QCOMPARE(m_map->GetState(), TValueState::Locked);
    Q_EMIT m_site->model.si_synchStateChanged(BookmarkModel::SynchInSync);
    QCOMPARE(m_map->GetState(), TValueState::Open);
}

void BookmarkModelConnectorTest::aTextKeepsItsKey()
{
    connectMap(twoBookmarks);
    UpdateCounter observer;
    m_map->AddObserver(&observer);
    m_site->model.setData(m_site->model.index(1, 1), "new");
    QCOMPARE(items(), QStringList({"0: 10000000 a", "1: 20000000 new"}));
    QCOMPARE(changes(), QStringList{"1 1"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapSetAt});
    QCOMPARE(observer.take(), std::vector{TChangeCode::ValueChanged});
    QCOMPARE(taken(), QStringList({"state 2", "changed 1 columns 1-1"}) + inOrder);
    m_site->model.setData(m_site->model.index(1, 1), "new");
    QCOMPARE(changes(), QStringList());
    m_map->DeleteObserver(&observer);
}

void BookmarkModelConnectorTest::severalRowsAreWrittenTogether()
{
    connectMap(twoBookmarks);
    m_map->DeleteObservers(); // nobody tells the connector of the clear
    m_map->Clear(nullptr);
    countAnew();
    Q_EMIT m_site->model.dataChanged(m_site->model.index(0, 0), m_site->model.index(1, 1));
    QCOMPARE(items(), numbered(textsOfTwo));
    QCOMPARE(changes(), QStringList({"1 0", "1 1"}));
}

void BookmarkModelConnectorTest::aNewRowGetsANewKey()
{
    connectMap(twoBookmarks);
    m_site->model.sl_verticalHeaderClicked(2);
    QCOMPARE(items(), QStringList({"0: 10000000 a", "1: 20000000 b", "2: 0 "}));
    QCOMPARE(changes(), QStringList{"1 2"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapSetAt});
    QCOMPARE(taken(), QStringList({"begin insert 2-2", "end insert 2-2", "state 2", "normalized 0", "out of range 0"}));
    m_site->model.changeEntry(2, bookmarkAt(30, "c"));
    QCOMPARE(changes(), QStringList{"1 2"});
    QCOMPARE(items().constLast(), u"2: 30000000 c"_s);
}

void BookmarkModelConnectorTest::aRowThatGoesLeavesTheOtherKeys()
{
    connectMap({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c"), bookmarkAt(4, "d")});
    m_site->model.removeEntry(1);
    QCOMPARE(changes(), QStringList{"2 1"});
    QCOMPARE(commands(), std::vector<int>{CommandIdMapEraseAt});
    QCOMPARE(items(), QStringList({"0: 1000000 a", "2: 3000000 c", "3: 4000000 d"}));
    m_site->model.changeEntry(1, bookmarkAt(3, "new"));
    QCOMPARE(changes(), QStringList{"1 2"});
    set(3, bookmarkAt(4, "newer"));
    QCOMPARE(m_site->bookmarks(), QStringList({"1000000 a", "3000000 new", "4000000 newer"}));
    m_site->model.appendEntry(bookmarkAt(5, "e"));
    QVERIFY(areEqual());
}

void BookmarkModelConnectorTest::aResetNumbersTheKeys_data()
{
    QTest::addColumn<Use>("reset");
    const auto row = [](const char* name, Use use) { QTest::newRow(name) << use; };
    row("the record's list", [](BookmarkSite& site) { site.model.sl_reset(); });
    row("normalizing", [](BookmarkSite& site) {
        site.model.appendEntry(bookmarkAt(1, "c"));
        site.model.sl_normalize();
    });
    row("the same list", [](BookmarkSite& site) { site.model.setEntries(site.model.entries()); });
    row("another layout", [](BookmarkSite& site) {
        Q_EMIT site.model.layoutAboutToBeChanged();
        Q_EMIT site.model.layoutChanged();
    });
    row("another record", [](BookmarkSite& site) {
        site.store(site.record(twoBookmarks, "S"));
        site.model.setRecord("S", site.records.get(), false, "D");
    });
}

void BookmarkModelConnectorTest::aResetNumbersTheKeys()
{
    QFETCH(const Use, reset);
    connectMap({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c")});
    m_site->model.removeEntry(0);
    QCOMPARE(items(), QStringList({"1: 2000000 b", "2: 3000000 c"}));
    reset(*m_site);
    QCOMPARE(items(), numbered(m_site->bookmarks()));
    set(1, bookmarkAt(50, "new"));
    QCOMPARE(m_site->bookmarks().value(1), u"50000000 new"_s);
}

void BookmarkModelConnectorTest::onlyDifferencesOfAResetAreWritten()
{
    connectMap({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c")});
    UpdateCounter observer;
    m_map->AddObserver(&observer);
    m_site->model.setEntries({bookmarkAt(1, "a"), bookmarkAt(2, "new")});
    QCOMPARE(changes(), QStringList({"1 1", "2 2"}));
    QCOMPARE(commands(), std::vector<int>({CommandIdMapSetAt, CommandIdMapEraseAt}));
    QCOMPARE(observer.take(), std::vector{TChangeCode::ValueChanged});
    QCOMPARE(taken(), QStringList({"begin reset", "state 2", "end reset"}) + inOrder);
    m_map->DeleteObserver(&observer);
}

void BookmarkModelConnectorTest::whatIsSentMakesTheSameMap()
{
    connectMap(twoBookmarks);
    std::string state;
    m_map->AddObjectStateStringForTransmission(state, 0);
    BookmarkItemMap copy;
    QVERIFY(copy.SetCommandString(state, nullptr));
    m_site->model.appendEntry(bookmarkAt(5, "c"));
    m_site->model.removeEntry(0);
    m_site->model.setData(m_site->model.index(0, 1), "new");
    m_site->model.sl_normalize();
    m_site->model.sl_synchronize();
    QVERIFY(copy.SetCommandString(m_sent->stream(), nullptr));
    QVERIFY(copy.data() == m_map->data());
    QCOMPARE(copy.GetState(), TValueState::Locked);
    QVERIFY(areEqual(m_site->model, copy));
}

QTEST_MAIN(BookmarkModelConnectorTest)
#include "tst_bookmarkmodelconnector.moc"
