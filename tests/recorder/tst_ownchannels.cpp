#include <recorder/service/ownchannels.h>

#include <recorder/source/sourcefactory.h>

#include <callending.h>
#include <publishedmanager.h>
#include <servicerecorder.h>
#include <shownchannel.h>
#include <sigmfpair.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using Record = ZELKO_XML::ZELKO_RecordData;
using Status = Record::RecordStatus;

namespace {

const QString name = u"Own channel"_s;
const QString signal = u"generator:fm,rate=8000,frequency=145500000,bandwidth=6000,noise=-40"_s;

enum RecordingKey { StartRequested = 0, Continuous = 2, StopRequested = 3 };
enum ReplayKey { Idle = 0, Paused = 2, Running = 4 };

} // namespace

// A recorder whose only channel is its own, worked by its values.
class TestOwnChannels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void showsTheChannel();
    void givesAChannelTheSameIdAgain();
    void recordsItsSource();
    void beginsTheSourceAnewWithEachRecording();
    void endsTheRecordingWithTheSource();
    void keepsWhatASourceGaveUntilItFailed();
    void keepsTheTimesOfACapture();
    void keepsTheHolesOfACapture_data();
    void keepsTheHolesOfACapture();
    void losesNothingBehindALongHole_data();
    void losesNothingBehindALongHole();
    void endsTheRecordingWhenItsTimeIsOver();
    void endsTheRecordingAtItsSize();
    void recordsInALoop();
    void replaysToTheEnd();
    void pausesAReplayAndGoesOn();
    void refusesWhatCannotBeAChannel_data();
    void refusesWhatCannotBeAChannel();
    void cannotBeRemovedOrTakenOver();
    void goesThroughLoopbackWhereverItListens();
    void closesItsRecordingWhenTheRecorderEnds();

private:
    void begin(const QString& source = signal, double speed = 1, const ServiceRecorder::Fill& fill = {});
    QString adding(const OwnChannels::Plan& plan)
    {
        QString error;
        return m_channels->add(m_recorder->host->channels(), plan, &error) ? QString() : error;
    }
    template <typename T, typename Content>
    void write(const char* value, const Content& content) const
    {
        m_shown->find<Value<T>>(value)->SetValue(content, nullptr);
    }
    void record(int key) const { m_shown->recordingState()->SetCurrentKey(key, nullptr); }
    void replay(int key) const { m_shown->replayState()->SetCurrentKey(key, nullptr); }
    bool isRecorded() const { return recorded() && recorded()->GetRecordStatus() == Status::Finished; }
    std::shared_ptr<Record> recorded() const { return m_recorder->values("D1").record(m_shown->text("RecordID")); }
    QByteArray recordedBytes() const
    {
        const QString id = m_shown->text("RecordID");
        return readBytes(m_recorder->deviceFolder("D1") + u"/%1/%1.dat"_s.arg(id));
    }
    // Until something of it is durable, from its start request to its end.
    void recordSome()
    {
        const QString before = m_shown->text("RecordID");
        record(StartRequested);
        QTRY_VERIFY_WITH_TIMEOUT(m_shown->text("RecordID") != before && m_shown->number("FileSize") > 0, patience);
        record(StopRequested);
        QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(m_shown->recording(), u"stopped"_s, patience);
    }
    static QByteArray beginOfSignal(qsizetype bytes)
    {
        QString error;
        const auto source = SourceFactory::create(signal, &error);
        QByteArray result(bytes, '\0');
        source->read(result.data(), bytes / source->description().format.bytesPerFrame());
        return result;
    }
    static void fillWithRecords(const QString& device)
    {
        storeRecord(device, finishedRecord(u"Brief"_s), 4000);
        storeRecord(device, hourLongRecord(u"Long"_s), 4000);
    }

    std::unique_ptr<ServiceRecorder> m_recorder;
    std::unique_ptr<OwnChannels> m_channels;
    std::unique_ptr<ShownChannel> m_shown;
};

void TestOwnChannels::cleanup()
{
    if (m_recorder) {
        m_recorder->host.reset();
    }
    m_channels.reset();
    m_recorder.reset();
}

void TestOwnChannels::begin(const QString& source, double speed, const ServiceRecorder::Fill& fill)
{
    cleanup();
    m_recorder = ServiceRecorder::loaded(fill);
    QVERIFY(m_recorder);
    m_channels = std::make_unique<OwnChannels>(m_recorder->orb, speed);
    QCOMPARE(adding({name, source}), QString());
    m_shown = std::make_unique<ShownChannel>(m_recorder->recorder.tree(), QString(), OwnChannels::idOf(name));
}

void TestOwnChannels::showsTheChannel()
{
    begin();
    QVERIFY(m_shown->isThere());
    QCOMPARE(m_shown->text("ChannelName"), name);
    QCOMPARE(m_shown->text("DataRateClass"), u"UpTo64kB"_s);
    QVERIFY(m_shown->find<Value<bool>>("RecordFlag")->GetValue());
    QVERIFY(m_shown->find<Value<bool>>("ReplayFlag")->GetValue());
    QCOMPARE(m_shown->recording(), u"stopped"_s);
    QCOMPARE(m_recorder->host->channels().count(), 1);
}

void TestOwnChannels::givesAChannelTheSameIdAgain()
{
    begin();
    m_recorder->host.reset();
    QVERIFY(!m_shown->isThere());
    m_recorder->serve();
    m_channels = std::make_unique<OwnChannels>(m_recorder->orb, 1.0);
    QCOMPARE(adding({name, signal}), QString());
    QVERIFY(m_shown->isThere());
    QVERIFY(OwnChannels::idOf(name) != OwnChannels::idOf(u"Another"_s));
}

void TestOwnChannels::recordsItsSource()
{
    begin();
    const ChoiceLog log(m_shown->recordingState());
    write<QString>("RecordName", u"Morning"_s);
    recordSome();
    QCOMPARE(log.names(), (QStringList{"start requested", "recording", "stopping", "stopped"}));
    const auto stored = recorded();
    QCOMPARE(stored->GetRecordName(), u"Morning"_s);
    QCOMPARE(stored->GetDataFormat(), Record::DataFormat::IQ16);
    QCOMPARE(std::as_const(*stored).GetIndexEntry().constFirst().GetTunerFrequency(), 145'500'000U);
    QCOMPARE(std::as_const(*stored).GetIndexEntry().constFirst().GetSampleRate(), 8000U);
    QCOMPARE(std::as_const(*stored).GetIndexEntry().constFirst().GetBandwidth(), 6000U);
    QVERIFY(stored->GetSize() > 0);
    QCOMPARE(recordedBytes(), beginOfSignal(static_cast<qsizetype>(stored->GetSize())));
    QCOMPARE(m_shown->error(), QString());
}

void TestOwnChannels::beginsTheSourceAnewWithEachRecording()
{
    begin();
    recordSome();
    const QString first = m_shown->text("RecordID");
    recordSome();
    QVERIFY(m_shown->text("RecordID") != first);
    QCOMPARE(recordedBytes(), beginOfSignal(recordedBytes().size()));
}

void TestOwnChannels::endsTheRecordingWithTheSource()
{
    begin(signal + u",seconds=0.25"_s);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QCOMPARE(recordedBytes(), beginOfSignal(8000));
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->recording(), u"stopped"_s, patience);
    QCOMPARE(m_shown->error(), QString());
}

// The file of the samples is cut off while it is read, long before its end.
void TestOwnChannels::keepsWhatASourceGaveUntilItFailed()
{
    constexpr qint64 manySamples = 1LL << 30;
    const QTemporaryDir folder;
    const QString stem = folder.filePath(u"capture"_s);
    SigmfPair pair;
    pair.global["core:sample_rate"] = 48'000;
    QVERIFY(pair.write(stem));
    const QString samples = stem + u".sigmf-data"_s;
    QVERIFY(QFile::resize(samples, manySamples));
    begin(stem + u".sigmf-meta"_s);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->number("FileSize") > 0, patience);
    QVERIFY(QFile::resize(samples, 0));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->recording(), u"stopped"_s, patience);
    QVERIFY2(m_shown->error().startsWith(u"the source has failed: "_s), qPrintable(m_shown->error()));
    QVERIFY(recordedBytes().startsWith("0123456789abcdef"));
}

void TestOwnChannels::keepsTheTimesOfACapture()
{
    const QTemporaryDir folder;
    const QString stem = folder.filePath(u"capture"_s);
    QVERIFY(SigmfPair().write(stem));
    begin(stem + u".sigmf-meta"_s);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QCOMPARE(recordedBytes(), QByteArray("0123456789abcdef"));
    QCOMPARE(recorded()->GetStartTime(), 1'624'058'271'163'959U);
    QCOMPARE(recorded()->GetStopTime(), 1'624'058'271'167'959U);
}

void TestOwnChannels::keepsTheHolesOfACapture_data()
{
    QTest::addColumn<QString>("until");
    QTest::addColumn<QString>("goesOn");
    QTest::addColumn<QString>("end");
    QTest::newRow("of seconds") << u"2021-06-18T23:17:55Z"_s << u"1624058275000000"_s << u"1624058275002000"_s;
    QTest::newRow("of a day") << u"2021-06-19T23:17:55Z"_s << u"1624144675000000"_s << u"1624144675002000"_s;
}

void TestOwnChannels::keepsTheHolesOfACapture()
{
    QFETCH(const QString, until);
    QFETCH(const QString, goesOn);
    QFETCH(const QString, end);
    const QTemporaryDir folder;
    const QString stem = folder.filePath(u"capture"_s);
    SigmfPair pair;
    pair.captures.append(
        QJsonObject{{"core:sample_start", 2}, {"core:frequency", 145000000.0}, {"core:datetime", until}});
    QVERIFY(pair.write(stem));
    begin(stem + u".sigmf-meta"_s);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QCOMPARE(recordedBytes(), QByteArray("0123456789abcdef"));
    QStringList entries;
    for (const auto& entry : std::as_const(*recorded()).GetIndexEntry()) {
        entries.append(u"%1 at %2"_s.arg(entry.GetRecordOffset()).arg(entry.GetTimestamp()));
    }
    QCOMPARE(entries,
             (QStringList{"0 at 1624058271163959", "8 at 1624058271165959", "8 at " + goesOn, "16 at " + end}));
}

// More frames than are believed at once, at the pace of the signal and as fast as they are taken.
void TestOwnChannels::losesNothingBehindALongHole_data()
{
    QTest::addColumn<double>("speed");
    QTest::newRow("in the pace of the signal") << 1.0;
    QTest::newRow("as fast as it goes") << 0.0;
}

void TestOwnChannels::losesNothingBehindALongHole()
{
    QFETCH(const double, speed);
    const QTemporaryDir folder;
    const QString stem = folder.filePath(u"capture"_s);
    SigmfPair pair;
    pair.global["core:sample_rate"] = 200'000;
    pair.captures.append(QJsonObject{
        {"core:sample_start", 50'000}, {"core:frequency", 145000000.0}, {"core:datetime", "2021-06-19T01:00:00Z"}});
    pair.samples = beginOfSignal(4 * 150'000);
    QVERIFY(pair.write(stem));
    begin(stem + u".sigmf-meta"_s, speed);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QCOMPARE(recorded()->GetSize(), 600'000U);
    QVERIFY(recordedBytes() == pair.samples);
    QCOMPARE(recorded()->GetStopTime(), 1'624'064'400'500'000U);
}

void TestOwnChannels::endsTheRecordingWhenItsTimeIsOver()
{
    begin();
    write<int>("RecordTimeout", 1);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QVERIFY(recorded()->GetSize() > 0);
}

void TestOwnChannels::endsTheRecordingAtItsSize()
{
    begin();
    write<int>("FileSizeInKB", 2);
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    QCOMPARE(recordedBytes(), beginOfSignal(2048));
}

void TestOwnChannels::recordsInALoop()
{
    begin(signal, 0);
    write<int>("FileSizeInKB", 64);
    record(Continuous);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->recording(), u"continuous recording"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->number("StartPosition") > 0, patience);
    record(StopRequested);
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), patience);
    const auto stored = recorded();
    QCOMPARE(stored->GetRecordingLoopSize(), 65'536U);
    QVERIFY(stored->GetStopPosition() - stored->GetStartPosition() >= 65'536U);
}

void TestOwnChannels::replaysToTheEnd()
{
    begin(signal, 1, fillWithRecords);
    const ChoiceLog log(m_shown->replayState());
    write<QString>("RecordID", u"Brief"_s);
    replay(Running);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->position() == 11'000'000.0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->replay(), u"stopped"_s, patience);
    QCOMPARE(log.names(), (QStringList{"running", "replay started", "running", "stopping", "stopped"}));
    QCOMPARE(m_shown->error(), QString());
}

void TestOwnChannels::pausesAReplayAndGoesOn()
{
    begin(signal, 1, fillWithRecords);
    const ChoiceLog log(m_shown->replayState());
    write<QString>("RecordID", u"Long"_s);
    replay(Running);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->position() > 10'000'000.0, patience);
    replay(Paused);
    QTRY_VERIFY_WITH_TIMEOUT(log.names().endsWith(u"pausing"_s), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->replay(), u"paused"_s, patience);
    const double held = m_shown->position();
    replay(Running);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->position() > held, patience);
    replay(Idle);
    QTRY_COMPARE_WITH_TIMEOUT(log.names().mid(log.names().size() - 3), (QStringList{"stopped", "stopping", "stopped"}),
                              patience); // as asked, and as done
    QCOMPARE(m_shown->error(), QString());
    recordSome(); // the channel is free again
}

void TestOwnChannels::refusesWhatCannotBeAChannel_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("no source") << u"Second"_s << QString() << u"Second"_s;
    QTest::newRow("a generator of nothing") << u"Second"_s << u"generator:colour"_s << u"colour"_s;
    QTest::newRow("a capture that is not there") << u"Second"_s << u"/no/such.sigmf-meta"_s << u"/no/such"_s;
    QTest::newRow("a capture of two channels") << u"Second"_s << QString(u"stereo"_s) << u"2 channels"_s;
    QTest::newRow("a name that is used") << name << signal << u"registered already"_s;
    QTest::newRow("no name") << QString() << signal << u"a name of"_s;
}

void TestOwnChannels::refusesWhatCannotBeAChannel()
{
    QFETCH(const QString, channel);
    QFETCH(QString, source);
    QFETCH(const QString, mentions);
    const QTemporaryDir folder;
    if (source == "stereo") {
        SigmfPair pair;
        pair.global["core:num_channels"] = 2;
        QVERIFY(pair.write(folder.filePath(source)));
        source = folder.filePath(source) + u".sigmf-meta"_s;
    }
    begin();
    const QString error = adding({channel, source});
    QVERIFY2(error.contains(mentions), qPrintable(error));
    QCOMPARE(m_recorder->host->channels().count(), 1);
}

void TestOwnChannels::cannotBeRemovedOrTakenOver()
{
    begin();
    const QD_ZLK::IF_ZLK_c_Chan_var channel = onCallerThread([this] {
        return m_recorder->entry()->getZelkoChannelInterface(OwnChannels::idOf(name).toLatin1().constData());
    });
    const PublishedManager stranger(m_recorder->orb);
    const auto reference = stranger.reference();
    QCOMPARE(endingOf([&] { channel->removeChannel(); }), u"failed"_s);
    QCOMPARE(endingOf([&] { channel->removeChannelForced(); }), u"NO_PERMISSION"_s);
    QCOMPARE(endingOf([&] { channel->setCallBackInterface(reference); }), u"not permitted"_s);
    QCOMPARE(endingOf([&] { channel->setDataFormat(QD_ZLK::FORMAT_IQ8); }), u"not permitted"_s);
    QVERIFY(m_shown->isThere());
    recordSome();
    QCOMPARE(stranger.manager().calls(), QStringList());
}

// Its data do not leave the machine.
void TestOwnChannels::goesThroughLoopbackWhereverItListens()
{
    ServiceHost::Options options;
    options.channels.channel.listenAddress = options.channels.channel.toldAddress = u"192.0.2.1"_s;
    m_recorder = ServiceRecorder::loaded(fillWithRecords, options);
    QVERIFY(m_recorder);
    m_channels = std::make_unique<OwnChannels>(m_recorder->orb, 1.0);
    QCOMPARE(adding({name, signal}), QString());
    m_shown = std::make_unique<ShownChannel>(m_recorder->recorder.tree(), QString(), OwnChannels::idOf(name));
    recordSome();
    write<QString>("RecordID", u"Long"_s);
    replay(Running);
    QTRY_COMPARE_WITH_TIMEOUT(m_shown->replay(), u"running"_s, patience);
}

void TestOwnChannels::closesItsRecordingWhenTheRecorderEnds()
{
    begin();
    record(StartRequested);
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->number("FileSize") > 0, patience);
    const QString id = m_shown->text("RecordID");
    m_recorder->host.reset();
    m_channels.reset();
    QString error;
    const RecordPointer stored = DeviceStore(m_recorder->deviceFolder("D1")).read(id, &error);
    QVERIFY2(stored, qPrintable(error));
    QCOMPARE(stored->GetRecordStatus(), Status::Finished);
}

QTEST_GUILESS_MAIN(TestOwnChannels)
#include "tst_ownchannels.moc"
