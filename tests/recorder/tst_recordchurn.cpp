#include <recorder/served/recordchurn.h>

#include <patience.h>

#include <zelkobase/maps/recorditemmap.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

class TestRecordChurn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesOneAfterTheOtherAtTheRate();
    void makesARecordLargerAndLonger();
    void makesUpForAStallInPortions();
    void restsAfterTheLastChange();
    void passesOverRecordsThatWent();
    void runsByItself();
    void goesOnWhenNothingIsDueAtFirst();
    void restsWithoutARate();

private:
    static void fill(RecordItemMap& map, const PreparedRecords& prepared)
    {
        for (int i = 0; i < prepared.count(); ++i) {
            map.Add(RecordMapData(std::make_shared<ZELKO_XML::ZELKO_RecordData>(prepared.record(i))), nullptr);
        }
    }

    // How often each record was changed; -1 for one that is not there.
    static QList<int> changes(const RecordItemMap& map, const PreparedRecords& prepared)
    {
        QList<int> result;
        for (int i = 0; i < prepared.count(); ++i) {
            const ZELKO_XML::ZELKO_RecordData before = prepared.record(i);
            const auto now =
                map.contains(before.GetRecordID()) ? map.At(before.GetRecordID()).GetRecordData() : nullptr;
            result.append(now ? static_cast<int>((now->GetSize() - before.GetSize()) / 4096) : -1);
        }
        return result;
    }
};

void TestRecordChurn::changesOneAfterTheOtherAtTheRate()
{
    const PreparedRecords prepared(QStringLiteral("D"), 5);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {1000, 0});
    churn.changeUntil(1ms);
    QCOMPARE(changes(map, prepared), (QList<int>{1, 0, 0, 0, 0}));
    churn.changeUntil(1999us);
    QCOMPARE(changes(map, prepared), (QList<int>{1, 0, 0, 0, 0}));
    churn.changeUntil(13ms);
    QCOMPARE(changes(map, prepared), (QList<int>{3, 3, 3, 2, 2}));
}

void TestRecordChurn::makesARecordLargerAndLonger()
{
    const PreparedRecords prepared(QStringLiteral("D"), 1);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {1000, 0});
    churn.changeUntil(3ms);
    ZELKO_XML::ZELKO_RecordData expected = prepared.record(0);
    expected.SetSize(expected.GetSize() + 3 * 4096);
    expected.SetStopTime(expected.GetStopTime() + 3'000'000);
    QVERIFY(*map.At(prepared.recordId(0)).GetRecordData() == expected);
}

void TestRecordChurn::makesUpForAStallInPortions()
{
    const PreparedRecords prepared(QStringLiteral("D"), 1);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {1000, 0});
    churn.changeUntil(1500ms);
    QCOMPARE(changes(map, prepared), QList<int>{1000});
    churn.changeUntil(1500ms);
    QCOMPARE(changes(map, prepared), QList<int>{1500});
}

void TestRecordChurn::restsAfterTheLastChange()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {1000, 7});
    churn.changeUntil(5ms);
    QCOMPARE(changes(map, prepared), (QList<int>{2, 2, 1}));
    churn.changeUntil(1h);
    QCOMPARE(changes(map, prepared), (QList<int>{3, 2, 2}));
    churn.changeUntil(2h);
    QCOMPARE(changes(map, prepared), (QList<int>{3, 2, 2}));
}

void TestRecordChurn::passesOverRecordsThatWent()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    map.EraseAt(prepared.recordId(1), nullptr);
    RecordChurn churn(map, prepared, {1000, 0});
    churn.changeUntil(6ms);
    QCOMPARE(changes(map, prepared), (QList<int>{2, -1, 2}));
}

void TestRecordChurn::runsByItself()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {1000, 30});
    churn.start();
    QTRY_COMPARE_WITH_TIMEOUT(changes(map, prepared), (QList<int>{10, 10, 10}), patience);
}

void TestRecordChurn::goesOnWhenNothingIsDueAtFirst()
{
    const PreparedRecords prepared(QStringLiteral("D"), 1);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn churn(map, prepared, {20, 0});
    churn.changeUntil(5ms);
    churn.start();
    QTRY_VERIFY_WITH_TIMEOUT(changes(map, prepared).first() >= 2, patience);
}

void TestRecordChurn::restsWithoutARate()
{
    const PreparedRecords prepared(QStringLiteral("D"), 3);
    RecordItemMap map;
    fill(map, prepared);
    RecordChurn resting(map, prepared, {});
    RecordChurn withoutRecords(map, PreparedRecords(QStringLiteral("D"), 0), {1000, 0});
    RecordChurn last(map, PreparedRecords(QStringLiteral("D"), 1), {1000, 5});
    resting.start();
    withoutRecords.start();
    last.start();
    QTRY_COMPARE_WITH_TIMEOUT(changes(map, prepared), (QList<int>{5, 0, 0}), patience);
}

QTEST_GUILESS_MAIN(TestRecordChurn)
#include "tst_recordchurn.moc"
