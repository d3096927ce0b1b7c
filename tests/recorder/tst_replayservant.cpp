#include <servicerecorder.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using QD_ZLK::IF_ZELKO_Replay_ptr;
using QD_ZLK::IF_ZELKO_Replay_var;
using ZelkoCommon::Role;
using ZelkoCommon::ServiceStatus;
using ZelkoCommon::toCorba;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

using Call = std::function<CORBA::Long(IF_ZELKO_Replay_ptr, const char* device, const char* record)>;

CORBA::Long start(IF_ZELKO_Replay_ptr replay, const char* device, const char* record, qint64 from = 0, qint64 to = 0,
                  CORBA::Long speed = 100)
{
    return replay->StartReplay(device, record, QD_ZLK::RATE_NOT_SET, from, to, speed);
}

CORBA::Long startReceivers(IF_ZELKO_Replay_ptr replay, const char* device, const char* record)
{
    return replay->StartReplayReceivers(device, record, QD_ZLK::RATE_NOT_SET, 0, 0, 100, QD_ZLK::ENDPOINT_UDP);
}

const QVector<std::pair<const char*, Call>>& allCalls()
{
    static const QVector<std::pair<const char*, Call>> calls{
        {"StartReplay", [](auto p, auto d, auto r) { return start(p, d, r); }},
        {"StartReplayReceivers", [](auto p, auto d, auto r) { return startReceivers(p, d, r); }},
        {"PauseReplay", [](auto p, auto d, auto r) { return p->PauseReplay(d, r); }},
        {"ContinueReplay", [](auto p, auto d, auto r) { return p->ContinueReplay(d, r); }},
        {"StopReplay", [](auto p, auto d, auto r) { return p->StopReplay(d, r); }},
    };
    return calls;
}

// An hour long, so that no replay of it ends by itself.
ZELKO_XML::ZELKO_RecordData longRecord()
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord("r1");
    record.SetStopTime(3'610'000'000);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(3'610'000'000, 4000)});
    return record;
}

} // namespace

class TestReplayServant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_recorder.reset(); }
    void replaysFromStartToStop();
    void movesItsPositionOnTheTree();
    void pausesAndGoesOn();
    void endsAtTheEnd();
    void refusesWhatIsNotBeingReplayed();
    void refusesASecondReplay();
    void refusesUnknownOnes_data() { everyCall(); }
    void refusesUnknownOnes();
    void refusesViewers_data() { everyCall(); }
    void refusesViewers();
    void refusesArguments();
    void saysWhatItDoesNotOffer();

private:
    static void everyCall();
    ServiceStatus ask(const Call& call, const QString& device = "D1", const QString& record = "r1") const
    {
        return onCallerThread(
            [&] { return static_cast<ServiceStatus>(call(m_recorder->replay(), toCorba(device), toCorba(record))); });
    }
    ServiceStatus askFor(int number) const { return ask(allCalls().at(number).second); }
    auto position() const { return m_recorder->recorder.service("D1")->replayPosition("r1"); }
    Status shown() const { return m_recorder->values("D1").record("r1")->GetRecordStatus(); }

    std::unique_ptr<ServiceRecorder> m_recorder;
};

void TestReplayServant::init()
{
    m_recorder = ServiceRecorder::loaded([](const QString& folder) { storeRecord(folder, longRecord(), 4000); });
    QVERIFY(m_recorder);
}

void TestReplayServant::everyCall()
{
    QTest::addColumn<int>("number");
    for (int number = 0; number < allCalls().size(); ++number) {
        QTest::newRow(allCalls().at(number).first) << number;
    }
}

void TestReplayServant::replaysFromStartToStop()
{
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 20'000'000, 3'000'000'000); }),
             ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), Status::Replaying, 30000);
    QVERIFY(position().has_value());
    const quint64 first = position()->time;
    QVERIFY(first >= 20'000'000);
    QTRY_VERIFY_WITH_TIMEOUT(position()->time > first, 30000);
    QCOMPARE(ask([](auto p, auto d, auto r) { return p->StopReplay(d, r); }), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), Status::Finished, 30000);
    QVERIFY(!position().has_value());
}

void TestReplayServant::movesItsPositionOnTheTree()
{
    const RecorderValues values = m_recorder->values("D1");
    const auto* const position = values.find<Value<qint64>>("/Replay/CurrentReplayPosition");
    const auto* const record = values.find<Value<QString>>("/Replay/RecordID");
    const auto* const count = values.find<Value<int>>("/Replay/NoOfReplays");
    QCOMPARE(position->GetValue(), 0);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 20'000'000, 0); }), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(record->GetValue(), QStringLiteral("r1"), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(position->GetValue() >= 20'000'000, 30000);
    const qint64 first = position->GetValue();
    QTRY_VERIFY_WITH_TIMEOUT(position->GetValue() > first, 30000);
    QCOMPARE(count->GetValue(), 1);
    QCOMPARE(ask([](auto p, auto d, auto r) { return p->StopReplay(d, r); }), ServiceStatus::None);
    QTRY_COMPARE_WITH_TIMEOUT(count->GetValue(), 0, 30000);
    QCOMPARE(position->GetValue(), 0);
    QCOMPARE(record->GetValue(), QString());
}

void TestReplayServant::pausesAndGoesOn()
{
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r); }), ServiceStatus::None);
    const Call pause = [](auto p, auto d, auto r) { return p->PauseReplay(d, r); };
    QCOMPARE(ask(pause), ServiceStatus::None);
    QVERIFY(position()->paused);
    const quint64 where = position()->time;
    QCOMPARE(ask(pause), ServiceStatus::None);
    QCOMPARE(position()->time, where);
    QCOMPARE(ask([](auto p, auto d, auto r) { return p->ContinueReplay(d, r); }), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(position()->time > where, 30000);
}

void TestReplayServant::endsAtTheEnd()
{
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 10'000'000, 10'050'000); }), ServiceStatus::None);
    QTRY_VERIFY_WITH_TIMEOUT(!position().has_value(), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), Status::Finished, 30000);
}

void TestReplayServant::refusesWhatIsNotBeingReplayed()
{
    for (const int number : {2, 3, 4}) {
        QCOMPARE(askFor(number), ServiceStatus::NotReplaying);
        QCOMPARE(ask(allCalls().at(number).second, "D1", "r9"), ServiceStatus::NotReplaying);
    }
}

void TestReplayServant::refusesASecondReplay()
{
    QCOMPARE(askFor(0), ServiceStatus::None);
    QCOMPARE(askFor(0), ServiceStatus::RecordBusy);
}

void TestReplayServant::refusesUnknownOnes()
{
    QFETCH(int, number);
    const Call& call = allCalls().at(number).second;
    QCOMPARE(ask(call, "D3"), ServiceStatus::NoSuchDevice);
    QCOMPARE(ask(call, "D1", "../D1/r1"), ServiceStatus::NoSuchRecord);
    if (number == 0) {
        QCOMPARE(ask(call, "D1", "r9"), ServiceStatus::NoSuchRecord);
    }
}

void TestReplayServant::refusesViewers()
{
    QFETCH(int, number);
    m_recorder->role = Role::Viewer;
    QCOMPARE(askFor(number), ServiceStatus::NotAllowed);
    QVERIFY(!position().has_value());
}

void TestReplayServant::refusesArguments()
{
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, -1, 0); }), ServiceStatus::BadArgument);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 0, -1); }), ServiceStatus::BadArgument);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 0, 0, -100); }), ServiceStatus::BadArgument);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 3'000'000'000, 20'000'000); }),
             ServiceStatus::BadArgument);
    QVERIFY(!position().has_value());
}

void TestReplayServant::saysWhatItDoesNotOffer()
{
    QCOMPARE(askFor(1), ServiceStatus::NotOffered);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 0, 0, 200); }), ServiceStatus::SpeedNotOffered);
    QCOMPARE(ask([](auto p, auto d, auto r) { return start(p, d, r, 0, 0, 0); }), ServiceStatus::None);
}

QTEST_GUILESS_MAIN(TestReplayServant)
#include "tst_replayservant.moc"
