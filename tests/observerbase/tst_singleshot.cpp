#include <observerbase/singleshot.h>

#include <QElapsedTimer>
#include <QtTest>

using namespace std::chrono_literals;

class SingleShotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callsOnceAndNotBefore();
    void callsNothingForAContextThatIsGone();
};

void SingleShotTest::callsOnceAndNotBefore()
{
    QObject context;
    QStringList calls;
    QElapsedTimer timer;
    timer.start();
    Vorn::callLater(50ms, &context, [&] { calls << "later"; });
    Vorn::callLater(0ms, &context, [&] { calls << "at once"; });
    QCOMPARE(calls, QStringList());
    QTRY_COMPARE_WITH_TIMEOUT(calls, (QStringList{"at once", "later"}), 30'000);
    QVERIFY(timer.elapsed() >= 45); // timers may be early by a twentieth
    QCoreApplication::processEvents();
    QCOMPARE(calls.size(), 2);
}

void SingleShotTest::callsNothingForAContextThatIsGone()
{
    QObject context;
    auto gone = std::make_unique<QObject>();
    QStringList calls;
    Vorn::callLater(0ms, gone.get(), [&] { calls << "of the one that is gone"; });
    Vorn::callLater(1ms, &context, [&] { calls << "of the other"; });
    gone.reset();
    QTRY_COMPARE_WITH_TIMEOUT(calls, QStringList{"of the other"}, 30'000);
}

QTEST_GUILESS_MAIN(SingleShotTest)

#include "tst_singleshot.moc"
