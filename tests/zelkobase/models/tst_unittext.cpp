#include <zelkobase/models/unittext.h>

#include <QtTest>

using namespace ZelkoCommon;

namespace {

constexpr quint64 second = 1000000;
constexpr quint64 minute = 60 * second;
constexpr quint64 hour = 60 * minute;
constexpr quint64 largest = std::numeric_limits<quint64>::max();

} // namespace

class TestUnitText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizeHasTheUnitThatFits_data()
    {
        QTest::addColumn<quint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << quint64{0} << "0 Byte";
        QTest::newRow("last of a unit") << quint64{1023} << "1023 Byte";
        QTest::newRow("first of a unit") << quint64{1024} << "1 kByte";
        QTest::newRow("half a unit") << quint64{1536} << "1.5 kByte";
        QTest::newRow("rounded down, never up to the next") << quint64{1024 * 1024 - 1} << "1023.99 kByte";
        QTest::newRow("a hundredth with a zero") << quint64{(1ULL << 20) + (1ULL << 15)} << "1.03 MByte";
        QTest::newRow("giga") << quint64{9ULL << 28} << "2.25 GByte";
        QTest::newRow("tera") << quint64{1ULL << 40} << "1 TByte";
        QTest::newRow("the largest number") << largest << "15.99 EByte";
    }
    void sizeHasTheUnitThatFits()
    {
        QFETCH(const quint64, bytes);
        QTEST(unittext::size(bytes), "text");
    }

    void frequencyIsToldToTheHertz_data()
    {
        QTest::addColumn<quint64>("hertz");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << quint64{0} << "0 Hz";
        QTest::newRow("below a kilohertz") << quint64{999} << "999 Hz";
        QTest::newRow("whole kilohertz") << quint64{48000} << "48 kHz";
        QTest::newRow("fraction without zeros at its end") << quint64{433920000} << "433.92 MHz";
        QTest::newRow("a single hertz more") << quint64{100000001} << "100.000001 MHz";
        QTest::newRow("giga") << quint64{2400000000} << "2.4 GHz";
        QTest::newRow("more than tera") << quint64{5000000000000000} << "5000 THz";
    }
    void frequencyIsToldToTheHertz()
    {
        QFETCH(const quint64, hertz);
        QTEST(unittext::hertz(hertz), "text");
    }

    void durationIsReadAtAGlance_data()
    {
        QTest::addColumn<quint64>("microseconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << quint64{0} << "0 s";
        QTest::newRow("below a millisecond") << quint64{999} << "0 s";
        QTest::newRow("a burst") << quint64{42000} << "0.042 s";
        QTest::newRow("seconds") << 2 * second + 500000 << "2.5 s";
        QTest::newRow("last below a minute") << minute - 1 << "59.999 s";
        QTest::newRow("a minute") << minute << "00:01:00";
        QTest::newRow("last second of a day") << 24 * hour - 1 << "23:59:59";
        QTest::newRow("more than a day") << 26 * hour << "1 d 02:00:00";
    }
    void durationIsReadAtAGlance()
    {
        QFETCH(const quint64, microseconds);
        QTEST(unittext::duration(microseconds), "text");
    }

    void momentIsLocalTime()
    {
        QCOMPARE(unittext::moment(1700000000123456), QStringLiteral("2023-11-14 23:13:20"));
        QVERIFY(unittext::moment(0).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestUnitText)
#include "tst_unittext.moc"
