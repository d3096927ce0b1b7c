#include <recorder/store/devicestore.h>

#include <foldersyncs.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;

namespace {

bool makeSpecial(const QString& path, const QString& kind)
{
    if (kind == "a pipe") {
        return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
    }
    return kind == "a folder" ? QDir().mkdir(path) : QFile::link(QStringLiteral("/dev/zero"), path);
}

} // namespace

class TestDeviceStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesItsFolder();
    void makesItsFolderDurable();
    void refusesAFolderThatCannotBe();
    void listsFoldersThatMayHoldRecords();
    void readsARecord();
    void readsARecordWithSymbols();
    void refusesWhatIsNoRecord_data();
    void refusesWhatIsNoRecord();
    void doesNotWaitAtAPipeInPlaceOfAFile_data();
    void doesNotWaitAtAPipeInPlaceOfAFile();
    void leavesARecordAtRestAlone();
    void closesAnUnfinishedRecord_data();
    void closesAnUnfinishedRecord();
    void forgetsTheMarkOfARecordAtRest();
    void savesMetaData();
    void removesRecordsWithAllFiles();
    void removesOnlyWhatIsThere();
    void keepsWhatTheDiskDoesNotLetGo();
    void clearsAwayInterruptedBirthsAndDeletions();
    void removesWhatInterruptedSavesLeftOfARecordAtRest();
    void publishesWhatIsNotThereYet();
    void takesBackWhatIsPublishedAndNotDurable();
    void saysWhatMayBeDeleted_data();
    void saysWhatMayBeDeleted();
};

void TestDeviceStore::makesItsFolder()
{
    const QTemporaryDir folder;
    QString error;
    QVERIFY(DeviceStore(folder.filePath(QStringLiteral("a/b"))).open(&error));
    QVERIFY(QFileInfo(folder.filePath(QStringLiteral("a/b"))).isDir());
}

void TestDeviceStore::makesItsFolderDurable()
{
    const QTemporaryDir folder;
    const FolderSyncs disk;
    QString error;
    QVERIFY(DeviceStore(folder.filePath(QStringLiteral("a/b"))).open(&error));
    QCOMPARE(disk.folders().mid(0, 2), (QStringList{folder.path(), folder.filePath(QStringLiteral("a"))}));
}

void TestDeviceStore::refusesAFolderThatCannotBe()
{
    const QTemporaryDir folder;
    QVERIFY(writeBytes(folder.filePath(QStringLiteral("file")), "x"));
    QString error;
    QVERIFY(!DeviceStore(folder.filePath(QStringLiteral("file/device"))).open(&error));
    QVERIFY(error.contains(QLatin1String("file/device")));
}

void TestDeviceStore::listsFoldersThatMayHoldRecords()
{
    const QTemporaryDir folder;
    for (const char* name : {"R1", "R2", ".new-R3", "not an ID"}) {
        QVERIFY(QDir(folder.path()).mkdir(QString::fromLatin1(name)));
    }
    QVERIFY(writeBytes(folder.filePath(QStringLiteral("file")), "x"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("set aside .*not an ID")));
    QStringList ids = DeviceStore(folder.path()).recordIds();
    ids.sort();
    QCOMPARE(ids, (QStringList{QStringLiteral("R1"), QStringLiteral("R2")}));
}

void TestDeviceStore::readsARecord()
{
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 4000));
    QString error;
    const RecordPointer record = DeviceStore(folder.path()).read(QStringLiteral("R1"), &error);
    QVERIFY2(record, qPrintable(error));
    QVERIFY(*record == finishedRecord(QStringLiteral("R1")));
}

void TestDeviceStore::readsARecordWithSymbols()
{
    const QTemporaryDir folder;
    ZELKO_RecordData symbols = finishedRecord(QStringLiteral("R1"));
    symbols.SetDataFormat(ZELKO_RecordData::DataFormat::Symbols);
    QVERIFY(storeRecord(folder.path(), symbols, 4000));
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("R1/R1.sym"))));
    QString error;
    QVERIFY(DeviceStore(folder.path()).read(QStringLiteral("R1"), &error));
}

void TestDeviceStore::refusesWhatIsNoRecord_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("samples");
    QTest::addColumn<QString>("because");
    const QByteArray good = finishedRecord(QStringLiteral("R1")).GetXmlString().toUtf8();
    const QByteArray other = finishedRecord(QStringLiteral("R2")).GetXmlString().toUtf8();
    QTest::newRow("no metadata") << QByteArray() << true << QStringLiteral("RecordData.xml\" cannot be read");
    QTest::newRow("half a file") << good.left(good.size() / 2) << true << QString();
    QTest::newRow("not XML") << QByteArray("\0\1\2", 3) << true << QString();
    QTest::newRow("of another record") << other << true << QStringLiteral("R2");
    QTest::newRow("no samples") << good << false << QStringLiteral("R1.dat");
}

void TestDeviceStore::refusesWhatIsNoRecord()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const bool, samples);
    QFETCH(const QString, because);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("R1")));
    QVERIFY(writeBytes(folder.filePath(QStringLiteral("R1/RecordData.xml.aB3dEf")), "<half"));
    QVERIFY(xml.isEmpty() || writeBytes(folder.filePath(QStringLiteral("R1/RecordData.xml")), xml));
    QVERIFY(!samples || writeBytes(folder.filePath(QStringLiteral("R1/R1.dat")), "samples"));
    const auto before = contentOf(folder.path());
    QString error;
    QVERIFY(!DeviceStore(folder.path()).readAtRest(QStringLiteral("R1"), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY2(error.contains(because), qPrintable(error));
    QCOMPARE(contentOf(folder.path()), before);
}

void TestDeviceStore::doesNotWaitAtAPipeInPlaceOfAFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("because");
    for (const char* kind : {"a pipe", "a folder", "a link to a device"}) {
        QTest::addRow("metadata, %s", kind) << "RecordData.xml" << QString(kind) << "RecordData.xml\" is not a file";
        QTest::addRow("samples, %s", kind) << "R1.dat" << QString(kind) << "it has no file R1.dat";
    }
}

// Files of a record in another shape than that of files.
void TestDeviceStore::doesNotWaitAtAPipeInPlaceOfAFile()
{
    QFETCH(const QString, file);
    QFETCH(const QString, kind);
    QFETCH(const QString, because);
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), unfinishedRecord(QStringLiteral("R1")), 4000));
    const QString path = folder.filePath(QStringLiteral("R1/") + file);
    QVERIFY(QFile::remove(path));
    QVERIFY(makeSpecial(path, kind));
    QString error;
    QVERIFY(!DeviceStore(folder.path()).readAtRest(QStringLiteral("R1"), &error));
    QVERIFY2(error.contains(because), qPrintable(error));
}

void TestDeviceStore::leavesARecordAtRestAlone()
{
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 5000)); // longer than its metadata says
    const auto before = contentOf(folder.path());
    QString error;
    QVERIFY(DeviceStore(folder.path()).readAtRest(QStringLiteral("R1"), &error));
    QCOMPARE(contentOf(folder.path()), before);
}

void TestDeviceStore::closesAnUnfinishedRecord_data()
{
    QTest::addColumn<bool>("isMarked");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    QTest::newRow("its own") << true << false << true;
    QTest::newRow("one that was copied in as protected, or is of a time before marks") << false << false << false;
    QTest::newRow("one that was copied in") << false << true << true;
}

void TestDeviceStore::closesAnUnfinishedRecord()
{
    QFETCH(const bool, isMarked);
    QFETCH(const bool, before);
    QFETCH(const bool, after);
    const QTemporaryDir folder;
    ZELKO_RecordData unfinished = unfinishedRecord(QStringLiteral("R1"));
    unfinished.SetDeletable(before);
    QVERIFY(storeRecord(folder.path(), unfinished, 5000));
    const DeviceStore store(folder.path());
    QVERIFY(!isMarked || store.marks().set(QStringLiteral("R1")));
    QString error;
    const RecordPointer record = store.readAtRest(QStringLiteral("R1"), &error);
    QVERIFY2(record, qPrintable(error));
    ZELKO_RecordData expected = finishedRecord(QStringLiteral("R1"));
    expected.SetDeletable(after);
    QVERIFY(*record == expected);
    QVERIFY(*store.read(QStringLiteral("R1"), &error) == *record);
    QCOMPARE(QFileInfo(folder.filePath(QStringLiteral("R1/R1.dat"))).size(), qint64{4000});
    QVERIFY(!store.marks().isSet(QStringLiteral("R1")));
}

// It was killed when the end of the record was on disk already, and somebody may have protected the record since.
void TestDeviceStore::forgetsTheMarkOfARecordAtRest()
{
    const QTemporaryDir folder;
    ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    record.SetDeletable(false);
    QVERIFY(storeRecord(folder.path(), record, 4000));
    const DeviceStore store(folder.path());
    QVERIFY(store.marks().set(QStringLiteral("R1")));
    QString error;
    QVERIFY(*store.readAtRest(QStringLiteral("R1"), &error) == record);
    QVERIFY(!store.marks().isSet(QStringLiteral("R1")));
}

void TestDeviceStore::savesMetaData()
{
    const QTemporaryDir folder;
    const DeviceStore store(folder.path());
    ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    QVERIFY(storeRecord(folder.path(), record, 4000));
    record.SetRecordName(QStringLiteral("Another"));
    QVERIFY(store.save(record));
    QString error;
    QVERIFY(*store.read(QStringLiteral("R1"), &error) == record);

    record.SetRecordID(QStringLiteral("R2"));
    QVERIFY(!store.save(record)); // it has no folder
}

void TestDeviceStore::removesRecordsWithAllFiles()
{
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R2")), 4000));
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R3")), 4000));
    QVERIFY(writeBytes(folder.filePath(QStringLiteral("R1/note.txt")), "n"));
    const QStringList gone = DeviceStore(folder.path()).remove({QStringLiteral("R1"), QStringLiteral("R3")});
    QCOMPARE(gone, (QStringList{QStringLiteral("R1"), QStringLiteral("R3")}));
    QCOMPARE(contentOf(folder.path()).keys(),
             (QStringList{QStringLiteral("R2/R2.dat"), QStringLiteral("R2/RecordData.xml")}));
}

void TestDeviceStore::removesOnlyWhatIsThere()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("device")));
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("other")));
    const DeviceStore store(folder.filePath(QStringLiteral("device")));
    QCOMPARE(store.remove({QStringLiteral("missing"), QStringLiteral("../other"), QString(), QStringLiteral(".")}),
             QStringList());
    QVERIFY(QDir(folder.filePath(QStringLiteral("other"))).exists());
}

void TestDeviceStore::keepsWhatTheDiskDoesNotLetGo()
{
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 4000));
    const auto before = contentOf(folder.path());
    const DeviceStore refusing(folder.path(), [](const QString&) { return false; });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot delete .*the disk refuses")));
    QCOMPARE(refusing.remove({QStringLiteral("R1")}), QStringList());
    QCOMPARE(contentOf(folder.path()), before);
}

void TestDeviceStore::clearsAwayInterruptedBirthsAndDeletions()
{
    const QTemporaryDir folder;
    const DeviceStore store(folder.path());
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 4000));
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R2")), 4000));
    QVERIFY(QDir().rename(folder.filePath(QStringLiteral("R2")), folder.filePath(QStringLiteral(".deleted-R2"))));
    QVERIFY(QDir().mkpath(store.birthFolder(QStringLiteral("R3"))));
    QVERIFY(writeBytes(store.birthFolder(QStringLiteral("R3")) + QStringLiteral("/R3.dat"), "x"));
    QVERIFY(store.marks().set(QStringLiteral("neverBorn")));
    store.removeLeftovers();
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("R1")});
}

void TestDeviceStore::removesWhatInterruptedSavesLeftOfARecordAtRest()
{
    const QTemporaryDir folder;
    QVERIFY(storeRecord(folder.path(), finishedRecord(QStringLiteral("R1")), 4000));
    const auto before = contentOf(folder.path());
    QVERIFY(writeBytes(folder.filePath(QStringLiteral("R1/RecordData.xml.aB3dEf")), "<half"));
    QString error;
    QVERIFY(DeviceStore(folder.path()).read(QStringLiteral("R1"), &error));
    QCOMPARE(contentOf(folder.path()).size(), 3); // somebody may be saving it
    QVERIFY(DeviceStore(folder.path()).readAtRest(QStringLiteral("R1"), &error));
    QCOMPARE(contentOf(folder.path()), before);
}

void TestDeviceStore::publishesWhatIsNotThereYet()
{
    const QTemporaryDir folder;
    const DeviceStore store(folder.path());
    const QString id = QStringLiteral("R1");
    QVERIFY(!store.publish(id));
    QVERIFY(QDir().mkpath(store.birthFolder(id)));
    QVERIFY(writeBytes(store.birthFolder(id) + QStringLiteral("/file"), "x"));
    QVERIFY(store.publish(id));
    QCOMPARE(contentOf(folder.path()).keys(), QStringList{QStringLiteral("R1/file")});
    QVERIFY(QDir().mkpath(store.birthFolder(id)));
    QVERIFY(!store.publish(id));
    QCOMPARE(readBytes(folder.filePath(QStringLiteral("R1/file"))), QByteArray("x"));
}

void TestDeviceStore::takesBackWhatIsPublishedAndNotDurable()
{
    const QTemporaryDir folder;
    const DeviceStore refusing(folder.path(), [](const QString&) { return false; });
    const QString id = QStringLiteral("R1");
    QVERIFY(QDir().mkpath(refusing.birthFolder(id)));
    QVERIFY(!refusing.publish(id));
    QVERIFY(QFileInfo(refusing.birthFolder(id)).isDir());
    QVERIFY(refusing.recordIds().isEmpty());
}

void TestDeviceStore::saysWhatMayBeDeleted_data()
{
    QTest::addColumn<bool>("deletable");
    QTest::addColumn<ZELKO_RecordData::RecordStatus>("status");
    QTest::addColumn<bool>("mayDelete");
    using Status = ZELKO_RecordData::RecordStatus;
    QTest::newRow("deletable and at rest") << true << Status::Finished << true;
    QTest::newRow("protected") << false << Status::Finished << false;
    QTest::newRow("damaged") << true << Status::Damaged << true;
    QTest::newRow("damaged and protected") << false << Status::Damaged << false;
    QTest::newRow("of no known status") << true << Status::Unknown << true;
    QTest::newRow("prepared") << true << Status::Prepared << true;
    QTest::newRow("being recorded") << true << Status::Recording << false;
    QTest::newRow("being recorded in a loop") << true << Status::LoopRecording << false;
    QTest::newRow("being stopped") << true << Status::Stopping << false;
    QTest::newRow("being replayed") << true << Status::Replaying << false;
    QTest::newRow("being transferred") << true << Status::Transferring << false;
}

void TestDeviceStore::saysWhatMayBeDeleted()
{
    QFETCH(const bool, deletable);
    QFETCH(const ZELKO_RecordData::RecordStatus, status);
    ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    record.SetDeletable(deletable);
    record.SetRecordStatus(status);
    QTEST(DeviceStore::mayDelete(record), "mayDelete");
}

QTEST_GUILESS_MAIN(TestDeviceStore)
#include "tst_devicestore.moc"
