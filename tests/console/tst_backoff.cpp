#include <console/session/backoff.h>

#include <QTest>

using ZelkoConsole::BackOff;
using namespace std::chrono_literals;

class TestBackOff : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doublesUpToTheLastWait()
    {
        BackOff backOff(1s, 5s);
        QCOMPARE(backOff.next(), 1000ms);
        QCOMPARE(backOff.next(), 2000ms);
        QCOMPARE(backOff.next(), 4000ms);
        QCOMPARE(backOff.next(), 5000ms);
        QCOMPARE(backOff.next(), 5000ms);
    }

    void beginsAgainAfterASuccess()
    {
        BackOff backOff(1s, 5s);
        backOff.next();
        backOff.next();
        backOff.reset();
        QCOMPARE(backOff.next(), 1000ms);
    }
};

QTEST_GUILESS_MAIN(TestBackOff)
#include "tst_backoff.moc"
