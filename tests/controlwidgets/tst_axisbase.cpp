#include <controlwidgets/axisbase.h>

#include <QSignalSpy>
#include <QWheelEvent>
#include <QtTest>

namespace {

void turnWheel(AxisBase& axis, int x, int notches)
{
    const QPointF place(x, 5);
    QWheelEvent event(place, axis.mapToGlobal(place), QPoint(), QPoint(0, 120 * notches), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&axis, &event);
}

} // namespace

class AxisBaseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersStandInEqualDistancesBetweenTheOffsets();
    void theNumberAtAPlaceIsHeldWithinTheAxis();
    void placesBeyondTheBordersAreHeld();
    void anAxisWithoutExtentIsHarmless_data();
    void anAxisWithoutExtentIsHarmless();
    void anAxisWithoutRoomIsHarmless();
    void tellsOfAnotherRangeOnce();
    void theSameRangeLeavesThePartThatIsShown();
    void whatIsNoNumberIsAtTheLeftBorder();
    void theWheelZoomsAroundTheMouse();
    void zoomingOutEndsAtTheWholeRange();
    void zoomingInEndsWhereNumbersRunOut();
    void withoutZoomTheWheelIsForOthers();
};

void AxisBaseTest::numbersStandInEqualDistancesBetweenTheOffsets()
{
    AxisBase axis;
    axis.resize(121, 20);
    axis.SetPixOffset(10, 10);
    axis.SetAxisRange(1000, 2000);
    QCOMPARE(axis.pixelAt(1000), 10);
    QCOMPARE(axis.pixelAt(1500), 60);
    QCOMPARE(axis.pixelAt(2000), 110);
    QCOMPARE(axis.valueAt(10), 1000.0);
    QCOMPARE(axis.valueAt(60), 1500.0);
    QCOMPARE(axis.valueAt(110), 2000.0);
}

void AxisBaseTest::theNumberAtAPlaceIsHeldWithinTheAxis()
{
    AxisBase axis;
    axis.resize(121, 20);
    axis.SetPixOffset(10, 10);
    axis.SetAxisRange(1000, 2000);
    QCOMPARE(axis.valueAt(0), 1000.0);
    QCOMPARE(axis.valueAt(-5000), 1000.0);
    QCOMPARE(axis.valueAt(5000), 2000.0);
}

void AxisBaseTest::placesBeyondTheBordersAreHeld()
{
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetAxisRange(0, 1);
    QVERIFY(axis.pixelAt(-1e300) < -1000);
    QVERIFY(axis.pixelAt(1e300) > 1000);
}

void AxisBaseTest::anAxisWithoutExtentIsHarmless_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("stop");
    QTest::newRow("a point") << 5.0 << 5.0;
    QTest::newRow("the wrong way round") << 5.0 << 4.0;
    QTest::newRow("not a number") << qQNaN() << 1.0;
    QTest::newRow("without end") << 0.0 << qInf();
}

void AxisBaseTest::anAxisWithoutExtentIsHarmless()
{
    QFETCH(double, start);
    QFETCH(double, stop);
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetPixOffset(10, 0);
    axis.SetAxisRange(0, 1);
    axis.SetAxisRange(start, stop);
    QCOMPARE(axis.axisStart(), axis.axisStop());
    QCOMPARE(axis.pixelAt(axis.axisStart()), 10);
    QCOMPARE(axis.valueAt(50), axis.axisStart());
    turnWheel(axis, 50, 1);
    QCOMPARE(axis.visibleStop(), axis.axisStop());
}

void AxisBaseTest::anAxisWithoutRoomIsHarmless()
{
    AxisBase axis;
    axis.resize(1, 20);
    axis.SetPixOffset(10, 10);
    axis.SetAxisRange(0, 1);
    QCOMPARE(axis.pixelAt(0), 10);
    QCOMPARE(axis.valueAt(10), 0.0);
}

void AxisBaseTest::tellsOfAnotherRangeOnce()
{
    AxisBase axis;
    QSignalSpy told(&axis, &AxisBase::signalAxisChanged);
    axis.SetAxisRange(0, 10);
    axis.SetAxisRange(0, 10);
    axis.SetAxisRange(0, 11);
    QCOMPARE(told.size(), 2);
}

void AxisBaseTest::theSameRangeLeavesThePartThatIsShown()
{
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetAxisRange(0, 100);
    turnWheel(axis, 25, 1);
    axis.SetAxisRange(0, 100);
    QCOMPARE(axis.visibleStop() - axis.visibleStart(), 80.0);
    axis.SetAxisRange(0, 200);
    QCOMPARE(axis.visibleStart(), 0.0);
    QCOMPARE(axis.visibleStop(), 200.0);
}

void AxisBaseTest::whatIsNoNumberIsAtTheLeftBorder()
{
    AxisBase axis;
    axis.resize(121, 20);
    axis.SetPixOffset(10, 10);
    axis.SetAxisRange(0, 100);
    QCOMPARE(axis.pixelAt(qQNaN()), 10);
    axis.SetAxisRange(-1.5e308, 1.5e308);
    QCOMPARE(axis.pixelAt(qInf()), 10);
}

void AxisBaseTest::theWheelZoomsAroundTheMouse()
{
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetAxisRange(0, 100);
    turnWheel(axis, 25, 1);
    QCOMPARE(axis.visibleStop() - axis.visibleStart(), 80.0);
    QCOMPARE(axis.pixelAt(25), 25);
    turnWheel(axis, 0, 3);
    QCOMPARE(axis.valueAt(0), axis.visibleStart());
    QVERIFY(axis.visibleStop() < 80);
}

void AxisBaseTest::zoomingOutEndsAtTheWholeRange()
{
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetAxisRange(0, 100);
    turnWheel(axis, 100, 5);
    turnWheel(axis, 0, -50);
    QCOMPARE(axis.visibleStart(), 0.0);
    QCOMPARE(axis.visibleStop(), 100.0);
}

void AxisBaseTest::zoomingInEndsWhereNumbersRunOut()
{
    AxisBase axis;
    axis.resize(101, 20);
    axis.SetAxisRange(0, 100);
    turnWheel(axis, 50, 1000);
    QVERIFY(axis.visibleStart() < axis.visibleStop());
    QVERIFY(axis.visibleStart() >= 0 && axis.visibleStop() <= 100);
}

void AxisBaseTest::withoutZoomTheWheelIsForOthers()
{
    QWidget window;
    AxisBase axis(&window);
    axis.resize(101, 20);
    axis.SetAxisRange(0, 100);
    turnWheel(axis, 50, 1);
    axis.SetAxisZoomEnable(false, false);
    QCOMPARE(axis.visibleStop() - axis.visibleStart(), 100.0);
    turnWheel(axis, 50, 1);
    QCOMPARE(axis.visibleStop() - axis.visibleStart(), 100.0);
}

QTEST_MAIN(AxisBaseTest)
#include "tst_axisbase.moc"
