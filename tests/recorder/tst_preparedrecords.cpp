#include <recorder/store/preparedrecords.h>

#include <storedrecord.h>

#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using ZELKO_XML::ZELKO_RecordData;

class TestPreparedRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areAlwaysTheSame();
    void differFromEachOther();
    void arePlausible();
    void areFoundByTheirId_data();
    void areFoundByTheirId();
    void standInTheStoreAsRecords();
};

void TestPreparedRecords::areAlwaysTheSame()
{
    QVERIFY(PreparedRecords(QStringLiteral("D"), 10).record(7) == PreparedRecords(QStringLiteral("D"), 100).record(7));
}

void TestPreparedRecords::differFromEachOther()
{
    const PreparedRecords prepared(QStringLiteral("D"), 200);
    QSet<QString> ids;
    QSet<QString> names;
    QSet<int> formats;
    QSet<quint64> sizes;
    for (int i = 0; i < prepared.count(); ++i) {
        const ZELKO_RecordData record = prepared.record(i);
        ids.insert(record.GetRecordID());
        names.insert(record.GetRecordName());
        formats.insert(static_cast<int>(record.GetDataFormat()));
        sizes.insert(record.GetSize());
    }
    QCOMPARE(ids.size(), 200);
    QCOMPARE(names.size(), 200);
    QVERIFY(formats.size() > 4);
    QVERIFY(sizes.size() > 150);
}

void TestPreparedRecords::arePlausible()
{
    const PreparedRecords prepared(QStringLiteral("D"), 500);
    for (int i = 0; i < prepared.count(); ++i) {
        const ZELKO_RecordData record = prepared.record(i);
        QVERIFY2(record.Check(false), qPrintable(record.problem()));
        QCOMPARE(record.GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
        QVERIFY(record.GetFinished());
        QVERIFY(record.GetStopTime() > record.GetStartTime());
        QCOMPARE(record.GetIndexEntry().constLast().GetRecordOffset(), record.GetSize());
        QCOMPARE(record.GetIndexEntry().constLast().GetTimestamp(), record.GetStopTime());
    }
}

void TestPreparedRecords::areFoundByTheirId_data()
{
    const PreparedRecords prepared(QStringLiteral("D"), 10);
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("number");
    QTest::newRow("the first") << prepared.recordId(0) << 0;
    QTest::newRow("the last") << prepared.recordId(9) << 9;
    QTest::newRow("beyond the last") << prepared.recordId(10) << -1;
    QTest::newRow("of another device") << PreparedRecords(QStringLiteral("E"), 10).recordId(3) << -1;
    QTest::newRow("a recording") << QStringLiteral("20210618-231751163-0123456789ab") << -1;
    QTest::newRow("a number alone") << QStringLiteral("3") << -1;
}

void TestPreparedRecords::areFoundByTheirId()
{
    QFETCH(const QString, id);
    QTEST(PreparedRecords(QStringLiteral("D"), 10).numberOf(id), "number");
}

void TestPreparedRecords::standInTheStoreAsRecords()
{
    const QTemporaryDir folder;
    const DeviceStore store(folder.path());
    const PreparedRecords prepared(QStringLiteral("D"), 20);
    for (int i = 0; i < prepared.count(); ++i) {
        const RecordPointer written = prepared.write(store, i);
        QVERIFY(written);
        QString error;
        const RecordPointer read = store.readAtRest(prepared.recordId(i), &error);
        QVERIFY2(read, qPrintable(error));
        QVERIFY(*read == *written);
        const QString samples = ZELKO_XML::sampleFileName(read->GetRecordID(), read->GetDataFormat());
        const QFileInfo file(store.recordFolder(read->GetRecordID()) + QLatin1Char('/') + samples);
        QCOMPARE(static_cast<quint64>(file.size()), read->GetSize());
    }
}

QTEST_GUILESS_MAIN(TestPreparedRecords)
#include "tst_preparedrecords.moc"
