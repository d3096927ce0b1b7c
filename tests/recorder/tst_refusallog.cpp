#include <recorder/served/refusallog.h>

#include <processlog.h>

#include <QStringList>
#include <QTest>

#include <optional>
#include <thread>
#include <vector>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;

class TestRefusalLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_written.emplace(); }
    void cleanup() { m_written.reset(); }
    void tellsSomeLinesOfEachPeriod();
    void tellsHowManyMoreThereWere();
    void tellsHowManyMoreThereWereThoughNobodyTriesAgain();
    void tellsHowManyMoreThereWereInTheEnd();
    void countsEachLineOfManyThreads();

private:
    RefusalLog::Clock::time_point m_now{1h};
    RefusalLog m_log{{2, 10s, [this] { return m_now; }}};
    std::optional<ZelkoTest::ProcessLog> m_written;
};

void TestRefusalLog::tellsSomeLinesOfEachPeriod()
{
    m_log.tell("a");
    m_now += 9s;
    m_log.tell("b");
    QCOMPARE(m_written->lines(), (QStringList{"refused: a", "refused: b"}));
    m_now += 1s;
    m_log.tell("c");
    QCOMPARE(m_written->lines(), (QStringList{"refused: a", "refused: b", "refused: c"}));
}

void TestRefusalLog::tellsHowManyMoreThereWere()
{
    m_now += 1h;
    for (int i = 0; i < 5; ++i) {
        m_log.tell("a");
    }
    QCOMPARE(m_written->lines(), (QStringList{"refused: a", "refused: a"}));
    m_now += 10s;
    m_log.tell("b");
    QCOMPARE(m_written->lines().mid(2), (QStringList{"refused: 3 times more", "refused: b"}));
}

void TestRefusalLog::tellsHowManyMoreThereWereThoughNobodyTriesAgain()
{
    m_now += 1h;
    for (int i = 0; i < 5; ++i) {
        m_log.tell("a");
    }
    m_log.tellRest();
    QCOMPARE(m_written->lines().size(), 2); // the period is not over
    m_now += 10s;
    m_log.tellRest();
    m_log.tellRest();
    QCOMPARE(m_written->lines().mid(2), QStringList("refused: 3 times more"));
}

void TestRefusalLog::tellsHowManyMoreThereWereInTheEnd()
{
    {
        RefusalLog log({1, 10s, [this] { return m_now; }});
        log.tell("a");
        log.tell("b");
        log.tell("c");
    }
    QCOMPARE(m_written->lines(), (QStringList{"refused: a", "refused: 2 times more"}));
}

void TestRefusalLog::countsEachLineOfManyThreads()
{
    m_now += 1h;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] {
            for (int times = 0; times < 100; ++times) {
                m_log.tell("a");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    m_now += 10s;
    m_log.tell("b");
    QCOMPARE(m_written->lines(), (QStringList{"refused: a", "refused: a", "refused: 398 times more", "refused: b"}));
}

QTEST_APPLESS_MAIN(TestRefusalLog)
#include "tst_refusallog.moc"
