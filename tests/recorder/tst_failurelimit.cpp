#include <recorder/users/failurelimit.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;

namespace {

// Three at once, then one in ten seconds; a clock that stands still until it is moved on.
struct Fixture
{
    explicit Fixture(std::size_t hosts = 100)
        : limit({3, 10s, hosts, [this] { return now; }})
    {}
    int tries(const std::string& host)
    {
        int count = 0;
        while (count < 100 && limit.begin(host)) {
            ++count;
        }
        return count;
    }

    FailureLimit::Clock::time_point now{1h};
    FailureLimit limit;
};

} // namespace

class TestFailureLimit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letsAHostTrySomeTimes();
    void letsItTryAgainAfterEachPause();
    void letsItTryAsOftenAsAtFirstAfterALongPause();
    void doesNotCountWhatIsTakenBack();
    void doesNotLetOneHostPayForAnother();
    void forgetsHostsThatOweNothing();
    void remembersABoundedNumberOfHosts();
    void takesNothingBackOfAHostThatItDoesNotKnow();
};

void TestFailureLimit::letsAHostTrySomeTimes()
{
    Fixture f;
    QCOMPARE(f.tries("a"), 3);
    QCOMPARE(f.tries("a"), 0);
}

void TestFailureLimit::letsItTryAgainAfterEachPause()
{
    Fixture f;
    f.tries("a");
    f.now += 9s;
    QCOMPARE(f.tries("a"), 0);
    f.now += 1s;
    QCOMPARE(f.tries("a"), 1);
    f.now += 20s;
    QCOMPARE(f.tries("a"), 2);
}

void TestFailureLimit::letsItTryAsOftenAsAtFirstAfterALongPause()
{
    Fixture f;
    f.tries("a");
    f.now += 24h;
    QCOMPARE(f.tries("a"), 3);
}

void TestFailureLimit::doesNotCountWhatIsTakenBack()
{
    Fixture f;
    for (int i = 0; i < 10; ++i) {
        QVERIFY(f.limit.begin("a"));
        f.limit.takeBack("a");
    }
    QCOMPARE(f.tries("a"), 3);
}

void TestFailureLimit::doesNotLetOneHostPayForAnother()
{
    Fixture f;
    f.tries("a");
    QCOMPARE(f.tries("b"), 3);
}

void TestFailureLimit::forgetsHostsThatOweNothing()
{
    Fixture f;
    QVERIFY(f.limit.begin("a"));
    QCOMPARE(f.limit.hostCount(), std::size_t{1});
    f.limit.takeBack("a");
    QCOMPARE(f.limit.hostCount(), std::size_t{0});
}

void TestFailureLimit::remembersABoundedNumberOfHosts()
{
    Fixture f(4);
    QCOMPARE(f.tries("worst"), 3);
    for (int i = 0; i < 100; ++i) {
        QVERIFY(f.limit.begin(std::to_string(i)));
        QVERIFY(f.limit.hostCount() <= 4);
    }
    QCOMPARE(f.tries("worst"), 0); // who failed least is forgotten first
}

void TestFailureLimit::takesNothingBackOfAHostThatItDoesNotKnow()
{
    Fixture f;
    f.limit.takeBack("a");
    QCOMPARE(f.tries("a"), 3);
}

QTEST_APPLESS_MAIN(TestFailureLimit)
#include "tst_failurelimit.moc"
