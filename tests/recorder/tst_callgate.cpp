#include <recorder/service/callgate.h>

#include <omniORB4/CORBA.h>

#include <QTest>

#include <atomic>
#include <future>
#include <optional>
#include <thread>

using namespace ZelkoRecorder;

class TestCallGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closesAtOnceWhenNobodyIsInside();
    void letsNobodyInOnceItIsClosed();
    void waitsForThoseInside();
    void waitsForThoseThatItGivesUp();
};

void TestCallGate::closesAtOnceWhenNobodyIsInside()
{
    CallGate gate;
    {
        const CallGate::Pass pass(gate);
    }
    const auto fail = [] { QFAIL("there is nothing to wait for"); };
    gate.close(fail, fail);
}

void TestCallGate::letsNobodyInOnceItIsClosed()
{
    CallGate gate;
    gate.close([] {}, [] {});
    QVERIFY_EXCEPTION_THROWN(CallGate::Pass{gate}, CORBA::BAD_INV_ORDER);
}

// Whoever is inside may wait for something that the closing thread does meanwhile.
void TestCallGate::waitsForThoseInside()
{
    CallGate gate;
    std::promise<void> inside;
    std::promise<void> mayLeave;
    std::thread guest([&] {
        const CallGate::Pass pass(gate);
        inside.set_value();
        mayLeave.get_future().wait();
    });
    inside.get_future().wait();
    std::once_flag once;
    int pauses = 0;
    gate.close(
        [&] {
            ++pauses;
            std::call_once(once, [&] { mayLeave.set_value(); });
        },
        [] {});
    guest.join();
    QVERIFY(pauses >= 1);
}

// What they work on goes once the gate is closed.
void TestCallGate::waitsForThoseThatItGivesUp()
{
    CallGate gate;
    std::promise<void> inside;
    std::promise<void> mayLeave;
    std::atomic<bool> isInside = true;
    std::thread guest([&] {
        const CallGate::Pass pass(gate);
        inside.set_value();
        mayLeave.get_future().wait();
        isInside = false;
    });
    inside.get_future().wait();
    int pauses = 0;
    int givenUp = 0;
    const auto pause = [&] {
        if (givenUp > 0 && ++pauses == 2) {
            mayLeave.set_value();
        }
    };
    gate.close(
        pause, [&] { ++givenUp; }, std::chrono::milliseconds(0));
    QVERIFY(!isInside);
    QCOMPARE(givenUp, 1);
    guest.join();
}

QTEST_GUILESS_MAIN(TestCallGate)
#include "tst_callgate.moc"
