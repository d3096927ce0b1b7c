#include <zelkobase/service/corbametadataconverter.h>

#include <zelkobase/orb/corbatext.h>

#include <zelkoidl/recorderservice.hh>

#include <QTest>

using namespace ZelkoCommon;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

QD_ZLK::RecordInfo info()
{
    QD_ZLK::RecordInfo result;
    result.recordId = "R1";
    result.recordName = toWideCorba(QStringLiteral("Grüße \U0001F4FB"));
    result.startTime = 1;
    result.stopTime = 2;
    result.size = 3;
    result.kind = QD_ZLK::KIND_FINISHED;
    result.format = QD_ZLK::FORMAT_IQ32;
    result.startPosition = 4;
    result.stopPosition = 5;
    result.loopSize = 6;
    result.dataRate = QD_ZLK::RATE_RAW_STREAM;
    result.deletable = true;
    return result;
}

} // namespace

class tst_CorbaMetaDataConverter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ratesKeepTheirNumbers();
    void formatsKeepTheirNumbers();
    void plainFieldsOfARecord();
    void listsOfARecord();
    void emptyTextsAndLists();
    void negativeNumbersBecomeZero();
};

void tst_CorbaMetaDataConverter::ratesKeepTheirNumbers()
{
    for (unsigned int rate = 0; rate <= 15; ++rate) {
        QCOMPARE(static_cast<unsigned int>(CorbaMetaDataConverter::convertDataRateFromZelko(rate)), rate);
    }
    QCOMPARE(CorbaMetaDataConverter::convertDataRateFromZelko(16), Record::DataRate::NotSet);
    QCOMPARE(CorbaMetaDataConverter::convertDataRateFromZelko(0xffffffff), Record::DataRate::NotSet);
}

void tst_CorbaMetaDataConverter::formatsKeepTheirNumbers()
{
    for (unsigned int format = 0; format <= 23; ++format) {
        QCOMPARE(static_cast<unsigned int>(CorbaMetaDataConverter::convertDataFormatFromZelko(format)), format);
    }
    QCOMPARE(CorbaMetaDataConverter::convertDataFormatFromZelko(24), Record::DataFormat::Unknown);
    QCOMPARE(CorbaMetaDataConverter::convertDataFormatFromZelko(0xffffffff), Record::DataFormat::Unknown);
}

void tst_CorbaMetaDataConverter::plainFieldsOfARecord()
{
    const Record record = CorbaMetaDataConverter::convertRecordFromZelko(info());
    QCOMPARE(record.GetRecordID(), "R1");
    QCOMPARE(record.GetRecordName(), QStringLiteral("Grüße \U0001F4FB"));
    QCOMPARE(record.GetStartTime(), 1ULL);
    QCOMPARE(record.GetStopTime(), 2ULL);
    QCOMPARE(record.GetSize(), 3ULL);
    QCOMPARE(record.GetRecordStatus(), Record::RecordStatus::Finished);
    QCOMPARE(record.GetDataFormat(), Record::DataFormat::IQ32);
    QCOMPARE(record.GetStartPosition(), 4ULL);
    QCOMPARE(record.GetStopPosition(), 5ULL);
    QCOMPARE(record.GetRecordingLoopSize(), 6ULL);
    QCOMPARE(record.GetDataRate(), Record::DataRate::RawStream);
    QCOMPARE(record.GetDeletable(), true);
}

void tst_CorbaMetaDataConverter::listsOfARecord()
{
    QD_ZLK::RecordInfo source = info();
    source.bookmarks.length(2);
    source.bookmarks[0].position = 10;
    source.bookmarks[0].text = toWideCorba("first");
    source.bookmarks[1].position = 11;
    source.bookmarks[1].text = toWideCorba("second");
    source.history.length(1);
    source.history[0].entryKey = 12;
    source.history[0].text = toWideCorba("comment");
    source.indexEntries.length(1);
    source.indexEntries[0] = {13, 14, 15, 16, 17};
    const Record record = CorbaMetaDataConverter::convertRecordFromZelko(source);
    QCOMPARE(record.GetBookmarkEntry().size(), 2);
    QCOMPARE(record.GetBookmarkEntry().at(1).GetTimestamp(), 11ULL);
    QCOMPARE(record.GetBookmarkEntry().at(1).GetBookmark(), "second");
    QCOMPARE(record.GetHistoryEntry().size(), 1);
    QCOMPARE(record.GetHistoryEntry().at(0).GetTimestamp(), 12ULL);
    QCOMPARE(record.GetHistoryEntry().at(0).GetHistoryEntry(), "comment");
    QCOMPARE(record.GetIndexEntry().size(), 1);
    const ZELKO_XML::IndexEntry& index = record.GetIndexEntry().at(0);
    QCOMPARE(index.GetTimestamp(), 13ULL);
    QCOMPARE(index.GetRecordOffset(), 14ULL);
    QCOMPARE(index.GetTunerFrequency(), 15ULL);
    QCOMPARE(index.GetSampleRate(), 16ULL);
    QCOMPARE(index.GetBandwidth(), 17ULL);
}

void tst_CorbaMetaDataConverter::emptyTextsAndLists()
{
    QD_ZLK::RecordInfo source = info();
    source.recordId = "";
    source.recordName = toWideCorba("");
    const Record record = CorbaMetaDataConverter::convertRecordFromZelko(source);
    QCOMPARE(record.GetRecordID(), "");
    QCOMPARE(record.GetRecordName(), "");
    QVERIFY(record.GetBookmarkEntry().isEmpty());
    QVERIFY(record.GetHistoryEntry().isEmpty());
    QVERIFY(record.GetIndexEntry().isEmpty());
}

void tst_CorbaMetaDataConverter::negativeNumbersBecomeZero()
{
    QD_ZLK::RecordInfo source = info();
    source.startTime = -1;
    source.size = std::numeric_limits<CORBA::LongLong>::min();
    source.indexEntries.length(1);
    source.indexEntries[0] = {-1, -1, -1, -1, -1};
    const Record record = CorbaMetaDataConverter::convertRecordFromZelko(source);
    QCOMPARE(record.GetStartTime(), 0ULL);
    QCOMPARE(record.GetSize(), 0ULL);
    QCOMPARE(record.GetIndexEntry().at(0).GetTimestamp(), 0ULL);
    QCOMPARE(record.GetIndexEntry().at(0).GetSampleRate(), 0ULL);
}

QTEST_GUILESS_MAIN(tst_CorbaMetaDataConverter)

#include "tst_corbametadataconverter.moc"
