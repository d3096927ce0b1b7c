#include <console/window/timezonetext.h>

#include <QDateTime>
#include <QTest>
#include <QTimeZone>

class TestTimeZoneText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesZoneAndOffset_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("text");
        QTest::newRow("winter") << QByteArray("Europe/Berlin") << QDate(2026, 1, 15)
                                << QStringLiteral("Times in Europe/Berlin (now UTC+01:00)");
        QTest::newRow("summer") << QByteArray("Europe/Berlin") << QDate(2026, 7, 15)
                                << QStringLiteral("Times in Europe/Berlin (now UTC+02:00)");
        QTest::newRow("half an hour") << QByteArray("Asia/Kolkata") << QDate(2026, 7, 15)
                                      << QStringLiteral("Times in Asia/Kolkata (now UTC+05:30)");
        QTest::newRow("west") << QByteArray("America/New_York") << QDate(2026, 1, 15)
                              << QStringLiteral("Times in America/New_York (now UTC-05:00)");
        QTest::newRow("UTC says it itself")
            << QByteArray("Etc/UTC") << QDate(2026, 1, 15) << QStringLiteral("Times in Etc/UTC");
    }

    void namesZoneAndOffset()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QDate, date);
        QTEST(ZelkoConsole::timeZoneText(QTimeZone(zone), QDateTime(date, QTime(12, 0), Qt::UTC)), "text");
    }
};

QTEST_GUILESS_MAIN(TestTimeZoneText)
#include "tst_timezonetext.moc"
