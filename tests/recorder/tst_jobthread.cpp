#include <recorder/served/jobthread.h>

#include <patience.h>

#include <QTest>

#include <future>

using namespace ZelkoRecorder;

class TestJobThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsJobsInOrderOnOneOtherThread();
    void queuesAJobOfAJobBehindTheOthers();
    void forgetsWaitingJobsWhenItGoes();
    void finishesTheJobUnderWay();
};

void TestJobThread::runsJobsInOrderOnOneOtherThread()
{
    std::vector<std::pair<int, std::thread::id>> ran;
    std::promise<void> done;
    JobThread thread;
    for (int i = 0; i < 100; ++i) {
        thread.enqueue([&ran, i] { ran.emplace_back(i, std::this_thread::get_id()); });
    }
    thread.enqueue([&] { done.set_value(); });
    done.get_future().wait();
    QCOMPARE(ran.size(), std::size_t{100});
    for (int i = 0; i < 100; ++i) {
        const auto& [number, id] = ran[static_cast<std::size_t>(i)];
        QCOMPARE(number, i);
        QVERIFY(id == ran.front().second && id != std::this_thread::get_id());
    }
}

void TestJobThread::queuesAJobOfAJobBehindTheOthers()
{
    std::string order;
    std::promise<void> begin;
    std::promise<void> done;
    JobThread thread;
    thread.enqueue([&] {
        begin.get_future().wait();
        order += 'a';
        thread.enqueue([&] {
            order += 'c';
            done.set_value();
        });
    });
    thread.enqueue([&] { order += 'b'; });
    begin.set_value();
    done.get_future().wait();
    QCOMPARE(order, std::string("abc"));
}

void TestJobThread::forgetsWaitingJobsWhenItGoes()
{
    std::atomic<int> ran = 0;
    JobThread* worker = nullptr;
    const std::function<void()> again = [&] {
        ++ran;
        worker->enqueue(again); // there is always one that waits
    };
    JobThread thread;
    worker = &thread;
    thread.enqueue(again);
    QTRY_VERIFY_WITH_TIMEOUT(ran > 10, patience);
}

void TestJobThread::finishesTheJobUnderWay()
{
    std::promise<void> begun;
    std::atomic<bool> leaving = false;
    bool finished = false;
    {
        JobThread thread;
        thread.enqueue([&] {
            begun.set_value();
            for (int turns = 0; turns < 1000; turns += leaving ? 1 : 0) {
                std::this_thread::yield(); // to be left behind, if that can be
            }
            finished = true;
        });
        begun.get_future().wait();
        leaving = true;
    }
    QVERIFY(finished);
}

QTEST_GUILESS_MAIN(TestJobThread)
#include "tst_jobthread.moc"
