#include "patience.h"
#include "turns.h"

#include <console/soon.h>

#include <QTest>

#include <optional>

using namespace ZelkoConsole;

class TestSoon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void happensOnceHoweverOftenItIsAskedFor();
    void happensAgainWhenItIsAskedForAgain();
    void canBeAskedForWhileItHappens();
    void doesNotHappenAnyMoreOnceItIsGone();
};

void TestSoon::happensOnceHoweverOftenItIsAskedFor()
{
    int count = 0;
    Soon soon([&count] { ++count; });
    letTurnsPass();
    QCOMPARE(count, 0);
    soon.ask();
    soon.ask();
    QCOMPARE(count, 0);
    letTurnsPass();
    QCOMPARE(count, 1);
}

void TestSoon::happensAgainWhenItIsAskedForAgain()
{
    int count = 0;
    Soon soon([&count] { ++count; });
    soon.ask();
    QTRY_COMPARE_WITH_TIMEOUT(count, 1, patience);
    soon.ask();
    QTRY_COMPARE_WITH_TIMEOUT(count, 2, patience);
}

void TestSoon::canBeAskedForWhileItHappens()
{
    int count = 0;
    std::optional<Soon> soon;
    soon.emplace([&] {
        if (++count < 3) {
            soon->ask();
        }
    });
    soon->ask();
    QTRY_COMPARE_WITH_TIMEOUT(count, 3, patience);
    letTurnsPass();
    QCOMPARE(count, 3);
}

void TestSoon::doesNotHappenAnyMoreOnceItIsGone()
{
    int count = 0;
    {
        Soon soon([&count] { ++count; });
        soon.ask();
    }
    letTurnsPass();
    QCOMPARE(count, 0);
}

QTEST_GUILESS_MAIN(TestSoon)
#include "tst_soon.moc"
