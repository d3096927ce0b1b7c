#include <overviewdisplay/overviewlevels.h>

#include "overviewpieces.h"

#include <QtTest>

#include <numeric>
#include <random>

using SPECTRUM_OVERVIEW::LineRange;
using SPECTRUM_OVERVIEW::OverviewLevels;
using SPECTRUM_OVERVIEW::OverviewWish;
using ZelkoCommon::OverviewPiece;
using ZelkoDataTypes::eFFT_Window;
using ZelkoTest::AnswerPieces;

Q_DECLARE_METATYPE(OverviewPiece)

namespace {

constexpr quint64 begin = 1'700'000'000'000'000;
constexpr quint64 second = 1'000'000;
constexpr quint64 minute = 60 * second;

const OverviewWish tenLines{begin, begin + minute, 10, 1024, eFFT_Window::Hann};

std::vector<OverviewPiece> allPieces(const AnswerPieces& answer)
{
    std::vector<OverviewPiece> pieces;
    for (int line = 0; line < static_cast<int>(answer.wish.lineCount); ++line) {
        for (int number = 0; number < answer.piecesOfALine(); ++number) {
            pieces.push_back(answer.piece(line, number));
        }
    }
    return pieces;
}

bool takeLine(OverviewLevels& levels, const AnswerPieces& answer, int line)
{
    bool taken = true;
    for (int number = 0; number < answer.piecesOfALine(); ++number) {
        taken = levels.take(answer.piece(line, number)) && taken;
    }
    return taken;
}

void takeAllBut(OverviewLevels& levels, const AnswerPieces& answer, const QList<int>& left)
{
    for (int line = 0; line < static_cast<int>(answer.wish.lineCount); ++line) {
        if (!left.contains(line)) {
            QVERIFY(takeLine(levels, answer, line));
        }
    }
}

// The answer of a recorder that has a sample at the begin of all: lines are cut between samples.
struct SampledAnswer
{
    OverviewWish wish;
    quint32 bins;
    quint64 rate; // samples a second

    quint64 sampleAt(quint64 time) const { return ((time - begin) * rate + second / 2) / second; }

    OverviewPiece piece(int line, int number) const
    {
        const quint64 span = bins < wish.fftLength ? rate / 2 : rate;
        OverviewPiece piece = AnswerPieces{wish, bins, 7, 100'000'000, span}.piece(line, number);
        const quint64 first = sampleAt(wish.start);
        const quint64 sample = first + (sampleAt(wish.stop) - first) * quint64(line) / wish.lineCount;
        piece.time = begin + sample * second / rate;
        return piece;
    }
};

// A piece that is spoilt, as the first one and after another one.
void addRow(const char* name, const std::function<void(OverviewPiece&)>& spoil)
{
    OverviewPiece piece = AnswerPieces{tenLines}.piece(5, 1);
    spoil(piece);
    QTest::addRow("%s, first", name) << true << piece;
    QTest::addRow("%s, later", name) << false << piece;
}

QString text(const std::vector<LineRange>& ranges)
{
    QStringList texts;
    for (const LineRange& range : ranges) {
        texts << QStringLiteral("%1-%2").arg(range.first).arg(range.last);
    }
    return texts.join(QLatin1Char(' '));
}

void compareWhole(const OverviewLevels& levels, const AnswerPieces& answer)
{
    QCOMPARE(levels.completeLines(), int(answer.wish.lineCount));
    QCOMPARE(levels.binCount(), int(answer.bins));
    for (int line = 0; line < levels.lineCount(); ++line) {
        QVERIFY(levels.isComplete(line));
        QCOMPARE(levels.time(line), answer.time(quint32(line)));
        for (int bin = 0; bin < levels.binCount(); ++bin) {
            QCOMPARE(levels.levels(line)[bin], AnswerPieces::level(line, bin));
        }
    }
}

} // namespace

class OverviewLevelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsThereBeforeTheFirstPiece();
    void linesComeInAnyOrder_data();
    void linesComeInAnyOrder();
    void whatComesTwiceChangesNothing();
    void aLineIsThereWithItsLastPiece();
    void aSpectrumOfRealSamplesHasHalfTheBins();
    void fewerLinesThanWishedAreAnAnswer();
    void piecesOfAnotherAnswerAreRefused_data();
    void piecesOfAnotherAnswerAreRefused();
    void wishesWithoutAnAnswerRefuseEverything_data();
    void wishesWithoutAnAnswerRefuseEverything();
    void timesThatDoNotFitAreRefused_data();
    void timesThatDoNotFitAreRefused();
    void aTimeOnTheEdgeIsTaken();
    void piecesOfALineAreOfOneMoment();
    void memoryIsBounded();
    void timesOfMissingLinesAreEstimated();
    void linesAreFoundByTheirTime();
    void linesAreFoundBesideAHoleInTime();
    void missingLinesAreRanges_data();
    void missingLinesAreRanges();
    void aPartBringsWhatIsMissing();
    void aPartCompletesHalfALine_data();
    void aPartCompletesHalfALine();
    void aPartIsAskedForFromTheLineBefore();
    void aPartOfAnotherShapeIsRefused();
    void partsOutsideOfTheLinesAreNone();
    void frequenciesAreThoseOfTheFirstPiece_data();
    void frequenciesAreThoseOfTheFirstPiece();
    void anotherTuningStandsAtItsOwnFrequencies();
    void beginningAgainForgetsAll();
};

void OverviewLevelsTest::nothingIsThereBeforeTheFirstPiece()
{
    OverviewLevels levels;
    QCOMPARE(levels.lineCount(), 0);
    levels.begin(tenLines);
    QCOMPARE(levels.wish(), tenLines);
    QCOMPARE(levels.lineCount(), 0);
    QCOMPARE(levels.binCount(), 0);
    QCOMPARE(levels.completeLines(), 0);
    QCOMPARE(levels.span(), 0.0);
    QCOMPARE(levels.lowestFrequency(), 0.0);
    QCOMPARE(levels.lineAt(begin), -1);
    QVERIFY(!levels.isComplete(0));
    QVERIFY(!levels.isComplete(-1));
    QVERIFY(!levels.levels(0));
    QVERIFY(levels.missing(4).empty());
    QCOMPARE(levels.time(0), begin);
    QCOMPARE(levels.time(1), begin + minute);
}

void OverviewLevelsTest::linesComeInAnyOrder_data()
{
    QTest::addColumn<int>("seed");
    QTest::newRow("in order") << -1;
    QTest::newRow("backwards") << 0;
    for (int seed = 1; seed <= 10; ++seed) {
        QTest::addRow("shuffled %d", seed) << seed;
    }
}

void OverviewLevelsTest::linesComeInAnyOrder()
{
    QFETCH(int, seed);
    const AnswerPieces answer{tenLines};
    std::vector<OverviewPiece> pieces = allPieces(answer);
    if (seed == 0) {
        std::reverse(pieces.begin(), pieces.end());
    } else if (seed > 0) {
        std::shuffle(pieces.begin(), pieces.end(), std::mt19937(unsigned(seed)));
    }
    OverviewLevels levels;
    levels.begin(tenLines);
    for (const OverviewPiece& piece : pieces) {
        QVERIFY(levels.take(piece));
    }
    compareWhole(levels, answer);
    QVERIFY(levels.missing(4).empty());
}

void OverviewLevelsTest::whatComesTwiceChangesNothing()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    for (const OverviewPiece& piece : allPieces(answer)) {
        OverviewPiece other = piece;
        other.levels.fill(5);
        QVERIFY(levels.take(piece));
        QVERIFY(levels.take(piece));
        QVERIFY(levels.take(other));
    }
    compareWhole(levels, answer);
}

void OverviewLevelsTest::aLineIsThereWithItsLastPiece()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    QVERIFY(levels.take(answer.piece(3, 1)));
    QCOMPARE(levels.lineCount(), 10);
    QVERIFY(!levels.isComplete(3));
    QVERIFY(!levels.levels(3));
    QCOMPARE(levels.completeLines(), 0);
    QCOMPARE(levels.time(3), answer.time(3));
    QVERIFY(levels.take(answer.piece(3, 0)));
    QVERIFY(levels.isComplete(3));
    QCOMPARE(levels.completeLines(), 1);
    QVERIFY(!levels.isComplete(10));
    QVERIFY(!levels.levels(10));
    QVERIFY(!levels.levels(-1));
}

void OverviewLevelsTest::aSpectrumOfRealSamplesHasHalfTheBins()
{
    OverviewWish wish = tenLines;
    wish.fftLength = 1200;
    const AnswerPieces answer{wish, 600};
    QCOMPARE(answer.piecesOfALine(), 2);
    OverviewLevels levels;
    levels.begin(wish);
    takeAllBut(levels, answer, {});
    compareWhole(levels, answer);
}

void OverviewLevelsTest::fewerLinesThanWishedAreAnAnswer()
{
    OverviewWish made = tenLines;
    made.lineCount = 3;
    OverviewLevels levels;
    levels.begin(tenLines);
    const AnswerPieces answer{made};
    takeAllBut(levels, answer, {});
    compareWhole(levels, answer);
}

void OverviewLevelsTest::piecesOfAnotherAnswerAreRefused_data()
{
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<OverviewPiece>("piece");
    addRow("more lines than wished", [](OverviewPiece& p) { p.lineCount = 11; });
    addRow("no lines", [](OverviewPiece& p) { p.lineCount = 0; });
    addRow("a line behind the last", [](OverviewPiece& p) { p.line = 10; });
    addRow("a line far behind the last", [](OverviewPiece& p) { p.line = 0xffffffff; });
    addRow("other bins", [](OverviewPiece& p) { p.binCount = 2048; });
    addRow("a quarter of the bins", [](OverviewPiece& p) { p.binCount = 256; });
    addRow("no bins", [](OverviewPiece& p) { p.binCount = 0; });
    addRow("bins behind the last", [](OverviewPiece& p) { p.firstBin = 1024; });
    addRow("bins far behind the last", [](OverviewPiece& p) { p.firstBin = 0xfffffe00; });
    addRow("another cut", [](OverviewPiece& p) { p.firstBin = 256; });
    addRow("too few levels", [](OverviewPiece& p) { p.levels.removeLast(); });
    addRow("too many levels", [](OverviewPiece& p) { p.levels.append(0); });
    addRow("no levels", [](OverviewPiece& p) { p.levels.clear(); });
    OverviewPiece fewer = AnswerPieces{tenLines}.piece(5, 1);
    fewer.lineCount = 9;
    QTest::newRow("another number of lines than before") << false << fewer;
    OverviewPiece half = AnswerPieces{tenLines, 512}.piece(5);
    QTest::newRow("half of the bins than before") << false << half;
}

void OverviewLevelsTest::piecesOfAnotherAnswerAreRefused()
{
    QFETCH(bool, isFirst);
    QFETCH(OverviewPiece, piece);
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    if (!isFirst) {
        QVERIFY(takeLine(levels, answer, 2));
    }
    QVERIFY(!levels.take(piece));
    QCOMPARE(levels.lineCount(), isFirst ? 0 : 10);
    QCOMPARE(levels.completeLines(), isFirst ? 0 : 1);
    QVERIFY(levels.take(answer.piece(5, 1)));
    QVERIFY(levels.take(answer.piece(5, 0)));
    QVERIFY(levels.isComplete(5));
}

void OverviewLevelsTest::wishesWithoutAnAnswerRefuseEverything_data()
{
    QTest::addColumn<quint64>("stop");
    QTest::addColumn<quint32>("lineCount");
    QTest::addColumn<quint32>("fftLength");
    QTest::newRow("no time") << begin << 10u << 1024u;
    QTest::newRow("an end before the start") << begin - 1 << 10u << 1024u;
    QTest::newRow("no lines") << begin + minute << 0u << 1024u;
    QTest::newRow("no bins") << begin + minute << 10u << 0u;
}

void OverviewLevelsTest::wishesWithoutAnAnswerRefuseEverything()
{
    QFETCH(quint64, stop);
    QFETCH(quint32, lineCount);
    QFETCH(quint32, fftLength);
    OverviewLevels levels;
    levels.begin({begin, stop, lineCount, fftLength, eFFT_Window::Hann});
    OverviewPiece piece = AnswerPieces{tenLines}.piece(0);
    QVERIFY(!levels.take(piece));
    piece.binCount = fftLength;
    piece.lineCount = lineCount;
    piece.levels.resize(std::min(fftLength, 512u));
    QVERIFY(!levels.take(piece));
    QCOMPARE(levels.lineCount(), 0);
}

void OverviewLevelsTest::timesThatDoNotFitAreRefused_data()
{
    QTest::addColumn<QList<int>>("known");
    QTest::addColumn<quint64>("time");
    const quint64 line = minute / 10;
    const QList<int> none;
    QTest::newRow("0") << none << quint64(0);
    QTest::newRow("the greatest number") << none << std::numeric_limits<quint64>::max();
    QTest::newRow("long before the start") << none << begin - minute;
    QTest::newRow("long behind the end") << none << begin + 2 * minute;
    QTest::newRow("before the line before") << QList<int>{4} << begin + 4 * line - second;
    QTest::newRow("before a line further before") << QList<int>{1} << begin + line / 2;
    QTest::newRow("behind the line behind") << QList<int>{6} << begin + 6 * line + second;
    QTest::newRow("behind a line further behind") << QList<int>{9} << begin + 9 * line + second;
    QTest::newRow("before those between which it stands") << QList<int>{4, 6} << begin + 3 * line;
    QTest::newRow("behind those between which it stands") << QList<int>{4, 6} << begin + 7 * line;
}

void OverviewLevelsTest::timesThatDoNotFitAreRefused()
{
    QFETCH(QList<int>, known);
    QFETCH(quint64, time);
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    for (const int line : known) {
        QVERIFY(takeLine(levels, answer, line));
    }
    OverviewPiece piece = answer.piece(5);
    piece.time = time;
    QVERIFY(!levels.take(piece));
    QCOMPARE(levels.completeLines(), int(known.size()));
    QVERIFY(takeLine(levels, answer, 5));
}

void OverviewLevelsTest::aTimeOnTheEdgeIsTaken()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    OverviewPiece first = answer.piece(0);
    first.time = begin - 3;
    QVERIFY(levels.take(first));
    QCOMPARE(levels.time(0), begin);
    QVERIFY(levels.take(answer.piece(0, 1)));
    OverviewPiece last = answer.piece(9);
    last.time = begin + minute;
    QVERIFY(levels.take(last));
    QCOMPARE(levels.time(9), begin + minute);
}

void OverviewLevelsTest::piecesOfALineAreOfOneMoment()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    QVERIFY(levels.take(answer.piece(5, 0)));
    OverviewPiece later = answer.piece(5, 1);
    later.time += 1000;
    QVERIFY(!levels.take(later));
    OverviewPiece elsewhere = answer.piece(5, 1);
    elsewhere.centreFrequency += 1000;
    QVERIFY(!levels.take(elsewhere));
    QVERIFY(levels.take(answer.piece(5, 1)));
    QVERIFY(levels.isComplete(5));
}

void OverviewLevelsTest::memoryIsBounded()
{
    OverviewWish wish{begin, begin + minute, 100'000, 65'536, eFFT_Window::Hann};
    OverviewLevels levels;
    levels.begin(wish);
    QVERIFY(!levels.take(AnswerPieces{wish}.piece(0)));
    QCOMPARE(levels.lineCount(), 0);
    wish.lineCount = quint32(OverviewLevels::mostLevels / 65'536);
    levels.begin(wish);
    QVERIFY(levels.take(AnswerPieces{wish}.piece(0)));
    ++wish.lineCount;
    levels.begin(wish);
    QVERIFY(!levels.take(AnswerPieces{wish}.piece(0)));
    wish = {begin, begin + minute, 100'001, 16, eFFT_Window::Hann};
    levels.begin(wish);
    QVERIFY(!levels.take(AnswerPieces{wish}.piece(0)));
    wish = {begin, begin + minute, 1, 131'072, eFFT_Window::Hann};
    levels.begin(wish);
    QVERIFY(!levels.take(AnswerPieces{wish}.piece(0)));
}

void OverviewLevelsTest::timesOfMissingLinesAreEstimated()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    OverviewPiece early = answer.piece(4);
    early.time = begin + 4 * second;
    QVERIFY(levels.take(early));
    QCOMPARE(levels.time(-1), begin);
    QCOMPARE(levels.time(0), begin);
    QCOMPARE(levels.time(2), begin + 2 * second);
    QCOMPARE(levels.time(4), begin + 4 * second);
    QCOMPARE(levels.time(7), begin + 4 * second + 28 * second);
    QCOMPARE(levels.time(10), begin + minute);
    QCOMPARE(levels.time(11), begin + minute);
}

void OverviewLevelsTest::linesAreFoundByTheirTime()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, answer, {3, 8});
    QCOMPARE(levels.lineAt(begin - 1), -1);
    QCOMPARE(levels.lineAt(begin + minute), -1);
    QCOMPARE(levels.lineAt(begin + minute - 1), 9);
    for (int line = 0; line < 10; ++line) {
        QCOMPARE(levels.lineAt(levels.time(line)), line);
        QCOMPARE(levels.lineAt(levels.time(line + 1) - 1), line);
    }
}

void OverviewLevelsTest::linesAreFoundBesideAHoleInTime()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    for (int line = 0; line < 10; ++line) {
        for (int number = 0; number < 2; ++number) {
            OverviewPiece piece = answer.piece(line, number);
            piece.time = begin + quint64(line) * second + (line < 5 ? 0 : 40 * second);
            QVERIFY(levels.take(piece));
        }
    }
    QCOMPARE(levels.lineAt(begin + 4 * second), 4);
    QCOMPARE(levels.lineAt(begin + 30 * second), 4);
    QCOMPARE(levels.lineAt(begin + 45 * second), 5);
}

void OverviewLevelsTest::missingLinesAreRanges_data()
{
    QTest::addColumn<QList<int>>("left");
    QTest::addColumn<int>("mostRanges");
    QTest::addColumn<QString>("ranges");
    QTest::newRow("none") << QList<int>{} << 3 << "";
    QTest::newRow("one line") << QList<int>{4} << 3 << "4-4";
    QTest::newRow("the first lines") << QList<int>{0, 1} << 3 << "0-1";
    QTest::newRow("the last lines") << QList<int>{8, 9} << 3 << "8-9";
    QTest::newRow("as many ranges as there may be") << QList<int>{0, 4, 5, 9} << 3 << "0-0 4-5 9-9";
    QTest::newRow("the closest become one") << QList<int>{0, 4, 6, 9} << 3 << "0-0 4-6 9-9";
    QTest::newRow("one range") << QList<int>{1, 4, 6, 8} << 1 << "1-8";
    QTest::newRow("less than one range is one") << QList<int>{1, 4} << 0 << "1-4";
}

void OverviewLevelsTest::missingLinesAreRanges()
{
    QFETCH(QList<int>, left);
    QFETCH(int, mostRanges);
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, AnswerPieces{tenLines}, left);
    QTEST(text(levels.missing(mostRanges)), "ranges");
}

void OverviewLevelsTest::aPartBringsWhatIsMissing()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, answer, {4, 5});
    const LineRange part = levels.partAround({4, 5});
    levels.beginPart(part);
    const OverviewWish wish = levels.partWish(part);
    for (int line = 0; line < part.count(); ++line) {
        for (int number = 0; number < answer.piecesOfALine(); ++number) {
            OverviewPiece piece = AnswerPieces{wish}.piece(line, number);
            piece.levels = answer.piece(line + part.first, number).levels;
            QVERIFY(levels.take(piece));
        }
    }
    compareWhole(levels, answer);
}

void OverviewLevelsTest::aPartCompletesHalfALine_data()
{
    QTest::addColumn<quint32>("bins");
    QTest::addColumn<quint64>("rate");
    for (const quint64 rate :
         std::initializer_list<quint64>{8'000, 44'100, 48'000, 250'000, 500'000, 700'000, 1'000'000, 2'400'000}) {
        QTest::addRow("I and Q at %llu Hz", rate) << 2048u << rate;
        QTest::addRow("real samples at %llu Hz", rate) << 1024u << rate;
    }
}

void OverviewLevelsTest::aPartCompletesHalfALine()
{
    QFETCH(quint32, bins);
    QFETCH(quint64, rate);
    const OverviewWish wish{begin, begin + 3 * minute, 698, 2048, eFFT_Window::Hann};
    OverviewLevels levels;
    levels.begin(wish);
    const SampledAnswer whole{wish, bins, rate};
    for (int line = 0; line < 698; ++line) {
        QVERIFY(levels.take(whole.piece(line, 0)));
    }
    for (int line = 0; line < 698; ++line) {
        const LineRange part = levels.partAround({line, line});
        levels.beginPart(part);
        const SampledAnswer again{levels.partWish(part), bins, rate};
        for (int number = 1; number < int(bins / 512); ++number) {
            QVERIFY2(levels.take(again.piece(line - part.first, number)), qPrintable(QString::number(line)));
        }
        QVERIFY(levels.isComplete(line));
    }
    QVERIFY(levels.isWhole());
}

void OverviewLevelsTest::aPartIsAskedForFromTheLineBefore()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, answer, {0, 4, 5, 9});
    QCOMPARE(levels.partAround({4, 5}), (LineRange{3, 5}));
    QCOMPARE(levels.partAround({0, 0}), (LineRange{0, 0}));
    const OverviewWish middle{answer.time(3), answer.time(6) + 1, 3, 1024, eFFT_Window::Hann};
    QCOMPARE(levels.partWish({3, 5}), middle);
    const OverviewWish first{begin, answer.time(1) + 1, 1, 1024, eFFT_Window::Hann};
    QCOMPARE(levels.partWish({0, 0}), first);
    const OverviewWish last{answer.time(8), begin + minute, 2, 1024, eFFT_Window::Hann};
    QCOMPARE(levels.partWish({8, 9}), last);
    QCOMPARE(levels.partWish({0, 9}), tenLines);
}

void OverviewLevelsTest::aPartOfAnotherShapeIsRefused()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, answer, {4, 5});
    levels.beginPart({3, 5});
    QVERIFY(!levels.take(answer.piece(4)));
    OverviewPiece piece = AnswerPieces{levels.partWish({3, 5})}.piece(1);
    ++piece.lineCount;
    QVERIFY(!levels.take(piece));
    --piece.lineCount;
    QVERIFY(levels.take(piece));
}

void OverviewLevelsTest::partsOutsideOfTheLinesAreNone()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    levels.beginPart({2, 3});
    QVERIFY(takeLine(levels, answer, 0));
    levels.beginPart({8, 10});
    levels.beginPart({-1, 3});
    levels.beginPart({3, 2});
    QVERIFY(takeLine(levels, answer, 9));
}

void OverviewLevelsTest::frequenciesAreThoseOfTheFirstPiece_data()
{
    QTest::addColumn<quint32>("bins");
    QTest::addColumn<quint64>("centre");
    QTest::addColumn<quint64>("span");
    QTest::addColumn<double>("lowest");
    QTest::newRow("on the air") << 1024u << quint64(100'000'000) << quint64(2'000'000) << 99e6;
    QTest::newRow("without a centre") << 1024u << quint64(0) << quint64(2'000'000) << -1e6;
    QTest::newRow("real samples without a centre") << 512u << quint64(0) << quint64(24'000) << 0.0;
    QTest::newRow("real samples on the air") << 512u << quint64(50'000) << quint64(24'000) << 38'000.0;
    QTest::newRow("nothing known") << 1024u << quint64(0) << quint64(0) << 0.0;
}

void OverviewLevelsTest::frequenciesAreThoseOfTheFirstPiece()
{
    QFETCH(quint32, bins);
    QFETCH(quint64, centre);
    QFETCH(quint64, span);
    OverviewLevels levels;
    levels.begin(tenLines);
    const AnswerPieces answer{tenLines, bins, 7, centre, span};
    QVERIFY(levels.take(answer.piece(0)));
    QTEST(levels.lowestFrequency(), "lowest");
    QCOMPARE(levels.span(), double(span));
    QCOMPARE(levels.hasCentre(), centre != 0);
}

// A quarter of the span higher, and half of the span: one bin of the first is two of this one.
void OverviewLevelsTest::anotherTuningStandsAtItsOwnFrequencies()
{
    OverviewLevels levels;
    levels.begin(tenLines);
    const AnswerPieces first{tenLines, 1024, 7, 100'000'000, 1'024'000};
    const AnswerPieces higher{tenLines, 1024, 7, 100'256'000, 1'024'000};
    const AnswerPieces narrow{tenLines, 1024, 7, 100'000'000, 512'000};
    const AnswerPieces unknown{tenLines, 1024, 7, 100'000'000, 0};
    QVERIFY(takeLine(levels, first, 0));
    QVERIFY(takeLine(levels, higher, 1));
    QVERIFY(takeLine(levels, narrow, 2));
    QVERIFY(takeLine(levels, unknown, 3));
    QCOMPARE(levels.levels(1)[255], OverviewLevels::noLevel);
    QCOMPARE(levels.levels(1)[256], AnswerPieces::level(1, 0));
    QCOMPARE(levels.levels(1)[1023], AnswerPieces::level(1, 767));
    QCOMPARE(levels.levels(2)[255], OverviewLevels::noLevel);
    QCOMPARE(levels.levels(2)[512], AnswerPieces::level(2, 513));
    QCOMPARE(levels.levels(2)[768], OverviewLevels::noLevel);
    QCOMPARE(levels.levels(3)[5], AnswerPieces::level(3, 5));
}

void OverviewLevelsTest::beginningAgainForgetsAll()
{
    const AnswerPieces answer{tenLines};
    OverviewLevels levels;
    levels.begin(tenLines);
    takeAllBut(levels, answer, {4});
    levels.beginPart({3, 4});
    OverviewWish other = tenLines;
    other.fftLength = 512;
    levels.begin(other);
    QCOMPARE(levels.lineCount(), 0);
    QCOMPARE(levels.completeLines(), 0);
    const AnswerPieces next{other};
    takeAllBut(levels, next, {});
    compareWhole(levels, next);
}

QTEST_APPLESS_MAIN(OverviewLevelsTest)

#include "tst_overviewlevels.moc"
