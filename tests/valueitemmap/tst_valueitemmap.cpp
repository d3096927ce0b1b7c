#include "changelogger.h"
#include "sentcommands.h"
#include "smallitemmap.h"

#include <valuecore/tree.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

#include <QTest>

namespace {

using Map = TextItemMap;

TextItem item(const QString& key, int number)
{
    return TextItem(key, number);
}

std::list<TextItem> listOf(const QStringList& keys, int number)
{
    std::list<TextItem> result;
    for (const QString& key : keys) {
        result.push_back(item(key, number));
    }
    return result;
}

Map::MapType mapOf(const QStringList& keys, int number)
{
    Map::MapType result;
    for (const QString& key : keys) {
        result.emplace(key, item(key, number));
    }
    return result;
}

// "key=number" of each item, sorted.
QStringList content(const Map& map)
{
    QStringList result;
    for (const auto& [key, held] : map.data()) {
        result << QStringLiteral("%1=%2").arg(key).arg(held.number());
    }
    result.sort();
    return result;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class tst_ValueItemMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startsEmptyWithALogOfItsOwn();
    void startsWithAFewBuckets();
    void setsAndReplacesAnItem();
    void changesNothingForAnEqualItem();
    void skipsTheOriginAndSendsIt();
    void cannotMakeATextKey();
    void makesANumericKey();
    void setsUnderTheItemsOwnKey_data();
    void setsUnderTheItemsOwnKey();
    void insertsUnderAGivenKey();
    void erasesAnItem();
    void ignoresTheEraseOfAnUnknownKey();
    void clearsOnce();
    void readsItems();
    void findsAnEqualItem();
    void listsItsKeysInIterationOrder();
    void replacesTheWholeMap();
    void replacesAnEmptyMapByAnEmptyOne();
    void replacesAMapByItself();
    void setsAList_data();
    void setsAList();
    void setsAMap_data();
    void setsAMap();
    void endsTheTransactionOfAnEqualList();
    void foldsAListIntoANotificationEvenInATransaction();
    void endsTheTransactionWhenAnItemHasNoKey();
    void comparesMapsFilenamesAndStates();
    void comparesOnlyItsOwnInstantiation();
    void assignsWithoutLogAndNotice();
    void copiesIntoAFreshLog();
    void assignsOnlyItsOwnType();
    void printsItsFirstItemAndACount();
    void takesNoText();
    void isReadThroughItsInterface();
    void tellsHasChangedWithoutALogEntry();
    void recordsOnlyWhenItIsWanted();
    void sendsTheSameCommandsForEachOperation();
    void anObserverMayChangeTheMapMeanwhile();
    void anObserverSeesTheDeletion();
    void twoReadersFollowAtTheirOwnPace();
    void numericMapWorksTheSameWay();

private:
    QStringList changes() { return readLog(m_map->GetChangeLog(), m_position); }
    void fill(const QStringList& keys)
    {
        for (const QString& key : keys) {
            m_map->Add(item(key, 1), nullptr);
        }
        changes();
        m_log.clear();
        m_sent = SentCommands();
    }

    QStringList m_log;
    ChangeLogger m_observer{"map", m_log};
    SentCommands m_sent;
    std::unique_ptr<Map> m_map;
    std::uint64_t m_position = 0;
};

void tst_ValueItemMap::init()
{
    m_log.clear();
    m_observer.react({});
    m_sent = SentCommands();
    m_position = 0;
    m_map = std::make_unique<Map>("Map", TValueState::Open);
    m_map->AddObserver(&m_observer);
    m_map->SetTransmitter(&m_sent);
}

void tst_ValueItemMap::startsEmptyWithALogOfItsOwn()
{
    const Map unnamed;
    QCOMPARE(unnamed.GetName(), QString());
    QCOMPARE(unnamed.GetState(), TValueState::Open);
    const Map named("Map", TValueState::Locked);
    QCOMPARE(named.GetName(), QStringLiteral("Map"));
    QCOMPARE(named.GetState(), TValueState::Locked);
    QVERIFY(named.Empty());
    QCOMPARE(named.Size(), std::uint64_t{0});
    QCOMPARE(named.GetChangeLog().Capacity(), std::size_t{100});
    QCOMPARE(named.GetChangeLog().NextNumber(), std::uint64_t{0});
    QCOMPARE(named.ChangeLogCapacity(), std::size_t{100});
    QCOMPARE(named.GetFilename(), QString());
    QCOMPARE(Map::GetInvalidKey(), QString());
    QCOMPARE(NumberItemMap::GetInvalidKey(), ~0u);
}

void tst_ValueItemMap::startsWithAFewBuckets()
{
    const std::size_t atFirst = m_map->data().bucket_count();
    QVERIFY(atFirst >= 8);
    QVERIFY(atFirst < 16);
    QCOMPARE(m_map->data().max_load_factor(), 1.0f);
    for (int i = 0; i < 1000; ++i) {
        m_map->Add(item(QString::number(i), i), nullptr);
    }
    m_map->Clear(nullptr);
    QCOMPARE(m_map->data().bucket_count(), atFirst);
}

void tst_ValueItemMap::setsAndReplacesAnItem()
{
    QCOMPARE(m_map->SetAt("a", item("a", 1), nullptr), QStringLiteral("a"));
    QCOMPARE(m_map->SetAt("a", item("a", 2), nullptr), QStringLiteral("a"));
    QCOMPARE(content(*m_map), QStringList({"a=2"}));
    QCOMPARE(changes(), QStringList({"1 a", "1 a"}));
    QCOMPARE(m_log, QStringList({"map 3", "map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({20, 20}));
}

void tst_ValueItemMap::changesNothingForAnEqualItem()
{
    m_map->SetAt("a", item("a", 1), nullptr);
    QCOMPARE(m_map->SetAt("a", item("a", 1), nullptr), QStringLiteral("a"));
    QCOMPARE(changes(), QStringList({"1 a"}));
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({20}));
}

void tst_ValueItemMap::skipsTheOriginAndSendsIt()
{
    ChangeLogger other("other", m_log);
    m_map->AddObserver(&other);
    m_map->SetAt("a", item("a", 1), &m_observer);
    m_map->EraseAt("a", &m_observer);
    m_map->SetMap(mapOf({"b"}, 1), &m_observer);
    m_map->Clear(&m_observer);
    QCOMPARE(m_log, QStringList({"other 3", "other 3", "other 3", "other 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({20, 21, 22, 20, 22}));
    for (const auto& sent : m_sent.sent()) {
        QCOMPARE(sent.origin, static_cast<IObserver*>(&m_observer));
    }
}

void tst_ValueItemMap::cannotMakeATextKey()
{
    fill({"a"});
    try {
        m_map->SetAt(Map::GetInvalidKey(), item("b", 1), nullptr);
        QFAIL("made a key");
    } catch (const std::exception& error) {
        QCOMPARE(error.what(),
                 "Cannot create unique key for this KeyType. Override CreateNewUnqiqueKey() method in your "
                 "item map specialization");
    }
    QVERIFY_EXCEPTION_THROWN(m_map->Add(item(QString(), 1), nullptr), valueitemmap::NoUniqueKeyError);
    QCOMPARE(content(*m_map), QStringList({"a=1"}));
    QCOMPARE(changes(), QStringList());
    QCOMPARE(m_log, QStringList());
    QVERIFY(m_sent.sent().empty());
}

void tst_ValueItemMap::makesANumericKey()
{
    NumberItemMap map;
    const unsigned int none = NumberItemMap::GetInvalidKey();
    QCOMPARE(map.SetAt(0, NumberItem(0, 7), nullptr), 0u);
    QCOMPARE(map.SetAt(none, NumberItem(none, 1), nullptr), 1u);
    QCOMPARE(map.Add(NumberItem(none, 2), nullptr), 2u);
    QCOMPARE(map.At(2).number(), 2);
    std::uint64_t position = 0;
    QCOMPARE(readLog(map.GetChangeLog(), position), QStringList({"1 0", "1 1", "1 2"}));
}

void tst_ValueItemMap::setsUnderTheItemsOwnKey_data()
{
    QTest::addColumn<QString>("operation");
    QTest::newRow("Add") << "Add";
    QTest::newRow("PushBack") << "PushBack";
    QTest::newRow("Set") << "Set";
}

void tst_ValueItemMap::setsUnderTheItemsOwnKey()
{
    QFETCH(QString, operation);
    const auto run = [&](const TextItem& what) {
        return operation == "Add"   ? m_map->Add(what, nullptr)
               : operation == "Set" ? m_map->Set(what, nullptr)
                                    : m_map->PushBack(what, nullptr);
    };
    QCOMPARE(run(item("a", 1)), QStringLiteral("a"));
    QCOMPARE(run(item("a", 2)), QStringLiteral("a"));
    QCOMPARE(run(item("a", 2)), QStringLiteral("a"));
    QCOMPARE(content(*m_map), QStringList({"a=2"}));
    QCOMPARE(changes(), QStringList({"1 a", "1 a"}));
    QCOMPARE(m_log, QStringList({"map 3", "map 3"}));
}

void tst_ValueItemMap::insertsUnderAGivenKey()
{
    QCOMPARE(m_map->InsertAt("other", item("a", 1), nullptr), QStringLiteral("other"));
    QCOMPARE(m_map->InsertAt("other", item("a", 1), nullptr), QStringLiteral("other"));
    QCOMPARE(content(*m_map), QStringList({"other=1"}));
    QCOMPARE(m_map->At("other").GetKey(), QStringLiteral("a"));
    QCOMPARE(changes(), QStringList({"1 other"}));
}

void tst_ValueItemMap::erasesAnItem()
{
    fill({"a", "b"});
    m_map->EraseAt("a", nullptr);
    QCOMPARE(content(*m_map), QStringList({"b=1"}));
    QCOMPARE(changes(), QStringList({"2 a"}));
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({21}));
}

void tst_ValueItemMap::ignoresTheEraseOfAnUnknownKey()
{
    fill({"a"});
    m_map->EraseAt("b", nullptr);
    m_map->EraseAt(Map::GetInvalidKey(), nullptr);
    QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{1});
    QCOMPARE(m_log, QStringList());
    QVERIFY(m_sent.sent().empty());
}

void tst_ValueItemMap::clearsOnce()
{
    fill({"a", "b"});
    m_map->Clear(nullptr);
    m_map->Clear(nullptr);
    QVERIFY(m_map->Empty());
    QCOMPARE(changes(), QStringList({"3 "}));
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({22}));
}

void tst_ValueItemMap::readsItems()
{
    fill({"a", "b"});
    QCOMPARE(m_map->At("b").number(), 1);
    QVERIFY(m_map->Contains("a"));
    QVERIFY(!m_map->Contains("A"));
    QVERIFY(!m_map->Contains(Map::GetInvalidKey()));
    QVERIFY(!m_map->Empty());
    QCOMPARE(m_map->Size(), std::uint64_t{2});
    QCOMPARE(m_map->data().size(), std::size_t{2});
    try {
        m_map->At("c");
        QFAIL("found an item");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid unordered_map<K, T> key");
    }
    m_map->SetFilename("records");
    QCOMPARE(m_map->GetFilename(), QStringLiteral("records"));
    QCOMPARE(m_log, QStringList());
}

void tst_ValueItemMap::findsAnEqualItem()
{
    fill({"a", "b"});
    QCOMPARE(m_map->find(item("b", 1)), QStringLiteral("b"));
    QCOMPARE(m_map->find(item("b", 2)), Map::GetInvalidKey());
    m_map->SetAt("c", item("a", 1), nullptr);
    QCOMPARE(m_map->find(item("a", 1)), [&] {
        const auto keys = m_map->IndexVector();
        return *std::find_if(keys.begin(), keys.end(), [](const QString& key) { return key != "b"; });
    }());
}

void tst_ValueItemMap::listsItsKeysInIterationOrder()
{
    QVERIFY(m_map->IndexVector().empty());
    fill({"a", "b", "c", "d"});
    std::vector<QString> expected;
    for (const auto& entry : m_map->data()) {
        expected.push_back(entry.first);
    }
    QCOMPARE(m_map->IndexVector(), expected);
    QCOMPARE(expected.size(), std::size_t{4});
}

void tst_ValueItemMap::replacesTheWholeMap()
{
    fill({"a", "b"});
    m_map->SetMap(mapOf({"b", "c"}, 1), nullptr);
    QCOMPARE(content(*m_map), QStringList({"b=1", "c=1"}));
    const QStringList log = changes();
    QCOMPARE(log.first(), QStringLiteral("3 "));
    QCOMPARE(sorted(log.mid(1)), QStringList({"1 b", "1 c"}));
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({22, 20, 20}));
}

void tst_ValueItemMap::replacesAnEmptyMapByAnEmptyOne()
{
    m_map->SetMap({}, nullptr);
    QCOMPARE(changes(), QStringList({"3 "}));
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(m_sent.ids(), std::vector<int>({22}));
}

void tst_ValueItemMap::replacesAMapByItself()
{
    fill({"a"});
    m_map->SetMap(m_map->data(), nullptr);
    QCOMPARE(content(*m_map), QStringList({"a=1"}));
    QCOMPARE(changes(), QStringList({"3 ", "1 a"}));
    QCOMPARE(m_log, QStringList({"map 3"}));
}

// The map holds a=1 and b=1; the list has b=1 and c=1.
void tst_ValueItemMap::setsAList_data()
{
    QTest::addColumn<bool>("removeOthers");
    QTest::addColumn<bool>("onlyDifferences");
    QTest::addColumn<QStringList>("content");
    QTest::addColumn<QStringList>("changes");
    QTest::newRow("added to what is there")
        << false << false << QStringList({"a=1", "b=1", "c=1"}) << QStringList({"1 c"});
    QTest::newRow("after a clear") << true << false << QStringList({"b=1", "c=1"}) << QStringList({"3 ", "1 b", "1 c"});
    QTest::newRow("only the differences")
        << false << true << QStringList({"a=1", "b=1", "c=1"}) << QStringList({"1 c"});
    QTest::newRow("only the differences, others removed")
        << true << true << QStringList({"b=1", "c=1"}) << QStringList({"1 c", "2 a"});
}

void tst_ValueItemMap::setsAList()
{
    QFETCH(bool, removeOthers);
    QFETCH(bool, onlyDifferences);
    fill({"a", "b"});
    m_map->Set(listOf({"b", "c"}, 1), removeOthers, onlyDifferences, nullptr);
    QTEST(content(*m_map), "content");
    QTEST(changes(), "changes");
    QCOMPARE(m_log, QStringList({"map 3"}));
    QVERIFY(!m_map->IsTransactionActive());
    m_map->Set(listOf({"b", "b"}, 2), removeOthers, onlyDifferences, nullptr); // the same key twice
    QCOMPARE(m_map->At("b").number(), 2);
    QCOMPARE(m_map->Contains("c"), !removeOthers);
    QCOMPARE(m_log, QStringList({"map 3", "map 3"}));
}

void tst_ValueItemMap::setsAMap_data()
{
    QTest::addColumn<bool>("removeOthers");
    QTest::addColumn<bool>("onlyDifferences");
    QTest::addColumn<QStringList>("content");
    QTest::addColumn<QStringList>("changes"); // sorted
    QTest::addColumn<int>("notifications");
    QTest::newRow("replaces although others were to stay")
        << false << false << QStringList({"b=1", "c=1"}) << QStringList({"1 b", "1 c", "3 "}) << 1;
    QTest::newRow("clears and replaces, without a transaction")
        << true << false << QStringList({"b=1", "c=1"}) << QStringList({"1 b", "1 c", "3 ", "3 "}) << 2;
    QTest::newRow("only the differences")
        << false << true << QStringList({"a=1", "b=1", "c=1"}) << QStringList({"1 c"}) << 1;
    QTest::newRow("only the differences, others removed")
        << true << true << QStringList({"b=1", "c=1"}) << QStringList({"1 c", "2 a"}) << 1;
}

void tst_ValueItemMap::setsAMap()
{
    QFETCH(bool, removeOthers);
    QFETCH(bool, onlyDifferences);
    QFETCH(int, notifications);
    fill({"a", "b"});
    m_map->Set(mapOf({"b", "c"}, 1), removeOthers, onlyDifferences, nullptr);
    QTEST(content(*m_map), "content");
    QTEST(sorted(changes()), "changes");
    QCOMPARE(m_log, QStringList(notifications, "map 3"));
    QVERIFY(!m_map->IsTransactionActive());
}

void tst_ValueItemMap::endsTheTransactionOfAnEqualList()
{
    fill({"a", "b"});
    m_map->Set(listOf({"a", "b"}, 1), true, true, nullptr);
    QCOMPARE(changes(), QStringList());
    QVERIFY(m_sent.sent().empty());
    QCOMPARE(m_log, QStringList({"map 3"}));
    m_map->Set(mapOf({"a", "b"}, 1), true, true, nullptr);
    QCOMPARE(changes(), QStringList());
    QCOMPARE(m_log, QStringList({"map 3", "map 3"}));
}

void tst_ValueItemMap::foldsAListIntoANotificationEvenInATransaction()
{
    m_map->StartTransaction(nullptr);
    m_map->Set(listOf({"a", "b"}, 1), true, true, nullptr);
    m_map->SetMap(mapOf({"c"}, 1), nullptr);
    m_map->EraseAt("c", nullptr);
    QCOMPARE(m_log, QStringList());
    m_map->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(changes(), QStringList({"1 a", "1 b", "3 ", "1 c", "2 c"}));
}

void tst_ValueItemMap::endsTheTransactionWhenAnItemHasNoKey()
{
    for (const bool onlyDifferences : {false, true}) {
        init();
        QVERIFY_EXCEPTION_THROWN(m_map->Set(listOf({"a", QString(), "b"}, 1), true, onlyDifferences, nullptr),
                                 valueitemmap::NoUniqueKeyError);
        QVERIFY(!m_map->IsTransactionActive());
        QCOMPARE(content(*m_map), QStringList({"a=1"}));
        QCOMPARE(m_log, QStringList({"map 3"}));
    }
}

void tst_ValueItemMap::comparesMapsFilenamesAndStates()
{
    Map other;
    QVERIFY(m_map->Compare(&other));
    m_map->Add(item("a", 1), nullptr);
    QVERIFY(!m_map->Compare(&other));
    other.Add(item("a", 2), nullptr);
    QVERIFY(!m_map->Compare(&other));
    other.Add(item("a", 1), nullptr); // by another way: the log does not count
    QVERIFY(m_map->Compare(&other));
    QVERIFY(*m_map == other);
    other.SetFilename("x");
    QVERIFY(!m_map->Compare(&other));
    other.SetFilename(QString());
    other.SetState(TValueState::Locked, nullptr);
    QVERIFY(!m_map->Compare(&other));
}

void tst_ValueItemMap::comparesOnlyItsOwnInstantiation()
{
    const NumberItemMap numbers;
    const Value<int> plain;
    QVERIFY(!m_map->Compare(&numbers));
    QVERIFY(!m_map->Compare(&plain));
    QVERIFY(!m_map->Compare(nullptr));
}

void tst_ValueItemMap::assignsWithoutLogAndNotice()
{
    fill({"a"});
    Map source;
    source.Set(listOf({"b", "c"}, 2), true, true, nullptr);
    source.SetFilename("file");
    source.SetState(TValueState::Locked, nullptr);
    *m_map = source;
    QVERIFY(*m_map == source);
    QCOMPARE(m_map->GetFilename(), QStringLiteral("file"));
    QCOMPARE(m_map->GetName(), QStringLiteral("Map"));
    QCOMPARE(changes(), QStringList());
    QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{1});
    QCOMPARE(source.GetChangeLog().NextNumber(), std::uint64_t{2});
    QCOMPARE(m_log, QStringList());
    QVERIFY(m_sent.sent().empty());
}

void tst_ValueItemMap::copiesIntoAFreshLog()
{
    fill({"a"});
    m_map->SetChangeLogSize(250);
    m_map->SetFilename("file");
    const Map copy(*m_map);
    QVERIFY(copy == *m_map);
    QCOMPARE(copy.GetChangeLog().NextNumber(), std::uint64_t{0});
    QCOMPARE(copy.ChangeLogCapacity(), std::size_t{100});
    QCOMPARE(copy.ObserverCount(), std::size_t{0});
}

void tst_ValueItemMap::assignsOnlyItsOwnType()
{
    fill({"a"});
    QVERIFY_EXCEPTION_THROWN(m_map->Assign(NumberItemMap()), std::bad_cast);
    QVERIFY_EXCEPTION_THROWN(m_map->Assign(Value<int>()), std::bad_cast);
    QCOMPARE(content(*m_map), QStringList({"a=1"}));
    Map other;
    other.Add(item("b", 2), nullptr);
    m_map->Assign(other);
    QVERIFY(m_map->Compare(&other));
    QCOMPARE(m_log, QStringList());
}

void tst_ValueItemMap::printsItsFirstItemAndACount()
{
    QCOMPARE(m_map->GetStringValue(), QString());
    m_map->Add(item("a", 7), nullptr);
    QCOMPARE(m_map->GetStringValue(), QStringLiteral("a=7 - 0 more items..."));
    m_map->Clear(nullptr);
    m_map->Add(item("%1", 7), nullptr);
    QCOMPARE(m_map->GetStringValue(), QStringLiteral("%1=7 - 0 more items..."));
    for (int i = 0; i < 1234; ++i) {
        m_map->Add(item(QString::number(i), 7), nullptr);
    }
    const QString first = m_map->data().begin()->first;
    QCOMPARE(m_map->GetStringValue(), first + QStringLiteral("=7 - 1234 more items..."));
}

void tst_ValueItemMap::takesNoText()
{
    QVERIFY(!m_map->SetStringValue("a=1", nullptr));
    QVERIFY(m_map->Empty());
    QCOMPARE(m_log, QStringList());
}

void tst_ValueItemMap::isReadThroughItsInterface()
{
    fill({"a"});
    valueitemmap::IHasChangeLogValueTemplate<QString>& readable = *m_map;
    QCOMPARE(readable.Size(), std::uint64_t{1});
    QVERIFY(readable.Contains("a"));
    QCOMPARE(readable.IndexVector(), std::vector<QString>({"a"}));
    QCOMPARE(&readable.GetChangeLog(), &m_map->GetChangeLog());
    QCOMPARE(readable.GetValueBase(), static_cast<ValueBase*>(m_map.get()));
    QCOMPARE(m_map->GetType(), 1001);
    QCOMPARE(m_map->GetTypeName(), "TextItemMap");
}

void tst_ValueItemMap::tellsHasChangedWithoutALogEntry()
{
    fill({"a"});
    m_map->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_log, QStringList({"map 3"}));
    QCOMPARE(changes(), QStringList());
    QCOMPARE(m_sent.ids(), std::vector<int>({2}));
}

void tst_ValueItemMap::recordsOnlyWhenItIsWanted()
{
    m_map->SetTransmitter(nullptr);
    m_map->Add(item("a", 1), nullptr);
    QCOMPARE(m_map->GetCommandStringForRecording(), std::string());
    m_map->SetRecording(true);
    m_map->Clear(nullptr);
    m_map->Set(listOf({"b", "c"}, 1), false, false, nullptr);
    m_map->EraseAt("b", nullptr);
    Map played;
    played.Add(item("x", 1), nullptr);
    QVERIFY(played.SetCommandString(m_map->GetCommandStringForRecording(), nullptr));
    QVERIFY(played == *m_map);
}

void tst_ValueItemMap::sendsTheSameCommandsForEachOperation()
{
    Map mirror;
    m_map->Set(listOf({"a", "b", "c"}, 1), true, true, nullptr);
    m_map->Set(listOf({"b", "d"}, 2), true, true, nullptr);
    m_map->SetMap(mapOf({"e", "f"}, 3), nullptr);
    m_map->InsertAt("own", item("e", 4), nullptr);
    m_map->EraseAt("f", nullptr);
    m_map->SetState(TValueState::Locked, nullptr);
    QVERIFY(mirror.SetCommandString(m_sent.stream(), nullptr));
    QVERIFY(mirror == *m_map);
    std::uint64_t position = 0;
    QCOMPARE(readLog(mirror.GetChangeLog(), position), changes());
}

void tst_ValueItemMap::anObserverMayChangeTheMapMeanwhile()
{
    m_observer.react([&](Observable*, TChangeCode) {
        if (m_map->Contains("a")) {
            m_map->EraseAt("a", nullptr);
        }
    });
    QCOMPARE(m_map->Add(item("a", 1), nullptr), QStringLiteral("a"));
    QVERIFY(m_map->Empty());
    QCOMPARE(changes(), QStringList({"1 a", "2 a"}));
    QCOMPARE(m_log, QStringList({"map 3", "map 3"}));
}

void tst_ValueItemMap::anObserverSeesTheDeletion()
{
    Tree tree;
    Map* const map = tree.Emplace("/Records", std::make_unique<Map>("Map", TValueState::Open));
    map->Add(item("a", 1), nullptr);
    ValueObservingPtr<Map> handle(&m_observer);
    QVERIFY(handle.GetFromTree("/Records/Map", &tree));
    QStringList seen;
    m_observer.react([&](Observable*, TChangeCode) { seen = content(*handle); });
    tree.Remove("/Records");
    QCOMPARE(seen, QStringList({"a=1"}));
    QVERIFY(!handle);
    QCOMPARE(m_log, QStringList({"map 2"}));
}

void tst_ValueItemMap::twoReadersFollowAtTheirOwnPace()
{
    std::uint64_t slow = 0;
    std::uint64_t quick = 0;
    m_map->SetChangeLogSize(3);
    m_map->Set(listOf({"a", "b"}, 1), false, false, nullptr);
    QCOMPARE(readLog(m_map->GetChangeLog(), quick), QStringList({"1 a", "1 b"}));
    m_map->Set(listOf({"c", "d"}, 1), false, false, nullptr);
    QCOMPARE(readLog(m_map->GetChangeLog(), quick), QStringList({"1 c", "1 d"}));
    QCOMPARE(readLog(m_map->GetChangeLog(), slow), QStringList({"lost"}));
    m_map->EraseAt("a", nullptr);
    QCOMPARE(readLog(m_map->GetChangeLog(), slow), QStringList({"2 a"}));
    QCOMPARE(readLog(m_map->GetChangeLog(), quick), QStringList({"2 a"}));
}

void tst_ValueItemMap::numericMapWorksTheSameWay()
{
    NumberItemMap map;
    map.SetTransmitter(&m_sent);
    map.Set(std::list{NumberItem(1, 1), NumberItem(2, 1)}, true, true, nullptr);
    map.Set(std::list{NumberItem(2, 1), NumberItem(3, 1)}, true, true, nullptr);
    map.EraseAt(2, nullptr);
    NumberItemMap mirror;
    QVERIFY(mirror.SetCommandString(m_sent.stream(), nullptr));
    QVERIFY(mirror.Compare(&map));
    QCOMPARE(mirror.IndexVector(), std::vector<unsigned int>({3}));
    std::uint64_t position = 0;
    QCOMPARE(readLog(mirror.GetChangeLog(), position), QStringList({"1 1", "1 2", "1 3", "2 1", "2 2"}));
    QCOMPARE(map.find(NumberItem(9, 9)), NumberItemMap::GetInvalidKey());
}

QTEST_GUILESS_MAIN(tst_ValueItemMap)
#include "tst_valueitemmap.moc"
