#include "framecollector.h"
#include "testrecords.h"
#include "treedigest.h"

#include <recorder/link/linkedtree.h>
#include <recorder/link/statewalk.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/treemirror.h>
#include <zelkobase/maps/itemmaptypes.h>

#include <QtTest>

#include <random>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

const QString root = QStringLiteral("/SubSystems/north");

// A device's branch, with a value before and a value behind the map.
struct Served
{
    Tree tree;
    Value<int>* count = tree.Emplace("/D/Records", std::make_unique<Value<int>>("LoadCount"));
    RecordItemMap* map = tree.Emplace("/D/Records", std::make_unique<RecordItemMap>("Map", TValueState::Open));
    Value<bool>* complete = tree.Emplace("/D/Records", std::make_unique<Value<bool>>("LoadedCompletly"));
    Value<QString>* text = tree.Emplace("/D", std::make_unique<Value<QString>>("Text"));
    LinkedTree linked{tree};

    void set(int key, quint64 size = 0) { map->Add(RecordMapData(makeRecord(QString::number(key), 5, size)), nullptr); }
};

struct Received
{
    Tree tree;
    ZelkoCommon::TreeMirror mirror{&tree, root, nullptr, {}};

    bool take(const std::string& bytes)
    {
        mirror.append(bytes);
        return mirror.apply(1h) == ZelkoCommon::TreeMirror::Progress::Idle;
    }
};

std::string wholeWalk(const LinkedTree& tree, std::size_t pieceBytes = statePieceBytes)
{
    std::string bytes;
    StateWalk walk(tree);
    while (const auto frame = walk.next(pieceBytes)) {
        bytes += *frame;
    }
    return bytes;
}

} // namespace

class TestStateWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void givesThePlainValuesThenTheMapThenWhatStandsBehindIt();
    void givesAnEmptyTree();
    void staysAtItsEnd();
    void givesALargeMapInPieces();
    void passesOverWhatWentMeanwhile();
    void aReceiverEndsEqualWhateverChangesMeanwhile_data();
    void aReceiverEndsEqualWhateverChangesMeanwhile();
};

void TestStateWalk::givesThePlainValuesThenTheMapThenWhatStandsBehindIt()
{
    Served served;
    QCOMPARE(frameTexts(wholeWalk(served.linked)),
             (QStringList{"begin", "announce 1 /D", "announce 2 /D/Records", "announce 3 /D/Records/LoadCount Integer",
                          "announce 4 /D/Records/Map RecordItemMap", "announce 5 /D/Records/LoadedCompletly Boolean",
                          "announce 6 /D/Text Text", "commands 3", "commands 6", "ready", "commands 4", "commands 5",
                          "end"}));
}

void TestStateWalk::givesAnEmptyTree()
{
    Tree tree;
    LinkedTree linked(tree);
    QCOMPARE(frameTexts(wholeWalk(linked)), (QStringList{"begin", "ready", "end"}));
}

void TestStateWalk::staysAtItsEnd()
{
    Tree tree;
    LinkedTree linked(tree);
    StateWalk walk(linked);
    while (walk.next(100)) {
    }
    QVERIFY(!walk.next(100));
    QVERIFY(!walk.next(100));
}

void TestStateWalk::givesALargeMapInPieces()
{
    Served served;
    for (int i = 0; i < 1000; ++i) {
        served.set(i);
    }
    const std::string bytes = wholeWalk(served.linked, 1000);
    QVERIFY(frameTexts(bytes).count("commands 4") > 50);
    Received received;
    QVERIFY(received.take(bytes));
    QCOMPARE(treeList(received.tree, root), treeList(served.tree));
}

void TestStateWalk::passesOverWhatWentMeanwhile()
{
    Served served;
    for (int i = 0; i < 100; ++i) {
        served.set(i);
    }
    StateWalk walk(served.linked);
    QStringList texts;
    while (const auto frame = walk.next(500)) {
        texts << frameTexts(*frame);
        if (texts.last() == "commands 4" && served.tree.GetItem("/D/Records")) {
            served.tree.Remove("/D/Records");
        }
    }
    QCOMPARE(texts.count("commands 4"), 1);
    QCOMPARE(texts.count("commands 5"), 0);
    QCOMPARE(texts.last(), "end");
}

void TestStateWalk::aReceiverEndsEqualWhateverChangesMeanwhile_data()
{
    QTest::addColumn<unsigned int>("seed");
    for (unsigned int seed = 1; seed <= 20; ++seed) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestStateWalk::aReceiverEndsEqualWhateverChangesMeanwhile()
{
    QFETCH(unsigned int, seed);
    std::mt19937 random(seed);
    const auto dice = [&random](int sides) { return static_cast<int>(random() % static_cast<unsigned int>(sides)); };
    Served served;
    for (int i = 0; i < 300; ++i) {
        served.set(i);
    }
    FrameCollector changes(served.linked);
    StateWalk walk(served.linked);
    Received received;
    int added = 0;
    while (const auto frame = walk.next(200)) {
        QVERIFY(received.take(changes.take() + *frame));
        switch (dice(8)) {
        case 0:
        case 1:
            served.set(dice(400), random());
            break;
        case 2:
            served.map->EraseAt(QString::number(dice(400)), nullptr);
            break;
        case 3:
            served.count->SetValue(dice(1000), nullptr);
            break;
        case 4:
            served.complete->SetValue(!served.complete->GetValue(), nullptr);
            break;
        case 5:
            served.tree.Emplace("/E", std::make_unique<Value<int>>(QString::number(++added)));
            break;
        case 6:
            served.tree.Remove(QStringLiteral("/E/%1").arg(dice(added + 1)));
            break;
        default:
            if (dice(40) == 0) {
                served.map->Clear(nullptr);
            }
        }
    }
    QVERIFY(received.take(changes.take()));
    QCOMPARE(treeList(received.tree, root), treeList(served.tree));
}

QTEST_APPLESS_MAIN(TestStateWalk)
#include "tst_statewalk.moc"
