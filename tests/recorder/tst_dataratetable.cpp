#include <recorder/store/dataratetable.h>

#include <QTest>

using namespace ZelkoRecorder;
using DataRate = ZELKO_XML::ZELKO_RecordData::DataRate;

class TestDataRateTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheLowestClassThatCarriesTheRate_data();
    void findsTheLowestClassThatCarriesTheRate();
};

void TestDataRateTable::findsTheLowestClassThatCarriesTheRate_data()
{
    QTest::addColumn<quint64>("bytesPerSecond");
    QTest::addColumn<DataRate>("rate");
    QTest::newRow("nothing at all") << quint64{0} << DataRate::UpTo16kB;
    QTest::newRow("at the limit") << quint64{16'000} << DataRate::UpTo16kB;
    QTest::newRow("above the limit") << quint64{16'001} << DataRate::UpTo64kB;
    QTest::newRow("48 kHz IQ") << quint64{192'000} << DataRate::UpTo256kB;
    QTest::newRow("beyond the raw stream's number") << quint64{256'000'001} << DataRate::UpTo512MB;
    QTest::newRow("the fastest") << quint64{4'000'000'000} << DataRate::UpTo4GB;
    QTest::newRow("faster than any") << quint64{4'000'000'001} << DataRate::Variable;
}

void TestDataRateTable::findsTheLowestClassThatCarriesTheRate()
{
    QFETCH(const quint64, bytesPerSecond);
    QTEST(dataRateClass(bytesPerSecond), "rate");
}

QTEST_GUILESS_MAIN(TestDataRateTable)
#include "tst_dataratetable.moc"
