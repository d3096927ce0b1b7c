#include <recorder/source/wavetable.h>

#include <QTest>

#include <cmath>
#include <numbers>

using namespace ZelkoRecorder;

class TestWaveTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithTheExactFunctions();
    void meetsTheAxesExactly();
    void stepIsTheFractionOfATurn_data();
    void stepIsTheFractionOfATurn();
};

void TestWaveTable::agreesWithTheExactFunctions()
{
    double worst = 0;
    Phase phase = 0;
    for (int n = 0; n < 100'000; ++n) {
        phase += 0x0123456789ABCDEF;
        const double angle = 2 * std::numbers::pi * std::ldexp(static_cast<double>(phase), -64);
        worst = std::max(worst, std::abs(static_cast<double>(sineOf(phase)) - std::sin(angle)));
        worst = std::max(worst, std::abs(static_cast<double>(cosineOf(phase)) - std::cos(angle)));
    }
    QVERIFY2(worst < 1e-6, qPrintable(QString::number(worst)));
}

void TestWaveTable::meetsTheAxesExactly()
{
    constexpr Phase quarter = Phase{1} << 62;
    QCOMPARE(sineOf(0), 0.0F);
    QCOMPARE(sineOf(quarter), 1.0F);
    QCOMPARE(cosineOf(0), 1.0F);
    QCOMPARE(cosineOf(2 * quarter), -1.0F);
    QCOMPARE(sineOf(3 * quarter), -1.0F);
    QVERIFY(std::abs(sineOf(~Phase{0})) < 1e-6F);
}

void TestWaveTable::stepIsTheFractionOfATurn_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<quint64>("step");
    QTest::newRow("none") << 0.0 << quint64{0};
    QTest::newRow("a quarter of the rate") << 250.0 << (quint64{1} << 62);
    QTest::newRow("half of the rate") << 500.0 << (quint64{1} << 63);
    QTest::newRow("half of the rate, downwards") << -500.0 << (quint64{1} << 63);
    QTest::newRow("a quarter, downwards") << -250.0 << (quint64{3} << 62);
    QTest::newRow("a whole turn") << 1000.0 << quint64{0};
}

void TestWaveTable::stepIsTheFractionOfATurn()
{
    QFETCH(const double, frequency);
    QTEST(phaseStep(frequency, 1000), "step");
}

QTEST_APPLESS_MAIN(TestWaveTable)
#include "tst_wavetable.moc"
