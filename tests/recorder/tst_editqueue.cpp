#include <recorder/store/editqueue.h>

#include <QTest>

#include <thread>

using namespace ZelkoRecorder;
using ZELKO_XML::ZELKO_RecordData;

namespace {

const RecordEdit nothing = [](ZELKO_RecordData&) { return StoreStatus::Done; };

} // namespace

class TestEditQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesOutWhatWaitsInItsOrder();
    void takesNothingOnceClosed();
    void keepsThoseWhoWaitUntilItsEnd();
    void mayBeAskedAgainByWhomItTells();
    void losesNothingOfSeveralThreads();
};

void TestEditQueue::givesOutWhatWaitsInItsOrder()
{
    EditQueue queue;
    QVERIFY(queue.take().empty());
    QStringList answered;
    QVERIFY(queue.post(nothing, [&](StoreStatus) { answered.append(QStringLiteral("first")); }));
    QVERIFY(queue.post(nothing, [&](StoreStatus) { answered.append(QStringLiteral("second")); }));
    for (const EditQueue::Entry& entry : queue.take()) {
        entry.answer(StoreStatus::Done);
    }
    QCOMPARE(answered, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    QVERIFY(queue.take().empty());
}

void TestEditQueue::takesNothingOnceClosed()
{
    EditQueue queue;
    int answered = 0;
    QVERIFY(queue.post(nothing, [&](StoreStatus) { ++answered; }));
    QCOMPARE(queue.close().size(), std::size_t{1});
    QVERIFY(!queue.post(nothing, [&](StoreStatus) { ++answered; }));
    QVERIFY(queue.take().empty());
    QVERIFY(queue.close().empty());
    QCOMPARE(answered, 0);
}

void TestEditQueue::keepsThoseWhoWaitUntilItsEnd()
{
    QStringList log;
    EditQueue queue([&] { log.append(QStringLiteral("posted")); });
    const auto answer = [&](StoreStatus) { log.append(QStringLiteral("answered")); };
    const EditQueue::Entry patient{nothing, answer, [&] { log.append(QStringLiteral("over")); }};
    QVERIFY(queue.post(patient));
    QCOMPARE(queue.close().size(), std::size_t{1}); // to be made, as that of anybody
    QVERIFY(queue.post(patient));
    QVERIFY(queue.take().empty());
    QVERIFY(queue.close().empty());
    QCOMPARE(log, (QStringList{QStringLiteral("posted"), QStringLiteral("posted")}));
    queue.end();
    QCOMPARE(log, (QStringList{QStringLiteral("posted"), QStringLiteral("posted"), QStringLiteral("over")}));
    QVERIFY(!queue.post(patient));
    QCOMPARE(log.size(), 3);
}

// Who is told asks elsewhere at once, where the same queue may be looked at again.
void TestEditQueue::mayBeAskedAgainByWhomItTells()
{
    EditQueue queue;
    queue.close();
    bool isTaken = true;
    QVERIFY(queue.post({nothing, {}, [&] { isTaken = queue.post({nothing, {}, [] {}}); }}));
    queue.end();
    QVERIFY(!isTaken);
}

void TestEditQueue::losesNothingOfSeveralThreads()
{
    constexpr int each = 2000;
    EditQueue queue;
    int accepted = 0;
    std::thread other([&] {
        for (int i = 0; i < each; ++i) {
            accepted += queue.post(nothing, {}) ? 1 : 0;
        }
    });
    std::size_t taken = 0;
    while (taken < each / 2) {
        taken += queue.take().size();
    }
    taken += queue.close().size();
    other.join();
    QCOMPARE(taken, static_cast<std::size_t>(accepted));
}

QTEST_GUILESS_MAIN(TestEditQueue)
#include "tst_editqueue.moc"
