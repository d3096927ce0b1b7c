#include <recorder/service/recordwire.h>

#include <storedrecord.h>

#include <QTest>

#include <limits>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;

namespace {

ZELKO_RecordData withTexts(qsizetype length)
{
    ZELKO_RecordData record = finishedRecord("r1");
    const QString text(length, QChar(0x540D));
    record.SetRecordName(text);
    ZELKO_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(1);
    bookmark.SetBookmark(text);
    ZELKO_XML::HistoryEntry comment;
    comment.SetTimestamp(1);
    comment.SetHistoryEntry(text);
    record.SetBookmarkEntry(QVector<ZELKO_XML::BookmarkEntry>(20, bookmark));
    record.SetHistoryEntry(QVector<ZELKO_XML::HistoryEntry>(20, comment));
    return record;
}

} // namespace

class TestRecordWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheLargestNumberWhereOneDoesNotFit();
    void tellsZeroWhereThereIsNoIndex();
    void keepsTheNumbersOfEnumerations();
    void measuresNoLessThanIsSent_data();
    void measuresNoLessThanIsSent();
};

void TestRecordWire::tellsTheLargestNumberWhereOneDoesNotFit()
{
    ZELKO_RecordData record = finishedRecord("r1");
    ZELKO_XML::IndexEntry entry = indexEntry(1, 0);
    entry.SetSampleRate(5'000'000'000);
    entry.SetBandwidth(5'000'000'000);
    record.SetIndexEntry({entry});
    record.SetSize(std::numeric_limits<quint64>::max());
    const QD_ZLK::RecordInfo info = recordInfo(record);
    QCOMPARE(info.size, std::numeric_limits<CORBA::LongLong>::max());
    QCOMPARE(info.indexEntries[0].sampleRate, std::numeric_limits<CORBA::Long>::max());
    const QD_ZLK::RecordMetaData data = recordMetaData("D1", record);
    QCOMPARE(data.sampleRate, 5'000'000'000);
    QCOMPARE(data.bandwidth, std::numeric_limits<CORBA::Long>::max());
}

void TestRecordWire::tellsZeroWhereThereIsNoIndex()
{
    ZELKO_RecordData record = finishedRecord("r1");
    record.SetIndexEntry({});
    const QD_ZLK::RecordMetaData data = recordMetaData("D1", record);
    QCOMPARE(data.indexEntryCount, 0);
    QCOMPARE(data.firstIndexTime, 0);
    QCOMPARE(data.lastIndexTime, 0);
    QCOMPARE(data.tunerFrequency, 0);
}

void TestRecordWire::keepsTheNumbersOfEnumerations()
{
    ZELKO_RecordData record = finishedRecord("r1");
    record.SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
    record.SetDataFormat(ZELKO_RecordData::DataFormat::Other);
    record.SetDataRate(ZELKO_RecordData::DataRate::Variable);
    const QD_ZLK::RecordInfo info = recordInfo(record);
    QCOMPARE(info.kind, QD_ZLK::KIND_DAMAGED);
    QCOMPARE(info.format, QD_ZLK::FORMAT_OTHER);
    QCOMPARE(info.dataRate, QD_ZLK::RATE_VARIABLE);
}

void TestRecordWire::measuresNoLessThanIsSent_data()
{
    QTest::addColumn<qsizetype>("length");
    QTest::newRow("without texts") << qsizetype{0};
    QTest::newRow("with short texts") << qsizetype{1};
    QTest::newRow("with long texts") << qsizetype{1000};
}

// The bytes of the numbers and texts as CDR has them, without what the ORB puts in front.
void TestRecordWire::measuresNoLessThanIsSent()
{
    QFETCH(qsizetype, length);
    const auto texts = static_cast<std::size_t>(41 * 2 * length);
    const std::size_t lists = 2 * 32 + 40 * (8 + 4);
    const std::size_t fixed = 4 + 3 + 4 + 3 * 8 + 2 * 4 + 3 * 8 + 4 + 1 + 3 * 4;
    const std::size_t measured = wireSize(recordInfo(withTexts(length)));
    QVERIFY2(measured >= texts + lists + fixed, qPrintable(QString::number(measured)));
    QVERIFY2(measured < 2 * (texts + lists + fixed) + 500, qPrintable(QString::number(measured)));
}

QTEST_GUILESS_MAIN(TestRecordWire)
#include "tst_recordwire.moc"
