#include <mapwidgets/xmarkertop.h>

#include "moment.h"

#include <controlwidgets/axisbase.h>
#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QWheelEvent>
#include <QtTest>

#include <deque>
#include <functional>
#include <limits>

namespace {

/// Markers on an axis of the numbers from 0 to 100, one a pixel.
class MarkedAxis final : public AxisBase, public XMarkerTop
{
public:
    using XMarkerTop::addMarker;
    using XMarkerTop::nextMarker;

    MarkedAxis()
        : XMarkerTop(static_cast<AxisBase&>(*this))
    {
        resize(101, 40);
        SetAxisRange(0, 100);
    }

    /// One that a user may move.
    Marker& add(int number, const QString& path)
    {
        Marker& marker = addMarker(number);
        marker.SetValueTreePath(path);
        marker.SetMoveable(true);
        return marker;
    }

    /// As a user does who wants to see a part around the middle.
    void zoomIn()
    {
        const QPointF middle = rect().center();
        QWheelEvent event(middle, mapToGlobal(middle), {}, {0, 480}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(static_cast<AxisBase*>(this), &event);
    }

    /// What users have moved since this was called last, as number and place.
    QList<std::pair<int, double>> takeMoves() { return std::exchange(m_moves, {}); }

protected:
    void markerMovedByUser(int number, double position) override { m_moves.emplaceBack(number, position); }
    void markerDropped(int) override {}
    int markerTop() const override { return 0; }
    bool isFlag(int number) const override { return number >= 10; }
    QColor markerColor(int) const override { return Qt::black; }
    double keyStep(double least) const override { return least; }

private:
    QList<std::pair<int, double>> m_moves;
};

struct Site
{
    MarkedAxis& put(std::initializer_list<std::pair<int, int>> places)
    {
        for (const auto& [number, place] : places) {
            axis.add(number, values.emplace_back(place).path());
        }
        return axis;
    }
    double placeOf(int number) const { return axis.GetMarker(number)->GetPosition(); }

    std::deque<Moment> values;
    MarkedAxis axis;
};

void lock(const Site& site)
{
    Tree::Instance()->Find<ValueNumeric<double>>(site.values.front().path())->SetState(TValueState::Locked, nullptr);
}

using Change = std::function<void(Site&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class XMarkerTopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesWithinTheAxis_data();
    void movesWithinTheAxis();
    void movesToNoPlaceThatIsNone();
    void movesByPixels_data();
    void movesByPixels();
    void aStepIsSmallerWhereAPartIsShown();
    void showsThePlaceThatItMovesTo();
    void movesWhatAUserMayMoveOnly_data();
    void movesWhatAUserMayMoveOnly();
    void findsTheNextMarker_data();
    void findsTheNextMarker();
    void passesOverWhatIsNotSeen();
};

void XMarkerTopTest::movesWithinTheAxis_data()
{
    QTest::addColumn<double>("place");
    QTest::addColumn<double>("reached");
    QTest::newRow("inside") << 30.0 << 30.0;
    QTest::newRow("to the start") << 0.0 << 0.0;
    QTest::newRow("to the end") << 100.0 << 100.0;
    QTest::newRow("before the start") << -5.0 << 0.0;
    QTest::newRow("behind the end") << 100.5 << 100.0;
    QTest::newRow("at no end") << qInf() << 100.0;
    QTest::newRow("at no beginning") << -qInf() << 0.0;
}

void XMarkerTopTest::movesWithinTheAxis()
{
    QFETCH(const double, place);
    QFETCH(const double, reached);
    Site site;
    QVERIFY(site.put({{1, 50}}).moveTo(1, place));
    QCOMPARE(site.placeOf(1), reached);
    QCOMPARE(site.axis.takeMoves(), (QList<std::pair<int, double>>{{1, reached}}));
}

void XMarkerTopTest::movesToNoPlaceThatIsNone()
{
    Site site;
    QVERIFY(!site.put({{1, 50}}).moveTo(1, qQNaN()));
    QCOMPARE(site.placeOf(1), 50.0);
    QVERIFY(site.axis.takeMoves().isEmpty());
}

void XMarkerTopTest::movesByPixels_data()
{
    QTest::addColumn<int>("steps");
    QTest::addColumn<double>("reached");
    QTest::newRow("one on") << 1 << 51.0;
    QTest::newRow("three back") << -3 << 47.0;
    QTest::newRow("none") << 0 << 50.0;
    QTest::newRow("to the end") << 50 << 100.0;
    QTest::newRow("behind the end") << 51 << 100.0;
    QTest::newRow("before the start") << -51 << 0.0;
    QTest::newRow("as many as there are") << std::numeric_limits<int>::max() << 100.0;
    QTest::newRow("as many back as there are") << std::numeric_limits<int>::min() << 0.0;
}

void XMarkerTopTest::movesByPixels()
{
    QFETCH(const int, steps);
    QFETCH(const double, reached);
    Site site;
    QVERIFY(site.put({{1, 50}}).moveBySteps(1, steps));
    QCOMPARE(site.placeOf(1), reached);
}

void XMarkerTopTest::aStepIsSmallerWhereAPartIsShown()
{
    Site site;
    MarkedAxis& axis = site.put({{1, 50}});
    axis.zoomIn();
    const double part = axis.visibleStop() - axis.visibleStart();
    QVERIFY(part < 50);
    QVERIFY(axis.moveBySteps(1, 10));
    QCOMPARE(site.placeOf(1), std::round(50 + part / 10));
}

void XMarkerTopTest::showsThePlaceThatItMovesTo()
{
    Site site;
    MarkedAxis& axis = site.put({{1, 50}});
    axis.zoomIn();
    QVERIFY(axis.visibleStop() < 90);
    QVERIFY(axis.moveTo(1, 90));
    QVERIFY(axis.visibleStart() <= 90 && axis.visibleStop() >= 90);
}

void XMarkerTopTest::movesWhatAUserMayMoveOnly_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("a hidden one") << Change([](Site& site) { site.axis.GetMarker(1)->SetShowMarker(false); });
    QTest::newRow("a fixed one") << Change([](Site& site) { site.axis.GetMarker(1)->SetMoveable(false); });
    QTest::newRow("a disabled one") << Change([](Site& site) { site.axis.SetEnableMarker(1, false); });
    QTest::newRow("one that is locked") << Change(lock);
    QTest::newRow("one on an axis without extent") << Change([](Site& site) { site.axis.SetAxisRange(50, 50); });
}

void XMarkerTopTest::movesWhatAUserMayMoveOnly()
{
    QFETCH(const Change, change);
    Site site;
    MarkedAxis& axis = site.put({{1, 50}});
    QVERIFY(!axis.moveTo(2, 30));
    QVERIFY(!axis.moveBySteps(2, 1));
    change(site);
    QVERIFY(!axis.moveTo(1, 30));
    QVERIFY(!axis.moveBySteps(1, 1));
    QCOMPARE(site.placeOf(1), 50.0);
    QVERIFY(axis.takeMoves().isEmpty());
}

void XMarkerTopTest::findsTheNextMarker_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("behind");
    QTest::newRow("at the start of the axis") << 1 << 0 << 5;
    QTest::newRow("the first of three in one place") << 5 << 1 << 6;
    QTest::newRow("the second of them") << 6 << 5 << 12;
    QTest::newRow("the last of them") << 12 << 6 << 4;
    QTest::newRow("behind a gap") << 4 << 12 << 11;
    QTest::newRow("at the end of the axis") << 11 << 4 << 0;
    QTest::newRow("behind the axis") << 2 << 11 << 0;
}

void XMarkerTopTest::findsTheNextMarker()
{
    QFETCH(const int, from);
    Site site;
    const MarkedAxis& axis = site.put({{1, 0}, {2, 120}, {3, 130}, {4, 80}, {5, 50}, {6, 50}, {11, 100}, {12, 50}});
    QTEST(axis.nextMarker(from, -1), "before");
    QTEST(axis.nextMarker(from, 1), "behind");
}

void XMarkerTopTest::passesOverWhatIsNotSeen()
{
    Site site;
    MarkedAxis& axis = site.put({{1, 20}, {2, 40}, {3, 60}});
    axis.addMarker(4);
    axis.GetMarker(2)->SetShowMarker(false);
    QCOMPARE(axis.nextMarker(1, 1), 3);
    QCOMPARE(axis.nextMarker(3, -1), 1);
    QCOMPARE(axis.nextMarker(1, -1), 0);
    QCOMPARE(axis.nextMarker(2, -1), 1);
    QCOMPARE(axis.nextMarker(2, 1), 3);
}

QTEST_MAIN(XMarkerTopTest)
#include "tst_xmarkertop.moc"
