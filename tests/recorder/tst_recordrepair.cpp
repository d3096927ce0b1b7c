#include <recorder/store/recordrepair.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;
using Status = ZELKO_RecordData::RecordStatus;

class TestRecordRepair : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsUnfinishedRecords_data();
    void tellsUnfinishedRecords();
    void closesAtTheLastEntryThatIsThere_data();
    void closesAtTheLastEntryThatIsThere();
    void keepsWhatSomebodyHasProtected_data();
    void keepsWhatSomebodyHasProtected();
    void removesWhatAnInterruptedSaveLeft();
    void reportsMissingSamples();
};

void TestRecordRepair::tellsUnfinishedRecords_data()
{
    QTest::addColumn<Status>("status");
    QTest::addColumn<QVariant>("finished");
    QTest::addColumn<bool>("unfinished");
    QTest::newRow("at rest") << Status::Finished << QVariant(true) << false;
    QTest::newRow("at rest without the flag") << Status::Finished << QVariant() << false;
    QTest::newRow("recording") << Status::Recording << QVariant(false) << true;
    QTest::newRow("recording, whatever the flag says") << Status::Recording << QVariant(true) << true;
    QTest::newRow("recording in a loop") << Status::LoopRecording << QVariant() << true;
    QTest::newRow("stopping") << Status::Stopping << QVariant() << true;
    QTest::newRow("the flag alone") << Status::Finished << QVariant(false) << true;
    QTest::newRow("replaying") << Status::Replaying << QVariant() << false;
}

void TestRecordRepair::tellsUnfinishedRecords()
{
    QFETCH(const Status, status);
    QFETCH(const QVariant, finished);
    ZELKO_RecordData record;
    record.SetRecordStatus(status);
    if (finished.isValid()) {
        record.SetFinished(finished.toBool());
    }
    QTEST(isUnfinished(record), "unfinished");
}

void TestRecordRepair::closesAtTheLastEntryThatIsThere_data()
{
    QTest::addColumn<QVector<quint64>>("offsets");
    QTest::addColumn<int>("sampleBytes");
    QTest::addColumn<quint64>("size");
    QTest::addColumn<quint64>("stopTime");
    QTest::newRow("samples beyond the last entry are cut")
        << QVector<quint64>{0, 400, 800} << 1000 << quint64{800} << quint64{12'000'000};
    QTest::newRow("samples end at the last entry")
        << QVector<quint64>{0, 400} << 400 << quint64{400} << quint64{11'000'000};
    QTest::newRow("entries beyond the samples go")
        << QVector<quint64>{0, 400, 800} << 799 << quint64{400} << quint64{11'000'000};
    QTest::newRow("no samples") << QVector<quint64>{0, 400} << 0 << quint64{0} << quint64{10'000'000};
    QTest::newRow("no index") << QVector<quint64>() << 500 << quint64{0} << quint64{10'000'000};
}

void TestRecordRepair::closesAtTheLastEntryThatIsThere()
{
    QFETCH(const QVector<quint64>, offsets);
    QFETCH(const int, sampleBytes);
    const QTemporaryDir device;
    ZELKO_RecordData record = unfinishedRecord(QStringLiteral("R1"));
    record.ResetIndexEntry();
    for (qsizetype i = 0; i < offsets.size(); ++i) {
        record.AppendIndexEntry(indexEntry(10'000'000 + static_cast<quint64>(i) * 1'000'000, offsets.at(i)));
    }
    QVERIFY(storeRecord(device.path(), record, sampleBytes));

    QString error;
    QVERIFY2(repairRecord(device.filePath(QStringLiteral("R1")), true, record, &error), qPrintable(error));
    ZELKO_RecordData saved;
    QVERIFY(saved.LoadXml(device.filePath(QStringLiteral("R1/RecordData.xml"))));
    QVERIFY(saved == record);
    QTEST(record.GetSize(), "size");
    QTEST(record.GetStopPosition(), "size");
    QTEST(record.GetStopTime(), "stopTime");
    QTEST(static_cast<quint64>(QFileInfo(device.filePath(QStringLiteral("R1/R1.dat"))).size()), "size");
    QCOMPARE(record.GetRecordStatus(), Status::Finished);
    QVERIFY(record.GetFinished());
    QVERIFY(record.GetDeletable());
}

void TestRecordRepair::keepsWhatSomebodyHasProtected_data()
{
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("wasRecordedHere");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");
    QTest::newRow("protected by its recording") << Status::Recording << true << false << true;
    QTest::newRow("being recorded elsewhere, protected") << Status::Recording << false << false << false;
    QTest::newRow("being recorded elsewhere") << Status::Recording << false << true << true;
    QTest::newRow("at rest but for its end, protected") << Status::Finished << false << false << false;
    QTest::newRow("at rest but for its end") << Status::Finished << false << true << true;
    QTest::newRow("stopping, protected") << Status::Stopping << false << false << false;
    QTest::newRow("in a loop, protected") << Status::LoopRecording << false << false << false;
}

void TestRecordRepair::keepsWhatSomebodyHasProtected()
{
    QFETCH(const Status, status);
    QFETCH(const bool, wasRecordedHere);
    QFETCH(const bool, before);
    const QTemporaryDir device;
    ZELKO_RecordData record = unfinishedRecord(QStringLiteral("R1"));
    record.SetRecordStatus(status);
    record.SetDeletable(before);
    QVERIFY(storeRecord(device.path(), record, 4000));
    QString error;
    QVERIFY2(repairRecord(device.filePath(QStringLiteral("R1")), wasRecordedHere, record, &error), qPrintable(error));
    ZELKO_RecordData saved;
    QVERIFY(saved.LoadXml(device.filePath(QStringLiteral("R1/RecordData.xml"))));
    QTEST(saved.GetDeletable(), "after");
    QVERIFY(saved.GetFinished());
}

void TestRecordRepair::removesWhatAnInterruptedSaveLeft()
{
    const QTemporaryDir device;
    ZELKO_RecordData record = unfinishedRecord(QStringLiteral("R1"));
    QVERIFY(storeRecord(device.path(), record, 4000));
    QVERIFY(writeBytes(device.filePath(QStringLiteral("R1/RecordData.xml.aB3dEf")), "<half"));
    QString error;
    QVERIFY(repairRecord(device.filePath(QStringLiteral("R1")), true, record, &error));
    QCOMPARE(contentOf(device.path()).keys(),
             (QStringList{QStringLiteral("R1/R1.dat"), QStringLiteral("R1/RecordData.xml")}));
}

void TestRecordRepair::reportsMissingSamples()
{
    const QTemporaryDir device;
    ZELKO_RecordData record = unfinishedRecord(QStringLiteral("R1"));
    QString error;
    QVERIFY(!repairRecord(device.filePath(QStringLiteral("R1")), true, record, &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(TestRecordRepair)
#include "tst_recordrepair.moc"
