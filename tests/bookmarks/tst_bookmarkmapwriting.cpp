#include "bookmarkmaptest.h"
#include "changelogger.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Tells of several rows at once, which the model by itself does not do.
class RowsModel final : public ZelkoGUI::BookmarkModel
{
public:
    RowsModel()
        : BookmarkModel(false)
    {}

    /// As a sorted list would tell. The bookmarks stay where they are.
    void move(int first, int last, int destination)
    {
        beginMoveRows({}, first, last, {}, destination);
        endMoveRows();
    }

    void insert(int first, int rows)
    {
        Entries all = entries();
        all.insert(first, rows, bookmarkAt(0, QStringLiteral("new")));
        setSilently(all);
        beginInsertRows({}, first, first + rows - 1);
        endInsertRows();
    }

    void remove(int first, int rows)
    {
        Entries all = entries();
        all.remove(first, rows);
        setSilently(all);
        beginRemoveRows({}, first, first + rows - 1);
        endRemoveRows();
    }

    /// Tells nobody.
    void setSilently(const Entries& all)
    {
        const QSignalBlocker blocker(this);
        setEntries(all);
    }
};

using Use = std::function<void(BookmarkSite&)>;
using MapUse = std::function<void(zelko::bookmarkmap::BookmarkItemMap&)>;
using RowsUse = std::function<void(RowsModel&)>;

/// Does something to a map in answer to changes of it, so often.
struct Meddler
{
    Meddler(zelko::bookmarkmap::BookmarkItemMap& theMap, MapUse use, int times = 1)
        : map(theMap)
    {
        observer.react([this, use = std::move(use), left = times](Observable*, TChangeCode code) mutable {
            if (code == TChangeCode::ValueChanged && left > 0) {
                --left;
                use(map);
            }
        });
        map.AddObserver(&observer);
    }
    ~Meddler() { map.DeleteObserver(&observer); }
    Meddler(const Meddler&) = delete;
    Meddler& operator=(const Meddler&) = delete;

    zelko::bookmarkmap::BookmarkItemMap& map;
    QStringList log;
    ChangeLogger observer{u"map"_s, log};
};

/// Writes all texts in capitals.
void capitalize(zelko::bookmarkmap::BookmarkItemMap& map)
{
    for (const unsigned int key : map.IndexVector()) {
        auto entry = map.At(key).toEntry();
        entry.SetBookmark(entry.GetBookmark().toUpper());
        map.SetAt(key, zelko::bookmarkmap::BookmarkMapData(key, entry), nullptr);
    }
}

} // namespace

Q_DECLARE_METATYPE(Use)
Q_DECLARE_METATYPE(MapUse)
Q_DECLARE_METATYPE(RowsUse)

/// What the connector writes of several rows at once, and what comes of others who hear of it while it writes.
class BookmarkMapWritingTest : public BookmarkMapTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_site.emplace(); }
    void cleanup() { m_site.reset(); }

    void rowsThatMoveKeepTheirKeys();
    void severalRowsComeAndGo_data();
    void severalRowsComeAndGo();

    // Others who hear of what is written

    void whoeverChangesTheMapMeanwhileIsAnswered_data();
    void whoeverChangesTheMapMeanwhileIsAnswered();
    void whoeverInsistsOnAChangeIsFollowed();
    void whoeverInsistsOnAChangeOfALockedListIsNotFought();
    void rowsThatGoWhileOthersAreWrittenAreNotRead_data();
    void rowsThatGoWhileOthersAreWrittenAreNotRead();

private:
    /// Has a model of its own show such bookmarks at seconds 0, 1 and so on, and be kept equal to the map.
    void connectRows(RowsModel& model, int rows)
    {
        Entries bookmarks;
        for (int second = 0; second < rows; ++second) {
            bookmarks.append(bookmarkAt(second, QString()));
        }
        m_site->store(bookmarks);
        model.setRecord("R", m_site->records.get(), false, "D");
        model.createItemMap(path());
        m_map = mapAt(path());
        countAnew();
    }
};

void BookmarkMapWritingTest::rowsThatMoveKeepTheirKeys()
{
    RowsModel model;
    connectRows(model, 3);
    model.move(0, 1, 3);
    QCOMPARE(changes(), QStringList());
    model.changeEntry(0, bookmarkAt(9, "row 0")); // which was row 2
    QCOMPARE(changes(), QStringList{"1 2"});
    set(0, bookmarkAt(9, "key 0"));
    QCOMPARE(bookmarkTexts(model.entries()), QStringList({"9000000 row 0", "9000000 key 0", "2000000 "}));
    m_map->SetTransmitter(nullptr);
}

void BookmarkMapWritingTest::severalRowsComeAndGo_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("rows"); // that come, or go if it is negative
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QList<int>>("keys");
    const QStringList sets{u"1 4"_s, u"1 5"_s};
    QTest::newRow("come in front") << 0 << 2 << sets << QList<int>{4, 5, 0, 1, 2, 3};
    QTest::newRow("come in the middle") << 1 << 2 << sets << QList<int>{0, 4, 5, 1, 2, 3};
    QTest::newRow("come behind the last") << 4 << 2 << sets << QList<int>{0, 1, 2, 3, 4, 5};
    QTest::newRow("one comes in the middle") << 2 << 1 << QStringList{u"1 4"_s} << QList<int>{0, 1, 4, 2, 3};
    QTest::newRow("go in front") << 0 << -2 << QStringList{u"2 0"_s, u"2 1"_s} << QList<int>{2, 3};
    QTest::newRow("go in the middle") << 1 << -2 << QStringList{u"2 1"_s, u"2 2"_s} << QList<int>{0, 3};
    QTest::newRow("go at the end") << 2 << -2 << QStringList{u"2 2"_s, u"2 3"_s} << QList<int>{0, 1};
    QTest::newRow("all go") << 0 << -4 << QStringList{u"2 0"_s, u"2 1"_s, u"2 2"_s, u"2 3"_s} << QList<int>();
}

// Each key then leads to its row, and each row to its key.
void BookmarkMapWritingTest::severalRowsComeAndGo()
{
    QFETCH(const int, first);
    QFETCH(const int, rows);
    QFETCH(const QList<int>, keys);
    RowsModel model;
    connectRows(model, 4);
    rows < 0 ? model.remove(first, -rows) : model.insert(first, rows);
    QTEST(changes(), "changes");
    QVERIFY(areEqual(model, *m_map));
    QStringList byKey;
    for (const int key : keys) {
        set(static_cast<unsigned int>(key), bookmarkAt(key, "by key"));
        byKey.append(QString::number(key * 1'000'000) + u" by key"_s);
    }
    QCOMPARE(bookmarkTexts(model.entries()), byKey);
    for (int row = 0; row < keys.size(); ++row) {
        model.changeEntry(row, bookmarkAt(row, "by row"));
        const auto key = static_cast<unsigned int>(keys[row]);
        QVERIFY(m_map->At(key).toEntry() == bookmarkAt(row, "by row"));
    }
    m_map->SetTransmitter(nullptr);
}

void BookmarkMapWritingTest::whoeverChangesTheMapMeanwhileIsAnswered_data()
{
    QTest::addColumn<Use>("write");
    QTest::addColumn<MapUse>("meddle");
    const std::vector<std::pair<const char*, Use>> writes{
        {"a row that changes", [](BookmarkSite& site) { site.model.changeEntry(0, bookmarkAt(1, "new")); }},
        {"a row that comes", [](BookmarkSite& site) { site.model.appendEntry(bookmarkAt(30, "new")); }},
        {"a row that goes", [](BookmarkSite& site) { site.model.removeEntry(0); }},
        {"a list", [](BookmarkSite& site) {
             site.model.setEntries({bookmarkAt(30, "new"), bookmarkAt(40, "new")});
         }}};
    const auto any = [](const BookmarkItemMap& map) { return map.IndexVector().front(); };
    const std::vector<std::pair<const char*, MapUse>> meddling{
        {"adds an item", [](BookmarkItemMap& map) { map.AddEntry(bookmarkAt(50, "foreign"), nullptr); }},
        {"erases an item", [any](BookmarkItemMap& map) { map.EraseAt(any(map), nullptr); }},
        {"erases the newest item",
         [](BookmarkItemMap& map) { map.EraseAt(std::ranges::max(map.IndexVector()), nullptr); }},
        {"changes all items", capitalize},
        {"empties the map", [](BookmarkItemMap& map) { map.Clear(nullptr); }}};
    for (const auto& [written, write] : writes) {
        for (const auto& [name, meddle] : meddling) {
            QTest::addRow("%s, and somebody %s", written, name) << write << meddle;
        }
    }
}

// What he has done is taken back, and nothing is out of step afterwards.
void BookmarkMapWritingTest::whoeverChangesTheMapMeanwhileIsAnswered()
{
    QFETCH(const Use, write);
    QFETCH(const MapUse, meddle);
    connectMap(twoBookmarks);
    const Meddler meddler(*m_map, meddle);
    write(*m_site);
    const QStringList wanted = m_site->bookmarks();
    QVERIFY(!areEqual());
    QCoreApplication::processEvents();
    QCOMPARE(m_site->bookmarks(), wanted);
    QCOMPARE(items(), numbered(wanted));
    m_site->model.appendEntry(bookmarkAt(60, "last"));
    m_site->model.changeEntry(0, bookmarkAt(1, "first"));
    set(0, bookmarkAt(2, "first"));
    QVERIFY(areEqual());
    QCOMPARE(m_site->bookmarks().constFirst(), u"2000000 first"_s);
}

// Neither would ever give in otherwise.
void BookmarkMapWritingTest::whoeverInsistsOnAChangeIsFollowed()
{
    connectMap(twoBookmarks);
    const Meddler meddler(*m_map, capitalize, std::numeric_limits<int>::max());
    m_site->model.appendEntry(bookmarkAt(30, "c"));
    QCoreApplication::processEvents();
    QStringList bookmarks = m_site->bookmarks();
    bookmarks.sort();
    QCOMPARE(bookmarks, QStringList({"10000000 A", "20000000 B", "30000000 C"}));
    QVERIFY(areEqual());
    changes();
    QCoreApplication::processEvents();
    QCOMPARE(changes(), QStringList());
    m_site->model.removeEntry(1);
    set(9, bookmarkAt(9, "D"));
    QCOMPARE(m_site->model.entryCount(), 3);
    QVERIFY(areEqual());
}

void BookmarkMapWritingTest::whoeverInsistsOnAChangeOfALockedListIsNotFought()
{
    m_site.emplace(true);
    connectMap(twoBookmarks);
    const Meddler meddler(*m_map, capitalize, std::numeric_limits<int>::max());
    m_site->store({bookmarkAt(30, "c")});
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
    }
    changes();
    QCoreApplication::processEvents();
    QCOMPARE(changes(), QStringList());
    QCOMPARE(m_site->bookmarks(), QStringList{"30000000 c"});
}

void BookmarkMapWritingTest::rowsThatGoWhileOthersAreWrittenAreNotRead_data()
{
    QTest::addColumn<RowsUse>("write");
    const auto row = [](const char* name, const RowsUse& write) { QTest::newRow(name) << write; };
    row("rows that change", [](RowsModel& model) {
        model.setSilently({bookmarkAt(1, "a"), bookmarkAt(2, "b"), bookmarkAt(3, "c")});
        Q_EMIT model.dataChanged(model.index(0, 0), model.index(2, 1));
    });
    row("rows that come", [](RowsModel& model) { model.insert(1, 3); });
    row("rows that go", [](RowsModel& model) { model.remove(0, 2); });
}

void BookmarkMapWritingTest::rowsThatGoWhileOthersAreWrittenAreNotRead()
{
    QFETCH(const RowsUse, write);
    RowsModel model;
    connectRows(model, 3);
    const Meddler meddler(*m_map, [&model](auto&) { model.clear(); });
    write(model);
    QCOMPARE(model.entryCount(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(items(), QStringList());
    m_map->SetTransmitter(nullptr);
}

QTEST_MAIN(BookmarkMapWritingTest)
#include "tst_bookmarkmapwriting.moc"
