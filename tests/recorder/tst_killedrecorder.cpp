#include <recorder/source/sourcefactory.h>
#include <recorder/store/devicestore.h>

#include <patience.h>
#include <recorderclient.h>
#include <recorderprocess.h>
#include <storedrecord.h>
#include <watch.h>

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <map>

using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoRecorder::DeviceStore;
using ZelkoRecorder::RecordPointer;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

constexpr int rounds = 20;
constexpr const char* devices[] = {"A", "B"};

// What a client saw of a device before the recorder died, and what then lay on the disk of the records at rest.
struct Seen
{
    std::map<QString, RecordPointer> records;
    std::map<QString, QMap<QString, QByteArray>> files;
};

bool isAtRest(const RecordPointer& record)
{
    return record->GetRecordStatus() == Status::Finished;
}

} // namespace

class TestKilledRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsEveryRecordAfterItWasKilled();

private:
    void runUntilKilled(int round);
    static bool isLooking(int round) { return round % 5 != 4; }
    static bool isRecording(RecorderClient& client);
    void see(RecorderClient& client);
    void keepFiles();
    void compare(RecorderClient& client);
    void compareRecord(const QString& device, const QString& id, const RecordPointer& before, const RecordPointer& now);
    void checkClosed(const QString& device, const RecordPointer& record);
    QString folder(const QString& device, const QString& id) const
    {
        return m_store.filePath(device) + QLatin1Char('/') + id;
    }
    static bool isLoaded(RecorderClient& client)
    {
        return client.values(QStringLiteral("A")).isLoaded() && client.values(QStringLiteral("B")).isLoaded();
    }
    QStringList arguments(bool recording) const;

    ZelkoCommon::Orb m_orb{ZelkoCommon::OrbOptions()};
    QTemporaryDir m_store;
    std::map<QString, Seen> m_seen;
    QRandomGenerator m_random;
    int m_interrupted = 0;
};

// One device makes many short records, the other one long one.
QStringList TestKilledRecorder::arguments(bool recording) const
{
    QString line = QStringLiteral("--device A --device B --index-interval 0.01");
    if (recording) {
        line += QStringLiteral(" --source B=generator:fm,rate=48000");
        for (int i = 0; i < 20; ++i) {
            line += QStringLiteral(" --source A=generator:noise,rate=48000,seconds=0.08");
        }
    }
    return QStringList{QStringLiteral("--store"), m_store.path()} + line.split(QLatin1Char(' '));
}

void TestKilledRecorder::initTestCase()
{
    const char* const variable = "ZELKO_TEST_SEED";
    const quint32 seed =
        qEnvironmentVariableIsSet(variable) ? qgetenv(variable).toUInt() : QRandomGenerator::system()->generate();
    m_random.seed(seed);
    qInfo("%s=%u repeats these kills", variable, seed);
}

void TestKilledRecorder::showsEveryRecordAfterItWasKilled()
{
    for (int round = 0; round < rounds; ++round) {
        runUntilKilled(round);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("round %1").arg(round)));
    }
    RecorderProcess recorder(QStringLiteral(ZELKO_RECORDER));
    QVERIFY(recorder.start(arguments(false)));
    RecorderClient client(m_orb, recorder.port());
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(client), patience);
    compare(client);
    for (const char* const device : devices) {
        const DeviceStore store(m_store.filePath(QString::fromLatin1(device)));
        QStringList stored = store.recordIds();
        stored.sort();
        QVERIFY(std::none_of(stored.begin(), stored.end(), [&](const QString& id) { return store.marks().isSet(id); }));
        QCOMPARE(client.values(QString::fromLatin1(device)).ids(), stored);
        for (const QString& id : stored) {
            checkClosed(QString::fromLatin1(device), client.values(QString::fromLatin1(device)).record(id));
        }
    }
    QVERIFY2(m_interrupted >= rounds / 2, qPrintable(QString::number(m_interrupted))); // the moments that matter
}

// Kills it at any moment from its start on, now and then before a client has seen anything.
void TestKilledRecorder::runUntilKilled(int round)
{
    RecorderProcess recorder(QStringLiteral(ZELKO_RECORDER));
    QVERIFY(recorder.start(arguments(true)));
    RecorderClient client(m_orb, recorder.port());
    if (isLooking(round)) {
        QTRY_VERIFY_WITH_TIMEOUT(isLoaded(client), patience);
        compare(client);
        int changes = 0;
        Watch watch([&] { ++changes; });
        watch.on(client.values(QStringLiteral("A")).map());
        const int enough = m_random.bounded(15);
        QTRY_VERIFY_WITH_TIMEOUT(changes >= enough && isRecording(client), patience);
    }
    QTest::qWait(m_random.bounded(60)); // not just when it has told of a change
    if (isLooking(round)) {
        see(client);
    }
    recorder.kill();
    keepFiles();
}

bool TestKilledRecorder::isRecording(RecorderClient& client)
{
    const RecorderValues values = client.values(QStringLiteral("B"));
    const QStringList ids = values.ids();
    return std::any_of(ids.begin(), ids.end(), [&](const QString& id) { return !isAtRest(values.record(id)); });
}

void TestKilledRecorder::see(RecorderClient& client)
{
    for (const char* const device : devices) {
        const QString name = QString::fromLatin1(device);
        for (const QString& id : client.values(name).ids()) {
            const RecordPointer record = client.values(name).record(id);
            m_seen[name].records[id] = record;
            m_interrupted += isAtRest(record) ? 0 : 1;
        }
    }
}

void TestKilledRecorder::keepFiles()
{
    for (auto& [device, seen] : m_seen) {
        for (const auto& [id, record] : seen.records) {
            if (isAtRest(record) && seen.files.count(id) == 0) {
                seen.files[id] = contentOf(folder(device, id));
            }
        }
    }
}

void TestKilledRecorder::compare(RecorderClient& client)
{
    for (const auto& [device, seen] : m_seen) {
        for (const auto& [id, before] : seen.records) {
            const RecordPointer now = client.values(device).record(id);
            QVERIFY2(now, qPrintable(id));
            compareRecord(device, id, before, now);
        }
    }
}

void TestKilledRecorder::compareRecord(const QString& device, const QString& id, const RecordPointer& before,
                                       const RecordPointer& now)
{
    if (isAtRest(before)) {
        QVERIFY(*now == *before);
        QCOMPARE(contentOf(folder(device, id)), m_seen[device].files[id]);
        return;
    }
    QCOMPARE(now->GetRecordName(), before->GetRecordName());
    QVERIFY(now->GetSize() >= before->GetSize());
    QVERIFY(now->GetStopTime() >= before->GetStopTime());
    checkClosed(device, now);
}

// At rest, everything up to the last entry of the index, and there the samples of the signal.
void TestKilledRecorder::checkClosed(const QString& device, const RecordPointer& record)
{
    QVERIFY(isAtRest(record) && record->GetFinished() && record->GetDeletable());
    const auto& last = std::as_const(*record).GetIndexEntry().constLast();
    QCOMPARE(record->GetSize(), last.GetRecordOffset());
    QCOMPARE(record->GetStopTime(), last.GetTimestamp());
    const QString id = record->GetRecordID();
    const auto files = contentOf(folder(device, id));
    QCOMPARE(files.keys(), (QStringList{id + QStringLiteral(".dat"), QStringLiteral("RecordData.xml")}));
    const QString text = device == QLatin1String("A") ? QStringLiteral("generator:noise,rate=48000,seconds=0.08")
                                                      : QStringLiteral("generator:fm,rate=48000");
    const auto source = ZelkoRecorder::SourceFactory::create(text, nullptr);
    QByteArray signal(static_cast<qsizetype>(record->GetSize()), '\0');
    source->read(signal.data(), signal.size() / source->description().format.bytesPerFrame());
    QVERIFY(files.value(id + QStringLiteral(".dat")) == signal);
}

QTEST_GUILESS_MAIN(TestKilledRecorder)
#include "tst_killedrecorder.moc"
