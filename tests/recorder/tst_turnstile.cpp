#include <recorder/users/turnstile.h>

#include <QTest>

#include <atomic>
#include <future>
#include <optional>
#include <thread>
#include <vector>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;
using Place = Turnstile::Place;

class TestTurnstile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letsInWhileThereIsAPlace();
    void keepsAPlaceForOtherHosts();
    void letsInWhoWaitsWhenSomebodyLeaves();
    void doesNotWaitForEver();
    void hasABoundedNumberOfOneHostWait();
    void holdsItsBoundForManyThreads();
};

void TestTurnstile::letsInWhileThereIsAPlace()
{
    Turnstile turnstile({2, 2, 4, 0ms});
    std::optional<Place> first(std::in_place, turnstile, "a");
    QVERIFY(*first);
    QVERIFY(Place(turnstile, "b"));
    const Place second(turnstile, "b");
    QVERIFY(!Place(turnstile, "c"));
    first.reset();
    QVERIFY(Place(turnstile, "c"));
}

void TestTurnstile::keepsAPlaceForOtherHosts()
{
    Turnstile turnstile({2, 1, 4, 0ms});
    const Place first(turnstile, "a");
    QVERIFY(!Place(turnstile, "a"));
    QVERIFY(Place(turnstile, "b"));
}

void TestTurnstile::letsInWhoWaitsWhenSomebodyLeaves()
{
    Turnstile turnstile({1, 1, 4, 60s});
    std::optional<Place> first(std::in_place, turnstile, "a");
    auto waits = std::async(std::launch::async, [&] { return bool(Place(turnstile, "a")); });
    first.reset();
    QVERIFY(waits.get());
}

void TestTurnstile::doesNotWaitForEver()
{
    Turnstile turnstile({1, 1, 4, 10ms});
    const Place first(turnstile, "a");
    QVERIFY(!Place(turnstile, "a"));
}

// Of three that come while one is inside two wait, and one is sent away, whichever it is.
void TestTurnstile::hasABoundedNumberOfOneHostWait()
{
    Turnstile turnstile({1, 1, 2, 60s});
    std::optional<Place> first(std::in_place, turnstile, "a");
    std::atomic<int> sentAway = 0;
    std::atomic<int> letIn = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] { Place(turnstile, "a") ? ++letIn : ++sentAway; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(sentAway.load(), 1, 30'000);
    QCOMPARE(letIn.load(), 0);
    first.reset();
    for (std::thread& thread : threads) {
        thread.join();
    }
    QCOMPARE(letIn.load(), 2);
}

void TestTurnstile::holdsItsBoundForManyThreads()
{
    Turnstile turnstile({2, 1, 100, 60s});
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> letIn = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 12; ++i) {
        threads.emplace_back([&, host = std::string(1, static_cast<char>('a' + i % 3))] {
            for (int times = 0; times < 50; ++times) {
                const Place place(turnstile, host);
                letIn += place ? 1 : 0;
                const int now = ++inside;
                int before = most;
                while (before < now && !most.compare_exchange_weak(before, now)) {
                }
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    QCOMPARE(letIn.load(), 600);
    QVERIFY(most.load() <= 2);
}

QTEST_GUILESS_MAIN(TestTurnstile)
#include "tst_turnstile.moc"
