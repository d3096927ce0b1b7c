#include <console/replay/replaybegin.h>

#include <QTest>

using ZelkoConsole::ReplayBegin;

class TestReplayBegin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAtTheStartAtFirst();
    void isWhereItWasPut();
    void goesToTheStartOfAnotherExtent();
    void staysInTheSameExtent();
};

void TestReplayBegin::isAtTheStartAtFirst()
{
    ReplayBegin begin;
    QCOMPARE(begin.position(), 0.0);
    begin.setExtent({100, 200});
    QCOMPARE(begin.position(), 100.0);
}

void TestReplayBegin::isWhereItWasPut()
{
    ReplayBegin begin;
    begin.setExtent({100, 200});
    begin.put(150);
    QCOMPARE(begin.position(), 150.0);
}

// As on a bar: a record that grows takes the position back too.
void TestReplayBegin::goesToTheStartOfAnotherExtent()
{
    ReplayBegin begin;
    begin.setExtent({100, 200});
    begin.put(150);
    begin.setExtent({100, 201});
    QCOMPARE(begin.position(), 100.0);
    begin.put(150);
    begin.setExtent({0, 0});
    begin.setExtent({100, 201});
    QCOMPARE(begin.position(), 100.0);
}

void TestReplayBegin::staysInTheSameExtent()
{
    ReplayBegin begin;
    begin.setExtent({100, 200});
    begin.put(150);
    begin.setExtent({100, 200});
    QCOMPARE(begin.position(), 150.0);
}

QTEST_APPLESS_MAIN(TestReplayBegin)
#include "tst_replaybegin.moc"
