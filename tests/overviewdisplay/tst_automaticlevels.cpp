#include <overviewdisplay/automaticlevels_p.h>
#include <overviewdisplay/overviewlevels.h>

#include "overviewpieces.h"

#include <QtTest>

using SPECTRUM_OVERVIEW::AutomaticLevels;
using SPECTRUM_OVERVIEW::OverviewLevels;
using Range = AutomaticLevels::Range;

namespace {

void add(AutomaticLevels& levels, const std::vector<qint16>& line)
{
    levels.add(line.data(), static_cast<int>(line.size()));
}

QString text(const Range& range)
{
    return QStringLiteral("%1 to %2").arg(range.lowest).arg(range.highest);
}

} // namespace

class AutomaticLevelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isARangeBeforeTheFirstLine() { QCOMPARE(text(AutomaticLevels().range()), "-120 to 0"); }
    void isFromTheNoiseToTheSignal_data();
    void isFromTheNoiseToTheSignal();
    void aBurstInOneBinOfALongLineCounts();
    void whatHasNotArrivedDoesNotCount();
    void aLineCountsOnce();
    void staysTheSameForLevelsThatAreAlike();
};

void AutomaticLevelsTest::isFromTheNoiseToTheSignal_data()
{
    QTest::addColumn<int>("noise");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("range");
    QTest::newRow("weak noise") << -10'050 << -2'050 << "-105 to -15";
    QTest::newRow("strong signal") << -8'050 << 2'950 << "-85 to 35";
    QTest::newRow("hardly a signal") << -8'050 << -7'950 << "-105 to -75";
    QTest::newRow("the strongest that there is") << -8'050 << 32'767 << "-85 to 335";
    QTest::newRow("the weakest that there is") << -32'767 << -32'767 << "-350 to -320";
}

void AutomaticLevelsTest::isFromTheNoiseToTheSignal()
{
    QFETCH(int, noise);
    QFETCH(int, signal);
    std::vector<qint16> line(256, static_cast<qint16>(noise));
    line[100] = static_cast<qint16>(signal);
    AutomaticLevels levels;
    add(levels, line);
    QTEST(text(levels.range()), "range");
}

void AutomaticLevelsTest::aBurstInOneBinOfALongLineCounts()
{
    AutomaticLevels levels;
    for (int i = 0; i < 1000; ++i) {
        add(levels, std::vector<qint16>(65'536, -10'050));
    }
    std::vector<qint16> line(65'536, -10'050);
    line.back() = -2'050;
    add(levels, line);
    QCOMPARE(text(levels.range()), "-105 to -15");
}

void AutomaticLevelsTest::whatHasNotArrivedDoesNotCount()
{
    std::vector<qint16> line(1024, OverviewLevels::noLevel);
    AutomaticLevels levels;
    add(levels, line);
    QCOMPARE(text(levels.range()), "-120 to 0");
    std::fill(line.begin(), line.begin() + 100, qint16{-5'050});
    add(levels, line);
    QCOMPARE(text(levels.range()), "-75 to -45");
}

// One in twenty lines is not the noise, however often it is among those that have arrived; a repaired one counts too.
void AutomaticLevelsTest::aLineCountsOnce()
{
    const SPECTRUM_OVERVIEW::OverviewWish wish{1'000'000, 21'000'000, 20, 64, ZelkoDataTypes::eFFT_Window::Hann};
    OverviewLevels lines;
    lines.begin(wish);
    AutomaticLevels levels;
    levels.addLines(lines, 0, 19);
    for (int line = 0; line < 19; ++line) {
        ZelkoCommon::OverviewPiece piece = ZelkoTest::AnswerPieces{wish}.piece(line);
        piece.levels.fill(line == 0 ? -10'050 : -5'050);
        QVERIFY(lines.take(piece));
        levels.addLines(lines, -1, line + 1);
    }
    QCOMPARE(text(levels.range()), "-75 to -45");
    ZelkoCommon::OverviewPiece repaired = ZelkoTest::AnswerPieces{wish}.piece(19);
    repaired.levels.fill(-2'050);
    QVERIFY(lines.take(repaired));
    levels.addLines(lines, 0, 20);
    QCOMPARE(text(levels.range()), "-55 to -15");
}

void AutomaticLevelsTest::staysTheSameForLevelsThatAreAlike()
{
    AutomaticLevels levels;
    QStringList ranges;
    for (int i = 0; i < 100; ++i) {
        std::vector<qint16> line(256, static_cast<qint16>(-10'000 - i));
        line[3] = static_cast<qint16>(-2'000 - i);
        add(levels, line);
        ranges << text(levels.range());
    }
    ranges.removeDuplicates();
    QCOMPARE(ranges.size(), 1);
}

QTEST_APPLESS_MAIN(AutomaticLevelsTest)

#include "tst_automaticlevels.moc"
