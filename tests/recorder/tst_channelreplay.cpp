#include <recorder/service/channelreplay.h>

#include <channeltest.h>
#include <replayreceiver.h>
#include <shownchannel.h>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

constexpr int stopped = 0;
constexpr int paused = 2;
constexpr int running = 4;

const QString brief = u"Brief"_s;  // 1 s
const QString lengthy = u"Long"_s; // an hour, so that no test sees its end

} // namespace

// A replay as a client has it who writes the values of a channel, and as the manager gets it.
class TestChannelReplay : public ChannelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void playsARecordToItsEnd();
    void goesThroughTheStatesOfAReplay();
    void tellsTheManagerOfEachStep();
    void movesAndHoldsThePosition();
    void beginsAtThePosition();
    void beginsAnewOutsideOfTheRecord_data();
    void beginsAnewOutsideOfTheRecord();
    void tellsOfTheRecordThatIsReplayed();
    void followsWhoPausesAndStopsElsewhere();
    void refusesWhatCannotBeReplayed_data();
    void refusesWhatCannotBeReplayed();
    void refusesARecordingMeanwhile();
    void tellsWhatWentWrong_data();
    void tellsWhatWentWrong();
    void tellsThatNobodyHasCome();
    void tellsThatItsReceiverIsGone();
    void stopsWhileItIsPrepared();
    void keepsAPauseUntilItHasBegun_data();
    void keepsAPauseUntilItHasBegun();
    void forgetsAPauseWithItsReplay();
    void ignoresAPauseWithoutAReplay();
    void endsWithItsChannel();
    void replaysAtTheCallOfAManager();
    void refusesCallsThatCannotBe_data();
    void refusesCallsThatCannotBe();

private:
    void choose(const QString& record) const { m_shown->write<QString>("RecordID", record); }
    void writeState(int key) const { m_shown->replayState()->SetCurrentKey(key, nullptr); }
    QString state() const { return m_shown->replay(); }
    template <typename Call>
    static QString refusalOf(Call call)
    {
        return onCallerThread([&] {
            try {
                call();
            } catch (const QD_ZLK::IF_ZLK_c_Chan::exChan& refusal) {
                return ZelkoCommon::fromCorba(refusal.text.in());
            }
            return QString();
        });
    }
    void run(const QString& record);
    bool isReplayed(const QString& id) const
    {
        const auto record = m_recorder->values("D1").record(id);
        return record && record->GetRecordStatus() == Status::Replaying;
    }

    Registered m_registered;
    std::unique_ptr<ShownChannel> m_shown;
    std::unique_ptr<ReplayReceiver> m_receiver;
};

void TestChannelReplay::init()
{
    ZelkoRecorder::ServiceHost::Options options;
    options.channels.channel.replay.patience = std::chrono::milliseconds(patience);
    begin(options, [](const QString& folder) {
        QVERIFY(storeRecord(folder, finishedRecord(brief), 4000));
        QVERIFY(storeRecord(folder, hourLongRecord(lengthy), 4000));
        QVERIFY(storeRecord(folder, unfinishedRecord(u"Bad"_s), 0));
    });
    m_registered = enter("Antenne 1", "", 0, true);
    m_shown = std::make_unique<ShownChannel>(m_recorder->recorder.tree(), QString(), m_registered.id);
}

void TestChannelReplay::cleanup()
{
    m_receiver.reset();
    end();
}

// Until the samples come.
void TestChannelReplay::run(const QString& record)
{
    choose(record);
    writeState(running);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->replayPort() != 0, patience);
    m_receiver = std::make_unique<ReplayReceiver>(m_manager->replayPort());
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"running"_s, patience);
}

void TestChannelReplay::playsARecordToItsEnd()
{
    run(brief);
    QTRY_VERIFY_WITH_TIMEOUT(m_receiver->hasEnded(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_receiver->samples(), QByteArray(4000, 's'));
    QVERIFY(m_receiver->isWellFormed());
    QCOMPARE(m_receiver->frames().constFirst().time, 10'000'000U);
    QCOMPARE(m_shown->position(), 11'000'000.0);
    QCOMPARE(m_shown->error(), QString());
    QTRY_VERIFY_WITH_TIMEOUT(!isReplayed(brief), patience);
}

void TestChannelReplay::goesThroughTheStatesOfAReplay()
{
    const ChoiceLog log(m_shown->replayState());
    const ChoiceLog windows(m_shown->find<ValueSelection>("RecordReplayModes"));
    run(lengthy);
    QTRY_VERIFY_WITH_TIMEOUT(isReplayed(lengthy), patience);
    writeState(paused);
    QTRY_COMPARE_WITH_TIMEOUT(log.names().constLast(), u"paused"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(windows.names().constLast(), u"paused"_s, patience);
    writeState(running);
    QTRY_COMPARE_WITH_TIMEOUT(windows.names().constLast(), u"running"_s, patience);
    writeState(stopped);
    QTRY_COMPARE_WITH_TIMEOUT(windows.names().constLast(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(windows.names(),
             (QStringList{"replay started", "running", "pausing", "paused", "running", "stopping", "stopped"}));
    QTRY_VERIFY_WITH_TIMEOUT(!isReplayed(lengthy), patience);
}

void TestChannelReplay::tellsTheManagerOfEachStep()
{
    run(lengthy);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), patience);
    writeState(stopped);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_manager->calls(),
        (QStringList{"available for replay D1", "connect for replay", "started", "stopping", "disconnect"}), patience);
}

void TestChannelReplay::movesAndHoldsThePosition()
{
    run(lengthy);
    const double begun = m_shown->position();
    QVERIFY(begun >= 10'000'000.0);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->position() > begun, patience);
    writeState(paused);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->find<ValueSelection>("RecordReplayModes")->GetCurrentName(), u"paused"_s,
                              patience);
    const double held = m_shown->position();
    QCOMPARE(held, static_cast<double>(m_recorder->recorder.service(u"D1"_s)->replayPosition(lengthy)->time));
    writeState(running);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->position() > held, patience);
}

void TestChannelReplay::beginsAtThePosition()
{
    m_shown->write<double>("CurrentReplayPosition", 10'500'000.0);
    run(brief);
    QTRY_VERIFY_WITH_TIMEOUT(m_receiver->hasEnded(), patience);
    QCOMPARE(m_receiver->samples().size(), 2000);
    QCOMPARE(m_receiver->frames().constFirst().time, 10'500'000U);
}

void TestChannelReplay::beginsAnewOutsideOfTheRecord_data()
{
    QTest::addColumn<double>("position");
    QTest::newRow("at its end") << 11'000'000.0;
    QTest::newRow("before all time") << -1.0;
    QTest::newRow("behind all numbers of microseconds") << 1e300;
    QTest::newRow("at no end") << qInf();
    QTest::newRow("at no beginning") << -qInf();
}

void TestChannelReplay::beginsAnewOutsideOfTheRecord()
{
    QFETCH(const double, position);
    m_shown->write<double>("CurrentReplayPosition", position);
    run(brief);
    QTRY_VERIFY_WITH_TIMEOUT(m_receiver->hasEnded(), patience);
    QCOMPARE(m_receiver->samples().size(), 4000);
    QCOMPARE(m_receiver->frames().constFirst().time, 10'000'000U);
}

void TestChannelReplay::tellsOfTheRecordThatIsReplayed()
{
    run(lengthy);
    QCOMPARE(m_shown->text("RecordID"), lengthy);
    QCOMPARE(m_shown->number("StartTime"), 10'000'000);
    QCOMPARE(m_shown->number("StopTime"), 3'610'000'000);
    QCOMPARE(m_shown->number("FileSize"), 4000);
    QVERIFY(m_shown->find<Value<bool>>("IsDeletable")->GetValue());
}

void TestChannelReplay::followsWhoPausesAndStopsElsewhere()
{
    run(lengthy);
    auto* const device = m_recorder->recorder.service(u"D1"_s);
    QCOMPARE(device->pauseReplay(lengthy), ZelkoRecorder::StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"paused"_s, patience);
    QCOMPARE(device->continueReplay(lengthy), ZelkoRecorder::StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"running"_s, patience);
    QCOMPARE(device->stopReplay(lengthy), ZelkoRecorder::StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelReplay::refusesWhatCannotBeReplayed_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("canReplay");
    QTest::addColumn<QString>("error");
    QTest::newRow("a record that is none") << "Nothing"
                                           << "D1" << true << "there is no such record";
    QTest::newRow("an ID that is a path") << "../D1/Brief"
                                          << "D1" << true << "there is no such record";
    QTest::newRow("no record at all") << ""
                                      << "D1" << true << "there is no such record";
    QTest::newRow("a record of another device") << brief << "D2" << true << "there is no such record";
    QTest::newRow("a device that is none") << brief << "D9" << true << "there is no such device for the channel";
    QTest::newRow("a channel that cannot replay")
        << brief << "D1" << false << "the channel was not registered for this";
}

void TestChannelReplay::refusesWhatCannotBeReplayed()
{
    QFETCH(const QString, record);
    QFETCH(const QString, device);
    QFETCH(const bool, canReplay);
    QFETCH(const QString, error);
    QCOMPARE(endingOf([&] { m_registered.channel->setReplayFlag(canReplay); }), u"done"_s);
    m_shown->write<QString>("DeviceID", device);
    choose(record);
    writeState(running);
    const auto isRefused = [&] {
        if (!m_receiver && m_manager->replayPort() != 0) {
            m_receiver = std::make_unique<ReplayReceiver>(m_manager->replayPort());
        }
        return !m_shown->error().isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isRefused(), patience);
    QCOMPARE(m_shown->error(), error);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
}

void TestChannelReplay::refusesARecordingMeanwhile()
{
    run(lengthy);
    m_shown->recordingState()->SetCurrentKey(0, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), u"the channel is busy"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->recording(), u"stopped"_s, patience);
    QCOMPARE(state(), u"running"_s);
    QCOMPARE(endingOf([&] { m_registered.channel->removeChannel(); }), u"busy"_s);
    QCOMPARE(endingOf([&] { m_registered.channel->setReplayFlag(false); }), u"busy"_s);
    QCOMPARE(refusalOf([&] { m_registered.channel->removeChannel(); }), u"the channel is busy"_s);
}

void TestChannelReplay::tellsWhatWentWrong_data()
{
    QTest::addColumn<bool>("available");
    QTest::addColumn<QString>("error");
    QTest::newRow("a manager that is not available") << false << "the channel is not available for a replay";
    QTest::newRow("a manager that does not connect") << true << "the channel did not connect for a replay";
}

void TestChannelReplay::tellsWhatWentWrong()
{
    QFETCH(const bool, available);
    QFETCH(const QString, error);
    m_manager->answers.availableForReplay = available;
    m_manager->answers.connectsForReplay = false;
    choose(brief);
    writeState(running);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), error, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QVERIFY(!m_manager->calls().contains("disconnect"));
}

void TestChannelReplay::tellsThatNobodyHasCome()
{
    end();
    ZelkoRecorder::ServiceHost::Options options;
    options.channels.channel.replay.patience = std::chrono::milliseconds(1);
    begin(options, [](const QString& folder) { QVERIFY(storeRecord(folder, finishedRecord(brief), 4000)); });
    m_registered = enter("Antenne 1", "", 0, true);
    m_shown = std::make_unique<ShownChannel>(m_recorder->recorder.tree(), QString(), m_registered.id);
    choose(brief);
    writeState(running);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), u"nobody has come for the samples"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().constLast(), u"disconnect"_s, patience);
}

void TestChannelReplay::tellsThatItsReceiverIsGone()
{
    run(lengthy);
    m_receiver->disconnect();
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), u"nobody takes the samples any more"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(!isReplayed(lengthy), patience);
}

void TestChannelReplay::stopsWhileItIsPrepared()
{
    choose(brief);
    writeState(running);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->replayPort() != 0, patience);
    writeState(stopped);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().constLast(), u"disconnect"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), QString());
    QVERIFY(!m_manager->calls().contains("started"));
}

void TestChannelReplay::keepsAPauseUntilItHasBegun_data()
{
    QTest::addColumn<QList<int>>("wishes");
    QTest::addColumn<QStringList>("states");
    const QStringList held{"replay started", "pausing", "paused"};
    const QStringList going{"replay started", "running"};
    QTest::newRow("held") << QList<int>{paused} << held;
    QTest::newRow("held twice") << QList<int>{paused, paused} << held;
    QTest::newRow("held and continued") << QList<int>{paused, running} << going;
    QTest::newRow("continued and held again") << QList<int>{paused, running, paused} << held;
}

// The wishes come between the call to connect and the connection.
void TestChannelReplay::keepsAPauseUntilItHasBegun()
{
    QFETCH(const QList<int>, wishes);
    QFETCH(const QStringList, states);
    const ChoiceLog windows(m_shown->find<ValueSelection>("RecordReplayModes"));
    choose(lengthy);
    writeState(running);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->replayPort() != 0, patience);
    for (const int wish : wishes) {
        writeState(wish);
        QTRY_COMPARE_WITH_TIMEOUT(state(), u"replay started"_s, patience);
    }
    m_receiver = std::make_unique<ReplayReceiver>(m_manager->replayPort());
    QTRY_COMPARE_WITH_TIMEOUT(windows.names(), states, patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("started"), patience);
    QCOMPARE(windows.names(), states);
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelReplay::forgetsAPauseWithItsReplay()
{
    choose(lengthy);
    writeState(running);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->replayPort() != 0, patience);
    writeState(paused);
    writeState(stopped);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().constLast(), u"disconnect"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    writeState(running);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().count("connect for replay"), 2, patience);
    m_receiver = std::make_unique<ReplayReceiver>(m_manager->replayPort());
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"running"_s, patience);
}

void TestChannelReplay::ignoresAPauseWithoutAReplay()
{
    writeState(paused);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), QString());
    QCOMPARE(m_manager->calls(), QStringList());
}

void TestChannelReplay::endsWithItsChannel()
{
    run(lengthy);
    QTRY_VERIFY_WITH_TIMEOUT(isReplayed(lengthy), patience);
    QCOMPARE(endingOf([&] { m_registered.channel->removeChannelForced(); }), u"done"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_shown->isThere(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!isReplayed(lengthy), patience);
    QCOMPARE(m_manager->calls().constLast(), u"removed"_s);
}

// A part of the record, from its middle to its third quarter.
void TestChannelReplay::replaysAtTheCallOfAManager()
{
    QCOMPARE(endingOf([&] {
                 m_registered.channel->startReplaying("D1", "Brief", QD_ZLK::RATE_NOT_SET, 10'500'000, 10'750'000, 100);
             }),
             u"done"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->replayPort() != 0, patience);
    m_receiver = std::make_unique<ReplayReceiver>(m_manager->replayPort());
    QTRY_VERIFY_WITH_TIMEOUT(m_receiver->hasEnded(), patience);
    QCOMPARE(m_receiver->samples().size(), 1000);
    QCOMPARE(m_shown->text("RecordID"), brief);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
}

void TestChannelReplay::refusesCallsThatCannotBe_data()
{
    QTest::addColumn<QString>("device");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<int>("speed");
    QTest::addColumn<QString>("ending");
    QTest::newRow("twice as fast") << "D1" << qint64{0} << 200 << "NO_IMPLEMENT";
    QTest::newRow("from before all time") << "D1" << qint64{-1} << 100 << "BAD_PARAM";
    QTest::newRow("of a device that is none") << "D9" << qint64{0} << 100 << "NO_RESOURCES";
}

void TestChannelReplay::refusesCallsThatCannotBe()
{
    QFETCH(const QString, device);
    QFETCH(const qint64, start);
    QFETCH(const int, speed);
    QFETCH(const QString, ending);
    QCOMPARE(endingOf([&] {
                 m_registered.channel->startReplaying(qPrintable(device), "Brief", QD_ZLK::RATE_NOT_SET, start, 0,
                                                      speed);
             }),
             ending);
    QCOMPARE(state(), u"stopped"_s);
    QCOMPARE(m_manager->calls(), QStringList());
}

QTEST_GUILESS_MAIN(TestChannelReplay)
#include "tst_channelreplay.moc"
