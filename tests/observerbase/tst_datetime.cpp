#include <observerbase/datetime.h>

#include <QTest>
#include <QTimeZone>

#include <limits>

using Vorn::DateTime;

namespace {
// 2021-07-01 12:00:00.123456 UTC
constexpr quint64 summer = Q_UINT64_C(1625140800123456);
} // namespace

class tst_DateTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsMicrosecondsOffForQDateTime();
    void makesMicrosecondsOfWholeMilliseconds();
    void knowsNoTimeBeforeTheEpoch_data();
    void knowsNoTimeBeforeTheEpoch();
    void printsLocalTime_data();
    void printsLocalTime();
    void takesTheLargestNumber();
    void cutsSecondsOff_data();
    void cutsSecondsOff();
    void tellsTheTimeOfTheClock();
};

void tst_DateTime::cutsMicrosecondsOffForQDateTime()
{
    const QDateTime time = DateTime::fromMicroseconds(summer);
    QCOMPARE(time.timeSpec(), Qt::LocalTime);
    QCOMPARE(time.toUTC(), QDateTime(QDate(2021, 7, 1), QTime(12, 0, 0, 123), Qt::UTC));
    QCOMPARE(DateTime::fromMicroseconds(999), DateTime::fromMicroseconds(0));
}

void tst_DateTime::makesMicrosecondsOfWholeMilliseconds()
{
    const QDateTime utc(QDate(2021, 7, 1), QTime(12, 0, 0, 123), Qt::UTC);
    QCOMPARE(DateTime::toMicroseconds(utc), Q_UINT64_C(1625140800123000));
    QCOMPARE(DateTime::toMicroseconds(utc.toLocalTime()), Q_UINT64_C(1625140800123000));
    QCOMPARE(DateTime::QDateTime2TimeStamp(utc), Q_UINT64_C(1625140800123000));
    QCOMPARE(DateTime::toMicroseconds(DateTime::fromMicroseconds(summer)), summer - 456);
}

void tst_DateTime::knowsNoTimeBeforeTheEpoch_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::newRow("invalid") << QDateTime();
    QTest::newRow("the epoch itself") << QDateTime(QDate(1970, 1, 1), QTime(0, 0), Qt::UTC);
    QTest::newRow("a millisecond before") << QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59, 999), Qt::UTC);
    QTest::newRow("centuries before") << QDateTime(QDate(1500, 1, 1), QTime(0, 0), Qt::UTC);
}

void tst_DateTime::knowsNoTimeBeforeTheEpoch()
{
    QFETCH(QDateTime, time);
    QCOMPARE(DateTime::toMicroseconds(time), Q_UINT64_C(0));
}

void tst_DateTime::printsLocalTime_data()
{
    QTest::addColumn<quint64>("microseconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("not known") << Q_UINT64_C(0) << QString();
    QTest::newRow("summer time") << summer << "2021-07-01 14:00:00";
    QTest::newRow("winter time") << Q_UINT64_C(1609502399999999) << "2021-01-01 12:59:59";
    QTest::newRow("first microsecond") << Q_UINT64_C(1) << "1970-01-01 01:00:00";
}

void tst_DateTime::printsLocalTime()
{
    QFETCH(quint64, microseconds);
    QTEST(DateTime::UTCtoLocalString(microseconds), "text");
}

void tst_DateTime::takesTheLargestNumber()
{
    const quint64 largest = std::numeric_limits<quint64>::max();
    QVERIFY(DateTime::fromMicroseconds(largest).isValid());
    QCOMPARE(DateTime::toMicroseconds(DateTime::fromMicroseconds(largest)), largest / 1000 * 1000);
    QVERIFY(!DateTime::UTCtoLocalString(largest).isEmpty());
}

void tst_DateTime::cutsSecondsOff_data()
{
    QTest::addColumn<double>("microseconds");
    QTest::addColumn<qint64>("seconds");
    QTest::newRow("nothing") << 0.0 << Q_INT64_C(0);
    QTest::newRow("just under a second") << 999999.0 << Q_INT64_C(0);
    QTest::newRow("one second") << 1e6 << Q_INT64_C(1);
    QTest::newRow("a date") << 1625140800123456.0 << Q_INT64_C(1625140800);
    QTest::newRow("negative") << -1500000.0 << Q_INT64_C(-1);
    QTest::newRow("not a number") << qQNaN() << Q_INT64_C(0);
    QTest::newRow("endless") << qInf() << Q_INT64_C(0);
    QTest::newRow("too large") << 1e30 << Q_INT64_C(0);
}

void tst_DateTime::cutsSecondsOff()
{
    QFETCH(double, microseconds);
    QTEST(DateTime::microsecToSec(microseconds), "seconds");
}

void tst_DateTime::tellsTheTimeOfTheClock()
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const quint64 now = DateTime::currentMicroseconds();
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(static_cast<qint64>(now / 1000) >= before);
    QVERIFY(static_cast<qint64>(now / 1000) <= after);
}

QTEST_GUILESS_MAIN(tst_DateTime)
#include "tst_datetime.moc"
