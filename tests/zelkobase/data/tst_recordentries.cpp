#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/historyentry.h>
#include <zelkobase/data/indexentry.h>

#include <reportcore/rgexception.h>

#include <QtTest>

#include <limits>

using namespace ZELKO_XML;

namespace {

constexpr quint64 highest = std::numeric_limits<quint64>::max();

template <typename Entry>
Entry throughXml(const Entry& entry)
{
    Entry back;
    back.SetXmlString(entry.GetXmlString(), true);
    return back;
}

} // namespace

class RecordEntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bookmarksCompareTimestampAndText();
    void bookmarksNeedBoth();
    void historyEntriesHoldCommentAndTime();
    void indexEntriesHoldAllTheirNumbers();
    void indexEntriesNeedTimestampAndOffsetOnly();
};

void RecordEntriesTest::bookmarksCompareTimestampAndText()
{
    BookmarkEntry a;
    a.SetTimestamp(highest);
    a.SetBookmark(QStringLiteral("mark"));
    BookmarkEntry b = a;
    QVERIFY(a == b);
    b.SetTimestamp(1);
    QVERIFY(a != b);
    b = a;
    b.SetBookmark(QStringLiteral("Mark"));
    QVERIFY(a != b);
    QVERIFY(throughXml(a) == a);
    QCOMPARE(throughXml(a).GetTimestamp(), highest);
}

void RecordEntriesTest::bookmarksNeedBoth()
{
    BookmarkEntry entry;
    entry.SetTimestamp(1);
    QVERIFY_EXCEPTION_THROWN(entry.Check(), RGException);
    entry.SetBookmark(QString());
    entry.Check();
    entry.Reset();
    entry.SetBookmark(QStringLiteral("mark"));
    QVERIFY_EXCEPTION_THROWN(entry.Check(), RGException);
}

void RecordEntriesTest::historyEntriesHoldCommentAndTime()
{
    HistoryEntry entry;
    entry.SetTimestamp(1'700'000'000'000'000);
    entry.SetHistoryEntry(QStringLiteral("two\nlines"));
    QVERIFY(throughXml(entry) == entry);
    QCOMPARE(throughXml(entry).GetHistoryEntry(), QStringLiteral("two\nlines"));
    HistoryEntry other = entry;
    other.SetTimestamp(1);
    QVERIFY(other != entry);
}

void RecordEntriesTest::indexEntriesHoldAllTheirNumbers()
{
    IndexEntry entry;
    entry.SetTimestamp(1);
    entry.SetRecordOffset(2);
    entry.SetTunerFrequency(3);
    entry.SetSampleRate(4);
    entry.SetBandwidth(5);
    const IndexEntry back = throughXml(entry);
    QVERIFY(back == entry);
    QCOMPARE(back.GetTimestamp() * 10000 + back.GetRecordOffset() * 1000 + back.GetTunerFrequency() * 100 +
                 back.GetSampleRate() * 10 + back.GetBandwidth(),
             quint64{12345});
}

void RecordEntriesTest::indexEntriesNeedTimestampAndOffsetOnly()
{
    IndexEntry entry;
    entry.SetTimestamp(0);
    QVERIFY_EXCEPTION_THROWN(entry.Check(), RGException);
    entry.SetRecordOffset(0);
    entry.Check();
}

QTEST_APPLESS_MAIN(RecordEntriesTest)
#include "tst_recordentries.moc"
