#include <overviewdisplay/overviewfacts_p.h>
#include <overviewdisplay/overviewsettings_p.h>

#include "testrecords.h"

#include <QtTest>

using SPECTRUM_OVERVIEW::OverviewFacts;
using SPECTRUM_OVERVIEW::OverviewLevels;
using SPECTRUM_OVERVIEW::OverviewLoader;
using SPECTRUM_OVERVIEW::OverviewSettings;
using SPECTRUM_OVERVIEW::OverviewWish;
using SPECTRUM_OVERVIEW::TimeRange;
using ZelkoDataTypes::eFFT_Window;
using Lack = OverviewFacts::Lack;

Q_DECLARE_METATYPE(TimeRange)

namespace {

constexpr quint64 start = 1'000'000'000;
constexpr quint64 second = 1'000'000;

// 100 seconds with 1,000 samples each.
OverviewFacts facts(double rate = 1'000, quint64 seconds = 100)
{
    OverviewFacts facts;
    facts.extent = {start, start + seconds * second};
    facts.sampleRate = rate;
    facts.size = 400'000;
    return facts;
}

ZELKO_XML::IndexEntry indexEntry(quint64 time, quint64 rate, quint64 offset = 0)
{
    ZELKO_XML::IndexEntry entry;
    entry.SetTimestamp(time);
    entry.SetSampleRate(rate);
    entry.SetRecordOffset(offset);
    return entry;
}

auto recordWithAHole()
{
    auto record = makeRecord(QStringLiteral("R"));
    record->SetIndexEntry({indexEntry(start, 8'000), indexEntry(start + 30 * second, 2'000, 320'000)});
    record->SetStartTime(start);
    record->SetStopTime(start + 40 * second);
    record->SetSize(400'000);
    return record;
}

} // namespace

class OverviewFactsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areThoseOfTheRecord();
    void theIndexMayEndBeforeTheRecord();
    void rangesStayInTheRecord_data();
    void rangesStayInTheRecord();
    void linesFitTheSamplesTheRoomAndTheWish_data();
    void linesFitTheSamplesTheRoomAndTheWish();
    void samplesAreThoseOfTheIndex_data();
    void samplesAreThoseOfTheIndex();
    void anIndexWithoutOffsetsHasTheRatesAlone();
    void aHoleHasNoWish();
    void aRangeShorterThanASpectrumHasNoWish();
    void linesThatTakeLongAreWaitedForLonger();
};

void OverviewFactsTest::areThoseOfTheRecord()
{
    const auto record = makeRecord(QStringLiteral("R"), 5, 77);
    record->SetIndexEntry({indexEntry(record->GetStartTime(), 8'000), indexEntry(record->GetStopTime(), 16'000)});
    ZELKO_XML::BookmarkEntry bookmark;
    bookmark.SetTimestamp(5);
    record->AppendBookmarkEntry(bookmark);
    const OverviewFacts read(*record);
    QCOMPARE(read.name, "name of R");
    QCOMPARE(read.extent, (TimeRange{record->GetStartTime(), record->GetStopTime()}));
    QCOMPARE(read.sampleRate, 16'000.0);
    QCOMPARE(read.size, 77u);
    QVERIFY(read.canBeCopied);
    QCOMPARE(read.bookmarks, record->GetBookmarkEntry());
    QCOMPARE(read.lack(), Lack::Nothing);
    QCOMPARE(OverviewFacts().lack(), Lack::Samples);
    record->SetDataRate(ZELKO_XML::ZELKO_RecordData::DataRate::RawStream);
    QVERIFY(!OverviewFacts(*record).canBeCopied);
}

void OverviewFactsTest::theIndexMayEndBeforeTheRecord()
{
    const auto record = makeRecord(QStringLiteral("R"));
    record->SetIndexEntry(
        {indexEntry(record->GetStartTime() + second, 1), indexEntry(record->GetStopTime() - second, 1)});
    QCOMPARE(OverviewFacts(*record).extent, (TimeRange{record->GetStartTime(), record->GetStopTime()}));
}

void OverviewFactsTest::rangesStayInTheRecord_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<TimeRange>("shown");
    const quint64 stop = start + 100 * second;
    const quint64 spectrum = second + 1; // of 1,000 samples
    QTest::newRow("all") << TimeRange{start, stop} << TimeRange{start, stop};
    QTest::newRow("more than all") << TimeRange{0, ~0ull} << TimeRange{start, stop};
    QTest::newRow("a part") << TimeRange{start + second, stop - second} << TimeRange{start + second, stop - second};
    QTest::newRow("over the end") << TimeRange{stop - 5 * second, stop + second} << TimeRange{stop - 5 * second, stop};
    QTest::newRow("too short") << TimeRange{start + 50 * second, start + 50 * second + 1}
                               << TimeRange{start + 50 * second - spectrum / 2,
                                            start + 50 * second - spectrum / 2 + spectrum};
    QTest::newRow("too short at the start") << TimeRange{start, start + 1} << TimeRange{start, start + spectrum};
    QTest::newRow("too short at the end") << TimeRange{stop - 1, stop} << TimeRange{stop - spectrum, stop};
    QTest::newRow("before the record") << TimeRange{0, 1} << TimeRange{start, start + spectrum};
    QTest::newRow("behind the record") << TimeRange{stop + 1, stop + 2} << TimeRange{stop - spectrum, stop};
    QTest::newRow("backwards") << TimeRange{stop - 1, start} << TimeRange{stop - spectrum, stop};
}

void OverviewFactsTest::rangesStayInTheRecord()
{
    QFETCH(TimeRange, range);
    QTEST(facts().within(range, 1'000), "shown");
    QCOMPARE(facts().within(range, 65'536'000), facts().extent);
}

void OverviewFactsTest::linesFitTheSamplesTheRoomAndTheWish_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("wished");
    QTest::addColumn<quint32>("fftLength");
    QTest::addColumn<quint32>("lines");
    QTest::newRow("as many as there is room for") << 1e6 << 0 << 1'024u << 700u;
    QTest::newRow("as many as wished") << 1e6 << 4'096 << 1'024u << 4'096u;
    QTest::newRow("as many as there are") << 1e3 << 0 << 1'024u << 97u;
    QTest::newRow("as many as there are, of those wished") << 1e3 << 4'096 << 1'024u << 97u;
    QTest::newRow("no more than there is memory for") << 1e9 << 10'000 << 65'536u << 2'048u;
}

void OverviewFactsTest::linesFitTheSamplesTheRoomAndTheWish()
{
    QFETCH(double, rate);
    QFETCH(int, wished);
    QFETCH(quint32, fftLength);
    QFETCH(quint32, lines);
    OverviewSettings settings;
    settings.lineCount = wished;
    settings.fftLength = fftLength;
    settings.window = eFFT_Window::FlatTop;
    const OverviewFacts all = facts(rate);
    QCOMPARE(all.wish(all.extent, settings, 700),
             (OverviewWish{all.extent.start, all.extent.stop, lines, fftLength, eFFT_Window::FlatTop}));
}

// 10 seconds with 8,000 samples each, 20 that have none, 10 with 2,000 each; four bytes a sample.
void OverviewFactsTest::samplesAreThoseOfTheIndex_data()
{
    QTest::addColumn<TimeRange>("range");
    QTest::addColumn<double>("samples");
    QTest::newRow("all") << TimeRange{start, start + 40 * second} << 100'000.0;
    QTest::newRow("before the hole") << TimeRange{start, start + 5 * second} << 40'000.0;
    QTest::newRow("into the hole") << TimeRange{start + 9 * second, start + 20 * second} << 8'000.0;
    QTest::newRow("in the hole") << TimeRange{start + 11 * second, start + 29 * second} << 0.0;
    QTest::newRow("out of the hole") << TimeRange{start + 20 * second, start + 31 * second} << 2'000.0;
    QTest::newRow("with the lower rate") << TimeRange{start + 32 * second, start + 36 * second} << 8'000.0;
    QTest::newRow("outside of the record") << TimeRange{0, start} << 0.0;
}

void OverviewFactsTest::samplesAreThoseOfTheIndex()
{
    QFETCH(TimeRange, range);
    QTEST(OverviewFacts(*recordWithAHole()).samplesIn(range), "samples");
}

void OverviewFactsTest::anIndexWithoutOffsetsHasTheRatesAlone()
{
    const auto record = recordWithAHole();
    record->SetIndexEntry({indexEntry(start, 8'000), indexEntry(start + 30 * second, 2'000)});
    record->SetSize(0);
    QCOMPARE(OverviewFacts(*record).samplesIn({start, start + 40 * second}), 260'000.0);
}

void OverviewFactsTest::aHoleHasNoWish()
{
    const OverviewFacts facts(*recordWithAHole());
    OverviewSettings settings;
    QVERIFY(!facts.wish({start + 11 * second, start + 29 * second}, settings, 700));
    QCOMPARE(facts.wish(facts.extent, settings, 700)->lineCount, 97u);
}

void OverviewFactsTest::aRangeShorterThanASpectrumHasNoWish()
{
    OverviewSettings settings;
    const OverviewFacts all = facts();
    QVERIFY(!all.wish({start, start + second}, settings, 700));
    QVERIFY(all.wish({start, start + 2 * second}, settings, 700));
    QVERIFY(!all.wish({start, start}, settings, 700));
    QCOMPARE(all.wish({start, start + 2 * second}, settings, 0)->lineCount, 1u);
}

void OverviewFactsTest::linesThatTakeLongAreWaitedForLonger()
{
    OverviewFacts all = facts();
    const OverviewWish whole{all.extent.start, all.extent.stop, 1'000, 1'024, eFFT_Window::Hann};
    QCOMPARE(all.patience(whole), OverviewLoader::Silence);
    all.size = 1'000'000'000'000; // a thousandth of it in a line
    QCOMPARE(all.patience(whole), OverviewLoader::Silence + std::chrono::seconds(50));
    OverviewWish half = whole;
    half.stop = start + 50 * second;
    QCOMPARE(all.patience(half), OverviewLoader::Silence + std::chrono::seconds(25));
    all.size = ~0ull;
    QCOMPARE(all.patience(whole), OverviewLoader::Silence + std::chrono::hours(1));
}

QTEST_APPLESS_MAIN(OverviewFactsTest)

#include "tst_overviewfacts.moc"
