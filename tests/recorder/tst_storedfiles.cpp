#include <recorder/store/storedfiles.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;

class TestStoredFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesTheFileOfSamples();
    void savesNoRecordThatIsNone();
    void removesWhatInterruptedSavesLeft();
    void readsWhatIsWhole_data();
    void readsWhatIsWhole();
};

void TestStoredFiles::namesTheFileOfSamples()
{
    ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    QCOMPARE(sampleFilePath(QStringLiteral("/a/b"), record), QStringLiteral("/a/b/R1.dat"));
    record.SetDataFormat(ZELKO_RecordData::DataFormat::Symbols);
    QCOMPARE(sampleFilePath(QStringLiteral("/a/b"), record), QStringLiteral("/a/b/R1.sym"));
}

void TestStoredFiles::savesNoRecordThatIsNone()
{
    const QTemporaryDir folder;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot save")));
    QVERIFY(!saveMetaData(folder.path(), ZELKO_RecordData()));
    QVERIFY(QDir(folder.path()).isEmpty());
    QVERIFY(saveMetaData(folder.path(), finishedRecord(QStringLiteral("R1"))));
}

void TestStoredFiles::removesWhatInterruptedSavesLeft()
{
    const QTemporaryDir folder;
    const QStringList kept{QStringLiteral("R1.dat"), QStringLiteral("RecordData.xml"),
                           QStringLiteral("RecordData.xml.old"), QStringLiteral("RecordData.xml.tar.gz"),
                           QStringLiteral("other.aB3dEf")};
    for (const QString& name :
         kept + QStringList{QStringLiteral("RecordData.xml.aB3dEf"), QStringLiteral("RecordData.xml.zzzzzz")}) {
        QVERIFY(writeBytes(folder.filePath(name), "x"));
    }
    removeTemporaries(folder.path());
    QCOMPARE(contentOf(folder.path()).keys(), kept);
    removeTemporaries(folder.filePath(QStringLiteral("nowhere")));
}

void TestStoredFiles::readsWhatIsWhole_data()
{
    QTest::addColumn<int>("recordStatus");
    QTest::addColumn<int>("sampleBytes");
    QTest::addColumn<int>("status");
    QTest::newRow("at rest") << static_cast<int>(Status::Finished) << 4000 << static_cast<int>(StoreStatus::Done);
    QTest::newRow("with more samples than it says")
        << static_cast<int>(Status::Finished) << 5000 << static_cast<int>(StoreStatus::Done);
    QTest::newRow("with fewer samples than it says")
        << static_cast<int>(Status::Finished) << 3999 << static_cast<int>(StoreStatus::Damaged);
    QTest::newRow("being recorded") << static_cast<int>(Status::Recording) << 4000
                                    << static_cast<int>(StoreStatus::InUse);
    QTest::newRow("damaged") << static_cast<int>(Status::Damaged) << 4000 << static_cast<int>(StoreStatus::Damaged);
}

void TestStoredFiles::readsWhatIsWhole()
{
    QFETCH(const int, recordStatus);
    QFETCH(const int, sampleBytes);
    const QTemporaryDir folder;
    ZELKO_RecordData stored = finishedRecord(QStringLiteral("R1"));
    stored.SetRecordStatus(static_cast<Status>(recordStatus));
    QVERIFY(storeRecord(folder.path(), stored, sampleBytes));
    RecordPointer record;
    QTEST(static_cast<int>(readWhole(DeviceStore(folder.path()), QStringLiteral("R1"), &record)), "status");
    QVERIFY(*record == stored);
    QCOMPARE(readWhole(DeviceStore(folder.path()), QStringLiteral("R2"), &record), StoreStatus::UnknownRecord);
    QVERIFY(!record);
}

QTEST_GUILESS_MAIN(TestStoredFiles)
#include "tst_storedfiles.moc"
