#include <mapwidgets/roundnumber.h>

#include <QtTest>

class RoundNumberTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isTheNextOneUp_data();
    void isTheNextOneUp();
    void partsAreRound_data();
    void partsAreRound();
};

void RoundNumberTest::isTheNextOneUp_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("round");
    QTest::newRow("one itself") << 1.0 << 1.0;
    QTest::newRow("behind one") << 1.1 << 2.0;
    QTest::newRow("behind two") << 2.1 << 5.0;
    QTest::newRow("behind five") << 5.1 << 10.0;
    QTest::newRow("a fraction") << 0.03 << 0.05;
    QTest::newRow("millions") << 1'500'000.0 << 2'000'000.0;
}

void RoundNumberTest::isTheNextOneUp()
{
    QFETCH(double, least);
    QTEST(roundNumber(least), "round");
}

void RoundNumberTest::partsAreRound_data()
{
    QTest::addColumn<double>("distance");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("part");
    QTest::newRow("a tenth") << 10.0 << 0.5 << 1.0;
    QTest::newRow("a fifth") << 10.0 << 1.5 << 2.0;
    QTest::newRow("a half") << 10.0 << 3.0 << 5.0;
    QTest::newRow("a quarter") << 20.0 << 5.0 << 5.0;
    QTest::newRow("no quarter that is not round") << 10.0 << 2.1 << 5.0;
    QTest::newRow("none") << 10.0 << 6.0 << 10.0;
}

void RoundNumberTest::partsAreRound()
{
    QFETCH(double, distance);
    QFETCH(double, least);
    QTEST(partOf(distance, least, roundNumber), "part");
}

QTEST_APPLESS_MAIN(RoundNumberTest)
#include "tst_roundnumber.moc"
