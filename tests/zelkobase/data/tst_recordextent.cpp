#include <zelkobase/data/recordextent.h>
#include <zelkobase/data/zelko_recorddata.h>

#include <QtTest>

using namespace ZELKO_XML;

class RecordExtentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheIndexFromTwoEntriesOn_data();
    void followsTheIndexFromTwoEntriesOn();
};

void RecordExtentTest::followsTheIndexFromTwoEntriesOn_data()
{
    QTest::addColumn<QVector<int>>("timestamps");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("stop");
    QTest::newRow("no index") << QVector<int>{} << 100 << 200;
    QTest::newRow("one entry does not count") << QVector<int>{150} << 100 << 200;
    QTest::newRow("two entries") << QVector<int>{120, 180} << 120 << 180;
    QTest::newRow("two entries, the later one first") << QVector<int>{180, 120} << 120 << 180;
    QTest::newRow("ends in the middle of the list") << QVector<int>{130, 180, 90, 140} << 90 << 180;
    QTest::newRow("the same moment twice") << QVector<int>{150, 150} << 150 << 150;
}

void RecordExtentTest::followsTheIndexFromTwoEntriesOn()
{
    QFETCH(QVector<int>, timestamps);
    ZELKO_RecordData record;
    record.SetStartTime(100);
    record.SetStopTime(200);
    for (const int timestamp : timestamps) {
        IndexEntry entry;
        entry.SetTimestamp(static_cast<quint64>(timestamp));
        record.AppendIndexEntry(entry);
    }
    const RecordExtent extent = recordExtent(record);
    QTEST(static_cast<int>(extent.start), "start");
    QTEST(static_cast<int>(extent.stop), "stop");
}

QTEST_APPLESS_MAIN(RecordExtentTest)
#include "tst_recordextent.moc"
