#include <overviewdisplay/frequencytext_p.h>

#include <QtTest>

#include <limits>

using SPECTRUM_OVERVIEW::FrequencyText;

class FrequencyTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasOneUnitForARange_data();
    void hasOneUnitForARange();
    void isAsFineAsTheDistance_data();
    void isAsFineAsTheDistance();
    void isEmptyForWhatIsNoNumber();
};

void FrequencyTextTest::hasOneUnitForARange_data()
{
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<QString>("unit");
    QTest::newRow("nothing") << 0.0 << 0.0 << QStringLiteral("Hz");
    QTest::newRow("around nothing") << -500.0 << 500.0 << QStringLiteral("Hz");
    QTest::newRow("the farther one counts") << -24'000.0 << 100.0 << QStringLiteral("kHz");
    QTest::newRow("an airband") << 118e6 << 137e6 << QStringLiteral("MHz");
    QTest::newRow("up to a round one") << 900e6 << 1e9 << QStringLiteral("GHz");
    QTest::newRow("light") << 0.0 << 5e14 << QStringLiteral("THz");
}

void FrequencyTextTest::hasOneUnitForARange()
{
    QFETCH(double, low);
    QFETCH(double, high);
    QTEST(FrequencyText(low, high).unit(), "unit");
}

void FrequencyTextTest::isAsFineAsTheDistance_data()
{
    QTest::addColumn<double>("hertz");
    QTest::addColumn<double>("distance");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole units") << 118e6 << 1e6 << QStringLiteral("118 MHz");
    QTest::newRow("tenths") << 118e6 << 1e5 << QStringLiteral("118.0 MHz");
    QTest::newRow("fifths") << 118.2e6 << 2e5 << QStringLiteral("118.2 MHz");
    QTest::newRow("hertz") << 118'000'001.0 << 1.0 << QStringLiteral("118.000001 MHz");
    QTest::newRow("no finer than it makes sense") << 118e6 << 1e-9 << QStringLiteral("118.000000000 MHz");
    QTest::newRow("below nothing") << -118e6 << 1e6 << QStringLiteral("-118 MHz");
    QTest::newRow("almost nothing") << -0.1 << 1e5 << QStringLiteral("0.0 MHz");
    QTest::newRow("no distance") << 118.6e6 << 0.0 << QStringLiteral("119 MHz");
}

void FrequencyTextTest::isAsFineAsTheDistance()
{
    QFETCH(double, hertz);
    QFETCH(double, distance);
    QTEST(FrequencyText(100e6, 200e6).text(hertz, distance), "text");
}

void FrequencyTextTest::isEmptyForWhatIsNoNumber()
{
    const FrequencyText text(0, 1000);
    QCOMPARE(text.text(std::numeric_limits<double>::quiet_NaN(), 1), QString());
    QCOMPARE(text.text(std::numeric_limits<double>::infinity(), 1), QString());
    QCOMPARE(text.text(1000, std::numeric_limits<double>::quiet_NaN()), QStringLiteral("1 kHz"));
}

QTEST_APPLESS_MAIN(FrequencyTextTest)
#include "tst_frequencytext.moc"
