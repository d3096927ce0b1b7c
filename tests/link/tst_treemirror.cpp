#include "framestream.h"
#include "testrecords.h"
#include "treedigest.h"
#include "watch.h"

#include <zelkobase/connection/treemirror.h>
#include <zelkobase/maps/itemmaptypes.h>

#include <observerbase/iobserver.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QtTest>

using namespace std::chrono_literals;
using namespace ZelkoCommon;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
using Progress = TreeMirror::Progress;

namespace {

const QString root = QStringLiteral("/SubSystems/north");

class Origin final : public IObserver
{
public:
    void Update(Observable*, TChangeCode) override { ++updates; }
    int updates = 0;
};

// A mirror with its tree and a log of its callbacks.
struct Fixture
{
    Origin origin;
    Tree tree;
    QStringList log;
    TreeMirror mirror{&tree,
                      root,
                      &origin,
                      {[this] { log << QStringLiteral("ready"); }, [this](const QString& path) { log << path; }}};

    Progress feed(const FrameStream& stream) { return feed(stream.bytes()); }
    Progress feed(const std::string& bytes)
    {
        mirror.append(bytes);
        return mirror.apply(1h);
    }
    template <typename T>
    T* find(const QString& path)
    {
        return tree.Find<T>(root + path);
    }
};

std::string setInt(int value)
{
    Value<int> source;
    std::string commands;
    Value<int>::CommandSet(&source, value, false, nullptr).AddCommandString(commands);
    return commands;
}

std::string setRecord(const QString& id, quint64 size = 0)
{
    RecordItemMap source;
    std::string commands;
    RecordItemMap::SetAtCommand(&source, id, RecordMapData(makeRecord(id, 5, size)), nullptr)
        .AddCommandString(commands);
    return commands;
}

std::string clearMap()
{
    RecordItemMap source;
    std::string commands;
    RecordItemMap::ClearCommand(&source, nullptr).AddCommandString(commands);
    return commands;
}

FrameStream twoValues()
{
    FrameStream stream;
    stream.begin().announce(1, "/A").announce(2, "/A/Number", "Integer").announce(3, "/A/Text", "Text");
    return stream;
}

} // namespace

class TestTreeMirror : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void makesWhatIsAnnounced();
    void executesCommandsInTheNameOfThePeer();
    void removesWhatIsWithdrawn();
    void removesWhatItMadeWhenCleared();
    void removesNodesThatOnlyAValueNeededWhenCleared();
    void tellsReadyEachTime();
    void knowsTheHandlesOfItsValuesOnly();
    void aFreshStateRemovesWhatIsNotAnnouncedAgain();
    void aFreshStateKeepsTheItemsThatStay();
    void aFreshStateReplacesWhatCameAgainUnderANewHandle_data();
    void aFreshStateReplacesWhatCameAgainUnderANewHandle();
    void aFreshStateBringsBackWhatWasTakenAwayHere();
    void takesFramesSplitAtEveryByte();
    void refusesWhatIsMalformed_data();
    void refusesWhatIsMalformed();
    void keepsWhatItHadAfterAMalformedFrame();
    void startsOverAfterAMalformedFrame();
    void passesOverTypesThatItDoesNotKnow();
    void passesOverPlacesThatAreTaken();
    void passesOverCommandsForWhatWasTakenAwayHere();
    void anObserverMayRemoveTheValueThatChanges();
    void anObserverMayRemoveTheMapWhoseFoldEnds();
    void stopsWhenTheTimeIsOver();
    void makesHeadwayWithoutTime();
    void foldsTheChangesOfAMapOverFramesAndBatches();
    void countsWhatWaits();
    void destroysALongMapBitByBitWhenItIsGone_data();
    void destroysALongMapBitByBitWhenItIsGone();
    void showsAMapThatGoesAsItIs();
    void anObserverMayRemoveTheMapThatGoes();
};

void TestTreeMirror::makesWhatIsAnnounced()
{
    Fixture f;
    QCOMPARE(f.feed(twoValues().commands(2, setInt(7)).ready().end()), Progress::Idle);
    QCOMPARE(f.log, (QStringList{root + "/A", "ready"}));
    QVERIFY(f.find<Value<int>>("/A/Number"));
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 7);
    QVERIFY(f.find<Value<QString>>("/A/Text"));
}

void TestTreeMirror::executesCommandsInTheNameOfThePeer()
{
    Fixture f;
    f.feed(twoValues().ready());
    int updates = 0;
    Watch other([&] { ++updates; });
    f.find<Value<int>>("/A/Number")->AddObserver(&f.origin);
    other.on(f.find<Value<int>>("/A/Number"));
    f.feed(FrameStream().commands(2, setInt(7) + setInt(8)));
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 8);
    QCOMPARE(f.origin.updates, 0);
    QCOMPARE(updates, 2);
}

void TestTreeMirror::removesWhatIsWithdrawn()
{
    Fixture f;
    f.feed(twoValues().ready());
    f.feed(FrameStream().withdraw(2).withdraw(2).withdraw(99));
    QVERIFY(!f.find<Value<int>>("/A/Number"));
    QVERIFY(f.find<Value<QString>>("/A/Text"));
    QCOMPARE(f.feed(FrameStream().withdraw(1).withdraw(3)), Progress::Idle);
    QCOMPARE(treeList(f.tree, root), QStringList());
}

void TestTreeMirror::removesWhatItMadeWhenCleared()
{
    Fixture f;
    f.tree.Emplace<Value<int>>(root, std::make_unique<Value<int>>("Local"));
    f.feed(twoValues().ready());
    const QStringList before = treeList(f.tree, root);
    f.mirror.clear();
    QCOMPARE(treeList(f.tree, root).size(), 1);
    QVERIFY(f.find<Value<int>>("/Local"));
    f.feed(twoValues().ready());
    QCOMPARE(treeList(f.tree, root), before);
}

void TestTreeMirror::removesNodesThatOnlyAValueNeededWhenCleared()
{
    Fixture f;
    FrameStream stream;
    stream.begin().announce(1, "/A/B/Number", "Integer").announce(2, "/C/D/Text", "Text").ready();
    QCOMPARE(f.feed(stream), Progress::Idle);
    auto* const local = f.tree.Emplace<Value<int>>(root + "/C", std::make_unique<Value<int>>("Mine"));
    f.mirror.clear();
    QVERIFY(!f.tree.GetItem(root + "/A"));
    QVERIFY(!f.tree.GetItem(root + "/C/D"));
    QCOMPARE(f.tree.GetItem(root + "/C/Mine"), local);
}

void TestTreeMirror::tellsReadyEachTime()
{
    Fixture f;
    f.feed(FrameStream().begin().ready().end().begin().ready().end());
    QCOMPARE(f.log, (QStringList{"ready", "ready"}));
}

void TestTreeMirror::knowsTheHandlesOfItsValuesOnly()
{
    Fixture f;
    auto* const local = f.tree.Emplace<Value<int>>(root, std::make_unique<Value<int>>("Local"));
    f.feed(twoValues().ready());
    QCOMPARE(f.mirror.handleOf(*f.find<Value<int>>("/A/Number")), 2u);
    QCOMPARE(f.mirror.handleOf(*local), 0u);
    for (int i = 0; i < 100; ++i) { // the memory of a removed value is used again sooner or later
        f.tree.Remove(root + "/A/Number");
        auto* const again = f.tree.Emplace<Value<int>>(root + "/A", std::make_unique<Value<int>>("Number"));
        QCOMPARE(f.mirror.handleOf(*again), 0u);
    }
}

void TestTreeMirror::aFreshStateRemovesWhatIsNotAnnouncedAgain()
{
    Fixture f;
    f.feed(twoValues().ready());
    f.feed(FrameStream().begin().announce(1, "/A").announce(3, "/A/Text", "Text"));
    QVERIFY(f.find<Value<int>>("/A/Number")); // it may still come
    f.feed(FrameStream().ready());
    QVERIFY(!f.find<Value<int>>("/A/Number"));
    QVERIFY(f.find<Value<QString>>("/A/Text"));
}

void TestTreeMirror::aFreshStateKeepsTheItemsThatStay()
{
    Fixture f;
    f.feed(twoValues().ready());
    auto* const number = f.find<Value<int>>("/A/Number");
    f.feed(twoValues().ready());
    QCOMPARE(f.find<Value<int>>("/A/Number"), number);
    QCOMPARE(f.log, (QStringList{root + "/A", "ready", "ready"}));
}

void TestTreeMirror::aFreshStateReplacesWhatCameAgainUnderANewHandle_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("typeBefore");
    QTest::addColumn<QByteArray>("typeAfter");
    QTest::newRow("a value of the same type") << "/A/Number" << QByteArray("Integer") << QByteArray("Integer");
    QTest::newRow("a value of another type") << "/A/Number" << QByteArray("Integer") << QByteArray("Text");
    QTest::newRow("a node") << "/B" << QByteArray() << QByteArray();
    QTest::newRow("a node where a value was") << "/B" << QByteArray("Integer") << QByteArray();
}

void TestTreeMirror::aFreshStateReplacesWhatCameAgainUnderANewHandle()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, typeBefore);
    QFETCH(QByteArray, typeAfter);
    Fixture f;
    f.feed(FrameStream().begin().announce(1, "/A").announce(2, path, typeBefore.toStdString()).ready());
    TreeItem* const before = f.tree.GetItem(root + path);
    const auto alive = before->lifeline();
    QCOMPARE(f.feed(FrameStream().begin().announce(1, "/A").announce(5, path, typeAfter.toStdString()).ready()),
             Progress::Idle);
    QVERIFY(alive.expired());
    QVERIFY(f.tree.GetItem(root + path));
    QCOMPARE(f.feed(FrameStream().withdraw(5)), Progress::Idle);
    QVERIFY(!f.tree.GetItem(root + path));
}

void TestTreeMirror::aFreshStateBringsBackWhatWasTakenAwayHere()
{
    Fixture f;
    f.feed(twoValues().ready());
    f.tree.Remove(root + "/A");
    QCOMPARE(f.feed(twoValues().commands(2, setInt(5)).ready()), Progress::Idle);
    QVERIFY(f.find<Value<int>>("/A/Number"));
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 5);
}

void TestTreeMirror::takesFramesSplitAtEveryByte()
{
    FrameStream stream = twoValues();
    stream.announce(4, "/A/Map", "RecordItemMap").commands(2, setInt(1) + setInt(2)).ready();
    stream.commands(4, setRecord("R1") + setRecord("R2")).end();
    Fixture whole;
    QCOMPARE(whole.feed(stream), Progress::Idle);
    const QStringList expected = treeList(whole.tree);
    QCOMPARE(expected.size(), 6);
    for (std::size_t cut = 1; cut < stream.bytes().size(); ++cut) {
        Fixture f;
        QCOMPARE(f.feed(stream.bytes().substr(0, cut)), Progress::Idle);
        QCOMPARE(f.feed(stream.bytes().substr(cut)), Progress::Idle);
        QCOMPARE(treeList(f.tree), expected);
    }
    Fixture byBytes;
    for (const char byte : stream.bytes()) {
        byBytes.mirror.append(std::string(1, byte));
    }
    QCOMPARE(byBytes.mirror.apply(1h), Progress::Idle);
    QCOMPARE(treeList(byBytes.tree), expected);
}

void TestTreeMirror::refusesWhatIsMalformed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char* name, const FrameStream& stream) {
        QTest::newRow(name) << QByteArray::fromStdString(stream.bytes());
    };
    QTest::newRow("no frame") << QByteArray("\x7fgarbage");
    row("an announcement that does not parse", FrameStream().frame(FrameStream::FrameType::Announce, 9, "xx"));
    row("an announcement without a handle", FrameStream().announce(0, "/B"));
    row("a handle given to another path", FrameStream().announce(1, "/B"));
    row("a handle given to another type", FrameStream().announce(2, "/A/Number", "Text"));
    row("a command id that is none", FrameStream().commands(2, "x;"));
    row("a command that the value does not know", FrameStream().commands(2, "999;"));
    row("a truncated command", FrameStream().commands(2, setInt(7).substr(0, 4)));
    row("garbage behind a command", FrameStream().commands(2, setInt(7) + "?"));
}

void TestTreeMirror::refusesWhatIsMalformed()
{
    QFETCH(QByteArray, bytes);
    Fixture f;
    f.feed(twoValues().ready());
    QCOMPARE(f.feed(bytes.toStdString()), Progress::Malformed);
    QCOMPARE(f.feed(FrameStream().commands(2, setInt(1))), Progress::Malformed);
}

void TestTreeMirror::keepsWhatItHadAfterAMalformedFrame()
{
    Fixture f;
    f.feed(twoValues().commands(2, setInt(7)).ready());
    QCOMPARE(f.feed(FrameStream().commands(2, "999;").commands(2, setInt(8))), Progress::Malformed);
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 7);
}

void TestTreeMirror::startsOverAfterAMalformedFrame()
{
    Fixture f;
    f.feed(twoValues().ready());
    QCOMPARE(f.feed(std::string("\x7f")), Progress::Malformed);
    f.mirror.clear();
    QCOMPARE(f.feed(twoValues().commands(2, setInt(9)).ready()), Progress::Idle);
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 9);
}

void TestTreeMirror::passesOverTypesThatItDoesNotKnow()
{
    Fixture f;
    FrameStream stream = twoValues();
    stream.announce(8, "/A/New", "a type of the next year").commands(8, "whatever").ready();
    QCOMPARE(f.feed(stream), Progress::Idle);
    QVERIFY(!f.tree.GetItem(root + "/A/New"));
    QVERIFY(f.log.contains("ready"));
}

void TestTreeMirror::passesOverPlacesThatAreTaken()
{
    Fixture f;
    auto* const local = f.tree.Emplace<Value<int>>(root + "/A", std::make_unique<Value<int>>("Number"));
    QCOMPARE(f.feed(twoValues().commands(2, setInt(5)).ready()), Progress::Idle);
    QCOMPARE(local->GetValue(), 0);
    QCOMPARE(f.mirror.handleOf(*local), 0u);
    QCOMPARE(f.feed(FrameStream().withdraw(2)), Progress::Idle);
    QVERIFY(f.find<Value<int>>("/A/Number"));
}

void TestTreeMirror::passesOverCommandsForWhatWasTakenAwayHere()
{
    Fixture f;
    f.feed(twoValues().ready());
    f.tree.Remove(root + "/A/Number");
    QCOMPARE(f.feed(FrameStream().commands(2, setInt(5))), Progress::Idle);
    QVERIFY(!f.find<Value<int>>("/A/Number"));
}

void TestTreeMirror::anObserverMayRemoveTheValueThatChanges()
{
    Fixture f;
    f.feed(twoValues().ready());
    Watch remover([&] { f.tree.Remove(root + "/A/Number"); });
    remover.on(f.find<Value<int>>("/A/Number"));
    QCOMPARE(f.feed(FrameStream().commands(2, setInt(5) + setInt(6)).commands(2, setInt(7))), Progress::Idle);
    QVERIFY(!f.find<Value<int>>("/A/Number"));
}

void TestTreeMirror::anObserverMayRemoveTheMapWhoseFoldEnds()
{
    Fixture f;
    f.feed(FrameStream().begin().announce(4, "/Map", "RecordItemMap").ready());
    auto* const map = f.find<RecordItemMap>("/Map");
    map->SetChangeLogSize(2);
    Watch remover([&] { f.tree.Remove(root + "/Map"); });
    remover.on(map);
    QCOMPARE(f.feed(FrameStream().commands(4, setRecord("A") + setRecord("B") + setRecord("C") + setRecord("D"))),
             Progress::Idle);
    QVERIFY(!f.find<RecordItemMap>("/Map"));
}

void TestTreeMirror::stopsWhenTheTimeIsOver()
{
    Fixture f;
    f.feed(twoValues().ready());
    std::string commands;
    for (int i = 1; i <= 1000; ++i) {
        commands += setInt(i);
    }
    auto* const number = f.find<Value<int>>("/A/Number");
    Watch slow([] { QTest::qSleep(1); });
    slow.on(number);
    f.mirror.append(FrameStream().commands(2, commands).bytes());
    QCOMPARE(f.mirror.apply(5ms), Progress::MoreToDo);
    QVERIFY(number->GetValue() < 500);
    slow.on(nullptr);
    QCOMPARE(f.mirror.apply(1h), Progress::Idle);
    QCOMPARE(number->GetValue(), 1000);
}

void TestTreeMirror::makesHeadwayWithoutTime()
{
    Fixture f;
    f.feed(twoValues().ready());
    std::string commands;
    for (int i = 1; i <= 100; ++i) {
        commands += setInt(i);
    }
    f.mirror.append(FrameStream().commands(2, commands).bytes());
    int slices = 1;
    while (f.mirror.apply(-1us) == Progress::MoreToDo) {
        QVERIFY(++slices <= 101);
    }
    QVERIFY(slices > 1);
    QCOMPARE(f.find<Value<int>>("/A/Number")->GetValue(), 100);
}

void TestTreeMirror::foldsTheChangesOfAMapOverFramesAndBatches()
{
    Fixture f;
    f.feed(FrameStream().begin().announce(4, "/Map", "RecordItemMap").ready());
    int notifications = 0;
    Watch counter([&] { ++notifications; });
    counter.on(f.find<RecordItemMap>("/Map"));
    f.mirror.append(FrameStream().commands(4, setRecord("A") + setRecord("B")).commands(4, setRecord("C")).bytes());
    f.mirror.append(FrameStream().commands(4, setRecord("D")).bytes());
    QCOMPARE(f.mirror.apply(1h), Progress::Idle);
    QCOMPARE(notifications, 1);
    QCOMPARE(f.find<RecordItemMap>("/Map")->Size(), 4u);
}

void TestTreeMirror::countsWhatWaits()
{
    Fixture f;
    const std::string bytes = twoValues().ready().bytes();
    f.mirror.append(bytes);
    f.mirror.append("\x04");
    QCOMPARE(f.mirror.pendingBytes(), bytes.size() + 1);
    f.mirror.apply(1h);
    QCOMPARE(f.mirror.pendingBytes(), 1u);
    f.mirror.clear();
    QCOMPARE(f.mirror.pendingBytes(), 0u);
}

void TestTreeMirror::destroysALongMapBitByBitWhenItIsGone_data()
{
    using End = std::function<void(Fixture&)>;
    QTest::addColumn<End>("goes");
    QTest::newRow("with the connection") << End([](Fixture& f) { f.mirror.clear(); });
    QTest::newRow("alone") << End([](Fixture& f) { f.feed(FrameStream().withdraw(2)); });
    QTest::newRow("emptied by a fresh state") << End([](Fixture& f) { f.feed(FrameStream().commands(2, clearMap())); });
}

void TestTreeMirror::destroysALongMapBitByBitWhenItIsGone()
{
    QFETCH(const std::function<void(Fixture&)>, goes);
    constexpr int count = 1000;
    Fixture f;
    f.feed(FrameStream().begin().announce(1, "/R").announce(2, "/R/Map", "RecordItemMap").ready().end());
    std::vector<std::weak_ptr<ZELKO_XML::ZELKO_RecordData>> records;
    for (int i = 0; i < count; ++i) {
        f.feed(FrameStream().commands(2, setRecord(QString::number(i))));
        records.push_back(f.find<RecordItemMap>("/R/Map")->At(QString::number(i)).GetRecordData());
    }
    const auto alive = [&] {
        return std::count_if(records.begin(), records.end(), [](const auto& record) { return !record.expired(); });
    };
    goes(f);
    const auto* const map = f.find<RecordItemMap>("/R/Map");
    QVERIFY(!map || map->Empty());
    QCOMPARE(alive(), count);
    auto before = alive();
    int slices = 1;
    while (f.mirror.tidy(0us)) {
        QVERIFY(alive() < before);
        before = alive();
        ++slices;
    }
    QCOMPARE(alive(), 0);
    QVERIFY(slices > 10);
    QVERIFY(!f.mirror.tidy(0us));
}

void TestTreeMirror::showsAMapThatGoesAsItIs()
{
    Fixture f;
    f.feed(FrameStream().begin().announce(1, "/R").announce(2, "/R/Map", "RecordItemMap").ready().end());
    f.feed(FrameStream().commands(2, setRecord("a") + setRecord("b")));
    auto* const map = f.find<RecordItemMap>("/R/Map");
    QList<std::pair<TValueState, quint64>> seen;
    Watch watch([&] { seen << std::pair(map->GetState(), quint64(map->Size())); });
    watch.on(map);
    f.mirror.clear();
    QCOMPARE(seen, (QList<std::pair<TValueState, quint64>>{{TValueState::Deleted, 2}}));
}

void TestTreeMirror::anObserverMayRemoveTheMapThatGoes()
{
    Fixture f;
    f.feed(FrameStream().begin().announce(1, "/R").announce(2, "/R/Map", "RecordItemMap").ready().end());
    f.feed(FrameStream().commands(2, setRecord("a")));
    Watch watch([&] { f.tree.Remove(root + "/R"); });
    watch.on(f.find<RecordItemMap>("/R/Map"));
    f.mirror.clear();
    QCOMPARE(treeList(f.tree, root), QStringList());
    QVERIFY(!f.mirror.tidy(1h));
}

QTEST_APPLESS_MAIN(TestTreeMirror)
#include "tst_treemirror.moc"
