#include "patience.h"
#include "shownwaterfall.h"

#include <QPaintEvent>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

using SPECTRUM_OVERVIEW::OverviewLevels;
using SPECTRUM_OVERVIEW::TimeRange;
using SPECTRUM_OVERVIEW::WaterfallCursor;
using SPECTRUM_OVERVIEW::WaterfallView;
using ZelkoTest::AnswerPieces;
using ZelkoTest::ShownWaterfall;

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr quint64 farthest = std::numeric_limits<quint64>::max();

ZELKO_XML::BookmarkEntry bookmark(quint64 time, const QString& text)
{
    ZELKO_XML::BookmarkEntry entry;
    entry.SetTimestamp(time);
    entry.SetBookmark(text);
    return entry;
}

/// What a widget has been asked to paint.
class PaintedRegion : public QObject
{
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }

    QRegion take() { return std::exchange(m_region, QRegion()); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            m_region += static_cast<QPaintEvent*>(event)->region();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QRegion m_region;
};

/// Whether the lines 60 and 61, of two rows each, are painted at last, and nothing that is not beside them.
bool paintsOnlyTheNewRows(ShownWaterfall& shown, PaintedRegion& painted)
{
    const QPoint place = shown.at(0, 121);
    const QRect rows(shown.at(0, 120 - 4), QSize(ShownWaterfall::columns, 4 + 8));
    QRegion region;
    const bool isPainted = QTest::qWaitFor([&] { return (region += painted.take()).contains(place); }, patience);
    return isPainted && QRegion(rows).united(region) == QRegion(rows);
}

} // namespace

class WaterfallViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEachLevelInItsColour_data();
    void showsEachLevelInItsColour();
    void showsAtLastWhatItHas();
    void keepsTheStrongestOfWhatFallsOnAPixel();
    void tellsWhatHasNotArrived_data();
    void tellsWhatHasNotArrived();
    void paintsTheRowsOfNewLinesOnly();
    void paintsNothingForTheSameColours();
    void showsNewColoursOfTheSameLevels();
    void zoomsIntoWhatItHas();
    void showsTheCoarsePictureUntilFinerLinesArrive();
    void forgetsTheLevelsThatAreTakenAway();
    void forgetsAnotherBand();
    void showsAPartOfTheFrequencies();
    void cutsFrequenciesToTheBand();
    void refusesRangesThatAreNone();
    void hasTheRangeOfItsFirstLevels();
    void forgetsItsRange();
    void paintsBookmarksOverTheirTimes();
    void tellsTheTextsOfBookmarks_data();
    void tellsTheTextsOfBookmarks();
    void paintsTheSelectionAsItIs();
    void givesAnImageWithoutTheCursor();
    void saysWhyItIsEmpty();
    void isEmptyUntilSomethingComes();
    void livesWithAbsurdTimes_data();
    void livesWithAbsurdTimes();
    void livesWithoutASpan();
    void livesWithoutRoom();
    void followsItsPalette();
};

void WaterfallViewTest::showsEachLevelInItsColour_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("bin");
    QTest::newRow("the first of all") << 0 << 0;
    QTest::newRow("the last frequency") << 0 << 255;
    QTest::newRow("the last line") << 99 << 0;
    QTest::newRow("the last of all") << 99 << 255;
    QTest::newRow("one in the middle") << 42 << 97;
}

void WaterfallViewTest::showsEachLevelInItsColour()
{
    QFETCH(int, line);
    QFETCH(int, bin);
    ShownWaterfall shown;
    shown.takeAll();
    const QRgb expected = shown.colourOf(AnswerPieces::level(line, bin));
    for (const QPoint part : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
        QCOMPARE(shown.painted(2 * bin + part.x(), 2 * line + part.y()), expected);
    }
}

void WaterfallViewTest::showsAtLastWhatItHas()
{
    ShownWaterfall shown;
    shown.takeAll();
    const QPoint place = shown.at(300, 150);
    QTRY_COMPARE_WITH_TIMEOUT(shown.view.grab().toImage().pixel(place), shown.colourOf(AnswerPieces::level(75, 150)),
                              patience);
}

void WaterfallViewTest::keepsTheStrongestOfWhatFallsOnAPixel()
{
    ShownWaterfall shown(2000, 2048, ShownWaterfall::begin, 50);
    for (int line = 0; line < 2000; ++line) {
        for (int number = 0; number < shown.answer.piecesOfALine(); ++number) {
            auto piece = shown.answer.piece(line, number);
            std::fill(piece.levels.begin(), piece.levels.end(), qint16(-9000));
            if (line == 1234 && number == 2) {
                piece.levels[301] = -1000;
            }
            QVERIFY(shown.levels.take(piece));
        }
    }
    shown.view.linesArrived(0, 1999);
    const QImage image = shown.view.image();
    const QRgb strong = shown.colourOf(-1000);
    const QRgb weak = shown.colourOf(-9000);
    int bright = 0;
    for (int row = 0; row < ShownWaterfall::rows; ++row) {
        for (int column = 0; column < ShownWaterfall::columns; ++column) {
            const bool isThere = column == (2 * 512 + 301) / 4 && row == 123;
            bright += isThere ? 1 : 0;
            QCOMPARE(image.pixel(shown.at(column, row)), isThere ? strong : weak);
        }
    }
    QCOMPARE(bright, 1);
}

void WaterfallViewTest::tellsWhatHasNotArrived_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("on a light ground") << QPalette(Qt::white);
    QTest::newRow("on a dark ground") << QPalette(Qt::black);
}

void WaterfallViewTest::tellsWhatHasNotArrived()
{
    QFETCH(QPalette, palette);
    ShownWaterfall shown;
    shown.view.setPalette(palette);
    shown.take(0, 19);
    shown.take(30, 30);
    QCOMPARE(shown.painted(7, 39), shown.colourOf(AnswerPieces::level(19, 3)));
    QCOMPARE(shown.painted(7, 40), shown.missing());
    QCOMPARE(shown.painted(7, 59), shown.missing());
    QCOMPARE(shown.painted(7, 60), shown.colourOf(AnswerPieces::level(30, 3)));
    QCOMPARE(shown.painted(7, 62), shown.missing());
}

void WaterfallViewTest::paintsTheRowsOfNewLinesOnly()
{
    ShownWaterfall shown;
    shown.take(0, 50);
    shown.view.image();
    QCoreApplication::processEvents();
    PaintedRegion painted(shown.view);
    shown.take(60, 61);
    QVERIFY(paintsOnlyTheNewRows(shown, painted));
}

// As an owner has it who sets the range with each batch.
void WaterfallViewTest::paintsNothingForTheSameColours()
{
    ShownWaterfall shown;
    shown.take(0, 50);
    shown.view.image();
    QCoreApplication::processEvents();
    PaintedRegion painted(shown.view);
    shown.view.setLevelRange(-100, 0);
    shown.take(60, 61);
    shown.view.setLevelRange(-100, 0);
    QVERIFY(paintsOnlyTheNewRows(shown, painted));
}

void WaterfallViewTest::showsNewColoursOfTheSameLevels()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setLevelRange(-50, -40);
    QCOMPARE(shown.painted(0, 90), SPECTRUM_OVERVIEW::LevelColours(-50, -40, 0).of(AnswerPieces::level(45, 0)));
    QCOMPARE(shown.painted(0, 2), SPECTRUM_OVERVIEW::LevelColours::at(1));
    QCOMPARE(shown.painted(0, 198), SPECTRUM_OVERVIEW::LevelColours::at(0));
}

void WaterfallViewTest::zoomsIntoWhatItHas()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setTimeRange(ShownWaterfall::begin + 700, ShownWaterfall::begin + 700 + 20 * 70);
    QCOMPARE(shown.painted(8, 0), shown.colourOf(AnswerPieces::level(10, 4)));
    QCOMPARE(shown.painted(8, 9), shown.colourOf(AnswerPieces::level(10, 4)));
    QCOMPARE(shown.painted(8, 10), shown.colourOf(AnswerPieces::level(11, 4)));
    QCOMPARE(shown.painted(8, 199), shown.colourOf(AnswerPieces::level(29, 4)));
}

void WaterfallViewTest::showsTheCoarsePictureUntilFinerLinesArrive()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    const quint64 start = ShownWaterfall::begin + 50 * 70;
    shown.view.setTimeRange(start, start + 1000);
    shown.answer.wish.start = start;
    shown.answer.wish.stop = start + 1000;
    shown.levels.begin(shown.answer.wish);
    shown.view.setLevels(&shown.levels);
    QCOMPARE(shown.painted(8, 0), shown.colourOf(AnswerPieces::level(50, 4)));
    QCOMPARE(shown.painted(8, 199), shown.colourOf(AnswerPieces::level(64, 4)));
    shown.take(0, 9);
    QCOMPARE(shown.painted(8, 0), shown.colourOf(AnswerPieces::level(0, 4)));
    QCOMPARE(shown.painted(8, 19), shown.colourOf(AnswerPieces::level(9, 4)));
    QCOMPARE(shown.painted(8, 30), shown.colourOf(AnswerPieces::level(52, 4)));
}

void WaterfallViewTest::forgetsTheLevelsThatAreTakenAway()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    shown.view.setLevels(nullptr);
    const QImage empty = shown.view.image();
    QCOMPARE(empty.pixel(shown.at(8, 20)), empty.pixel(shown.at(300, 150)));
    shown.levels.begin(shown.answer.wish);
    shown.view.setLevels(&shown.levels);
    shown.take(0, 1);
    QCOMPARE(shown.painted(8, 20), shown.missing());
}

// The receiver was tuned to somewhere else in that part of the record.
void WaterfallViewTest::forgetsAnotherBand()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    shown.levels.begin(shown.answer.wish);
    shown.view.setLevels(&shown.levels);
    shown.answer.centreFrequency = 433'000'000;
    shown.take(0, 1);
    QCOMPARE(shown.painted(8, 0), shown.colourOf(AnswerPieces::level(0, 4)));
    QCOMPARE(shown.painted(8, 20), shown.missing());
}

void WaterfallViewTest::showsAPartOfTheFrequencies()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setFrequencyRange(99'750'000, 100'000'000); // the second quarter of the bins
    QCOMPARE(shown.painted(0, 20), shown.colourOf(AnswerPieces::level(10, 64)));
    QCOMPARE(shown.painted(15, 20), shown.colourOf(AnswerPieces::level(10, 65)));
    QCOMPARE(shown.painted(511, 20), shown.colourOf(AnswerPieces::level(10, 127)));
    shown.move(shown.at(256, 20));
    QVERIFY(shown.view.cursor());
    QVERIFY(std::abs(shown.view.cursor()->frequency - 99'875'000) < 500);
    shown.view.showAllFrequencies();
    QCOMPARE(shown.painted(0, 20), shown.colourOf(AnswerPieces::level(10, 0)));
}

void WaterfallViewTest::cutsFrequenciesToTheBand()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setFrequencyRange(1, 100'000'000);
    QCOMPARE(shown.painted(0, 20), shown.colourOf(AnswerPieces::level(10, 0)));
    QCOMPARE(shown.painted(511, 20), shown.colourOf(AnswerPieces::level(10, 127)));
    shown.view.setFrequencyRange(1, 2);
    QCOMPARE(shown.painted(511, 20), shown.colourOf(AnswerPieces::level(10, 255)));
}

void WaterfallViewTest::refusesRangesThatAreNone()
{
    ShownWaterfall shown;
    shown.takeAll();
    const QImage before = shown.view.image();
    const TimeRange range = shown.view.timeRange();
    shown.view.setTimeRange(7, 7);
    shown.view.setTimeRange(8, 7);
    QCOMPARE(shown.view.timeRange(), range);
    for (const auto& [low, high] : {std::pair(noNumber, 1.0), std::pair(1.0, noNumber), std::pair(5.0, 5.0),
                                    std::pair(6.0, 5.0), std::pair(-infinity, 0.0), std::pair(0.0, infinity)}) {
        shown.view.setLevelRange(low, high);
        shown.view.setFrequencyRange(low, high);
    }
    shown.view.setSelection(5, 5);
    shown.view.setSelection(6, 5);
    QVERIFY(!shown.view.selection());
    QCOMPARE(shown.view.image(), before);
}

void WaterfallViewTest::hasTheRangeOfItsFirstLevels()
{
    ShownWaterfall shown;
    QCOMPARE(shown.view.timeRange(), (TimeRange{ShownWaterfall::begin, ShownWaterfall::begin + 7000}));
    shown.view.setTimeRange(5, 6);
    shown.view.setLevels(&shown.levels);
    QCOMPARE(shown.view.timeRange(), (TimeRange{5, 6}));
}

void WaterfallViewTest::forgetsItsRange()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.move(shown.at(300, 50));
    WaterfallView unused;
    unused.resize(shown.view.size());
    unused.setLevelRange(-100, 0);
    QSignalSpy moved(&shown.view, &WaterfallView::si_cursorMoved);
    shown.view.clearTimeRange();
    shown.view.setLevels(nullptr);
    QCOMPARE(shown.view.timeRange(), TimeRange());
    QVERIFY(!shown.view.cursor());
    QCOMPARE(moved.size(), 1);
    QCOMPARE(shown.view.image(), unused.image());
    shown.view.setLevels(&shown.levels);
    QCOMPARE(shown.painted(7, 39), shown.colourOf(AnswerPieces::level(19, 3)));
}

void WaterfallViewTest::paintsBookmarksOverTheirTimes()
{
    ShownWaterfall shown;
    shown.takeAll();
    const QImage before = shown.view.image();
    shown.view.setBookmarks({bookmark(ShownWaterfall::begin + 5000, QStringLiteral("later")),
                             bookmark(ShownWaterfall::begin + 700, QString()),
                             bookmark(ShownWaterfall::begin - 1, QStringLiteral("before")),
                             bookmark(ShownWaterfall::begin + 7000, QStringLiteral("behind"))});
    const QImage after = shown.view.image();
    QList<int> rows;
    for (int row = 0; row < ShownWaterfall::rows; ++row) {
        if (after.pixel(shown.at(100, row)) != before.pixel(shown.at(100, row))) {
            rows << row;
        }
    }
    QCOMPARE(rows, QList<int>({20, 142}));
    shown.view.setBookmarks({});
    QCOMPARE(shown.view.image(), before);
}

void WaterfallViewTest::tellsTheTextsOfBookmarks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    QTest::newRow("a plain one") << QStringLiteral("Tower") << QStringLiteral("Tower");
    QTest::newRow("markup") << QStringLiteral("<b>Tower</b>") << QStringLiteral("&lt;b&gt;Tower&lt;/b&gt;");
    QTest::newRow("lines") << QStringLiteral("Tower\nAnswer\t!") << QStringLiteral("Tower Answer !");
    QTest::newRow("no end") << QString(10'000, 'x') << QString(200, 'x');
}

void WaterfallViewTest::tellsTheTextsOfBookmarks()
{
    QFETCH(QString, text);
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setBookmarks({bookmark(ShownWaterfall::begin + 3500, text)});
    QVERIFY(!shown.view.image().isNull());
    QHelpEvent help(QEvent::ToolTip, shown.at(100, 100), shown.view.mapToGlobal(shown.at(100, 100)));
    QCoreApplication::sendEvent(&shown.view, &help);
    QTRY_VERIFY_WITH_TIMEOUT(QToolTip::isVisible(), patience);
    QVERIFY2(QToolTip::text().contains(QStringLiteral("2023-11-14 23:13:20.003500 CET ")),
             qPrintable(QToolTip::text()));
    QFETCH(QString, told);
    QVERIFY2(QToolTip::text().contains(told), qPrintable(QToolTip::text()));
    QToolTip::hideText();
    QTRY_VERIFY_WITH_TIMEOUT(!QToolTip::isVisible(), patience);
}

void WaterfallViewTest::paintsTheSelectionAsItIs()
{
    ShownWaterfall shown;
    shown.takeAll();
    const QImage before = shown.view.image();
    QSignalSpy changed(&shown.view, &WaterfallView::si_selectionChanged);
    shown.view.setSelection(ShownWaterfall::begin + 1400, ShownWaterfall::begin + 2800);
    QCOMPARE(changed.count(), 1);
    const QImage after = shown.view.image();
    const auto differs = [&](int row) { return after.pixel(shown.at(30, row)) != before.pixel(shown.at(30, row)); };
    QVERIFY(differs(38));
    QVERIFY(!differs(50));
    QVERIFY(!differs(70));
    QVERIFY(differs(81));
    shown.view.setSelection(ShownWaterfall::begin + 1400, ShownWaterfall::begin + 2800);
    QCOMPARE(changed.count(), 1);
    shown.view.clearSelection();
    QCOMPARE(changed.count(), 2);
    QCOMPARE(shown.view.image(), before);
}

void WaterfallViewTest::givesAnImageWithoutTheCursor()
{
    ShownWaterfall shown;
    shown.takeAll();
    const QImage before = shown.view.image();
    QCOMPARE(before.size(), shown.view.size());
    shown.move(shown.at(100, 100));
    QVERIFY(shown.view.cursor());
    QVERIFY(shown.view.grab().toImage() != before);
    QCOMPARE(shown.view.image(), before);
}

void WaterfallViewTest::saysWhyItIsEmpty()
{
    ShownWaterfall shown;
    const QImage standard = shown.view.image();
    shown.view.setEmptyText(QStringLiteral("Waiting"));
    const QImage waiting = shown.view.image();
    QVERIFY(waiting != standard);
    shown.view.setEmptyText(QString());
    const QImage none = shown.view.image();
    QVERIFY(none != waiting);
    shown.view.setEmptyText(QStringLiteral("Waiting"));
    shown.view.resize(shown.view.size() + QSize(10, 10));
    shown.view.image();
    shown.view.resize(shown.view.size() - QSize(10, 10));
    QVERIFY2(shown.view.image() == waiting, "another size is no reason to show a picture");
    shown.take(0, 0);
    QCOMPARE(shown.painted(256, 100), shown.missing());
}

// What was asked for in vain is asked for once more.
void WaterfallViewTest::isEmptyUntilSomethingComes()
{
    ShownWaterfall shown;
    const QImage empty = shown.view.image();
    shown.levels.begin(shown.answer.wish);
    shown.view.setLevels(&shown.levels);
    QCOMPARE(shown.view.image(), empty);
    shown.view.resize(shown.view.size() + QSize(1, 1));
    shown.view.resize(shown.view.size() - QSize(1, 1));
    QCOMPARE(shown.view.image(), empty);
    shown.take(0, 0);
    QCOMPARE(shown.painted(8, 0), shown.colourOf(AnswerPieces::level(0, 4)));
    QCOMPARE(shown.painted(8, 20), shown.missing());
}

void WaterfallViewTest::livesWithAbsurdTimes_data()
{
    QTest::addColumn<quint64>("start");
    QTest::addColumn<quint64>("stop");
    QTest::newRow("the epoch") << quint64(0) << quint64(1);
    QTest::newRow("one microsecond") << ShownWaterfall::begin << ShownWaterfall::begin + 1;
    QTest::newRow("all that there is") << quint64(0) << farthest;
    QTest::newRow("over the sign") << (quint64(1) << 63) - 5 << (quint64(1) << 63) + 5;
    QTest::newRow("the last one") << farthest - 1 << farthest;
}

void WaterfallViewTest::livesWithAbsurdTimes()
{
    QFETCH(quint64, start);
    QFETCH(quint64, stop);
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.setBookmarks({bookmark(0, QStringLiteral("first")), bookmark(farthest, QStringLiteral("last"))});
    shown.view.setSelection(0, farthest);
    shown.view.setTimeRange(start, stop);
    QCOMPARE(shown.view.timeRange(), (TimeRange{start, stop}));
    QVERIFY(!shown.view.image().isNull());
    shown.move(shown.at(100, 100));
    QVERIFY(shown.view.cursor());
    QVERIFY(shown.view.cursor()->time >= start && shown.view.cursor()->time < stop);
    QVERIFY(!shown.view.cursorText().isEmpty());
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Plus, Qt::Key_Minus}) {
        for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier}) {
            QTest::keyClick(&shown.view, key, modifiers);
        }
    }
    QVERIFY(shown.view.cursor()->time >= start && shown.view.cursor()->time < stop);
}

void WaterfallViewTest::livesWithoutASpan()
{
    ShownWaterfall shown;
    shown.answer.span = 0;
    shown.answer.centreFrequency = 0;
    shown.takeAll();
    QCOMPARE(shown.painted(0, 20), shown.colourOf(AnswerPieces::level(10, 0)));
    shown.view.setFrequencyRange(-1, 1);
    QCOMPARE(shown.painted(511, 20), shown.colourOf(AnswerPieces::level(10, 255)));
    shown.move(shown.at(100, 100));
    QVERIFY(shown.view.cursor());
    QVERIFY(std::isnan(shown.view.cursor()->frequency));
    QCOMPARE(shown.view.cursorText(), QStringLiteral("2023-11-14 23:13:20.003500 CET, -50.5 dBFS"));
    QTest::keyClick(&shown.view, Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(shown.painted(511, 20), shown.colourOf(AnswerPieces::level(10, 255)));
}

void WaterfallViewTest::livesWithoutRoom()
{
    ShownWaterfall shown;
    shown.takeAll();
    for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(60, 400), QSize(400, 20), QSize(200, 60)}) {
        shown.view.resize(size);
        shown.view.image();
        QTest::mouseClick(&shown.view, Qt::LeftButton, {}, QPoint(0, 0));
        QTest::keyClick(&shown.view, Qt::Key_Down);
        QTest::keyClick(&shown.view, Qt::Key_Plus);
    }
    QVERIFY(shown.view.minimumSizeHint().width() <= shown.view.sizeHint().width());
    shown.view.resize(shown.view.minimumSizeHint());
    QVERIFY(shown.view.pictureArea().width() >= 160 && shown.view.pictureArea().height() >= 80);
}

void WaterfallViewTest::followsItsPalette()
{
    ShownWaterfall shown;
    shown.take(0, 0);
    shown.view.setPalette(QPalette(Qt::white));
    const QRgb light = shown.painted(0, 100);
    shown.view.setPalette(QPalette(Qt::black));
    const QRgb dark = shown.painted(0, 100);
    QCOMPARE(dark, shown.missing());
    QVERIFY(light != dark);
}

QTEST_MAIN(WaterfallViewTest)
#include "tst_waterfallview.moc"
