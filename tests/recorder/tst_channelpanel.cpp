#include <recorder/service/channelpanel.h>

#include <channeltest.h>
#include <shownchannel.h>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;

namespace {

constexpr int startRequested = 0;
constexpr int continuousRecording = 2;
constexpr int stopRequested = 3;

} // namespace

// A channel as a client works it who has nothing but its values: what he writes is written here.
class TestChannelPanel : public ChannelTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { enterAnew(); }
    void cleanup() { end(); }
    void showsAChannelAtRest();
    void goesWithTheChannel();
    void goesThroughTheStatesOfARecording();
    void namesTheRecordAsItIsAsked();
    void recordsWithTheDeviceThatIsAskedFor();
    void followsTheDevicesOfTheManager();
    void keepsTheDeviceOfARecording();
    void leavesTheDeviceThatAClientHasChosen();
    void tellsOfTheRecordThatIsMade();
    void stopsBeforeDataHaveCome();
    void endsARecordingWhenItsTimeIsOver();
    void endsALoopWhenItsTimeIsOver();
    void endsARecordingToWhichNoDataCome_data();
    void endsARecordingToWhichNoDataCome();
    void waitsForDataAsLongAsTheRecordingIs_data();
    void waitsForDataAsLongAsTheRecordingIs();
    void endsARecordingAtItsSize();
    void recordsInALoop();
    void followsRecordingsThatTheManagerBegins();
    void refusesWhatCannotBeRecorded_data();
    void refusesWhatCannotBeRecorded();
    void refusesWishesDuringARecording();
    void tellsTheSameFaultTwice();
    void tellsWhatWentWrong_data();
    void tellsWhatWentWrong();
    void forgetsWhatWentWrongWithTheNextStart();
    void ignoresAStopWithoutARecording();
    void setsBackWhatIsNoState();
    void setsBackWhatMakesNoSense();
    void followsTheSettingsOfTheManager();

private:
    void enterAnew(const ZelkoRecorder::ServiceHost::Options& options = {});
    void writeRecordingState(int key) const { m_shown->recordingState()->SetCurrentKey(key, nullptr); }
    // Until data can come.
    void startByValue()
    {
        writeRecordingState(startRequested);
        QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("start"), patience);
    }
    QString state() const { return m_shown->recording(); }
    // As the manager does: the only one that may record.
    void setDevice(const char* device) const
    {
        QD_ZLK::StringSeqSeq devices;
        devices.length(1);
        devices[0].length(1);
        devices[0][0] = device;
        QCOMPARE(endingOf([&] { m_registered.channel->setZelkoDevices(devices); }), u"done"_s);
    }

    Registered m_registered;
    std::unique_ptr<ShownChannel> m_shown;
};

void TestChannelPanel::enterAnew(const ZelkoRecorder::ServiceHost::Options& options)
{
    begin(options);
    m_registered = enter("Antenne 1");
    m_shown = std::make_unique<ShownChannel>(m_recorder->recorder.tree(), QString(), m_registered.id);
}

void TestChannelPanel::showsAChannelAtRest()
{
    QVERIFY(m_shown->isThere());
    QCOMPARE(state(), u"stopped"_s);
    QCOMPARE(m_shown->recordingState()->GetCurrentKey(), 4);
    QCOMPARE(m_shown->replay(), u"stopped"_s);
    QCOMPARE(m_shown->replayState()->GetCurrentKey(), 0);
    QCOMPARE(m_shown->find<ValueSelection>("RecordReplayModes")->GetCurrentKey(), 0);
    QCOMPARE(m_shown->text("ChannelName"), u"Antenne 1"_s);
    QCOMPARE(m_shown->text("DataRateClass"), u"UpTo16kB"_s);
    QCOMPARE(m_shown->text("DeviceID"), u"D1"_s);
    QVERIFY(m_shown->find<Value<bool>>("RecordFlag")->GetValue());
    QVERIFY(!m_shown->find<Value<bool>>("ReplayFlag")->GetValue());
    for (const char* const name :
         {"ErrorCode", "RecordName", "RecordID", "RecordStatus", "ReplayDataRateClass", "DataFormat"}) {
        QCOMPARE(m_shown->text(name), QString());
    }
    for (const char* const name : {"RecordTimeout", "FileSizeInKB"}) {
        QCOMPARE(m_shown->find<Value<int>>(name)->GetValue(), 0);
    }
    for (const char* const name : {"FileSize", "StartTime", "StopTime", "StartPosition", "StopPosition", "LoopSize"}) {
        QCOMPARE(m_shown->number(name), 0);
    }
    QCOMPARE(m_shown->position(), 0.0);
    QVERIFY(!m_shown->find<Value<bool>>("IsDeletable")->GetValue());
}

void TestChannelPanel::goesWithTheChannel()
{
    QCOMPARE(endingOf([&] { m_registered.channel->removeChannel(); }), u"done"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_shown->isThere(), patience);
    QVERIFY(!m_recorder->recorder.tree().GetItem(u"/ZELKO/Channel/"_s + m_registered.id));
}

void TestChannelPanel::goesThroughTheStatesOfARecording()
{
    const ChoiceLog log(m_shown->recordingState());
    startByValue();
    QCOMPARE(state(), u"start requested"_s);
    send({0, 1});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(log.names(), (QStringList{"start requested", "recording", "stopping", "stopped"}));
    QCOMPARE(m_shown->error(), QString());
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
}

void TestChannelPanel::namesTheRecordAsItIsAsked()
{
    m_shown->write<QString>("RecordName", u"Morgen"_s);
    startByValue();
    send({0});
    QTRY_VERIFY_WITH_TIMEOUT(onlyRecord(), patience);
    QCOMPARE(onlyRecord()->GetRecordName(), u"Morgen"_s);
}

void TestChannelPanel::recordsWithTheDeviceThatIsAskedFor()
{
    m_shown->write<QString>("DeviceID", u"D2"_s);
    startByValue();
    QCOMPARE(m_manager->calls().first(), u"available D2"_s);
}

void TestChannelPanel::followsTheDevicesOfTheManager()
{
    setDevice("D2");
    QCOMPARE(m_shown->text("DeviceID"), u"D2"_s);
    setDevice("D1");
    QCOMPARE(m_shown->text("DeviceID"), u"D1"_s);
    setDevice("D2");
    startByValue();
    QCOMPARE(m_manager->calls().first(), u"available D2"_s);
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelPanel::keepsTheDeviceOfARecording()
{
    startByValue();
    setDevice("D2");
    QCOMPARE(m_shown->text("DeviceID"), u"D1"_s);
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->text("DeviceID"), u"D2"_s, patience);
}

void TestChannelPanel::leavesTheDeviceThatAClientHasChosen()
{
    m_shown->write<QString>("DeviceID", u"D2"_s);
    setDevice("D1");
    QCOMPARE(m_shown->text("DeviceID"), u"D2"_s);
    writeRecordingState(startRequested);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), u"there is no such device for the channel"_s, patience);
    m_shown->write<QString>("DeviceID", QString());
    startByValue();
    QCOMPARE(m_manager->calls().first(), u"available D1"_s);
    QCOMPARE(m_shown->text("DeviceID"), QString());
}

void TestChannelPanel::tellsOfTheRecordThatIsMade()
{
    startByValue();
    send({0, 1, 2});
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    const auto record = onlyRecord();
    QCOMPARE(m_shown->text("RecordID"), record->GetRecordID());
    QCOMPARE(m_shown->text("RecordStatus"), u"Finished"_s);
    QCOMPARE(m_shown->text("DataFormat"), u"IQ16"_s);
    QCOMPARE(m_shown->text("ReplayDataRateClass"), u"UpTo16kB"_s);
    QCOMPARE(m_shown->number("FileSize"), 1200);
    QCOMPARE(m_shown->number("StopPosition"), 1200);
    QCOMPARE(m_shown->number("StartTime"), 10'000'000);
    QCOMPARE(m_shown->number("StopTime"), 10'300'000);
}

void TestChannelPanel::stopsBeforeDataHaveCome()
{
    startByValue();
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_shown->text("RecordID"), QString());
    QVERIFY(!onlyRecord());
}

void TestChannelPanel::endsARecordingWhenItsTimeIsOver()
{
    m_shown->write<int>("RecordTimeout", 1);
    startByValue();
    send({0});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QVERIFY(m_manager->calls().contains("stopping"));
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelPanel::endsALoopWhenItsTimeIsOver()
{
    m_shown->write<int>("RecordTimeout", 1);
    m_shown->write<int>("FileSizeInKB", 1);
    writeRecordingState(continuousRecording);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("start"), patience);
    send({0});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QVERIFY(m_manager->calls().contains("stopping"));
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelPanel::endsARecordingToWhichNoDataCome_data()
{
    QTest::addColumn<bool>("sendsEmptyFrames");
    QTest::newRow("nothing at all") << false;
    QTest::newRow("only frames without samples") << true;
}

void TestChannelPanel::endsARecordingToWhichNoDataCome()
{
    QFETCH(const bool, sendsEmptyFrames);
    ZelkoRecorder::ServiceHost::Options options;
    options.channels.channel.dataPatience = std::chrono::milliseconds(1);
    end();
    enterAnew(options);
    m_shown->write<int>("RecordTimeout", 1);
    writeRecordingState(startRequested);
    const auto isTold = [&] {
        if (sendsEmptyFrames && m_manager->port() != 0) {
            write(wire(frameOf(0, 0)));
        }
        return m_shown->error() == "no data have come";
    };
    QTRY_VERIFY_WITH_TIMEOUT(isTold(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().last(), u"finished D1 "_s, patience);
    QVERIFY(m_manager->calls().contains("fault 3: no data have come"));
    QVERIFY(!onlyRecord());
}

void TestChannelPanel::waitsForDataAsLongAsTheRecordingIs_data()
{
    QTest::addColumn<int>("timeout");
    QTest::newRow("an hour") << 3600;
    QTest::newRow("without an end") << 0;
}

void TestChannelPanel::waitsForDataAsLongAsTheRecordingIs()
{
    QFETCH(const int, timeout);
    ZelkoRecorder::ServiceHost::Options options;
    options.channels.channel.dataPatience = std::chrono::milliseconds(1);
    end();
    enterAnew(options);
    m_shown->write<int>("RecordTimeout", timeout);
    startByValue();
    send({0});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    QCOMPARE(m_shown->error(), QString());
}

// Frames of 400 bytes: a part of the third is what still fits.
void TestChannelPanel::endsARecordingAtItsSize()
{
    m_shown->write<int>("FileSizeInKB", 1);
    startByValue();
    send({0, 1, 2});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(m_shown->number("FileSize"), 1024);
    QCOMPARE(storedBytes(), 1024);
    QCOMPARE(onlyRecord()->GetStopTime(), 10'256'000U);
    QCOMPARE(m_shown->error(), QString());
}

// Frames of a tenth of a second, an entry of the index each second.
void TestChannelPanel::recordsInALoop()
{
    const ChoiceLog log(m_shown->recordingState());
    m_shown->write<int>("FileSizeInKB", 4);
    writeRecordingState(continuousRecording);
    QTRY_VERIFY_WITH_TIMEOUT(m_manager->calls().contains("start"), patience);
    for (quint32 frame = 0; frame < 30; ++frame) {
        send({frame});
    }
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"continuous recording"_s, patience);
    QCOMPARE(onlyRecord()->GetRecordStatus(), ZELKO_XML::ZELKO_RecordData::RecordStatus::LoopRecording);
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(log.names(),
             (QStringList{"continuous recording", "start requested", "continuous recording", "stopping", "stopped"}));
    QCOMPARE(m_shown->number("LoopSize"), 4096);
    QCOMPARE(m_shown->number("StopPosition"), 12'000);
    QCOMPARE(m_shown->number("StartPosition"), 4000);
    QCOMPARE(m_shown->number("StartTime"), 11'000'000);
}

void TestChannelPanel::followsRecordingsThatTheManagerBegins()
{
    const ChoiceLog log(m_shown->recordingState());
    startRecording(m_registered);
    send({0});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    QCOMPARE(ChannelTest::stopping(m_registered), u"done"_s);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(log.names(), (QStringList{"start requested", "recording", "stopping", "stopped"}));
}

void TestChannelPanel::refusesWhatCannotBeRecorded_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("canRecord");
    QTest::addColumn<QString>("error");
    QTest::newRow("a channel that may not record")
        << startRequested << "D1" << false << "the channel was not registered for this";
    QTest::newRow("a device that is none")
        << startRequested << "D9" << true << "there is no such device for the channel";
    QTest::newRow("a loop without a size")
        << continuousRecording << "D1" << true << "a recording in a loop needs a file size";
}

void TestChannelPanel::refusesWhatCannotBeRecorded()
{
    QFETCH(const int, key);
    QFETCH(const QString, device);
    QFETCH(const bool, canRecord);
    QFETCH(const QString, error);
    QCOMPARE(endingOf([&] { m_registered.channel->setRecordFlag(canRecord); }), u"done"_s);
    m_shown->write<QString>("DeviceID", device);
    writeRecordingState(key);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->error(), error, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_manager->calls(), QStringList());
}

// Each start is told why it is refused, and each state goes back to what is the case.
void TestChannelPanel::refusesWishesDuringARecording()
{
    QCOMPARE(endingOf([&] { m_registered.channel->setReplayFlag(true); }), u"done"_s);
    startByValue();
    send({0});
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    QStringList errors;
    Watch watch([&] { errors.append(m_shown->error()); });
    watch.on(m_shown->find<ValueBase>("ErrorCode"));
    const QString busy = u"the channel is busy"_s;
    writeRecordingState(startRequested);
    QTRY_COMPARE_WITH_TIMEOUT(errors, QStringList{busy}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    writeRecordingState(continuousRecording);
    QTRY_COMPARE_WITH_TIMEOUT(errors, (QStringList{busy, busy}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"recording"_s, patience);
    m_shown->replayState()->SetCurrentKey(4, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(errors.count(busy), 3, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->replay(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), busy);

    send({1});
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), patience);
    QCOMPARE(m_shown->number("FileSize"), 800);
}

void TestChannelPanel::tellsTheSameFaultTwice()
{
    int errors = 0;
    Watch watch([&] { ++errors; });
    watch.on(m_shown->find<ValueBase>("ErrorCode"));
    for (int fault = 1; fault <= 2; ++fault) {
        QCOMPARE(endingOf([&] { m_registered.channel->channelError("no antenna"); }), u"done"_s);
        QCOMPARE(m_shown->error(), u"no antenna"_s);
        QCOMPARE(errors, fault);
    }
}

void TestChannelPanel::tellsWhatWentWrong_data()
{
    QTest::addColumn<bool>("available");
    QTest::addColumn<bool>("connects");
    QTest::newRow("a source that is not available") << false << true;
    QTest::newRow("a source that does not connect") << true << false;
    QTest::newRow("a source that does not start") << true << true;
}

void TestChannelPanel::tellsWhatWentWrong()
{
    QFETCH(const bool, available);
    QFETCH(const bool, connects);
    m_manager->answers.available = available;
    m_manager->answers.connects = connects;
    m_manager->answers.starts = false;
    writeRecordingState(startRequested);
    QTRY_VERIFY_WITH_TIMEOUT(!m_shown->error().isEmpty(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->calls().filter("fault").size(), 1, patience);
    const QString fault = m_manager->calls().filter("fault").first();
    QVERIFY2(fault.endsWith(m_shown->error()), qPrintable(fault + " | " + m_shown->error()));
}

void TestChannelPanel::forgetsWhatWentWrongWithTheNextStart()
{
    m_manager->answers.available = false;
    writeRecordingState(startRequested);
    QTRY_VERIFY_WITH_TIMEOUT(!m_shown->error().isEmpty(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    m_manager->answers.available = true;
    startByValue();
    QCOMPARE(m_shown->error(), QString());
}

void TestChannelPanel::ignoresAStopWithoutARecording()
{
    writeRecordingState(stopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(state(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), QString());
    QCOMPARE(m_manager->calls(), QStringList());
}

// A command of a peer may carry any number, which no setter takes.
void TestChannelPanel::setsBackWhatIsNoState()
{
    ValueSelection written(u"AllRecordReplayModes"_s);
    written.SetChoices({{77, u"nonsense"_s}}, nullptr);
    written.SetCurrentKey(77, nullptr);
    written.SetRecording(true);
    written.HasChanged(TChangeCode::ValueChanged, nullptr);
    QVERIFY(m_shown->recordingState()->SetCommandString(written.GetCommandStringForRecording(), nullptr));
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->recordingState()->GetCurrentKey(), 4, patience);
    QCOMPARE(m_manager->calls(), QStringList());
}

void TestChannelPanel::setsBackWhatMakesNoSense()
{
    m_shown->write<QString>("RecordName", QString(5000, u'x'));
    m_shown->write<QString>("RecordID", u"two\nlines"_s);
    m_shown->write<int>("RecordTimeout", -1);
    m_shown->write<int>("FileSizeInKB", -7);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->text("RecordName").size(), 1000, patience);
    QCOMPARE(m_shown->text("RecordID"), u"two lines"_s);
    QCOMPARE(m_shown->find<Value<int>>("RecordTimeout")->GetValue(), 0);
    QCOMPARE(m_shown->find<Value<int>>("FileSizeInKB")->GetValue(), 0);
}

void TestChannelPanel::followsTheSettingsOfTheManager()
{
    QCOMPARE(endingOf([&] {
                 m_registered.channel->setRecordFlag(false);
                 m_registered.channel->setReplayFlag(true);
                 m_registered.channel->setName("Antenne 2");
                 m_registered.channel->setDataRateClass(QD_ZLK::RATE_1_MB);
             }),
             u"done"_s);
    QVERIFY(!m_shown->find<Value<bool>>("RecordFlag")->GetValue());
    QVERIFY(m_shown->find<Value<bool>>("ReplayFlag")->GetValue());
    QCOMPARE(m_shown->text("ChannelName"), u"Antenne 2"_s);
    QCOMPARE(m_shown->text("DataRateClass"), u"UpTo1MB"_s);
}

QTEST_GUILESS_MAIN(TestChannelPanel)
#include "tst_channelpanel.moc"
