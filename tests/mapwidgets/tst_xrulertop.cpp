#include <mapwidgets/xrulertop.h>

#include <QPainter>
#include <QtTest>

namespace {

/// Notes each tick whose text is asked for.
class Ruler final : public XRulerTop
{
public:
    using XRulerTop::tickDistance;

    QList<double> ticks()
    {
        m_ticks.clear();
        QImage image(size(), QImage::Format_ARGB32);
        QPainter painter(&image);
        paintRuler(painter);
        return m_ticks;
    }

protected:
    QString tickText(double value, double distance) const override
    {
        m_ticks << value;
        return XRulerTop::tickText(value, distance);
    }

private:
    mutable QList<double> m_ticks;
};

} // namespace

class XRulerTopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void distancesAreRound_data();
    void distancesAreRound();
    void ticksStandAtMultiplesWithinTheAxis();
    void asManyTicksAsThereIsRoomFor();
    void noTicksWithoutExtentOrRoom();
    void aRangeThatADoubleHardlyDividesEnds();
};

void XRulerTopTest::distancesAreRound_data()
{
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("distance");
    QTest::newRow("one") << 1.0 << 1.0;
    QTest::newRow("above one") << 1.1 << 2.0;
    QTest::newRow("above two") << 2.5 << 5.0;
    QTest::newRow("above five") << 7.0 << 10.0;
    QTest::newRow("small") << 0.003 << 0.005;
    QTest::newRow("large") << 1.5e6 << 2e6;
}

void XRulerTopTest::distancesAreRound()
{
    QFETCH(double, least);
    QFETCH(double, distance);
    QCOMPARE(Ruler().tickDistance(least), distance);
}

void XRulerTopTest::ticksStandAtMultiplesWithinTheAxis()
{
    Ruler ruler;
    ruler.resize(2000, 40);
    ruler.SetAxisRange(13, 87);
    const QList<double> ticks = ruler.ticks();
    QVERIFY(ticks.size() > 2);
    const double distance = ticks[1] - ticks[0];
    QVERIFY(ticks.first() >= 13 && ticks.first() - distance < 13);
    QVERIFY(ticks.last() <= 87 && ticks.last() + distance > 87);
    for (const double tick : ticks) {
        QCOMPARE(std::remainder(tick, distance) + 1, 1.0);
    }
}

void XRulerTopTest::asManyTicksAsThereIsRoomFor()
{
    Ruler ruler;
    ruler.SetAxisRange(0, 100);
    ruler.resize(300, 40);
    const qsizetype few = ruler.ticks().size();
    ruler.resize(3000, 40);
    QVERIFY(few >= 1);
    QVERIFY(ruler.ticks().size() > few);
}

void XRulerTopTest::noTicksWithoutExtentOrRoom()
{
    Ruler ruler;
    ruler.resize(300, 40);
    QCOMPARE(ruler.ticks(), QList<double>());
    ruler.SetAxisRange(5, 5);
    QCOMPARE(ruler.ticks(), QList<double>());
    ruler.SetAxisRange(0, 100);
    ruler.resize(1, 40);
    QVERIFY(ruler.ticks().size() <= 2);
}

void XRulerTopTest::aRangeThatADoubleHardlyDividesEnds()
{
    Ruler ruler;
    ruler.resize(3000, 40);
    ruler.SetAxisRange(1e300, std::nextafter(1e300, 2e300));
    QVERIFY(ruler.ticks().size() < 100);
}

QTEST_MAIN(XRulerTopTest)
#include "tst_xrulertop.moc"
