#include <recorder/source/isotime.h>

#include <QTest>

using ZelkoRecorder::microsecondsFromIsoTime;

class TestIsoTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsMoments_data();
    void readsMoments();
    void refusesEverythingElse_data();
    void refusesEverythingElse();
};

void TestIsoTime::readsMoments_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<quint64>("microseconds");
    constexpr quint64 second = 1'624'058'271;
    QTest::newRow("the epoch") << "1970-01-01T00:00:00Z" << quint64{0};
    QTest::newRow("whole seconds") << "2021-06-18T23:17:51Z" << second * 1'000'000;
    QTest::newRow("to the microsecond") << "2021-06-18T23:17:51.163959Z" << second * 1'000'000 + 163'959;
    QTest::newRow("to the tenth") << "2021-06-18T23:17:51.1Z" << second * 1'000'000 + 100'000;
    QTest::newRow("a lone microsecond") << "2021-06-18T23:17:51.000001Z" << second * 1'000'000 + 1;
    QTest::newRow("to the nanosecond, cut off") << "2021-06-18T23:17:51.163959999Z" << second * 1'000'000 + 163'959;
    QTest::newRow("without a zone") << "2021-06-18T23:17:51" << second * 1'000'000;
    QTest::newRow("zone to the east") << "2021-06-19T01:17:51+02:00" << second * 1'000'000;
    QTest::newRow("zone to the west") << "2021-06-18T19:47:51.5-03:30" << second * 1'000'000 + 500'000;
    QTest::newRow("29 February of a leap year") << "2020-02-29T00:00:00Z" << quint64{1'582'934'400'000'000};
    QTest::newRow("an hour that summer time skips here") << "2021-03-28T02:30:00Z" << quint64{1'616'898'600'000'000};
    QTest::newRow("last moment") << "9999-12-31T23:59:59.999999Z" << quint64{253'402'300'799'999'999};
}

void TestIsoTime::readsMoments()
{
    QFETCH(const QString, text);
    QFETCH(const quint64, microseconds);
    QCOMPARE(microsecondsFromIsoTime(text), std::optional<quint64>(microseconds));
}

void TestIsoTime::refusesEverythingElse_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("no time") << "2021-06-18";
    QTest::newRow("a word") << "now";
    QTest::newRow("blank for T") << "2021-06-18 23:17:51Z";
    QTest::newRow("blank around") << " 2021-06-18T23:17:51Z";
    QTest::newRow("line end behind") << "2021-06-18T23:17:51Z\n";
    QTest::newRow("month 13") << "2021-13-18T23:17:51Z";
    QTest::newRow("29 February of an ordinary year") << "2021-02-29T00:00:00Z";
    QTest::newRow("hour 24") << "2021-06-18T24:00:00Z";
    QTest::newRow("second 60") << "2021-06-18T23:59:60Z";
    QTest::newRow("year of five digits") << "12021-06-18T23:17:51Z";
    QTest::newRow("year zero") << "0000-01-01T00:00:00Z";
    QTest::newRow("before 1970") << "1969-12-31T23:59:59.9Z";
    QTest::newRow("before 1970 by its zone") << "1970-01-01T00:00:00+01:00";
    QTest::newRow("point without digits") << "2021-06-18T23:17:51.Z";
    QTest::newRow("zone of one digit") << "2021-06-18T23:17:51+1:00";
    QTest::newRow("zone too far") << "2021-06-18T23:17:51+15:00";
    QTest::newRow("zone with 60 minutes") << "2021-06-18T23:17:51+01:60";
    QTest::newRow("digits of another script") << QStringLiteral("٢٠٢١-06-18T23:17:51Z");
    QTest::newRow("megabytes of digits") << "2021-06-18T23:17:51." + QString(1'000'000, u'1') + u'Z';
}

void TestIsoTime::refusesEverythingElse()
{
    QFETCH(const QString, text);
    QVERIFY(!microsecondsFromIsoTime(text));
}

QTEST_APPLESS_MAIN(TestIsoTime)
#include "tst_isotime.moc"
