#include <recorder/served/exportqueue.h>

#include <samplebytes.h>

#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Kind = RecordUses::Kind;
using Partial = RecordExport::Partial;

Q_DECLARE_METATYPE(ZelkoRecorder::StoreStatus)

namespace {

// With the time that each part takes here, an export of so much is not at its end before it is given up.
constexpr quint64 endless = quint64{1} << 30;
constexpr std::chrono::milliseconds timeOfAPart{100};

} // namespace

class TestExportQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_queue.reset(); }
    void exportsARecord();
    void namesTheExport();
    void exportsOneAfterTheOther();
    void refusesWhatCannotBe();
    void refusesTheSameTwice();
    void letsNoMoreWaitThanItMay();
    void refusesWhatIsBeingDeleted();
    void keepsTheRecordFromBeingDeleted();
    void givesUpTheOneUnderWay_data();
    void givesUpTheOneUnderWay();
    void givesUpOneThatWaits();
    void tellsNothingOfTheEndOfAnotherId();
    void endsInTheMiddleOfAnExport();

private:
    void store(const QString& id, quint64 size);
    QString exportRecord(const QString& id)
    {
        return m_queue->enqueue({QStringLiteral("D"), DeviceStore(m_device->path()), m_uses}, id, m_target->path(),
                                &m_status);
    }
    QString idOf(const QString& record) const { return QStringLiteral("D@%1@%2@IQ16").arg(record, m_target->path()); }
    bool isRunning(const QString& record) const { return m_log.contains(QStringLiteral("started ") + idOf(record)); }

    std::unique_ptr<QTemporaryDir> m_device;
    std::unique_ptr<QTemporaryDir> m_target;
    RecordUses m_uses;
    std::unique_ptr<ExportQueue> m_queue;
    QStringList m_log; // without progress
    QList<quint64> m_processed;
    QList<quint64> m_totals;
    StoreStatus m_status = StoreStatus::Done;
};

void TestExportQueue::init()
{
    m_device = std::make_unique<QTemporaryDir>();
    m_target = std::make_unique<QTemporaryDir>();
    m_queue = std::make_unique<ExportQueue>(ExportFolders({m_target->path()}),
                                            [] { std::this_thread::sleep_for(timeOfAPart); });
    m_log.clear();
    m_processed.clear();
    m_totals.clear();
    ExportQueue* const queue = m_queue.get();
    connect(queue, &ExportQueue::started, this,
            [this](const QString& id) { m_log.append(QStringLiteral("started ") + id); });
    connect(queue, &ExportQueue::finished, this, [this](const QString& id, StoreStatus status) {
        m_log.append(QStringLiteral("finished %1 %2").arg(id).arg(static_cast<int>(status)));
    });
    connect(queue, &ExportQueue::progress, this, [this](quint64 processed, quint64 total) {
        m_processed.append(processed);
        m_totals.append(total);
    });
}

void TestExportQueue::store(const QString& id, quint64 size)
{
    ZELKO_RecordData record = finishedRecord(id);
    record.SetSize(size);
    record.SetStopPosition(size);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(11'000'000, size)});
    QVERIFY(storeSamples(m_device->path(), record, {}));
    QFile samples(m_device->filePath(id + QLatin1Char('/') + id + QStringLiteral(".dat")));
    QVERIFY(samples.resize(static_cast<qint64>(size)));
}

void TestExportQueue::exportsARecord()
{
    QVERIFY(storeSamples(m_device->path(), finishedRecord(QStringLiteral("R1")), sampleBytes(4000)));
    const QString id = exportRecord(QStringLiteral("R1"));
    QCOMPARE(m_status, StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_log, (QStringList{QStringLiteral("started ") + id, QStringLiteral("finished %1 0").arg(id)}), 30'000);
    QCOMPARE(contentOf(m_target->path()), contentOf(m_device->path()));
    QCOMPARE(m_processed.constLast(), quint64{4000});
    QCOMPARE(m_totals.constLast(), quint64{4000});
    QVERIFY(m_uses.begin(QStringLiteral("R1"), RecordUses::Kind::Deletion));
    QCOMPARE(m_queue->pending(), 0);
}

void TestExportQueue::namesTheExport()
{
    store(QStringLiteral("R1"), 4000);
    QCOMPARE(exportRecord(QStringLiteral("R1")), idOf(QStringLiteral("R1")));
}

void TestExportQueue::exportsOneAfterTheOther()
{
    QStringList expected;
    for (const QString& record : {QStringLiteral("R1"), QStringLiteral("R2"), QStringLiteral("R3")}) {
        store(record, 4000);
        exportRecord(record);
        expected << QStringLiteral("started ") + idOf(record) << QStringLiteral("finished %1 0").arg(idOf(record));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_log, expected, 30'000);
    QVERIFY(std::is_sorted(m_totals.begin(), m_totals.end()));
}

void TestExportQueue::refusesWhatCannotBe()
{
    QCOMPARE(exportRecord(QStringLiteral("R1")), QString());
    QCOMPARE(m_status, StoreStatus::UnknownRecord);
    store(QStringLiteral("R1"), 4000);
    QCOMPARE(m_queue->enqueue({QStringLiteral("D"), DeviceStore(m_device->path()), m_uses}, QStringLiteral("R1"),
                              m_device->path(), &m_status),
             QString());
    QCOMPARE(m_status, StoreStatus::BadFolder);
    QVERIFY(m_uses.begin(QStringLiteral("R1"), RecordUses::Kind::Deletion));
}

// Those that wait keep nothing open and make nothing.
void TestExportQueue::letsNoMoreWaitThanItMay()
{
    store(QStringLiteral("R1"), endless);
    const auto exportTo = [this](const QString& folder) {
        m_queue->enqueue({QStringLiteral("D"), DeviceStore(m_device->path()), m_uses}, QStringLiteral("R1"),
                         m_target->filePath(folder), &m_status);
        return m_status;
    };
    QCOMPARE(exportTo("0"), StoreStatus::Done);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(m_target->filePath("0/.export-R1")), 30'000);
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const qsizetype before = descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
    for (int i = 1; i < ExportQueue::mostExports; ++i) {
        QCOMPARE(exportTo(QString::number(i)), StoreStatus::Done);
    }
    QVERIFY(descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size() < before + 10);
    QCOMPARE(QDir(m_target->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"0"});
    QCOMPARE(exportTo("more"), StoreStatus::TooMany);
    QCOMPARE(m_queue->pending(), ExportQueue::mostExports - 1);
}

void TestExportQueue::refusesTheSameTwice()
{
    store(QStringLiteral("R1"), endless);
    QVERIFY(!exportRecord(QStringLiteral("R1")).isEmpty());
    QVERIFY(exportRecord(QStringLiteral("R1")).isEmpty());
    QCOMPARE(m_status, StoreStatus::InUse);
}

void TestExportQueue::refusesWhatIsBeingDeleted()
{
    store(QStringLiteral("R1"), 4000);
    const RecordUses::Handle deletion = m_uses.begin(QStringLiteral("R1"), Kind::Deletion);
    QVERIFY(exportRecord(QStringLiteral("R1")).isEmpty());
    QCOMPARE(m_status, StoreStatus::InUse);
}

void TestExportQueue::keepsTheRecordFromBeingDeleted()
{
    store(QStringLiteral("R1"), endless);
    store(QStringLiteral("R2"), 4000);
    QVERIFY(!exportRecord(QStringLiteral("R1")).isEmpty());
    QVERIFY(!exportRecord(QStringLiteral("R2")).isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(isRunning(QStringLiteral("R1")), 30'000);
    QCOMPARE(m_queue->pending(), 1);
    QVERIFY(!m_uses.begin(QStringLiteral("R1"), Kind::Deletion));
    QVERIFY(!m_uses.begin(QStringLiteral("R2"), Kind::Deletion));
}

void TestExportQueue::givesUpTheOneUnderWay_data()
{
    QTest::addColumn<int>("partial");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("and removes its files") << static_cast<int>(Partial::Removed) << QStringList();
    QTest::newRow("and keeps its files") << static_cast<int>(Partial::Kept)
                                         << QStringList{QStringLiteral("R1.partial")};
}

void TestExportQueue::givesUpTheOneUnderWay()
{
    QFETCH(const int, partial);
    store(QStringLiteral("R1"), endless);
    const QString id = exportRecord(QStringLiteral("R1"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_processed.isEmpty(), 30'000);
    QCOMPARE(m_queue->cancel(id, static_cast<Partial>(partial)), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.size(), 2, 30'000);
    QCOMPARE(m_log.at(1), QStringLiteral("finished %1 %2").arg(id).arg(static_cast<int>(StoreStatus::Cancelled)));
    QTEST(QDir(m_target->path()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot), "left");
    QVERIFY(m_uses.begin(QStringLiteral("R1"), RecordUses::Kind::Deletion));
}

void TestExportQueue::givesUpOneThatWaits()
{
    store(QStringLiteral("R1"), endless);
    store(QStringLiteral("R2"), 4000);
    const QString first = exportRecord(QStringLiteral("R1"));
    const QString second = exportRecord(QStringLiteral("R2"));
    QTRY_VERIFY_WITH_TIMEOUT(isRunning(QStringLiteral("R1")), 30'000);
    QCOMPARE(m_queue->cancel(second, Partial::Removed), StoreStatus::Done);
    QCOMPARE(m_queue->cancel(first, Partial::Removed), StoreStatus::Done);
    QTRY_COMPARE_WITH_TIMEOUT(m_log.size(), 4, 30'000);
    QVERIFY(m_log.at(3).startsWith(QStringLiteral("finished ") + second));
    QVERIFY(QDir(m_target->path()).isEmpty());
}

void TestExportQueue::tellsNothingOfTheEndOfAnotherId()
{
    store(QStringLiteral("R1"), endless);
    const QString id = exportRecord(QStringLiteral("R1"));
    for (const QString& other : {QString(), QStringLiteral("D@R1"), id + QLatin1Char('x')}) {
        QCOMPARE(m_queue->cancel(other, Partial::Removed), StoreStatus::UnknownEntry);
    }
    QCOMPARE(m_queue->cancel(id, Partial::Removed), StoreStatus::Done);
}

void TestExportQueue::endsInTheMiddleOfAnExport()
{
    store(QStringLiteral("R1"), endless);
    store(QStringLiteral("R2"), endless);
    exportRecord(QStringLiteral("R1"));
    exportRecord(QStringLiteral("R2"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_processed.isEmpty(), 30'000);
    m_queue.reset();
    QVERIFY(m_uses.begin(QStringLiteral("R1"), RecordUses::Kind::Deletion));
    QVERIFY(m_uses.begin(QStringLiteral("R2"), RecordUses::Kind::Deletion));
    QVERIFY(QDir(m_target->path()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

QTEST_GUILESS_MAIN(TestExportQueue)
#include "tst_exportqueue.moc"
