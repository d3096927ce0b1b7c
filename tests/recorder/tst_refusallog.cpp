#include <recorder/served/refusallog.h>

#include <QStringList>
#include <QTest>

#include <mutex>
#include <thread>
#include <vector>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;

namespace {

std::mutex guard;
QStringList written;

void keep(QtMsgType, const QMessageLogContext&, const QString& text)
{
    const std::lock_guard lock(guard);
    written.append(text);
}

} // namespace

class TestRefusalLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        written.clear();
        m_before = qInstallMessageHandler(keep);
    }
    void cleanup() { qInstallMessageHandler(m_before); }
    void tellsSomeLinesOfEachPeriod();
    void tellsHowManyMoreThereWere();
    void countsEachLineOfManyThreads();

private:
    RefusalLog::Clock::time_point m_now{1h};
    RefusalLog m_log{{2, 10s, [this] { return m_now; }}};
    QtMessageHandler m_before = nullptr;
};

void TestRefusalLog::tellsSomeLinesOfEachPeriod()
{
    m_log.tell("a");
    m_now += 9s;
    m_log.tell("b");
    QCOMPARE(written, (QStringList{"refused: a", "refused: b"}));
    m_now += 1s;
    m_log.tell("c");
    QCOMPARE(written, (QStringList{"refused: a", "refused: b", "refused: c"}));
}

void TestRefusalLog::tellsHowManyMoreThereWere()
{
    m_now += 1h;
    for (int i = 0; i < 5; ++i) {
        m_log.tell("a");
    }
    QCOMPARE(written, (QStringList{"refused: a", "refused: a"}));
    m_now += 10s;
    m_log.tell("b");
    QCOMPARE(written.mid(2), (QStringList{"refused: 3 times more", "refused: b"}));
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
    QCOMPARE(written, (QStringList{"refused: a", "refused: a", "refused: 398 times more", "refused: b"}));
}

QTEST_APPLESS_MAIN(TestRefusalLog)
#include "tst_refusallog.moc"
