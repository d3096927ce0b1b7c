#include <zelkobase/data/filtervalue.h>

#include <QtTest>

#include <limits>

using namespace ZELKO_XML;

class FilterValueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsOfNumbers_data();
    void textsOfNumbers();
    void whatIsNoNumber_data();
    void whatIsNoNumber();
    void wholeNumbersKeepAllTheirDigits();
    void timesAreWrittenToTheMillisecond();
    void anInvalidTimeIsEmpty();
    void whatIsNoTime_data();
    void whatIsNoTime();
    void momentsAreMillisecondsSinceTheEpoch();
    void whatIsNoMoment_data();
    void whatIsNoMoment();
};

void FilterValueTest::textsOfNumbers_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("back");

    QTest::newRow("nothing") << 0.0 << QStringLiteral("0") << 0.0;
    QTest::newRow("a fraction") << -0.25 << QStringLiteral("-0.25") << -0.25;
    QTest::newRow("six digits are kept") << 123456.0 << QStringLiteral("123456") << 123456.0;
    QTest::newRow("the seventh is lost") << 1234567.0 << QStringLiteral("1.23457e+06") << 1234570.0;
    QTest::newRow("of nine, three are lost") << 123456789.0 << QStringLiteral("1.23457e+08") << 123457000.0;
    QTest::newRow("a megabyte") << 1048576.0 << QStringLiteral("1.04858e+06") << 1048580.0;
    QTest::newRow("the infinite") << std::numeric_limits<double>::infinity() << QStringLiteral("inf")
                                  << std::numeric_limits<double>::infinity();
}

void FilterValueTest::textsOfNumbers()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QFETCH(double, back);
    QCOMPARE(filterValueText(value), text);
    double read = 1;
    QVERIFY(parseFilterValue(text, read));
    QCOMPARE(read, back);
}

void FilterValueTest::whatIsNoNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a word") << QStringLiteral("abc");
    QTest::newRow("a number and more") << QStringLiteral("12 MHz");
    QTest::newRow("a number in another country") << QStringLiteral("1,5");
}

void FilterValueTest::whatIsNoNumber()
{
    QFETCH(QString, text);
    double number = 1;
    QVERIFY(!parseFilterValue(text, number));
    QCOMPARE(number, 0.0);
    int whole = 1;
    QVERIFY(!parseFilterValue(text, whole));
    QCOMPARE(whole, 0);
    double huge = 1;
    QVERIFY(!parseFilterValue(QStringLiteral("1e999"), huge));
    QVERIFY(!parseFilterValue(QStringLiteral("2147483648"), whole));
}

void FilterValueTest::wholeNumbersKeepAllTheirDigits()
{
    for (const int value : {0, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        int back = 1;
        QVERIFY(parseFilterValue(filterValueText(value), back));
        QCOMPARE(back, value);
    }
    QCOMPARE(filterValueText(1234567), QStringLiteral("1234567"));
}

void FilterValueTest::timesAreWrittenToTheMillisecond()
{
    const QTime time(23, 5, 9, 7);
    QCOMPARE(filterValueText(time), QStringLiteral("23:05:09.007"));
    QTime back;
    QVERIFY(parseFilterValue(filterValueText(time), back));
    QCOMPARE(back, time);
}

void FilterValueTest::anInvalidTimeIsEmpty()
{
    QCOMPARE(filterValueText(QTime()), QString());
    QTime back(1, 2);
    QVERIFY(parseFilterValue(QString(), back));
    QVERIFY(!back.isValid());
}

void FilterValueTest::whatIsNoTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a number") << QStringLiteral("5");
    QTest::newRow("an hour that is not there") << QStringLiteral("24:00:00.000");
    QTest::newRow("without milliseconds") << QStringLiteral("12:00:00");
    QTest::newRow("with more behind it") << QStringLiteral("12:00:00.000 h");
}

void FilterValueTest::whatIsNoTime()
{
    QFETCH(QString, text);
    QTime time(1, 2);
    QVERIFY(!parseFilterValue(text, time));
    QVERIFY(!time.isValid());
}

void FilterValueTest::momentsAreMillisecondsSinceTheEpoch()
{
    const QDateTime moment(QDate(2026, 1, 2), QTime(3, 4, 5, 678), Qt::UTC);
    QCOMPARE(filterValueText(moment), QStringLiteral("1767323045678"));
    QDateTime back;
    QVERIFY(parseFilterValue(filterValueText(moment), back));
    QCOMPARE(back, moment);
    QVERIFY(parseFilterValue(QStringLiteral("-1"), back));
    QCOMPARE(back.toMSecsSinceEpoch(), -1);
    QCOMPARE(filterValueText(QDateTime()), QStringLiteral("0"));
}

void FilterValueTest::whatIsNoMoment_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a date") << QStringLiteral("2026-01-02");
    QTest::newRow("with a fraction") << QStringLiteral("12.5");
    QTest::newRow("beyond 64 bits") << QStringLiteral("9223372036854775808");
}

void FilterValueTest::whatIsNoMoment()
{
    QFETCH(QString, text);
    QDateTime moment;
    QVERIFY(!parseFilterValue(text, moment));
    QCOMPARE(moment.toMSecsSinceEpoch(), 0);
}

QTEST_APPLESS_MAIN(FilterValueTest)
#include "tst_filtervalue.moc"
