#include <recorder/store/recordexport.h>

#include <filesizelimit.h>
#include <foldersyncs.h>
#include <readonlyfolder.h>
#include <samplebytes.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Partial = RecordExport::Partial;
using Status = ZELKO_RecordData::RecordStatus;

namespace {

const QString id = QStringLiteral("R1");
constexpr qsizetype sampleCount = 3'000'000;

// It says of itself what its samples are.
ZELKO_RecordData recordWithSamples()
{
    ZELKO_RecordData record = finishedRecord(id);
    record.SetSize(sampleCount);
    record.SetStopPosition(sampleCount);
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(11'000'000, sampleCount)});
    return record;
}

} // namespace

class TestRecordExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void writesTheFilesOfTheRecord();
    void makesTheFolderThatIsAskedFor();
    void makesNothingBeforeItRuns();
    void leavesOutWhatTheRecordDoesNotCount();
    void neverReplacesAnything();
    void leavesAloneWhatAppearsMeanwhile();
    void refusesRecords_data();
    void refusesRecords();
    void refusesAFolderThatIsNotAllowed();
    void tellsHowFarItIs();
    void removesItsFilesWhenGivenUp();
    void keepsItsFilesWhenToldSo();
    void removesWhatAKillHasLeft();
    void leavesNothingOnAFullDisk();
    void leavesNothingWhenTheFolderIsNotSynced();
    void makesNoFolderThatIsNotDurable();
    void saysSoWhenWhatItWroteMayNotLast();
    void refusesAFolderThatCannotBeWritten();

private:
    RecordExport job(const QString& below = QString()) const
    {
        return RecordExport(DeviceStore(m_device->path()), id, ExportFolders({m_target->path()}),
                            m_target->path() + below);
    }
    QStringList targetFiles() const { return contentOf(m_target->path()).keys(); }

    std::unique_ptr<QTemporaryDir> m_device;
    std::unique_ptr<QTemporaryDir> m_target;
    QByteArray m_samples;
};

void TestRecordExport::init()
{
    m_device = std::make_unique<QTemporaryDir>();
    m_target = std::make_unique<QTemporaryDir>();
    m_samples = sampleBytes(sampleCount);
    QVERIFY(storeSamples(m_device->path(), recordWithSamples(), m_samples));
}

void TestRecordExport::writesTheFilesOfTheRecord()
{
    RecordExport exporting = job();
    QCOMPARE(exporting.status(), StoreStatus::Done);
    QCOMPARE(exporting.size(), quint64{sampleCount});
    QCOMPARE(exporting.run(), StoreStatus::Done);
    QCOMPARE(contentOf(m_target->path()), contentOf(m_device->path()));
}

void TestRecordExport::makesTheFolderThatIsAskedFor()
{
    QCOMPARE(job(QStringLiteral("/2026/november")).run(), StoreStatus::Done);
    QCOMPARE(targetFiles(), (QStringList{QStringLiteral("2026/november/R1/R1.dat"),
                                         QStringLiteral("2026/november/R1/RecordData.xml")}));
}

void TestRecordExport::makesNothingBeforeItRuns()
{
    const RecordExport waiting(DeviceStore(m_device->path()), QStringLiteral("R1"), ExportFolders({m_target->path()}),
                               m_target->filePath(QStringLiteral("new/deeper")));
    QCOMPARE(waiting.status(), StoreStatus::Done);
    QVERIFY(QDir(m_target->path()).isEmpty());
}

void TestRecordExport::leavesOutWhatTheRecordDoesNotCount()
{
    QVERIFY(writeBytes(m_device->filePath(QStringLiteral("R1/R1.dat")), m_samples + "more"));
    QCOMPARE(job().run(), StoreStatus::Done);
    QVERIFY(readBytes(m_target->filePath(QStringLiteral("R1/R1.dat"))) == m_samples);
}

void TestRecordExport::neverReplacesAnything()
{
    QVERIFY(writeBytes(m_target->filePath(id), "a file of this name"));
    QCOMPARE(job().status(), StoreStatus::Exists);
    QVERIFY(QFile::remove(m_target->filePath(id)));
    QVERIFY(QFile::link(QStringLiteral("/nowhere"), m_target->filePath(id)));
    QCOMPARE(job().status(), StoreStatus::Exists);
    QVERIFY(QFile::remove(m_target->filePath(id)));
    QCOMPARE(job().run(), StoreStatus::Done);
    QCOMPARE(job().status(), StoreStatus::Exists);
}

void TestRecordExport::leavesAloneWhatAppearsMeanwhile()
{
    const QString mine = m_target->filePath(QStringLiteral("R1/mine"));
    const auto appear = [&](quint64) {
        QDir().mkpath(m_target->filePath(id));
        return writeBytes(mine, "x");
    };
    QCOMPARE(job().run(appear), StoreStatus::Exists);
    QCOMPARE(targetFiles(), QStringList{QStringLiteral("R1/mine")});
}

void TestRecordExport::refusesRecords_data()
{
    QTest::addColumn<int>("recordStatus");
    QTest::addColumn<int>("sampleBytes");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, Status recordStatus, qsizetype bytes, StoreStatus status) {
        QTest::newRow(name) << static_cast<int>(recordStatus) << static_cast<int>(bytes) << static_cast<int>(status);
    };
    row("being recorded", Status::Recording, sampleCount, StoreStatus::InUse);
    row("damaged", Status::Damaged, sampleCount, StoreStatus::Damaged);
    row("lacking samples", Status::Finished, sampleCount - 1, StoreStatus::Damaged);
    row("at rest", Status::Finished, sampleCount, StoreStatus::Done);
}

void TestRecordExport::refusesRecords()
{
    QFETCH(const int, recordStatus);
    QFETCH(const int, sampleBytes);
    ZELKO_RecordData record = recordWithSamples();
    record.SetRecordStatus(static_cast<Status>(recordStatus));
    QVERIFY(storeSamples(m_device->path(), record, m_samples.left(sampleBytes)));
    QTEST(static_cast<int>(job().status()), "status");
    const RecordExport unknown(DeviceStore(m_device->path()), QStringLiteral("../R1"),
                               ExportFolders({m_target->path()}), m_target->path());
    QCOMPARE(unknown.status(), StoreStatus::UnknownRecord);
    QVERIFY(!unknown.record());
}

void TestRecordExport::refusesAFolderThatIsNotAllowed()
{
    const RecordExport exporting(DeviceStore(m_device->path()), id, ExportFolders({m_target->path()}),
                                 m_device->path());
    QCOMPARE(exporting.status(), StoreStatus::BadFolder);
}

void TestRecordExport::tellsHowFarItIs()
{
    QList<quint64> told;
    const auto watch = [&](quint64 moved) {
        told.append(moved);
        return true;
    };
    QCOMPARE(job().run(watch), StoreStatus::Done);
    QCOMPARE(told, (QList<quint64>{0, 1'048'576, 2'097'152, 3'000'000}));
}

void TestRecordExport::removesItsFilesWhenGivenUp()
{
    const auto giveUp = [](quint64 moved) { return moved < 2'000'000; };
    QCOMPARE(job().run(giveUp, [] { return Partial::Removed; }), StoreStatus::Cancelled);
    QCOMPARE(targetFiles(), QStringList());
    QCOMPARE(job().run(giveUp), StoreStatus::Cancelled);
    QCOMPARE(targetFiles(), QStringList());
}

void TestRecordExport::keepsItsFilesWhenToldSo()
{
    const auto giveUp = [](quint64 moved) { return moved < 2'000'000; };
    const auto keep = [] { return Partial::Kept; };
    QCOMPARE(job().run(giveUp, keep), StoreStatus::Cancelled);
    QCOMPARE(job().run(giveUp, keep), StoreStatus::Cancelled);
    QCOMPARE(targetFiles(), (QStringList{QStringLiteral("R1.partial/R1.dat"), QStringLiteral("R1.partial2/R1.dat")}));
    QVERIFY(readBytes(m_target->filePath(QStringLiteral("R1.partial/R1.dat"))) == m_samples.left(2'097'152));
    QCOMPARE(job().run(), StoreStatus::Done);
}

void TestRecordExport::removesWhatAKillHasLeft()
{
    QVERIFY(QDir().mkpath(m_target->filePath(QStringLiteral(".export-R1/deep"))));
    QVERIFY(writeBytes(m_target->filePath(QStringLiteral(".export-R1/R1.dat")), "half"));
    QCOMPARE(job().run(), StoreStatus::Done);
    QCOMPARE(contentOf(m_target->path()), contentOf(m_device->path()));
}

void TestRecordExport::leavesNothingOnAFullDisk()
{
    {
        const FileSizeLimit limit(1'500'000);
        QCOMPARE(job().run(), StoreStatus::NoSpace);
    }
    QCOMPARE(targetFiles(), QStringList());
    QVERIFY(QDir(m_target->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

void TestRecordExport::leavesNothingWhenTheFolderIsNotSynced()
{
    const FolderSyncs disk(m_target->path(), [this] { return QFileInfo::exists(m_target->filePath(id)); });
    QCOMPARE(job().run(), StoreStatus::DiskRefused);
    QVERIFY(QDir(m_target->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty());
}

void TestRecordExport::makesNoFolderThatIsNotDurable()
{
    const FolderSyncs disk(m_target->path());
    QCOMPARE(job(QStringLiteral("/new")).run(), StoreStatus::DiskRefused);
    QVERIFY(!QFileInfo::exists(m_target->filePath(QStringLiteral("new"))));
}

void TestRecordExport::saysSoWhenWhatItWroteMayNotLast()
{
    const QString builtIn = m_target->filePath(QStringLiteral(".export-R1"));
    const FolderSyncs disk(m_target->path(), [&] {
        return QFileInfo::exists(m_target->filePath(id)) && QDir().mkpath(builtIn + QStringLiteral("/taken"));
    });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("whether R1 .*is not known")));
    QCOMPARE(job().run(), StoreStatus::Uncertain);
    QCOMPARE(targetFiles().size(), 2);
}

void TestRecordExport::refusesAFolderThatCannotBeWritten()
{
    QVERIFY(QFile::setPermissions(m_device->path(), QFile::Permissions(0x7755)));
    RecordExport exporting = job();
    const ReadOnlyFolder readOnly(m_target->path());
    QCOMPARE(exporting.run(), StoreStatus::DiskRefused);
}

QTEST_GUILESS_MAIN(TestRecordExport)
#include "tst_recordexport.moc"
