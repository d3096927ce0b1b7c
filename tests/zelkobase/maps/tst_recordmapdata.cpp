#include <zelkobase/maps/recordmapdata.h>

#include "testrecords.h"

#include <QtTest>

#include <cstring>

using namespace zelko::recordmap;
using Format = RecordMapData_ItemFormat;

namespace {

RecordMapData::RecordDataPtr recordWithLists()
{
    auto record = makeRecord(QStringLiteral("A"));
    for (quint64 i = 0; i < 3; ++i) {
        ZELKO_XML::IndexEntry entry;
        entry.SetTimestamp(1700000000000000 + i);
        entry.SetRecordOffset(i * 1000);
        entry.SetTunerFrequency(433920000);
        record->AppendIndexEntry(entry);
        ZELKO_XML::BookmarkEntry bookmark;
        bookmark.SetTimestamp(i);
        bookmark.SetBookmark(QStringLiteral("grüße; \"%1\"").arg(i));
        record->AppendBookmarkEntry(bookmark);
    }
    return record;
}

RecordMapData itemOf(const QString& kind)
{
    if (kind == QLatin1String("null")) {
        return RecordMapData();
    }
    return RecordMapData(kind == QLatin1String("lists") ? recordWithLists() : makeRecord(QStringLiteral("A"), 2, 77));
}

bool read(const std::string& bytes, RecordMapData& item, std::ptrdiff_t* consumed = nullptr)
{
    const char* stream = bytes.data();
    const bool good = Format::fromCharStream(&stream, item);
    if (consumed) {
        *consumed = stream - bytes.data();
    }
    return good;
}

// Announces the size that the bytes really have.
std::string sized(const std::string& content)
{
    const auto size = static_cast<std::uint32_t>(content.size());
    std::string bytes(sizeof size, '\0');
    std::memcpy(bytes.data(), &size, sizeof size);
    return bytes + content;
}

} // namespace

class TestRecordMapData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyIsTheRecordID()
    {
        QCOMPARE(RecordMapData(makeRecord(QStringLiteral("A"))).GetKey(), QStringLiteral("A"));
        QVERIFY(RecordMapData().GetKey().isEmpty());
    }

    void equalityComparesRecordsNotPointers()
    {
        const RecordMapData item(recordWithLists());
        QVERIFY(item == item);
        QVERIFY(item == RecordMapData(recordWithLists()));
        const auto other = recordWithLists();
        other->AppendBookmarkEntry(ZELKO_XML::BookmarkEntry());
        QVERIFY(!(item == RecordMapData(other)));
        QVERIFY(!(item == RecordMapData()));
        QVERIFY(!(RecordMapData() == item));
        QVERIFY(RecordMapData() == RecordMapData());
    }

    void copiesShareTheRecord()
    {
        const RecordMapData item(makeRecord(QStringLiteral("A")));
        RecordMapData copy(item);
        QCOMPARE(copy.GetRecordData().get(), item.GetRecordData().get());
        copy = RecordMapData();
        QVERIFY(!copy.GetRecordData());
    }

    void itemReadsBackAsItWasWritten_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("without a record") << QStringLiteral("null");
        QTest::newRow("without lists") << QStringLiteral("plain");
        QTest::newRow("with lists and texts that hold separators") << QStringLiteral("lists");
    }
    void itemReadsBackAsItWasWritten()
    {
        QFETCH(const QString, kind);
        const RecordMapData item = itemOf(kind);
        const std::string bytes = Format::toStandardString(item);
        std::uint32_t announced = 0;
        std::memcpy(&announced, bytes.data(), sizeof announced);
        QCOMPARE(std::size_t{announced} + sizeof announced, bytes.size());

        RecordMapData copy(makeRecord(QStringLiteral("something else")));
        std::ptrdiff_t consumed = 0;
        QVERIFY(read(bytes + "behind", copy, &consumed));
        QCOMPARE(consumed, static_cast<std::ptrdiff_t>(bytes.size()));
        QVERIFY(copy == item);
    }

    void bytesThatAreNoRecordLeaveTheItemAsItWas_data()
    {
        QTest::addColumn<QByteArray>("content");
        const std::string whole = Format::toStandardString(itemOf(QStringLiteral("lists"))).substr(4);
        QTest::newRow("one byte too many") << QByteArray::fromStdString(whole + 'x');
        QTest::newRow("one byte missing") << QByteArray::fromStdString(whole.substr(0, whole.size() - 1));
        QTest::newRow("half of it") << QByteArray::fromStdString(whole.substr(0, whole.size() / 2));
        QTest::newRow("one byte") << QByteArray(1, '\1');
        QTest::newRow("noise") << QByteArray(64, '\xff');
    }
    void bytesThatAreNoRecordLeaveTheItemAsItWas()
    {
        QFETCH(const QByteArray, content);
        RecordMapData item(makeRecord(QStringLiteral("before")));
        std::ptrdiff_t consumed = 0;
        QVERIFY(!read(sized(content.toStdString()), item, &consumed));
        QCOMPARE(consumed, content.size() + 4);
        QCOMPARE(item.GetKey(), QStringLiteral("before"));
    }

    void shortTextNamesTheRecord()
    {
        QCOMPARE(Format::GetString(itemOf(QStringLiteral("plain"))), QStringLiteral("name of A (A)"));
        QVERIFY(Format::GetString(RecordMapData()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRecordMapData)
#include "tst_recordmapdata.moc"
