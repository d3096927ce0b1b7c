#include <zelkobase/data/datarateusage.h>

#include <QtTest>

using ZELKO_XML::DataRateUsage;
using ZELKO_XML::ZELKO_RecordData;

class DataRateUsageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNameOfARecordsDataRateIsKnown();
    void anUnknownNameGivesMinusOne();
};

void DataRateUsageTest::everyNameOfARecordsDataRateIsKnown()
{
    const QStringList names = ZELKO_RecordData::GetDataRates();
    QCOMPARE(names.size(), qsizetype{16});
    for (int number = 0; number < names.size(); ++number)
        QCOMPARE(static_cast<int>(DataRateUsage::NameToDataRate(names.at(number))), number);
}

void DataRateUsageTest::anUnknownNameGivesMinusOne()
{
    QCOMPARE(static_cast<int>(DataRateUsage::NameToDataRate(QStringLiteral("warp"))), -1);
    QCOMPARE(static_cast<int>(DataRateUsage::NameToDataRate(QString())), -1);
}

QTEST_APPLESS_MAIN(DataRateUsageTest)
#include "tst_datarateusage.moc"
