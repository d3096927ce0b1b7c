#include <recorder/store/recordcopy.h>

#include <recorder/store/recordedits.h>
#include <recorder/store/recordid.h>

#include <filesizelimit.h>
#include <foldersyncs.h>
#include <readonlyfolder.h>
#include <samplebytes.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;
using Unit = RecordRange::Unit;

Q_DECLARE_METATYPE(ZelkoRecorder::RecordRange)

namespace {

const QString id = QStringLiteral("R1");
constexpr quint64 second = 1'000'000;

BookmarkEntry bookmarkAt(quint64 time)
{
    BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(QString::number(time / second));
    return entry;
}

// Ten seconds of 4000 bytes each, from second 10 on, tuned anew each second, with a bookmark in each second.
ZELKO_RecordData tenSeconds()
{
    ZELKO_RecordData record = finishedRecord(id);
    record.SetSize(40'000);
    record.SetStopPosition(40'000);
    record.SetStopTime(20 * second);
    record.SetInterface(ZELKO_RecordData::Interface::Usb);
    record.SetDataRate(ZELKO_RecordData::DataRate::UpTo16kB);
    record.SetIndexEntry({});
    for (quint64 i = 0; i <= 10; ++i) {
        record.AppendIndexEntry(indexEntry((10 + i) * second, 4000 * i, 100 + i));
        record.AppendBookmarkEntry(bookmarkAt((10 + i) * second + second / 2));
    }
    appendComment(record, QStringLiteral("of the original"), 5);
    return record;
}

QString textOf(const QVector<IndexEntry>& index)
{
    QStringList lines;
    for (const IndexEntry& entry : index) {
        lines.append(QStringLiteral("%1 %2 %3")
                         .arg(entry.GetTimestamp())
                         .arg(entry.GetRecordOffset())
                         .arg(entry.GetTunerFrequency()));
    }
    return lines.join(QLatin1String(", "));
}

QString textOf(const QVector<BookmarkEntry>& bookmarks)
{
    QStringList texts;
    for (const BookmarkEntry& bookmark : bookmarks) {
        texts.append(bookmark.GetBookmark());
    }
    return texts.join(QLatin1Char(' '));
}

} // namespace

class TestRecordCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void copiesTheBytesOfItsRanges_data();
    void copiesTheBytesOfItsRanges();
    void cutsTheIndexAndStartsItAnew();
    void keepsTheHoleBetweenTwoRanges();
    void cutsBetweenSamples();
    void keepsTheBookmarksOfItsRanges();
    void keepsTheHistoryAndSaysWhereItComesFrom();
    void describesTheNewRecord();
    void canBeCopiedAgain();
    void leavesTheOriginalAlone();
    void refusesRanges_data();
    void refusesRanges();
    void refusesTooManyRanges();
    void refusesSources_data();
    void refusesSources();
    void refusesALongName();
    void refusesWhatTheDiskHasNoRoomFor();
    void leavesNothingOnAFullDisk();
    void leavesNothingInAFolderThatCannotBeWritten();
    void leavesNothingWhenTheFolderIsNotSynced();
    void saysSoWhenTheNewRecordMayNotLast();
    void leavesNothingWhenGivenUp();
    void leavesNothingWhenItsSourceVanishes();

private:
    RecordCopy copyOf(const RecordRanges& ranges, Unit unit = Unit::Times) const
    {
        return RecordCopy(DeviceStore(m_folder->path()), id, ranges, unit, QStringLiteral("Part"), 77);
    }
    RecordPointer run(RecordCopy copy) const
    {
        QString error;
        const QString newID = copy.recordID();
        return copy.run() == StoreStatus::Done ? DeviceStore(m_folder->path()).read(newID, &error) : nullptr;
    }
    QByteArray samplesOf(const ZELKO_RecordData& record) const
    {
        const QString recordID = record.GetRecordID();
        return readBytes(m_folder->filePath(recordID + QLatin1Char('/') + recordID + QStringLiteral(".dat")));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_samples;
};

void TestRecordCopy::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_samples = sampleBytes(40'000);
    QVERIFY(storeSamples(m_folder->path(), tenSeconds(), m_samples));
}

void TestRecordCopy::copiesTheBytesOfItsRanges_data()
{
    QTest::addColumn<RecordRanges>("ranges");
    QTest::addColumn<bool>("areTimes");
    QTest::addColumn<RecordRanges>("bytes");
    QTest::newRow("the whole record") << RecordRanges{{10 * second, 20 * second}} << true << RecordRanges{{0, 40'000}};
    QTest::newRow("more than the whole record") << RecordRanges{{0, ~quint64{0}}} << true << RecordRanges{{0, 40'000}};
    QTest::newRow("a part over several index entries")
        << RecordRanges{{12 * second + 250'000, 15 * second + 750'000}} << true << RecordRanges{{9000, 23'000}};
    QTest::newRow("a part between two index entries")
        << RecordRanges{{12'100'000, 12'200'000}} << true << RecordRanges{{8400, 8800}};
    QTest::newRow("one sample") << RecordRanges{{12'001'000, 12'002'000}} << true << RecordRanges{{8004, 8008}};
    QTest::newRow("three parts") << RecordRanges{{11 * second, 12 * second},
                                                 {12 * second, 13 * second},
                                                 {19 * second, 21 * second}}
                                 << true << RecordRanges{{4000, 8000}, {8000, 12'000}, {36'000, 40'000}};
    QTest::newRow("positions") << RecordRanges{{4000, 8000}, {8004, 8012}} << false
                               << RecordRanges{{4000, 8000}, {8004, 8012}};
    QTest::newRow("positions between samples") << RecordRanges{{4001, 7999}} << false << RecordRanges{{4000, 8000}};
    QTest::newRow("positions over the end")
        << RecordRanges{{39'000, 50'000}} << false << RecordRanges{{39'000, 40'000}};
}

void TestRecordCopy::copiesTheBytesOfItsRanges()
{
    QFETCH(const RecordRanges, ranges);
    QFETCH(const bool, areTimes);
    QFETCH(const RecordRanges, bytes);
    QByteArray expected;
    for (const RecordRange& range : bytes) {
        expected +=
            m_samples.mid(static_cast<qsizetype>(range.start), static_cast<qsizetype>(range.stop - range.start));
    }
    const RecordPointer copy = run(copyOf(ranges, areTimes ? Unit::Times : Unit::Positions));
    QVERIFY(copy);
    QCOMPARE(samplesOf(*copy), expected);
    QCOMPARE(copy->GetSize(), static_cast<quint64>(expected.size()));
    QCOMPARE(copy->GetStopPosition(), copy->GetSize());
}

void TestRecordCopy::cutsTheIndexAndStartsItAnew()
{
    const RecordPointer copy = run(copyOf({{12'250'000, 14'500'000}}));
    QVERIFY(copy);
    QCOMPARE(textOf(copy->GetIndexEntry()),
             QStringLiteral("12250000 0 102, 13000000 3000 103, 14000000 7000 104, 14500000 9000 104"));
    QCOMPARE(copy->GetStartTime(), quint64{12'250'000});
    QCOMPARE(copy->GetStopTime(), quint64{14'500'000});
}

void TestRecordCopy::keepsTheHoleBetweenTwoRanges()
{
    const RecordPointer copy = run(copyOf({{11 * second, 12 * second}, {18 * second, 19 * second}}));
    QVERIFY(copy);
    QCOMPARE(textOf(copy->GetIndexEntry()),
             QStringLiteral("11000000 0 101, 12000000 4000 101, 18000000 4000 108, 19000000 8000 108"));
    const RecordTimeline timeline(*copy);
    QCOMPARE(timeline.timeAt(6000), quint64{18'500'000});
    QCOMPARE(timeline.offsetAt(11'500'000), quint64{2000});
}

void TestRecordCopy::cutsBetweenSamples()
{
    const RecordPointer copy = run(copyOf({{12'000'400, 12'003'300}}));
    QVERIFY(copy);
    QCOMPARE(samplesOf(*copy), m_samples.mid(8000, 12));
}

void TestRecordCopy::keepsTheBookmarksOfItsRanges()
{
    const RecordPointer copy = run(copyOf({{11'500'000, 13'400'000}, {15'000'000, 16'500'000}}));
    QVERIFY(copy);
    QCOMPARE(textOf(copy->GetBookmarkEntry()), QStringLiteral("11 12 15 16"));
}

void TestRecordCopy::keepsTheHistoryAndSaysWhereItComesFrom()
{
    const RecordPointer copy = run(copyOf({{11 * second, 12 * second}}));
    QVERIFY(copy);
    const auto& history = std::as_const(*copy).GetHistoryEntry();
    QCOMPARE(history.size(), 2);
    QCOMPARE(history.at(0).GetHistoryEntry(), QStringLiteral("of the original"));
    QCOMPARE(history.at(1).GetHistoryEntry(), QStringLiteral("Copied from R1"));
    QCOMPARE(history.at(1).GetTimestamp(), quint64{77});
}

void TestRecordCopy::describesTheNewRecord()
{
    ZELKO_RecordData original = tenSeconds();
    original.SetDeletable(false);
    QVERIFY(storeSamples(m_folder->path(), original, m_samples));
    const RecordPointer copy = run(copyOf({{11 * second, 12 * second}}));
    QVERIFY(copy);
    QVERIFY(isRecordId(copy->GetRecordID()) && copy->GetRecordID() != id);
    QCOMPARE(copy->GetRecordName(), QStringLiteral("Part"));
    QCOMPARE(copy->GetInterface(), ZELKO_RecordData::Interface::Usb);
    QCOMPARE(copy->GetDataRate(), ZELKO_RecordData::DataRate::UpTo16kB);
    QCOMPARE(copy->GetDataFormat(), ZELKO_RecordData::DataFormat::IQ16);
    QCOMPARE(copy->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QVERIFY(copy->GetDeletable() && copy->GetFinished());
}

void TestRecordCopy::canBeCopiedAgain()
{
    const RecordPointer copy = run(copyOf({{11 * second, 12 * second}, {18 * second, 19 * second}}));
    QVERIFY(copy);
    RecordCopy again(DeviceStore(m_folder->path()), copy->GetRecordID(), {{11'500'000, 18'500'000}}, Unit::Times,
                     QString(), 78);
    QCOMPARE(again.run(), StoreStatus::Done);
    QCOMPARE(samplesOf(*again.record()), m_samples.mid(6000, 2000) + m_samples.mid(32'000, 2000));
}

void TestRecordCopy::leavesTheOriginalAlone()
{
    const auto before = contentOf(m_folder->filePath(id));
    QVERIFY(run(copyOf({{11 * second, 12 * second}})));
    QCOMPARE(contentOf(m_folder->filePath(id)), before);
    QCOMPARE(contentOf(m_folder->path()).size(), 4);
}

void TestRecordCopy::refusesRanges_data()
{
    QTest::addColumn<RecordRanges>("ranges");
    QTest::newRow("none") << RecordRanges();
    QTest::newRow("an empty one") << RecordRanges{{12 * second, 12 * second}};
    QTest::newRow("a reversed one") << RecordRanges{{13 * second, 12 * second}};
    QTest::newRow("before the record") << RecordRanges{{5 * second, 10 * second}};
    QTest::newRow("behind the record") << RecordRanges{{20 * second, 25 * second}};
    QTest::newRow("shorter than a sample") << RecordRanges{{12'000'100, 12'000'200}};
    QTest::newRow("two that overlap") << RecordRanges{{11 * second, 13 * second}, {12 * second, 14 * second}};
    QTest::newRow("two in the wrong order") << RecordRanges{{13 * second, 14 * second}, {11 * second, 12 * second}};
    QTest::newRow("a good one and a bad one") << RecordRanges{{11 * second, 12 * second}, {15 * second, 14 * second}};
}

void TestRecordCopy::refusesRanges()
{
    QFETCH(const RecordRanges, ranges);
    const RecordCopy copy = copyOf(ranges);
    QCOMPARE(copy.status(), StoreStatus::BadRange);
    QCOMPARE(copy.recordID(), QString());
    QCOMPARE(contentOf(m_folder->path()).size(), 2);
}

void TestRecordCopy::refusesTooManyRanges()
{
    RecordRanges ranges;
    for (quint64 i = 0; i <= RecordCopy::mostRanges; ++i) {
        ranges.append({i * 8, i * 8 + 4});
    }
    QCOMPARE(copyOf(ranges, Unit::Positions).status(), StoreStatus::BadRange);
    ranges.removeLast();
    QCOMPARE(copyOf(ranges, Unit::Positions).status(), StoreStatus::Done);
}

void TestRecordCopy::refusesSources_data()
{
    QTest::addColumn<int>("recordStatus");
    QTest::addColumn<int>("dataRate");
    QTest::addColumn<int>("sampleBytes");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, ZELKO_RecordData::RecordStatus recordStatus, ZELKO_RecordData::DataRate rate,
                        int bytes, StoreStatus status) {
        QTest::newRow(name) << static_cast<int>(recordStatus) << static_cast<int>(rate) << bytes
                            << static_cast<int>(status);
    };
    using Status = ZELKO_RecordData::RecordStatus;
    using Rate = ZELKO_RecordData::DataRate;
    row("one that is being recorded", Status::Recording, Rate::Bursts, 40'000, StoreStatus::InUse);
    row("one that is recorded in a loop", Status::LoopRecording, Rate::Bursts, 40'000, StoreStatus::InUse);
    row("a damaged one", Status::Damaged, Rate::Bursts, 40'000, StoreStatus::Damaged);
    row("one that lacks samples", Status::Finished, Rate::Bursts, 39'999, StoreStatus::Damaged);
    row("a raw stream", Status::Finished, Rate::RawStream, 40'000, StoreStatus::NotAllowed);
    row("a good one", Status::Finished, Rate::Bursts, 40'000, StoreStatus::Done);
}

void TestRecordCopy::refusesSources()
{
    QFETCH(const int, recordStatus);
    QFETCH(const int, dataRate);
    QFETCH(const int, sampleBytes);
    ZELKO_RecordData record = tenSeconds();
    record.SetRecordStatus(static_cast<ZELKO_RecordData::RecordStatus>(recordStatus));
    record.SetDataRate(static_cast<ZELKO_RecordData::DataRate>(dataRate));
    QVERIFY(storeSamples(m_folder->path(), record, m_samples.left(sampleBytes)));
    QTEST(static_cast<int>(copyOf({{11 * second, 12 * second}}).status()), "status");
    for (const char* unknown : {"R2", "", "../R1", "."}) {
        const RecordCopy copy(DeviceStore(m_folder->path()), QString::fromLatin1(unknown), {{0, 1}}, Unit::Times, {},
                              1);
        QCOMPARE(copy.status(), StoreStatus::UnknownRecord);
    }
}

void TestRecordCopy::refusesALongName()
{
    const QString name(longestRecordName + 1, QLatin1Char('x'));
    const RecordCopy copy(DeviceStore(m_folder->path()), id, {{11 * second, 12 * second}}, Unit::Times, name, 1);
    QCOMPARE(copy.status(), StoreStatus::TooLong);
}

// The file is a hole, so it takes no room by itself.
void TestRecordCopy::refusesWhatTheDiskHasNoRoomFor()
{
    constexpr quint64 huge = quint64{1} << 43;
    ZELKO_RecordData record = tenSeconds();
    record.SetSize(huge);
    record.SetStopPosition(huge);
    record.SetIndexEntry({indexEntry(10 * second, 0), indexEntry(20 * second, huge)});
    QVERIFY(storeSamples(m_folder->path(), record, {}));
    QFile samples(m_folder->filePath(QStringLiteral("R1/R1.dat")));
    QVERIFY(samples.resize(static_cast<qint64>(huge)));
    QCOMPARE(copyOf({{10 * second, 20 * second}}).status(), StoreStatus::NoSpace);
    QCOMPARE(copyOf({{0, 4000}}, Unit::Positions).status(), StoreStatus::Done);
}

void TestRecordCopy::leavesNothingOnAFullDisk()
{
    const auto before = contentOf(m_folder->path());
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    {
        const FileSizeLimit limit(10'000);
        QCOMPARE(copy.run(), StoreStatus::NoSpace);
    }
    QCOMPARE(copy.recordID(), QString());
    QCOMPARE(contentOf(m_folder->path()), before);
}

void TestRecordCopy::leavesNothingInAFolderThatCannotBeWritten()
{
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    const ReadOnlyFolder readOnly(m_folder->path());
    QVERIFY(copy.run() != StoreStatus::Done);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{id});
}

void TestRecordCopy::leavesNothingWhenTheFolderIsNotSynced()
{
    const auto before = contentOf(m_folder->path());
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    QStringList atSync;
    const FolderSyncs disk(m_folder->path(), [&] { return atSync = DeviceStore(m_folder->path()).recordIds(), true; });
    QCOMPARE(copy.run(), StoreStatus::DiskRefused);
    QCOMPARE(atSync.size(), 2);
    QCOMPARE(contentOf(m_folder->path()), before);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{id});
}

void TestRecordCopy::saysSoWhenTheNewRecordMayNotLast()
{
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    const QString newID = copy.recordID();
    const DeviceStore store(m_folder->path());
    const FolderSyncs disk(m_folder->path(),
                           [&] { return QDir().mkpath(store.birthFolder(newID) + QStringLiteral("/taken")); });
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("whether .*is not known")));
    QCOMPARE(copy.run(), StoreStatus::Uncertain);
    QString error;
    QVERIFY(store.read(newID, &error));
}

void TestRecordCopy::leavesNothingWhenGivenUp()
{
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    QCOMPARE(copy.run([](quint64) { return false; }), StoreStatus::Cancelled);
    QCOMPARE(contentOf(m_folder->path()).size(), 2);
}

void TestRecordCopy::leavesNothingWhenItsSourceVanishes()
{
    RecordCopy copy = copyOf({{10 * second, 20 * second}});
    QVERIFY(QDir(m_folder->filePath(id)).removeRecursively());
    QCOMPARE(copy.run(), StoreStatus::UnknownRecord);
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestRecordCopy)
#include "tst_recordcopy.moc"
