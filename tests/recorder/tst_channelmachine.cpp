#include <recorder/service/channelmachine.h>

#include <QStringList>
#include <QTest>

using namespace ZelkoRecorder;
using State = ChannelMachine::State;

namespace {

// Writes down what it is to do.
class WorkLog final : public ChannelMachine::Work
{
public:
    void ask() override { log << "ask"; }
    void connectSource() override { log << "connect"; }
    void startFlow() override { log << "startFlow"; }
    void stopFlow() override { log << "stopFlow"; }
    void closeRecord() override { log << "closeRecord"; }
    void disconnectSource() override { log << "disconnect"; }
    void tellStarted() override { log << "started"; }
    void tellStopping() override { log << "stopping"; }
    void tellFinished() override { log << "finished"; }
    void tellFault(ChannelMachine::Fault fault, const QString& text) override
    {
        log << QStringLiteral("fault %1 %2").arg(static_cast<int>(fault)).arg(text);
    }
    void tellRemoved() override { log << "removed"; }
    void ended() override { log << "ended"; }
    void stateChanged() override { ++changes; }

    QStringList log;
    int changes = 0;
};

} // namespace

// Each row is a script of what happens; the machine is asked for its work with each word.
class TestChannelMachine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goesItsWay_data();
    void goesItsWay();
    void allowsOnlyWhatItsStateAllows();
    void tellsWhetherDataCount();
    void tellsOfEachState();

private:
    static void happen(ChannelMachine& machine, const QString& what);
};

void TestChannelMachine::happen(ChannelMachine& machine, const QString& what)
{
    static const QMap<QString, std::function<void(ChannelMachine&)>> events{
        {"start", [](ChannelMachine& m) { m.start(); }},
        {"stop", [](ChannelMachine& m) { m.stop(); }},
        {"remove", [](ChannelMachine& m) { m.remove(); }},
        {"force", [](ChannelMachine& m) { m.removeForced(); }},
        {"asked", [](ChannelMachine& m) { m.asked(true, {}); }},
        {"declined", [](ChannelMachine& m) { m.asked(false, "no"); }},
        {"connected", [](ChannelMachine& m) { m.connected(true, {}); }},
        {"unconnected", [](ChannelMachine& m) { m.connected(false, "no"); }},
        {"flows", [](ChannelMachine& m) { m.flowStarted(true, {}); }},
        {"dry", [](ChannelMachine& m) { m.flowStarted(false, "no"); }},
        {"data", [](ChannelMachine& m) { m.dataCame(); }},
        {"end", [](ChannelMachine& m) { m.dataEnded(); }},
        {"missing", [](ChannelMachine& m) { m.dataMissing("nothing"); }},
        {"disk", [](ChannelMachine& m) { m.diskRefused("full"); }},
        {"time", [](ChannelMachine& m) { m.timeIsOver(); }},
        {"stopped", [](ChannelMachine& m) { m.flowStopped(); }},
        {"closed", [](ChannelMachine& m) { m.recordClosed(); }},
        {"lost", [](ChannelMachine& m) { m.managerLost(); }},
    };
    events.value(what)(machine);
}

void TestChannelMachine::goesItsWay_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("work");
    QTest::addColumn<State>("ending");

    const QString begun = "start asked connected flows data ";
    const QString beginning = "ask connect startFlow started ";
    QTest::newRow("records from start to stop")
        << begun + "stop stopped closed" << beginning + "stopFlow closeRecord disconnect finished" << State::Idle;
    QTest::newRow("data that come before the answer count") << "start asked connected data flows"
                                                            << "ask connect startFlow started" << State::Recording;
    QTest::newRow("tells of the first data only") << begun + "data data" << beginning.trimmed() << State::Recording;
    QTest::newRow("tells what the manager declined") << "start declined"
                                                     << "ask|fault 1 no" << State::Idle;
    QTest::newRow("tells when it does not connect") << "start asked unconnected"
                                                    << "ask connect|fault 2 no" << State::Idle;
    QTest::newRow("undoes what was done when nothing flows")
        << "start asked connected dry closed"
        << "ask connect startFlow|fault 3 no|closeRecord disconnect finished" << State::Idle;
    QTest::newRow("stop while it asks") << "start stop asked"
                                        << "ask" << State::Idle;
    QTest::newRow("stop while it connects") << "start asked stop connected closed"
                                            << "ask connect closeRecord disconnect finished" << State::Idle;
    QTest::newRow("stop while the flow starts")
        << "start asked connected stop flows stopped closed"
        << "ask connect startFlow stopFlow closeRecord disconnect finished" << State::Idle;
    QTest::newRow("two stops are one") << begun + "stop stop stopped stop closed"
                                       << beginning + "stopFlow closeRecord disconnect finished" << State::Idle;
    QTest::newRow("the source ends") << begun + "end stopped closed"
                                     << beginning + "stopping stopFlow closeRecord disconnect finished" << State::Idle;
    QTest::newRow("the time is over") << begun + "time stopped closed"
                                      << beginning + "stopping stopFlow closeRecord disconnect finished" << State::Idle;
    QTest::newRow("no data come") << "start asked connected flows missing stopped closed"
                                  << "ask connect startFlow|fault 3 nothing|stopping stopFlow closeRecord disconnect "
                                     "finished"
                                  << State::Idle;
    QTest::newRow("data that have come are not missing")
        << begun + "missing" << beginning.trimmed() << State::Recording;
    QTest::newRow("data that are not awaited are not missing")
        << "missing start missing asked missing connected missing flows stop missing"
        << "ask connect startFlow stopFlow" << State::Stopping;
    QTest::newRow("the disk is full") << begun + "disk stopped closed"
                                      << beginning.trimmed() +
                                             "|fault 4 full|stopping stopFlow closeRecord disconnect finished"
                                      << State::Idle;
    QTest::newRow("records again") << begun + "stop stopped closed start"
                                   << beginning + "stopFlow closeRecord disconnect finished ask" << State::Asking;
    QTest::newRow("removed at rest") << "remove"
                                     << "removed ended" << State::Removed;
    QTest::newRow("not removed while it records") << begun + "remove" << beginning.trimmed() << State::Recording;
    QTest::newRow("removed by force while it records")
        << begun + "force stopped closed" << beginning + "stopFlow closeRecord disconnect finished removed ended"
        << State::Removed;
    QTest::newRow("removed by force while it asks") << "start force asked"
                                                    << "ask removed ended" << State::Removed;
    QTest::newRow("its manager dies at rest") << "lost"
                                              << "ended" << State::Removed;
    QTest::newRow("its manager dies while it is asked") << "start lost asked"
                                                        << "ask ended" << State::Removed;
    QTest::newRow("its manager dies while it records")
        << begun + "lost closed" << beginning + "closeRecord ended" << State::Removed;
    QTest::newRow("its manager dies while the flow stops")
        << begun + "stop lost stopped closed" << beginning + "stopFlow closeRecord ended" << State::Removed;
    QTest::newRow("its manager dies while the record is closed")
        << begun + "stop stopped lost closed" << beginning + "stopFlow closeRecord ended" << State::Removed;
    QTest::newRow("late answers mean nothing") << "asked connected flows data stopped closed"
                                               << "" << State::Idle;
    QTest::newRow("nothing happens once it is removed") << "remove start asked force lost stop end"
                                                        << "removed ended" << State::Removed;
}

void TestChannelMachine::goesItsWay()
{
    QFETCH(QString, events);
    QFETCH(QString, work);
    QFETCH(State, ending);
    WorkLog done;
    ChannelMachine machine(done);
    for (const QString& event : events.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        happen(machine, event);
    }
    QCOMPARE(done.log.join(QLatin1Char(' ')), work.replace(QLatin1Char('|'), QLatin1Char(' ')));
    QCOMPARE(machine.state(), ending);
}

void TestChannelMachine::allowsOnlyWhatItsStateAllows()
{
    WorkLog done;
    ChannelMachine machine(done);
    QVERIFY(!machine.stop());
    QVERIFY(machine.start());
    QVERIFY(!machine.start());
    QVERIFY(!machine.remove());
    QVERIFY(machine.stop());
    machine.asked(true, {});
    QVERIFY(machine.remove());
    QVERIFY(!machine.start());
    QVERIFY(!machine.remove());
}

// Data that come while the record is being closed are no beginning from which to count.
void TestChannelMachine::tellsWhetherDataCount()
{
    WorkLog done;
    ChannelMachine machine(done);
    machine.start();
    machine.asked(true, {});
    machine.connected(true, {});
    QVERIFY(machine.dataCame());
    QVERIFY(!machine.dataCame());
    machine.flowStarted(true, {});
    machine.stop();
    machine.flowStopped();
    machine.recordClosed();
    QVERIFY(!machine.dataCame());
    machine.start();
    QVERIFY(!machine.dataCame());
}

void TestChannelMachine::tellsOfEachState()
{
    WorkLog done;
    ChannelMachine machine(done);
    int before = 0;
    const auto changes = [&](const QString& event) {
        happen(machine, event);
        return done.changes - std::exchange(before, done.changes);
    };
    for (const char* const event : {"start", "asked", "connected", "data", "flows", "stop", "stopped", "closed"}) {
        QVERIFY2(changes(QString::fromLatin1(event)) == 1, event);
    }
    QCOMPARE(changes(QStringLiteral("start")), 1);
    QCOMPARE(changes(QStringLiteral("stop")), 1);
    QVERIFY(machine.isStopWanted());
    QCOMPARE(changes(QStringLiteral("asked")), 1);
    QVERIFY(!machine.isStopWanted());
    QCOMPARE(changes(QStringLiteral("closed")), 0);
}

QTEST_GUILESS_MAIN(TestChannelMachine)
#include "tst_channelmachine.moc"
