#include "menuanswer.h"
#include "patience.h"
#include "shownwaterfall.h"

#include <QSignalSpy>
#include <QWheelEvent>
#include <QtTest>

#include <cmath>
#include <limits>

using SPECTRUM_OVERVIEW::TimeRange;
using SPECTRUM_OVERVIEW::WaterfallView;
using ZelkoTest::AnswerPieces;
using ZelkoTest::ShownWaterfall;

namespace {

constexpr quint64 begin = ShownWaterfall::begin;
constexpr quint64 rowTime = 35; ///< of the waterfall that most tests use, in microseconds
constexpr quint64 extent = rowTime * ShownWaterfall::rows;

quint64 timeOf(int row)
{
    return begin + static_cast<quint64>(row) * rowTime;
}

TimeRange rows(int first, int end)
{
    return {timeOf(first), timeOf(end)};
}

/// One with all its levels, and what its user asks for.
struct UsedWaterfall : ShownWaterfall
{
    UsedWaterfall()
    {
        takeAll();
        view.image(); // until then levels are found by and by
    }

    void turn(const QPoint& place, int units, Qt::KeyboardModifiers modifiers = {})
    {
        QWheelEvent event(place, view.mapToGlobal(place), {}, {0, units}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&view, &event);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }

    /// Where the cursor is on the picture.
    int row() const { return static_cast<int>((view.cursor()->time - begin) / rowTime); }

    QList<TimeRange> asked() const
    {
        QList<TimeRange> ranges;
        for (const QList<QVariant>& arguments : zooms) {
            ranges << TimeRange{arguments.at(0).toULongLong(), arguments.at(1).toULongLong()};
        }
        return ranges;
    }

    QSignalSpy zooms{&view, &WaterfallView::si_zoomAsked};
    QSignalSpy wholes{&view, &WaterfallView::si_zoomOutAsked};
    QSignalSpy bookmarks{&view, &WaterfallView::si_bookmarkAsked};
    QSignalSpy selections{&view, &WaterfallView::si_selectionChanged};
    QSignalSpy cursors{&view, &WaterfallView::si_cursorMoved};
};

} // namespace

Q_DECLARE_METATYPE(TimeRange)

class WaterfallHandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCursorFollowsTheMouse();
    void timesAreExactWhereADoubleIsNot();
    void theCursorStaysWhereItWasLeft();
    void theCursorHearsOfItsLevel();
    void keysMoveTheCursor_data();
    void keysMoveTheCursor();
    void theFirstKeyShowsTheCursor();
    void theCursorStopsAtTheEdges();
    void oneStepIsALineWhereLinesAreHigh();
    void aDragSelects_data();
    void aDragSelects();
    void aDragMayLeaveThePicture();
    void aTrembleIsNoDrag();
    void edgesCanBeDragged_data();
    void edgesCanBeDragged();
    void aDragCanBeCancelled();
    void aClickBesideItClearsTheSelection();
    void escapeClearsTheSelection();
    void keysSelect_data();
    void keysSelect();
    void programsSelectDuringADrag();
    void theWheelAsksForAZoom_data();
    void theWheelAsksForAZoom();
    void aFineWheelAsksOnce();
    void keysAskForAZoom_data();
    void keysAskForAZoom();
    void aDoubleClickAsksForAZoom();
    void zoomsToTheSelection();
    void homeAsksForTheWhole();
    void frequenciesAreZoomedAtOnce();
    void insertAsksForABookmark();
    void theMenuOffersWhatTheKeysDo_data();
    void theMenuOffersWhatTheKeysDo();
    void theMenuTakesMoreEntries();
    void anEmptyViewTakesNothing();
};

void WaterfallHandsTest::theCursorFollowsTheMouse()
{
    UsedWaterfall used;
    QVERIFY(!used.view.cursor());
    QCOMPARE(used.view.cursorText(), QString());
    used.move(used.at(300, 150));
    const auto cursor = used.view.cursor();
    QVERIFY(cursor);
    QCOMPARE(cursor->time, timeOf(150));
    QCOMPARE(cursor->frequency, 99'500'000 + 1'000'000 * 300.5 / 512);
    QCOMPARE(cursor->level, AnswerPieces::level(75, 150) / 100.0);
    QCOMPARE(used.cursors.count(), 1);
    QCOMPARE(used.view.cursorText(), QStringLiteral("2023-11-14 23:13:20.005250 CET, 100.087 MHz, -75.5 dBFS"));
    used.move(used.at(300, 150));
    QCOMPARE(used.cursors.count(), 1);
}

void WaterfallHandsTest::timesAreExactWhereADoubleIsNot()
{
    constexpr quint64 odd = (quint64(1) << 53) + 1;
    ShownWaterfall shown(100, 256, odd, 6);
    shown.takeAll();
    for (const int row : {0, 1, 77, 199}) {
        shown.move(shown.at(5, row));
        QCOMPARE(shown.view.cursor()->time, odd + 3 * static_cast<quint64>(row));
    }
}

void WaterfallHandsTest::theCursorStaysWhereItWasLeft()
{
    UsedWaterfall used;
    used.move(used.at(300, 150));
    used.move(used.at(-20, 150));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&used.view, &leave);
    QCOMPARE(used.view.cursor()->time, timeOf(150));
    used.view.setTimeRange(begin + extent, begin + 2 * extent);
    QCOMPARE(used.view.cursor()->time, timeOf(150));
    QVERIFY(std::isnan(used.view.cursor()->level));
}

void WaterfallHandsTest::theCursorHearsOfItsLevel()
{
    ShownWaterfall shown;
    shown.take(0, 0);
    shown.move(shown.at(300, 150));
    QVERIFY(std::isnan(shown.view.cursor()->level));
    QVERIFY(shown.view.cursorText().endsWith(QStringLiteral(", no data")));
    QSignalSpy moved(&shown.view, &WaterfallView::si_cursorMoved);
    shown.take(70, 80);
    QTRY_COMPARE_WITH_TIMEOUT(moved.count(), 1, patience);
    QCOMPARE(shown.view.cursor()->level, AnswerPieces::level(75, 150) / 100.0);
}

void WaterfallHandsTest::keysMoveTheCursor_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("way");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    QTest::newRow("down a line") << Qt::Key_Down << none << QPoint(0, 2);
    QTest::newRow("up a line") << Qt::Key_Up << none << QPoint(0, -2);
    QTest::newRow("right a bin") << Qt::Key_Right << none << QPoint(2, 0);
    QTest::newRow("left a bin") << Qt::Key_Left << none << QPoint(-2, 0);
    QTest::newRow("ten lines") << Qt::Key_Down << control << QPoint(0, 20);
    QTest::newRow("ten bins") << Qt::Key_Left << control << QPoint(-20, 0);
    QTest::newRow("a tenth up") << Qt::Key_PageUp << none << QPoint(0, -20);
    QTest::newRow("a tenth down") << Qt::Key_PageDown << none << QPoint(0, 20);
}

void WaterfallHandsTest::keysMoveTheCursor()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QPoint, way);
    UsedWaterfall used;
    used.move(used.at(256, 100));
    const double frequency = used.view.cursor()->frequency;
    used.press(key, modifiers);
    QCOMPARE(used.row(), 100 + way.y());
    QVERIFY(std::abs(used.view.cursor()->frequency - frequency - way.x() * 1'000'000.0 / 512) < 1e-3);
    QVERIFY(!used.view.selection());
    QVERIFY(used.asked().isEmpty());
}

void WaterfallHandsTest::theFirstKeyShowsTheCursor()
{
    UsedWaterfall used;
    used.press(Qt::Key_Left);
    QCOMPARE(used.row(), 100);
    QVERIFY(std::abs(used.view.cursor()->frequency - 100'000'000) < 2000);
}

void WaterfallHandsTest::theCursorStopsAtTheEdges()
{
    UsedWaterfall used;
    used.move(used.at(0, 0));
    const auto corner = used.view.cursor();
    used.press(Qt::Key_Up);
    used.press(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(used.view.cursor(), corner);
    used.move(used.at(511, 199));
    const auto other = used.view.cursor();
    used.press(Qt::Key_PageDown);
    used.press(Qt::Key_Right);
    QCOMPARE(used.view.cursor(), other);
}

void WaterfallHandsTest::oneStepIsALineWhereLinesAreHigh()
{
    UsedWaterfall used;
    used.view.setTimeRange(begin, begin + 700); // ten lines, 20 rows each
    used.move(used.at(256, 30));
    QCOMPARE(used.view.cursor()->time, begin + 105);
    used.press(Qt::Key_Down);
    QCOMPARE(used.view.cursor()->time, begin + 175);
}

void WaterfallHandsTest::aDragSelects_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<TimeRange>("selected");
    QTest::newRow("downwards") << 50 << 90 << rows(50, 90);
    QTest::newRow("upwards") << 90 << 50 << rows(50, 90);
    QTest::newRow("from the top") << 0 << 60 << rows(0, 60);
}

void WaterfallHandsTest::aDragSelects()
{
    QFETCH(int, from);
    QFETCH(int, to);
    UsedWaterfall used;
    used.drag(used.at(100, from), used.at(300, to));
    QTEST(*used.view.selection(), "selected");
    QCOMPARE(used.selections.count(), 1);
    used.move(used.at(100, 150));
    QTEST(*used.view.selection(), "selected");
}

void WaterfallHandsTest::aDragMayLeaveThePicture()
{
    UsedWaterfall used;
    used.drag(used.at(100, 150), used.at(-100, 5000));
    QCOMPARE(*used.view.selection(), rows(150, 200));
    used.drag(used.at(100, 20), used.at(100, -5000));
    QCOMPARE(*used.view.selection(), rows(0, 20));
}

void WaterfallHandsTest::aTrembleIsNoDrag()
{
    UsedWaterfall used;
    used.drag(used.at(100, 50), used.at(300, 52));
    QVERIFY(!used.view.selection());
    QTest::mousePress(&used.view, Qt::RightButton, {}, used.at(100, 50));
    used.move(used.at(100, 90), Qt::RightButton);
    QVERIFY(!used.view.selection());
    QCOMPARE(used.selections.count(), 0);
}

void WaterfallHandsTest::edgesCanBeDragged_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<TimeRange>("selected");
    QTest::newRow("the start") << 50 << 30 << rows(30, 90);
    QTest::newRow("the stop") << 90 << 120 << rows(50, 120);
    QTest::newRow("almost at the stop") << 93 << 120 << rows(50, 120);
    QTest::newRow("the start beyond the stop") << 50 << 140 << rows(90, 140);
}

void WaterfallHandsTest::edgesCanBeDragged()
{
    QFETCH(int, from);
    QFETCH(int, to);
    UsedWaterfall used;
    used.view.setSelection(timeOf(50), timeOf(90));
    used.move(used.at(100, from));
    QCOMPARE(used.view.QWidget::cursor().shape(), Qt::SizeVerCursor);
    used.drag(used.at(100, from), used.at(100, to));
    QTEST(*used.view.selection(), "selected");
    used.move(used.at(100, 180));
    QCOMPARE(used.view.QWidget::cursor().shape(), Qt::CrossCursor);
}

void WaterfallHandsTest::aDragCanBeCancelled()
{
    UsedWaterfall used;
    used.view.setSelection(timeOf(50), timeOf(90));
    QTest::mousePress(&used.view, Qt::LeftButton, {}, used.at(100, 90));
    used.move(used.at(100, 150), Qt::LeftButton);
    QCOMPARE(*used.view.selection(), rows(50, 150));
    used.press(Qt::Key_Escape);
    QCOMPARE(*used.view.selection(), rows(50, 90));
    used.move(used.at(100, 170), Qt::LeftButton);
    QTest::mouseRelease(&used.view, Qt::LeftButton, {}, used.at(100, 170));
    QCOMPARE(*used.view.selection(), rows(50, 90));
}

void WaterfallHandsTest::aClickBesideItClearsTheSelection()
{
    UsedWaterfall used;
    used.view.setSelection(timeOf(50), timeOf(90));
    QTest::mouseClick(&used.view, Qt::LeftButton, {}, used.at(100, 70));
    QVERIFY(used.view.selection());
    QTest::mouseClick(&used.view, Qt::LeftButton, {}, used.at(100, 120));
    QVERIFY(!used.view.selection());
}

void WaterfallHandsTest::escapeClearsTheSelection()
{
    UsedWaterfall used;
    used.view.setSelection(timeOf(50), timeOf(90));
    used.press(Qt::Key_Escape);
    QVERIFY(!used.view.selection());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&used.view, &escape);
    QVERIFY2(!escape.isAccepted(), "a window could not be closed by it");
}

void WaterfallHandsTest::keysSelect_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<TimeRange>("selected");
    QTest::newRow("downwards") << QList{Qt::Key_Down, Qt::Key_Down} << rows(100, 105);
    QTest::newRow("upwards") << QList{Qt::Key_Up} << rows(98, 101);
    QTest::newRow("there and back") << QList{Qt::Key_PageDown, Qt::Key_Up} << rows(100, 119);
    QTest::newRow("beyond where it began") << QList{Qt::Key_Down, Qt::Key_Up, Qt::Key_Up} << rows(98, 101);
    QTest::newRow("to the end") << QList<Qt::Key>(20, Qt::Key_PageDown) << rows(100, 200);
}

void WaterfallHandsTest::keysSelect()
{
    QFETCH(QList<Qt::Key>, keys);
    UsedWaterfall used;
    used.move(used.at(256, 100));
    for (const Qt::Key key : keys) {
        used.press(key, Qt::ShiftModifier);
    }
    QTEST(*used.view.selection(), "selected");
    used.press(Qt::Key_Left);
    QTEST(*used.view.selection(), "selected");
}

void WaterfallHandsTest::programsSelectDuringADrag()
{
    UsedWaterfall used;
    QTest::mousePress(&used.view, Qt::LeftButton, {}, used.at(100, 20));
    used.move(used.at(100, 60), Qt::LeftButton);
    used.view.setSelection(timeOf(50), timeOf(90));
    used.move(used.at(100, 150), Qt::LeftButton);
    QCOMPARE(*used.view.selection(), rows(50, 90));
    QTest::mouseRelease(&used.view, Qt::LeftButton, {}, used.at(100, 150));
    QCOMPARE(*used.view.selection(), rows(50, 90));
}

void WaterfallHandsTest::theWheelAsksForAZoom_data()
{
    QTest::addColumn<int>("units");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<TimeRange>("asked");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    QTest::newRow("in") << 120 << none << rows(25, 125);
    QTest::newRow("in by two steps") << 240 << none << TimeRange{begin + 1313, begin + 3063};
    QTest::newRow("out") << -120 << none << TimeRange{begin - 50 * rowTime, begin + 350 * rowTime};
    QTest::newRow("later") << -120 << shift << rows(25, 225);
    QTest::newRow("earlier") << 120 << shift << TimeRange{begin - 25 * rowTime, timeOf(175)};
}

void WaterfallHandsTest::theWheelAsksForAZoom()
{
    QFETCH(int, units);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(TimeRange, asked);
    UsedWaterfall used;
    used.turn(used.at(100, 50), units, modifiers);
    QCOMPARE(used.asked().size(), 1);
    QCOMPARE(used.asked().constFirst(), asked);
    QCOMPARE(used.view.timeRange(), (TimeRange{begin, begin + extent}));
}

void WaterfallHandsTest::aFineWheelAsksOnce()
{
    UsedWaterfall used;
    for (int i = 0; i < 14; ++i) {
        used.turn(used.at(100, 50), 8);
    }
    QVERIFY(used.asked().isEmpty());
    used.turn(used.at(100, 50), 8);
    QCOMPARE(used.asked(), QList{rows(25, 125)});
    used.turn(used.at(-20, 50), 120);
    QCOMPARE(used.asked().size(), 1);
}

void WaterfallHandsTest::keysAskForAZoom_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<TimeRange>("asked");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    QTest::newRow("in") << Qt::Key_Plus << none << rows(50, 150);
    QTest::newRow("out") << Qt::Key_Minus << none << TimeRange{begin - 100 * rowTime, timeOf(300)};
    QTest::newRow("later") << Qt::Key_PageDown << control << rows(100, 300);
    QTest::newRow("earlier") << Qt::Key_PageUp << control << TimeRange{begin - 100 * rowTime, timeOf(100)};
}

void WaterfallHandsTest::keysAskForAZoom()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(TimeRange, asked);
    UsedWaterfall used;
    used.press(key, modifiers);
    QCOMPARE(used.asked(), QList{asked});
    used.move(used.at(100, 0));
    used.press(Qt::Key_Plus);
    QCOMPARE(used.asked().constLast(), rows(0, 100));
}

void WaterfallHandsTest::aDoubleClickAsksForAZoom()
{
    UsedWaterfall used;
    QTest::mouseDClick(&used.view, Qt::LeftButton, {}, used.at(100, 100));
    QCOMPARE(used.asked(), QList{rows(75, 125)});
    QTest::mouseDClick(&used.view, Qt::RightButton, {}, used.at(100, 100));
    QTest::mouseDClick(&used.view, Qt::LeftButton, {}, used.at(100, -10));
    QCOMPARE(used.asked().size(), 1);
}

void WaterfallHandsTest::zoomsToTheSelection()
{
    UsedWaterfall used;
    used.press(Qt::Key_Return);
    QVERIFY(used.asked().isEmpty());
    used.drag(used.at(100, 50), used.at(100, 90));
    used.press(Qt::Key_Return);
    QTest::mouseClick(&used.view, Qt::LeftButton, {}, used.at(100, 70));
    QTest::mouseDClick(&used.view, Qt::LeftButton, {}, used.at(100, 70));
    QCOMPARE(used.asked(), QList({rows(50, 90), rows(50, 90)}));
}

void WaterfallHandsTest::homeAsksForTheWhole()
{
    UsedWaterfall used;
    used.view.setFrequencyRange(99'600'000, 99'700'000);
    used.press(Qt::Key_Home);
    QCOMPARE(used.wholes.count(), 1);
    QCOMPARE(used.painted(511, 20), used.colourOf(AnswerPieces::level(10, 255)));
    QVERIFY(used.asked().isEmpty());
}

void WaterfallHandsTest::frequenciesAreZoomedAtOnce()
{
    UsedWaterfall used;
    used.turn(used.at(0, 50), 120, Qt::ControlModifier);
    QCOMPARE(used.painted(509, 20), used.colourOf(AnswerPieces::level(10, 127)));
    used.turn(used.at(0, 50), -240, Qt::ControlModifier);
    QCOMPARE(used.painted(511, 20), used.colourOf(AnswerPieces::level(10, 255)));
    used.press(Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(used.painted(2, 20), used.colourOf(AnswerPieces::level(10, 64)));
    QVERIFY(used.asked().isEmpty());
}

void WaterfallHandsTest::insertAsksForABookmark()
{
    UsedWaterfall used;
    used.press(Qt::Key_Insert);
    QCOMPARE(used.bookmarks.count(), 0);
    used.move(used.at(100, 33));
    used.press(Qt::Key_Insert);
    QCOMPARE(used.bookmarks.count(), 1);
    QCOMPARE(used.bookmarks.constFirst().constFirst().toULongLong(), timeOf(33));
}

void WaterfallHandsTest::theMenuOffersWhatTheKeysDo_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("done");
    QTest::newRow("zoom in") << QStringLiteral("ZoomIn") << QStringLiteral("zoom 20 120");
    QTest::newRow("zoom out") << QStringLiteral("ZoomOut") << QStringLiteral("zoom -40 360");
    QTest::newRow("zoom to the selection") << QStringLiteral("ZoomToSelection") << QStringLiteral("zoom 50 90");
    QTest::newRow("the whole") << QStringLiteral("ShowAll") << QStringLiteral("whole");
    QTest::newRow("a bookmark") << QStringLiteral("SetBookmark") << QStringLiteral("bookmark 40");
    QTest::newRow("no selection") << QStringLiteral("ClearSelection") << QStringLiteral("cleared");
}

void WaterfallHandsTest::theMenuOffersWhatTheKeysDo()
{
    QFETCH(QString, name);
    UsedWaterfall used;
    used.view.setSelection(timeOf(50), timeOf(90));
    QString done;
    const auto rowOf = [](quint64 time) { return static_cast<qint64>(time - begin) / static_cast<qint64>(rowTime); };
    connect(&used.view, &WaterfallView::si_zoomAsked, this, [&](quint64 start, quint64 stop) {
        done = QStringLiteral("zoom %1 %2").arg(rowOf(start)).arg(rowOf(stop));
    });
    connect(&used.view, &WaterfallView::si_zoomOutAsked, this, [&] { done = QStringLiteral("whole"); });
    connect(&used.view, &WaterfallView::si_bookmarkAsked, this,
            [&](quint64 time) { done = QStringLiteral("bookmark %1").arg(rowOf(time)); });
    connect(&used.view, &WaterfallView::si_selectionChanged, this, [&] { done = QStringLiteral("cleared"); });
    const MenuAnswer answer([&](QMenu& menu) { MenuAnswer::click(menu, menu.findChild<QAction*>(name)); });
    QContextMenuEvent event(QContextMenuEvent::Mouse, used.at(100, 40), used.view.mapToGlobal(used.at(100, 40)));
    QCoreApplication::sendEvent(&used.view, &event);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QTEST(done, "done");
}

void WaterfallHandsTest::theMenuTakesMoreEntries()
{
    UsedWaterfall used;
    connect(&used.view, &WaterfallView::si_menuAboutToShow, this,
            [](QMenu* menu) { menu->addAction(QStringLiteral("Save picture")); });
    QStringList texts;
    const MenuAnswer answer([&](QMenu& menu) { texts = MenuAnswer::texts(menu); });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&used.view, &event);
    QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    QCOMPARE(texts, QStringList({QStringLiteral("Zoom in here\t+"), QStringLiteral("Zoom out\t-"),
                                 QStringLiteral("Show the whole record\tHome"), QStringLiteral("-"),
                                 QStringLiteral("Set bookmark here\tIns"), QStringLiteral("Save picture")}));
}

void WaterfallHandsTest::anEmptyViewTakesNothing()
{
    WaterfallView view;
    view.resize(800, 400);
    view.show();
    QSignalSpy zooms(&view, &WaterfallView::si_zoomAsked);
    QSignalSpy cursors(&view, &WaterfallView::si_cursorMoved);
    const QPoint middle = view.rect().center();
    QTest::mouseClick(&view, Qt::LeftButton, {}, middle);
    QTest::mouseDClick(&view, Qt::LeftButton, {}, middle);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Plus, Qt::Key_Insert, Qt::Key_Return, Qt::Key_Escape}) {
        QTest::keyClick(&view, key);
    }
    QContextMenuEvent event(QContextMenuEvent::Mouse, middle, view.mapToGlobal(middle));
    QCoreApplication::sendEvent(&view, &event);
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    QCOMPARE(zooms.count(), 0);
    QCOMPARE(cursors.count(), 0);
    QVERIFY(!view.selection() && !view.cursor());
}

QTEST_MAIN(WaterfallHandsTest)
#include "tst_waterfallhands.moc"
