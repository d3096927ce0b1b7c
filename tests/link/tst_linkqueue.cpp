#include <zelkobase/connection/linkqueue.h>

#include <QtTest>

#include <atomic>
#include <thread>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

QString textOf(const std::optional<LinkQueue::Entry>& entry)
{
    if (!entry) {
        return QStringLiteral("nothing");
    }
    if (const auto* const batch = std::get_if<LinkQueue::Batch>(&*entry)) {
        return QString::fromStdString(batch->bytes);
    }
    if (const auto* const end = std::get_if<LinkQueue::Disconnected>(&*entry)) {
        return QStringLiteral("disconnected: ") + QString::fromStdString(end->reason);
    }
    if (const auto* const refused = std::get_if<LinkQueue::WriteRefused>(&*entry)) {
        return QStringLiteral("refused: ") + QString::fromStdString(refused->reason);
    }
    return QStringLiteral("failed: ") + QString::fromStdString(std::get<LinkQueue::ConnectFailed>(*entry).reason);
}

QStringList takeAll(LinkQueue& queue)
{
    QStringList texts;
    for (auto entry = queue.take(); entry; entry = queue.take()) {
        texts << textOf(entry);
    }
    return texts;
}

} // namespace

class TestLinkQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsDataAndStateInOrder();
    void takesNothingBehindADisconnect();
    void ignoresTheEndOfAnEarlierConnection();
    void wakesUpOnceUntilItWasFoundEmpty();
    void holdsBackWhatDoesNotFit();
    void takesABatchOfAnySizeWhenEmpty();
    void letsAWaitingBatchInOnceThereIsRoom();
    void endsTheWaitOfABatchWhenItsConnectionEnds();
    void wakesNobodyAndTakesNothingAfterShutDown();
    void tellsWhetherAccessWasDenied();
    void losesNothingBetweenThreads();
};

void TestLinkQueue::tellsWhetherAccessWasDenied()
{
    LinkQueue queue([] {}, 1000);
    queue.reportFailure("nobody there");
    queue.reportFailure("not you", true);
    QVERIFY(!std::get<LinkQueue::ConnectFailed>(*queue.take()).isDenied);
    QVERIFY(std::get<LinkQueue::ConnectFailed>(*queue.take()).isDenied);
}

void TestLinkQueue::keepsDataAndStateInOrder()
{
    LinkQueue queue([] {}, 1000);
    queue.reportFailure("nobody there");
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "a", 0ms));
    QVERIFY(queue.put(connection, "b", 0ms));
    queue.reportRefusal(connection, "not allowed");
    queue.close(connection, "gone");
    QCOMPARE(takeAll(queue),
             (QStringList{"failed: nobody there", "a", "b", "refused: not allowed", "disconnected: gone"}));
}

void TestLinkQueue::takesNothingBehindADisconnect()
{
    LinkQueue queue([] {}, 1000);
    QVERIFY(!queue.put(1, "before any connection", 0ms));
    const auto connection = queue.open();
    queue.close(connection, "gone");
    queue.close(connection, "gone twice");
    QVERIFY(!queue.put(connection, "late", 0ms));
    queue.reportRefusal(connection, "late");
    QCOMPARE(takeAll(queue), QStringList{"disconnected: gone"});
}

void TestLinkQueue::ignoresTheEndOfAnEarlierConnection()
{
    LinkQueue queue([] {}, 1000);
    const auto first = queue.open();
    const auto second = queue.open();
    QVERIFY(!queue.put(first, "of the first one", 0ms));
    queue.reportRefusal(first, "of the first one");
    queue.close(first, "gone");
    QVERIFY(queue.put(second, "of the second one", 0ms));
    QCOMPARE(takeAll(queue), QStringList{"of the second one"});
}

void TestLinkQueue::wakesUpOnceUntilItWasFoundEmpty()
{
    int wakeUps = 0;
    LinkQueue queue([&] { ++wakeUps; }, 1000);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "a", 0ms));
    QVERIFY(queue.put(connection, "b", 0ms));
    QCOMPARE(wakeUps, 1);
    queue.take();
    queue.take();
    QVERIFY(queue.put(connection, "c", 0ms)); // whoever takes has not seen the end yet
    QCOMPARE(wakeUps, 1);
    queue.take();
    QVERIFY(!queue.take());
    QVERIFY(queue.put(connection, "d", 0ms));
    QCOMPARE(wakeUps, 2);
}

void TestLinkQueue::holdsBackWhatDoesNotFit()
{
    LinkQueue queue([] {}, 10);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "12345", 0ms));
    QVERIFY(queue.put(connection, "67890", 0ms));
    QVERIFY(!queue.put(connection, "x", 1ms));
    queue.take();
    QVERIFY(queue.put(connection, "x", 0ms));
    QVERIFY(!queue.put(connection, "12345", 1ms));
}

void TestLinkQueue::takesABatchOfAnySizeWhenEmpty()
{
    LinkQueue queue([] {}, 10);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, std::string(1000, 'x'), 0ms));
    QVERIFY(!queue.put(connection, "y", 1ms));
}

void TestLinkQueue::letsAWaitingBatchInOnceThereIsRoom()
{
    LinkQueue queue([] {}, 1);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "a", 0ms));
    std::atomic<bool> taken = false;
    std::thread sender([&] { taken = queue.put(connection, "b", 10s); });
    QCOMPARE(textOf(queue.take()), "a");
    sender.join();
    QVERIFY(taken);
    QCOMPARE(textOf(queue.take()), "b");
}

void TestLinkQueue::endsTheWaitOfABatchWhenItsConnectionEnds()
{
    LinkQueue queue([] {}, 1);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "a", 0ms));
    std::atomic<bool> taken = true;
    std::thread sender([&] { taken = queue.put(connection, "b", 10s); });
    queue.close(connection, "gone");
    sender.join();
    QVERIFY(!taken);
    QCOMPARE(takeAll(queue), (QStringList{"a", "disconnected: gone"}));
}

void TestLinkQueue::wakesNobodyAndTakesNothingAfterShutDown()
{
    std::atomic<int> wakeUps = 0;
    LinkQueue queue([&] { ++wakeUps; }, 1);
    const auto connection = queue.open();
    QVERIFY(queue.put(connection, "a", 0ms));
    takeAll(queue);
    std::thread sender([&] {
        while (queue.put(connection, "b", 10s)) {
        }
    });
    while (wakeUps < 2) {
        std::this_thread::yield();
    }
    queue.shutDown();
    sender.join();
    queue.close(connection, "gone");
    queue.reportFailure("nobody there");
    QCOMPARE(wakeUps.load(), 2);
    QVERIFY(!queue.put(connection, "c", 0ms));
}

void TestLinkQueue::losesNothingBetweenThreads()
{
    constexpr int count = 20000;
    std::atomic<int> wakeUps = 0;
    LinkQueue queue([&] { ++wakeUps; }, 64);
    const auto connection = queue.open();
    std::thread sender([&] {
        for (int i = 0; i < count; ++i) {
            queue.put(connection, std::to_string(i), 60s);
        }
        queue.close(connection, "done");
    });
    QStringList seen;
    while (seen.isEmpty() || !seen.last().startsWith("disconnected")) {
        seen << takeAll(queue);
    }
    sender.join();
    QCOMPARE(seen.size(), count + 1);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(seen[i], QString::number(i));
    }
    QVERIFY(wakeUps <= count + 1);
}

QTEST_APPLESS_MAIN(TestLinkQueue)
#include "tst_linkqueue.moc"
