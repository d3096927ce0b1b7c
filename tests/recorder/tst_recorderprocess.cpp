#include <recorder/store/devicestore.h>
#include <recorder/store/storelock.h>

#include <patience.h>
#include <recorderclient.h>
#include <recorderprocess.h>
#include <sigmfpair.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoRecorder::DeviceStore;
using ZelkoRecorder::RecordPointer;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

// Of a channel's recording state.
constexpr int startRequested = 0;
constexpr int stopRequested = 3;

} // namespace

class TestRecorderProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void saysItsPortAndNothingElse();
    void closesRecordingsOnASignal_data();
    void closesRecordingsOnASignal();
    void endsWithTheRightCode_data();
    void endsWithTheRightCode();
    void refusesATakenPort();
    void refusesAStoreInUse();
    void endsWithItsParent();
    void showsARecordingToAClient();
    void deletesForAClient();
    void takesNoOtherValueFromAClient();
    void servesWithPipesInPlaceOfFiles();
    void servesWhileItLoads();
    void recordsACaptureOnceAlthoughItIsKilled();
    void changesPreparedRecords();
    void recordsFromAChannelOfItsOwn();
    void closesTheRecordOfItsChannelOnASignal();

private:
    RecorderClient& connectTo(quint16 port)
    {
        m_client = std::make_unique<RecorderClient>(*m_orb, port);
        return *m_client;
    }
    QStringList withStore(const QString& more) const
    {
        return QStringList{QStringLiteral("--store"), m_folder->path()} +
               more.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    QString device() const { return m_folder->filePath(QStringLiteral("Recorder1")); }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<RecorderClient> m_client;
};

void TestRecorderProcess::initTestCase()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
}

void TestRecorderProcess::cleanupTestCase()
{
    m_orb.reset();
}

void TestRecorderProcess::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<RecorderProcess>(QStringLiteral(ZELKO_RECORDER));
}

void TestRecorderProcess::cleanup()
{
    m_client.reset();
    m_recorder.reset();
}

void TestRecorderProcess::saysItsPortAndNothingElse()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--source generator:noise,seconds=0.1"))));
    QVERIFY(m_recorder->port() != 0);
    m_recorder->send(SIGTERM);
    QCOMPARE(m_recorder->exitCode(), 0);
    QCOMPARE(m_recorder->process().readAllStandardOutput(), QByteArray());
    const QByteArray log = m_recorder->process().readAllStandardError();
    QVERIFY2(log.contains("serving sub system local"), log.constData());
}

void TestRecorderProcess::closesRecordingsOnASignal_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void TestRecorderProcess::closesRecordingsOnASignal()
{
    QFETCH(const int, signal);
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--index-interval 0.05 --source generator:fm"))));
    const DeviceStore store(device());
    QTRY_COMPARE_WITH_TIMEOUT(store.recordIds().size(), 1, patience);
    const QString id = store.recordIds().first();
    QString error;
    QTRY_VERIFY_WITH_TIMEOUT(store.read(id, &error) && store.read(id, &error)->GetSize() > 0, patience);
    m_recorder->send(signal);
    QCOMPARE(m_recorder->exitCode(), 0);
    const RecordPointer record = store.read(id, &error);
    QCOMPARE(record->GetRecordStatus(), Status::Finished);
    QCOMPARE(static_cast<quint64>(QFileInfo(device() + QStringLiteral("/%1/%1.dat").arg(id)).size()),
             record->GetSize());
}

void TestRecorderProcess::endsWithTheRightCode_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("onStandardOutput");
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0 << true;
    QTest::newRow("version") << QStringList{QStringLiteral("--version")} << 0 << true;
    QTest::newRow("no store") << QStringList() << 2 << false;
    QTest::newRow("an unknown option") << QStringList{QStringLiteral("--colour")} << 2 << false;
    QTest::newRow("a store that is a file")
        << QStringList{QStringLiteral("--port=0"), QStringLiteral("--store=" ZELKO_RECORDER)} << 1 << false;
    QTest::newRow("an address of another machine")
        << QStringList{QStringLiteral("--port=0"), QStringLiteral("--listen=192.0.2.7"), QStringLiteral("--store"),
                       QTemporaryDir().path()}
        << 1 << false;
    QTest::newRow("a channel without a source that there is")
        << QStringList{QStringLiteral("--port=0"), QStringLiteral("--channel=A=generator:colour"),
                       QStringLiteral("--store"), QTemporaryDir().path()}
        << 1 << false;
    QTest::newRow("two channels of one name")
        << QStringList{QStringLiteral("--port=0"), QStringLiteral("--channel=A"), QStringLiteral("--channel=A"),
                       QStringLiteral("--store"), QTemporaryDir().path()}
        << 1 << false;
}

void TestRecorderProcess::endsWithTheRightCode()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const bool, onStandardOutput);
    m_recorder->launch(arguments);
    QTEST(m_recorder->exitCode(), "code");
    QCOMPARE(m_recorder->process().readAllStandardOutput().isEmpty(), !onStandardOutput);
    QCOMPARE(m_recorder->process().readAllStandardError().isEmpty(), onStandardOutput);
}

void TestRecorderProcess::refusesATakenPort()
{
    m_recorder->launch(withStore(QStringLiteral("--source generator:fm --port %1").arg(m_orb->port())));
    QCOMPARE(m_recorder->exitCode(), 1);
    QVERIFY(!m_recorder->process().readAllStandardError().isEmpty());
    QVERIFY(!QDir(device()).exists());
}

void TestRecorderProcess::refusesAStoreInUse()
{
    QVERIFY(m_recorder->start(withStore({})));
    RecorderProcess second(QStringLiteral(ZELKO_RECORDER));
    second.launch(withStore(QStringLiteral("--port 0")));
    QCOMPARE(second.exitCode(), 1);
    const QByteArray log = second.process().readAllStandardError();
    QVERIFY2(log.contains("another recorder"), log.constData());
}

void TestRecorderProcess::endsWithItsParent()
{
    QProcess parent;
    const QString command = QStringLiteral("\"%1\" --port 0 --exit-with-parent --store \"%2\"; true")
                                .arg(QStringLiteral(ZELKO_RECORDER), m_folder->path());
    parent.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    QVERIFY(parent.waitForReadyRead());
    QVERIFY(parent.readAllStandardOutput().startsWith("READY"));
    QString error;
    QVERIFY(!ZelkoRecorder::StoreLock().acquire(m_folder->path(), &error));
    parent.kill();
    QVERIFY(parent.waitForFinished());
    QTRY_VERIFY_WITH_TIMEOUT(ZelkoRecorder::StoreLock().acquire(m_folder->path(), &error), patience);
}

void TestRecorderProcess::showsARecordingToAClient()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral(
        "--device A --device B --index-interval 0.1 --source A=generator:fm,name=Tower --source B=generator:noise"))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(
        client.values(QStringLiteral("A")).isLoaded() && client.values(QStringLiteral("B")).isLoaded(), patience);
    const RecorderValues a = client.values(QStringLiteral("A"));
    QTRY_COMPARE_WITH_TIMEOUT(a.map()->Size(), std::uint64_t{1}, patience);
    const QString id = a.ids().first();
    QCOMPARE(a.record(id)->GetRecordName(), QStringLiteral("Tower"));
    QCOMPARE(a.record(id)->GetRecordStatus(), Status::Recording);
    QVERIFY(!a.record(id)->GetFinished());
    QTRY_VERIFY_WITH_TIMEOUT(a.record(id)->GetSize() > 0, patience);
    const quint64 size = a.record(id)->GetSize();
    QTRY_VERIFY_WITH_TIMEOUT(a.record(id)->GetSize() > size, patience);
    client.write(a.command<Value<QString>>("SetRecordIdle"), id);
    QTRY_COMPARE_WITH_TIMEOUT(a.record(id)->GetRecordStatus(), Status::Finished, patience);
    QCOMPARE(client.values(QStringLiteral("B")).map()->Size(), std::uint64_t{1});
}

void TestRecorderProcess::deletesForAClient()
{
    for (const char* id : {"R1", "R2", "R3"}) {
        QVERIFY(storeRecord(device(), finishedRecord(QString::fromLatin1(id)), 4000));
    }
    QVERIFY(m_recorder->start(withStore({})));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded(), patience);
    QCOMPARE(client.values().map()->Size(), std::uint64_t{3});
    client.write(client.values().command<Value<QString>>("DeleteRecordingList"), QStringLiteral("R1@R3"));
    QTRY_COMPARE_WITH_TIMEOUT(client.values().ids(), QStringList{QStringLiteral("R2")}, patience);
    QVERIFY(!QDir(device() + QStringLiteral("/R1")).exists());
    QVERIFY(QDir(device() + QStringLiteral("/R2")).removeRecursively());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().map()->Empty(), patience);
}

void TestRecorderProcess::takesNoOtherValueFromAClient()
{
    QVERIFY(m_recorder->start(withStore({})));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded(), patience);
    client.write(client.values().loadCount(), 77);
    QCOMPARE(client.values().loadCount()->GetValue(), 77);
    QTRY_COMPARE_WITH_TIMEOUT(client.values().loadCount()->GetValue(), 0, patience);
}

// One read of a pipe that nobody writes to would hold up everything behind it.
void TestRecorderProcess::servesWithPipesInPlaceOfFiles()
{
    QVERIFY(storeRecord(device(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(QDir(device()).mkdir(QStringLiteral("R2")));
    const QString source = m_folder->filePath(QStringLiteral("pipe.sigmf-meta"));
    for (const QString& path : {device() + QStringLiteral("/R2/RecordData.xml"), source}) {
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    }
    QVERIFY(
        m_recorder->start(withStore(QStringLiteral("--source %1 --source generator:noise,seconds=0.1").arg(source))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.values().map()->Size(), std::uint64_t{2}, patience);
    QVERIFY(client.values().record(QStringLiteral("R1")));
}

void TestRecorderProcess::servesWhileItLoads()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--populate 3000"))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.values().loadCount()->GetValue(), 3000, patience);
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded(), 60'000);
    QCOMPARE(client.values().map()->Size(), std::uint64_t{3000});
}

void TestRecorderProcess::recordsACaptureOnceAlthoughItIsKilled()
{
    SigmfPair capture;
    capture.samples = QByteArray(4 * 400, 's'); // 0.4 s
    capture.addHash();
    QVERIFY(capture.write(m_folder->filePath(QStringLiteral("capture"))));
    const auto withCapture = [&](const QString& more) {
        return withStore(QStringLiteral("--once --index-interval 0.05 --source %1.sigmf-meta ")
                             .arg(m_folder->filePath(QStringLiteral("capture"))) +
                         more);
    };
    const auto atRest = [this](const QString& name) {
        int count = 0;
        for (const QString& id : m_client->values().ids()) {
            const RecordPointer record = m_client->values().record(id);
            count += record->GetRecordName() == name && record->GetRecordStatus() == Status::Finished ? 1 : 0;
        }
        return count;
    };
    const auto isLoaded = [this] { return m_client->values().isLoaded(); };
    QVERIFY(m_recorder->start(withCapture(QStringLiteral("--speed 0.01"))));
    connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded() && m_client->values().map()->Size() == 1, patience);
    m_recorder->kill(); // in the middle of it
    QVERIFY(m_recorder->start(withCapture(QString())));
    connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded() && atRest(QStringLiteral("capture")) == 2, patience);
    m_recorder->send(SIGTERM); // which leaves it the time to note that
    QCOMPARE(m_recorder->exitCode(), 0);
    for (const QString& next : {QStringLiteral("X"), QStringLiteral("Y")}) {
        QVERIFY(m_recorder->start(withCapture(QStringLiteral("--source generator:noise,seconds=0.1,name=") + next)));
        connectTo(m_recorder->port());
        QTRY_VERIFY_WITH_TIMEOUT(isLoaded() && atRest(next) == 1, patience);
        QCOMPARE(atRest(QStringLiteral("capture")), 2);
        m_recorder->kill();
    }
}

void TestRecorderProcess::changesPreparedRecords()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--populate 3 --churn 200"))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded(), patience);
    const QString id = client.values().ids().first();
    const quint64 size = client.values().record(id)->GetSize();
    QTRY_VERIFY_WITH_TIMEOUT(client.values().record(id)->GetSize() > size + 4096, patience);
}

void TestRecorderProcess::recordsFromAChannelOfItsOwn()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--channel Own=generator:fm,rate=8000"))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded() && client.channelIds().size() == 1, patience);
    const ShownChannel channel = client.channel(client.channelIds().constFirst());
    QTRY_VERIFY_WITH_TIMEOUT(channel.isThere(), patience);
    QCOMPARE(channel.text("ChannelName"), QStringLiteral("Own"));
    client.select(channel.recordingState(), startRequested);
    QTRY_VERIFY_WITH_TIMEOUT(channel.number("FileSize") > 0, patience);
    const QString id = channel.text("RecordID");
    client.select(channel.recordingState(), stopRequested);
    QTRY_VERIFY_WITH_TIMEOUT(
        client.values().record(id) && client.values().record(id)->GetRecordStatus() == Status::Finished, patience);
    QCOMPARE(client.values().record(id)->GetRecordName(), QStringLiteral("Own"));
}

void TestRecorderProcess::closesTheRecordOfItsChannelOnASignal()
{
    QVERIFY(m_recorder->start(withStore(QStringLiteral("--channel Own"))));
    RecorderClient& client = connectTo(m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(client.values().isLoaded() && client.channelIds().size() == 1, patience);
    const ShownChannel channel = client.channel(client.channelIds().constFirst());
    QTRY_VERIFY_WITH_TIMEOUT(channel.isThere(), patience);
    client.select(channel.recordingState(), startRequested);
    QTRY_VERIFY_WITH_TIMEOUT(channel.number("FileSize") > 0, patience);
    const QString id = channel.text("RecordID");
    m_recorder->send(SIGTERM);
    QCOMPARE(m_recorder->exitCode(), 0);
    QString error;
    const RecordPointer record = DeviceStore(device()).read(id, &error);
    QVERIFY2(record, qPrintable(error));
    QCOMPARE(record->GetRecordStatus(), Status::Finished);
}

QTEST_GUILESS_MAIN(TestRecorderProcess)
#include "tst_recorderprocess.moc"
