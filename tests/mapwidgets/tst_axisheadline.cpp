#include <mapwidgets/axisheadline.h>

#include <QApplication>
#include <QFontMetrics>
#include <QtTest>

class AxisHeadlineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatHasRoom_data();
    void showsWhatHasRoom();
};

void AxisHeadlineTest::showsWhatHasRoom_data()
{
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("reading");
    const QString spare = QStringLiteral("mmmmm");
    const QString longDate = QStringLiteral("2026-05-04 CEST");
    QTest::newRow("everything") << longDate + QStringLiteral("Tower 10:11:12.123456") + spare << longDate
                                << QStringLiteral("Tower 10:11:12.123456");
    QTest::newRow("a shorter reading") << longDate + QStringLiteral("10:11:12") + spare << longDate
                                       << QStringLiteral("10:11:12");
    QTest::newRow("a shorter date") << QStringLiteral("CEST10:11:12") + spare << QStringLiteral("CEST")
                                    << QStringLiteral("10:11:12");
    QTest::newRow("the zone alone") << QStringLiteral("CESTm") << QStringLiteral("CEST") << QString();
    QTest::newRow("nothing") << QString() << QStringLiteral("CEST") << QString();
}

void AxisHeadlineTest::showsWhatHasRoom()
{
    QFETCH(QString, room);
    const AxisHeadline headline{{QStringLiteral("2026-05-04 CEST"), QStringLiteral("CEST")},
                                {QStringLiteral("Tower 10:11:12.123456"), QStringLiteral("10:11:12")},
                                Qt::red};
    const QFontMetrics metrics(QApplication::font());
    const auto chosen = headline.chosen(metrics, metrics.horizontalAdvance(room));
    QTEST(chosen.date, "date");
    QTEST(chosen.reading, "reading");
    const auto without = AxisHeadline{headline.dates, {}, Qt::red}.chosen(metrics, 1000);
    QCOMPARE(without.date, headline.dates.constFirst());
    QCOMPARE(without.reading, QString());
}

QTEST_MAIN(AxisHeadlineTest)
#include "tst_axisheadline.moc"
