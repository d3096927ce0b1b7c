#include <recorder/store/recordtimeline.h>

#include <storedrecord.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;
using Format = ZELKO_RecordData::DataFormat;

namespace {

ZELKO_RecordData recordWith(const QVector<IndexEntry>& index, quint64 stopTime, quint64 size)
{
    ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
    record.SetIndexEntry(index);
    record.SetStopTime(stopTime);
    record.SetSize(size);
    record.SetStopPosition(size);
    return record;
}

// A second of samples, four seconds of nothing, and another second.
ZELKO_RecordData recordWithAHole()
{
    return recordWith({indexEntry(10'000'000, 0), indexEntry(15'000'000, 4000), indexEntry(16'000'000, 8000)},
                      16'000'000, 8000);
}

} // namespace

class TestRecordTimeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsOffsets_data();
    void findsOffsets();
    void findsTimes_data();
    void findsTimes();
    void endsWhatStandsBeforeAHoleBeforeIt();
    void givesBackTheTimeOfEachFrame();
    void goesEvenlyWithoutAnIndex();
    void goesToTheStopBehindTheLastEntry();
    void takesAnEmptyRecordForOneMoment();
    void leavesOutEntriesThatContradictOthers();
    void countsTheChannelsOfAFrame();
    void knowsTheSamplesOfEachFormat_data();
    void knowsTheSamplesOfEachFormat();
    void keepsTheTuningInForce();
    void staysWithinTheRecordWhateverItsFileClaims();
};

void TestRecordTimeline::findsOffsets_data()
{
    QTest::addColumn<quint64>("time");
    QTest::addColumn<quint64>("offset");
    QTest::newRow("long before the start") << quint64{0} << quint64{0};
    QTest::newRow("at the start") << quint64{10'000'000} << quint64{0};
    QTest::newRow("in the middle of a stretch") << quint64{10'500'000} << quint64{2000};
    QTest::newRow("nearer to the frame before") << quint64{10'500'400} << quint64{2000};
    QTest::newRow("nearer to the frame behind") << quint64{10'500'600} << quint64{2004};
    QTest::newRow("at the begin of the hole") << quint64{11'000'000} << quint64{4000};
    QTest::newRow("in the hole") << quint64{13'000'000} << quint64{4000};
    QTest::newRow("behind the hole") << quint64{15'250'000} << quint64{5000};
    QTest::newRow("at the stop") << quint64{16'000'000} << quint64{8000};
    QTest::newRow("long behind the stop") << ~quint64{0} << quint64{8000};
}

void TestRecordTimeline::findsOffsets()
{
    QFETCH(const quint64, time);
    QTEST(RecordTimeline(recordWithAHole()).offsetAt(time), "offset");
}

void TestRecordTimeline::findsTimes_data()
{
    QTest::addColumn<quint64>("offset");
    QTest::addColumn<quint64>("time");
    QTest::newRow("the first byte") << quint64{0} << quint64{10'000'000};
    QTest::newRow("in the first stretch") << quint64{1000} << quint64{10'250'000};
    QTest::newRow("the first frame behind the hole") << quint64{4000} << quint64{15'000'000};
    QTest::newRow("in the last stretch") << quint64{6000} << quint64{15'500'000};
    QTest::newRow("the end") << quint64{8000} << quint64{16'000'000};
    QTest::newRow("behind the end") << ~quint64{0} << quint64{16'000'000};
}

void TestRecordTimeline::findsTimes()
{
    QFETCH(const quint64, offset);
    QTEST(RecordTimeline(recordWithAHole()).timeAt(offset), "time");
}

void TestRecordTimeline::endsWhatStandsBeforeAHoleBeforeIt()
{
    const RecordTimeline timeline(recordWithAHole());
    QCOMPARE(timeline.endTimeAt(4000), quint64{11'000'000});
    QCOMPARE(timeline.endTimeAt(2000), quint64{10'500'000});
    QCOMPARE(timeline.endTimeAt(8000), quint64{16'000'000});
}

// Times are whole microseconds, frames are not: at 48 kHz none but every third begins at one.
void TestRecordTimeline::givesBackTheTimeOfEachFrame()
{
    QVector<IndexEntry> index{indexEntry(10'000'000, 0), indexEntry(11'000'000, 192'000)};
    for (IndexEntry& entry : index) {
        entry.SetSampleRate(48'000);
    }
    const RecordTimeline timeline(recordWith(index, 11'000'000, 192'000));
    for (quint64 offset = 0; offset <= 192'000; offset += 4) {
        QCOMPARE(timeline.offsetAt(timeline.timeAt(offset)), offset);
    }
}

void TestRecordTimeline::goesEvenlyWithoutAnIndex()
{
    const RecordTimeline timeline(recordWith({}, 12'000'000, 4000));
    QCOMPARE(timeline.offsetAt(11'000'000), quint64{2000});
    QCOMPARE(timeline.timeAt(3000), quint64{11'500'000});
}

void TestRecordTimeline::goesToTheStopBehindTheLastEntry()
{
    const RecordTimeline timeline(recordWith({indexEntry(10'000'000, 0)}, 11'000'000, 4000));
    QCOMPARE(timeline.stopOffset(), quint64{4000});
    QCOMPARE(timeline.offsetAt(10'500'000), quint64{2000});
}

void TestRecordTimeline::takesAnEmptyRecordForOneMoment()
{
    const RecordTimeline timeline(recordWith({}, 10'000'000, 0));
    QCOMPARE(timeline.startTime(), timeline.stopTime());
    QCOMPARE(timeline.offsetAt(10'000'000), quint64{0});
    QCOMPARE(timeline.timeAt(10), quint64{10'000'000});
}

void TestRecordTimeline::leavesOutEntriesThatContradictOthers()
{
    const RecordTimeline timeline(recordWith({indexEntry(11'000'000, 4000), indexEntry(9'000'000, 2000),
                                              indexEntry(10'000'000, 0), indexEntry(12'000'000, 9000)},
                                             12'000'000, 8000));
    QCOMPARE(timeline.points().size(), 3);
    QCOMPARE(timeline.offsetAt(10'500'000), quint64{2000});
    QCOMPARE(timeline.stopTime(), quint64{12'000'000});
}

void TestRecordTimeline::countsTheChannelsOfAFrame()
{
    const RecordTimeline two(recordWith({indexEntry(10'000'000, 0), indexEntry(11'000'000, 8000)}, 11'000'000, 8000));
    QCOMPARE(two.bytesPerFrame(), quint64{8});
    QCOMPARE(two.offsetAt(10'500'600), quint64{4008});
    const RecordTimeline hole(recordWithAHole());
    QCOMPARE(hole.bytesPerFrame(), quint64{4});
}

void TestRecordTimeline::knowsTheSamplesOfEachFormat_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<quint64>("bytes");
    QTest::newRow("IQ 32 bit") << static_cast<int>(Format::IQ32) << quint64{8};
    QTest::newRow("IQ floating point") << static_cast<int>(Format::IQFloat) << quint64{8};
    QTest::newRow("IQ 16 bit") << static_cast<int>(Format::IQ16) << quint64{4};
    QTest::newRow("IQ 12 bit") << static_cast<int>(Format::IQ12) << quint64{3};
    QTest::newRow("audio 16 bit") << static_cast<int>(Format::Audio16) << quint64{2};
    QTest::newRow("symbols") << static_cast<int>(Format::Symbols) << quint64{1};
    QTest::newRow("a format without samples") << static_cast<int>(Format::Text) << quint64{1};
}

void TestRecordTimeline::knowsTheSamplesOfEachFormat()
{
    QFETCH(const int, format);
    QTEST(bytesPerSample(static_cast<Format>(format)), "bytes");
}

void TestRecordTimeline::keepsTheTuningInForce()
{
    const RecordTimeline timeline(recordWith(
        {indexEntry(10'000'000, 0, 100), indexEntry(11'000'000, 4000, 200), indexEntry(12'000'000, 8000, 200)},
        12'000'000, 8000));
    QCOMPARE(timeline.entryAt(3996).GetTunerFrequency(), quint64{100});
    QCOMPARE(timeline.entryAt(4000).GetTunerFrequency(), quint64{200});
    QCOMPARE(timeline.entryAt(6000).GetTimestamp(), quint64{11'500'000});
}

void TestRecordTimeline::staysWithinTheRecordWhateverItsFileClaims()
{
    constexpr quint64 most = ~quint64{0};
    IndexEntry absurd = indexEntry(0, 0);
    absurd.SetSampleRate(most);
    ZELKO_RecordData record = recordWith({absurd, indexEntry(most, most)}, most, most);
    record.SetStartTime(0);
    const RecordTimeline timeline(record);
    for (const quint64 number : {quint64{0}, quint64{1}, most / 2, most - 1, most}) {
        QVERIFY(timeline.offsetAt(number) <= timeline.stopOffset());
        QVERIFY(timeline.timeAt(number) <= timeline.stopTime());
    }
}

QTEST_GUILESS_MAIN(TestRecordTimeline)
#include "tst_recordtimeline.moc"
