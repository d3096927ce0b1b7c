#include "framecollector.h"
#include "testrecords.h"

#include <recorder/link/linkedtree.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>

#include <QtTest>

using namespace ZelkoRecorder;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

class TestLinkedTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesHandlesToWhatStandsThere();
    void tellsWhatComesWithItsState();
    void tellsALargeStateInPieces();
    void tellsWhatGoesTheDeepestFirst();
    void tellsEachChangeOnceToEverySubscriber();
    void tellsAChangeToAllButItsOrigin();
    void tellsNothingOfWhatChangesNothing();
    void tellsNothingToWhoWasRemoved();
    void letsTheValuesGoAtItsEnd();
};

void TestLinkedTree::givesHandlesToWhatStandsThere()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    QCOMPARE(linked.handles(), (std::vector<std::uint32_t>{1, 2}));
    QCOMPARE(linked.item(1), tree.GetItem("/A"));
    QCOMPARE(linked.value(2), number);
    QVERIFY(!linked.value(1));
    QVERIFY(!linked.item(3));
    QCOMPARE(frameTexts(*linked.announcement(1) + *linked.announcement(2)),
             (QStringList{"announce 1 /A", "announce 2 /A/Number Integer"}));
}

void TestLinkedTree::tellsWhatComesWithItsState()
{
    Tree tree;
    LinkedTree linked(tree);
    FrameCollector collector(linked);
    tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    QCOMPARE(collector.takeTexts(), (QStringList{"announce 1 /A", "announce 2 /A/Number Integer", "commands 2"}));
}

void TestLinkedTree::tellsALargeStateInPieces()
{
    Tree tree;
    LinkedTree linked(tree);
    FrameCollector collector(linked);
    auto map = std::make_unique<RecordItemMap>("Map", TValueState::Open);
    for (int i = 0; i < 2000; ++i) {
        map->Add(RecordMapData(makeRecord(QString::number(i))), nullptr);
    }
    tree.Emplace("/", std::move(map));
    const std::string bytes = collector.take();
    QVERIFY(bytes.size() > 3 * statePieceBytes);
    std::string_view rest = bytes;
    ZelkoCommon::link::Frame frame;
    while (!rest.empty()) {
        QCOMPARE(ZelkoCommon::link::readFrame(rest, frame), ZelkoCommon::link::ReadResult::Frame);
        QVERIFY(frame.payload.size() < 2 * statePieceBytes);
    }
}

void TestLinkedTree::tellsWhatGoesTheDeepestFirst()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    FrameCollector collector(linked);
    Q_UNUSED(number);
    tree.Remove("/A");
    QCOMPARE(collector.takeTexts(), (QStringList{"withdraw 2", "withdraw 1"}));
    QVERIFY(linked.handles().empty());
    tree.CreateOrGetNode("/A");
    QCOMPARE(collector.takeTexts(), QStringList{"announce 3 /A"}); // a handle is never given twice
}

void TestLinkedTree::tellsEachChangeOnceToEverySubscriber()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    FrameCollector first(linked);
    FrameCollector second(linked);
    number->SetValue(5, nullptr);
    number->SetState(TValueState::Locked, nullptr);
    const std::string told = first.take();
    QCOMPARE(frameTexts(told), (QStringList{"commands 2", "commands 2"}));
    QCOMPARE(second.take(), told);
}

void TestLinkedTree::tellsAChangeToAllButItsOrigin()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    FrameCollector writer(linked);
    FrameCollector other(linked);
    number->SetValue(5, &writer);
    QCOMPARE(writer.takeTexts(), QStringList());
    QCOMPARE(other.takeTexts(), QStringList{"commands 2"});
}

void TestLinkedTree::tellsNothingOfWhatChangesNothing()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    FrameCollector collector(linked);
    number->SetValue(0, nullptr);
    QCOMPARE(collector.takeTexts(), QStringList());
    number->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(collector.takeTexts(), QStringList{"commands 2"});
}

void TestLinkedTree::tellsNothingToWhoWasRemoved()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    LinkedTree linked(tree);
    FrameCollector collector(linked);
    linked.remove(&collector);
    number->SetValue(5, nullptr);
    QCOMPARE(collector.takeTexts(), QStringList());
}

void TestLinkedTree::letsTheValuesGoAtItsEnd()
{
    Tree tree;
    auto* const number = tree.Emplace("/A", std::make_unique<Value<int>>("Number"));
    {
        LinkedTree linked(tree);
        QVERIFY(number->GetTransmitter());
    }
    QVERIFY(!number->GetTransmitter());
    number->SetValue(5, nullptr);
    tree.Remove("/A");
}

QTEST_APPLESS_MAIN(TestLinkedTree)
#include "tst_linkedtree.moc"
