#include "contrast.h"

#include <overviewdisplay/levelcolours.h>
#include <overviewdisplay/overviewlevels.h>

#include <QPalette>
#include <QtTest>

#include <array>
#include <cmath>
#include <limits>

using SPECTRUM_OVERVIEW::LevelColours;
using SPECTRUM_OVERVIEW::OverviewLevels;

namespace {

constexpr QRgb missing = qRgb(1, 2, 3);

/// A colour in CIELAB, whose distances are about those that people see. The white is that of sRGB.
std::array<double, 3> lab(QRgb color)
{
    const auto linear = [](int part) {
        const double share = part / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    const double r = linear(qRed(color));
    const double g = linear(qGreen(color));
    const double b = linear(qBlue(color));
    const auto root = [](double share) { return share > 0.008856 ? std::cbrt(share) : share * 7.787 + 16.0 / 116; };
    const double x = root((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
    const double y = root(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double z = root((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.089);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double distance(QRgb one, QRgb other)
{
    const auto a = lab(one);
    const auto b = lab(other);
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

double lightness(double share)
{
    return lab(LevelColours::at(share))[0];
}

} // namespace

class LevelColoursTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runFromDarkToBright();
    void growLighterWithEachStep();
    void havePartsThatLookAlike();
    void areHeldAtTheEnds_data();
    void areHeldAtTheEnds();
    void haveTheLevelsOfTheirRange_data();
    void haveTheLevelsOfTheirRange();
    void haveOneForWhatIsMissing();
    void tellWhatIsMissingFromEveryLevel_data();
    void tellWhatIsMissingFromEveryLevel();
};

void LevelColoursTest::runFromDarkToBright()
{
    QVERIFY(lightness(0) < 10);
    QVERIFY(lightness(1) > 90);
}

void LevelColoursTest::growLighterWithEachStep()
{
    for (int step = 4; step <= 256; step += 4) {
        QVERIFY2(lightness(step / 256.0) > lightness((step - 4) / 256.0), qPrintable(QString::number(step)));
    }
}

// Each sixteenth of the scale is as different from the next as any other, as far as this measure goes.
void LevelColoursTest::havePartsThatLookAlike()
{
    double least = std::numeric_limits<double>::max();
    double most = 0;
    for (int part = 0; part < 16; ++part) {
        const double found = distance(LevelColours::at(part / 16.0), LevelColours::at((part + 1) / 16.0));
        least = std::min(least, found);
        most = std::max(most, found);
    }
    QVERIFY2(least > 5, qPrintable(QString::number(least)));
    QVERIFY2(most < 3 * least, qPrintable(QStringLiteral("%1 to %2").arg(least).arg(most)));
}

void LevelColoursTest::areHeldAtTheEnds_data()
{
    QTest::addColumn<double>("share");
    QTest::addColumn<double>("held");
    QTest::newRow("below") << -1.0 << 0.0;
    QTest::newRow("above") << 2.0 << 1.0;
    QTest::newRow("far below") << -std::numeric_limits<double>::infinity() << 0.0;
    QTest::newRow("far above") << std::numeric_limits<double>::infinity() << 1.0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0.0;
}

void LevelColoursTest::areHeldAtTheEnds()
{
    QFETCH(double, share);
    QFETCH(double, held);
    QCOMPARE(LevelColours::at(share), LevelColours::at(held));
}

void LevelColoursTest::haveTheLevelsOfTheirRange_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<double>("share");
    QTest::newRow("the lowest") << -12'000 << 0.0;
    QTest::newRow("the highest") << -2'000 << 1.0;
    QTest::newRow("the middle") << -7'000 << 0.5;
    QTest::newRow("a quarter") << -9'500 << 0.25;
    QTest::newRow("below") << -32'767 << 0.0;
    QTest::newRow("above") << 32'767 << 1.0;
}

void LevelColoursTest::haveTheLevelsOfTheirRange()
{
    QFETCH(int, level);
    QFETCH(double, share);
    QCOMPARE(LevelColours(-120, -20, missing).of(static_cast<qint16>(level)), LevelColours::at(share));
}

void LevelColoursTest::haveOneForWhatIsMissing()
{
    QCOMPARE(LevelColours(-120, -20, missing).of(OverviewLevels::noLevel), missing);
}

void LevelColoursTest::tellWhatIsMissingFromEveryLevel_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QPalette(QColor(239, 239, 239));
    QTest::newRow("dark") << QPalette(QColor(45, 48, 52));
    QTest::newRow("black") << QPalette(Qt::black);
}

void LevelColoursTest::tellWhatIsMissingFromEveryLevel()
{
    QFETCH(QPalette, palette);
    const QColor grey = LevelColours::missingIn(palette);
    QVERIFY(grey.saturation() < 20);
    for (int step = 0; step < 256; ++step) {
        QVERIFY2(distance(grey.rgb(), LevelColours::at(step / 255.0)) > 15, qPrintable(QString::number(step)));
    }
    QVERIFY(contrast(grey, palette.color(QPalette::Window)) > 1.3);
}

QTEST_MAIN(LevelColoursTest)
#include "tst_levelcolours.moc"
