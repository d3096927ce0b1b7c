#include <recorder/served/recordchurn.h>

#include <zelkobase/maps/recorditemmap.h>

#include <QElapsedTimer>
#include <QTest>

using namespace ZelkoRecorder;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

class TestRecordChurn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesEvenlyAtTheRate();
    void passesOverRecordsThatWent();
    void restsWithoutARate();

private:
    static void fill(RecordItemMap& map, const PreparedRecords& prepared)
    {
        for (int i = 0; i < prepared.count(); ++i) {
            map.Add(RecordMapData(std::make_shared<ZELKO_XML::ZELKO_RecordData>(prepared.record(i))), nullptr);
        }
    }
    static quint64 growth(const RecordItemMap& map, const PreparedRecords& prepared, int number)
    {
        return map.At(prepared.recordId(number)).GetRecordData()->GetSize() - prepared.record(number).GetSize();
    }
};

void TestRecordChurn::changesEvenlyAtTheRate()
{
    const PreparedRecords prepared(QStringLiteral("D"), 5);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, 1000);
    QElapsedTimer clock;
    clock.start();
    churn.start();
    QTRY_VERIFY(growth(map, prepared, 4) >= 20 * 4096);
    quint64 changes = 0;
    for (int i = 0; i < prepared.count(); ++i) {
        changes += growth(map, prepared, i) / 4096;
        QVERIFY(growth(map, prepared, i) - growth(map, prepared, 4) <= 4096);
    }
    QVERIFY2(changes <= static_cast<quint64>(clock.elapsed()) + 1, qPrintable(QString::number(changes)));
}

void TestRecordChurn::passesOverRecordsThatWent()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    map.EraseAt(prepared.recordId(1), nullptr);
    RecordChurn churn(map, prepared, 1000);
    churn.start();
    QTRY_VERIFY(growth(map, prepared, 2) >= 5 * 4096);
    QVERIFY(!map.contains(prepared.recordId(1)));
}

void TestRecordChurn::restsWithoutARate()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn resting(map, prepared, 0);
    RecordChurn other(map, PreparedRecords(QStringLiteral("D"), 0), 1000);
    RecordChurn last(map, PreparedRecords(QStringLiteral("D"), 1), 1000);
    resting.start();
    other.start();
    last.start();
    QTRY_VERIFY(growth(map, prepared, 0) >= 5 * 4096);
    QCOMPARE(growth(map, prepared, 1), quint64{0});
}

QTEST_GUILESS_MAIN(TestRecordChurn)
#include "tst_recordchurn.moc"
