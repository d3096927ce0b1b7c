#include <zelkobase/data/recordfiles.h>

#include <QtTest>

using namespace ZELKO_XML;

class RecordFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlySymbolsHaveAnExtensionOfTheirOwn();
    void onlyTwoFormatsHaveAnIndexFile();
    void filesAreNamedAfterTheRecord();
};

void RecordFilesTest::onlySymbolsHaveAnExtensionOfTheirOwn()
{
    for (int format = 0; format < 24; ++format) {
        const QString expected = format == 6 ? QStringLiteral(".sym") : QStringLiteral(".dat");
        QCOMPARE(sampleFileExtension(static_cast<ZELKO_RecordData::DataFormat>(format)), expected);
    }
}

void RecordFilesTest::onlyTwoFormatsHaveAnIndexFile()
{
    for (int format = 0; format < 24; ++format)
        QCOMPARE(hasIndexFile(static_cast<ZELKO_RecordData::DataFormat>(format)), format == 1 || format == 21);
}

void RecordFilesTest::filesAreNamedAfterTheRecord()
{
    QCOMPARE(QString(metaDataFileName), QStringLiteral("RecordData.xml"));
    QCOMPARE(sampleFileName(QStringLiteral("R1"), ZELKO_RecordData::DataFormat::IQ16), QStringLiteral("R1.dat"));
    QCOMPARE(sampleFileName(QStringLiteral("R1"), ZELKO_RecordData::DataFormat::Symbols), QStringLiteral("R1.sym"));
}

QTEST_APPLESS_MAIN(RecordFilesTest)
#include "tst_recordfiles.moc"
