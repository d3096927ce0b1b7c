#include <recorder/service/callgate.h>

#include <omniORB4/CORBA.h>

#include <QTest>

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
};

void TestCallGate::closesAtOnceWhenNobodyIsInside()
{
    CallGate gate;
    {
        const CallGate::Pass pass(gate);
    }
    gate.close([] { QFAIL("there is nothing to wait for"); });
}

void TestCallGate::letsNobodyInOnceItIsClosed()
{
    CallGate gate;
    gate.close([] {});
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
    gate.close([&] {
        ++pauses;
        std::call_once(once, [&] { mayLeave.set_value(); });
    });
    guest.join();
    QVERIFY(pauses >= 1);
}

QTEST_GUILESS_MAIN(TestCallGate)
#include "tst_callgate.moc"
