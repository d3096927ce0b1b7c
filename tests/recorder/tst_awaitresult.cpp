#include <recorder/served/awaitresult.h>

#include <QTest>

#include <functional>
#include <thread>

using namespace ZelkoRecorder;

class TestAwaitResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheResultOfAnotherThread();
    void givesTheOtherResultWhenTheJobIsForgotten();
    void givesTheOtherResultWhenItIsToEnd();
};

void TestAwaitResult::givesTheResultOfAnotherThread()
{
    std::thread other;
    std::thread::id worker;
    const int result = awaitResult([&other](auto job) { other = std::thread(job); },
                                   [&worker] {
                                       worker = std::this_thread::get_id();
                                       return 42;
                                   },
                                   0);
    QCOMPARE(result, 42);
    QVERIFY(worker == other.get_id());
    other.join();
}

void TestAwaitResult::givesTheOtherResultWhenTheJobIsForgotten()
{
    QCOMPARE(awaitResult([](const std::function<void()>&) {}, [] { return 42; }, 7), 7);
}

// The job is neither run nor forgotten: it may wait for the very thread that wants an end.
void TestAwaitResult::givesTheOtherResultWhenItIsToEnd()
{
    std::function<void()> kept;
    std::atomic<bool> ending = false;
    std::thread other;
    const auto keep = [&](const std::function<void()>& job) {
        kept = job;
        other = std::thread([&ending] { ending = true; });
    };
    QCOMPARE(awaitResult(
                 keep, [] { return 42; }, 7, ending),
             7);
    other.join();
    kept(); // harms nobody
}

QTEST_GUILESS_MAIN(TestAwaitResult)
#include "tst_awaitresult.moc"
