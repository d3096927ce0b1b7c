#include "contrast.h"
#include "patience.h"
#include "tiedbar.h"

#include <QtTest>

namespace {

constexpr long long begin = TiedBar::begin;
constexpr long long second = TiedBar::perPixel;

/// A picture of a widget at a scale.
QImage pictureOf(QWidget& widget, double scale)
{
    QImage image((QSizeF(widget.size()) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    widget.render(&image);
    return image;
}

/// A bar without a ruler or a position: nothing but its bookmarks.
struct Bare : TiedBar
{
    explicit Bare(double width)
    {
        bare.SetPixOffset(10, 10);
        bare.resize(QSizeF(width, 40).toSize());
        bare.SetRecordingStart_ValuePath(start.path());
        bare.SetRecordingStop_ValuePath(stop.path());
        bare.show();
    }

    VCReplayBar bare{nullptr, "Bare", false};
};

/// A bar whose labels can be read.
class ReadBar final : public VCReplayBar
{
public:
    ReadBar(long long from, long long to, int width)
        : VCReplayBar(nullptr, "ReadBar", true)
        , m_start(from)
        , m_stop(to)
    {
        SetPixOffset(10, 10);
        resize(width, sizeHint().height());
        SetRecordingStart_ValuePath(m_start.path());
        SetRecordingStop_ValuePath(m_stop.path());
    }

    using VCReplayBar::labels;
    using VCReplayBar::markerColor;
    using VCReplayBar::readings;

private:
    const Moment m_start;
    const Moment m_stop;
};

} // namespace

class ReplayBarPaintingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void polesAreSharpAtEveryScale_data();
    void polesAreSharpAtEveryScale();
    void flagsOnOnePixelLookLikeOne();
    void rangesAreSeen_data();
    void rangesAreSeen();
    void aRangeIsSeenUnderCrowdedPoles();
    void aRecordingOfOneMomentFillsTheBar();
    void aBookmarkIsReadWhereThereIsButOneMoment();
    void aLongNameEndsOnTheBar();
    void aPositionOutsideIsReadWithItsDate();
    void colorsCanBeTold_data();
    void colorsCanBeTold();
    void labelsAreReadableAtEveryWidth_data();
    void labelsAreReadableAtEveryWidth();
    void aDragPaintsOncePerTurn();
};

void ReplayBarPaintingTest::polesAreSharpAtEveryScale_data()
{
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        QTest::addRow("%g %%", scale * 100) << scale;
    }
}

void ReplayBarPaintingTest::polesAreSharpAtEveryScale()
{
    QFETCH(double, scale);
    Bare b(357);
    b.bare.SetBookmarks(TiedBar::bookmarks({17, 41, 76}), false);
    const QImage image = pictureOf(b.bare, scale);
    const int row = image.height() - int(6 * scale);
    const QRgb paper = image.pixel(int(20 * scale), row);
    QList<int> runs;
    QSet<QRgb> colors;
    int run = 0;
    for (int x = int(15 * scale); x < image.width() - int(15 * scale); ++x) {
        if (image.pixel(x, row) != paper) {
            colors << image.pixel(x, row);
            ++run;
        } else if (run > 0) {
            runs << std::exchange(run, 0);
        }
    }
    QCOMPARE(colors.size(), 1);
    QCOMPARE(runs, QList<int>(3, int(std::round(scale))));
}

void ReplayBarPaintingTest::flagsOnOnePixelLookLikeOne()
{
    Bare one(121);
    Bare many(121);
    const BookmarkType mark(begin + 20 * second, QString());
    one.bare.SetBookmarks({mark, mark}, false);
    std::vector<BookmarkType> marks(10'000, mark);
    many.bare.SetBookmarks(marks, false);
    for (const int row : {0, 10, 30, 39}) {
        const QImage expected = pictureOf(one.bare, 1);
        const QImage found = pictureOf(many.bare, 1);
        QCOMPARE(found.pixel(30, row), expected.pixel(30, row));
        QCOMPARE(found.pixel(29, row), expected.pixel(29, row));
    }
    QCOMPARE(many.bare.markerAt({30, 5}), VCReplayBar::FirstBookmarkMarker + 9'999);
}

void ReplayBarPaintingTest::rangesAreSeen_data()
{
    QTest::addColumn<long long>("from");
    QTest::addColumn<long long>("to");
    QTest::addColumn<bool>("isSeen");
    QTest::newRow("around the place") << 10LL << 30LL << true;
    QTest::newRow("beyond both ends") << -100LL << 1000LL << true;
    QTest::newRow("of one moment") << 20LL << 20LL << true;
    QTest::newRow("before the place") << 5LL << 15LL << false;
    QTest::newRow("before the recording") << -20LL << -10LL << false;
    QTest::newRow("behind the recording") << 110LL << 120LL << false;
}

void ReplayBarPaintingTest::rangesAreSeen()
{
    QFETCH(long long, from);
    QFETCH(long long, to);
    QFETCH(bool, isSeen);
    Bare b(121);
    const QImage before = pictureOf(b.bare, 1);
    b.bare.SetRangeVector({{begin + from * second, begin + to * second}});
    const QImage after = pictureOf(b.bare, 1);
    QCOMPARE(after.pixel(30, 20) != before.pixel(30, 20), isSeen);
    QCOMPARE(after.pixel(5, 20), before.pixel(5, 20));
    QCOMPARE(after.pixel(116, 20), before.pixel(116, 20));
}

void ReplayBarPaintingTest::aRangeIsSeenUnderCrowdedPoles()
{
    Bare b(121);
    std::vector<BookmarkType> marks;
    for (int at = 10; at < 60; ++at) {
        marks.emplace_back(begin + at * second, QStringLiteral("b"));
    }
    b.bare.SetBookmarks(marks, false);
    const QImage without = pictureOf(b.bare, 1);
    b.bare.SetRangeVector({{begin + 5 * second, begin + 90 * second}});
    const QImage with = pictureOf(b.bare, 1);
    QVERIFY(with.pixel(30, 30) != without.pixel(30, 30));
    QVERIFY(with.pixel(30, 30) != with.pixel(90, 30));
}

void ReplayBarPaintingTest::aRecordingOfOneMomentFillsTheBar()
{
    TiedBar b;
    TiedBar::set(b.stop.path(), begin);
    TiedBar::set(b.position.path(), begin);
    b.bar.resize(600, 60);
    const QImage image = pictureOf(b.bar, 1);
    QCOMPARE(QColor(image.pixel(300, 50)), b.bar.palette().color(QPalette::Base));
    QCOMPARE(QColor(image.pixel(595, 50)), b.bar.palette().color(QPalette::Window));
    const QRect reading(400, 0, 190, b.bar.fontMetrics().height());
    const QImage headline = image.copy(reading);
    QImage empty(headline.size(), headline.format());
    empty.fill(b.bar.palette().color(QPalette::Window));
    QVERIFY(headline != empty);
}

void ReplayBarPaintingTest::aBookmarkIsReadWhereThereIsButOneMoment()
{
    TiedBar b;
    TiedBar::set(b.stop.path(), begin);
    b.bar.SetBookmarks({{begin, QStringLiteral("Tower")}}, false);
    QCOMPARE(b.bar.markerAt(b.headOf(0)), VCReplayBar::FirstBookmarkMarker);
    QCOMPARE(b.bar.markerAt(b.headOf(15)), VCReplayBar::FirstBookmarkMarker);
}

void ReplayBarPaintingTest::aLongNameEndsOnTheBar()
{
    Bare b(100);
    const QString name(60, QLatin1Char('M'));
    const auto pictureWith = [&b](const QString& text) {
        b.bare.SetBookmarks({{begin + 20 * second, text}}, false);
        b.bare.SetCurrentMarker(VCReplayBar::FirstBookmarkMarker);
        return pictureOf(b.bare, 1);
    };
    const QString fitting = QFontMetricsF(b.bare.font()).elidedText(name, Qt::ElideRight, b.bare.width() - 8);
    QCOMPARE(pictureWith(name), pictureWith(fitting));
}

void ReplayBarPaintingTest::aPositionOutsideIsReadWithItsDate()
{
    ReadBar bar(begin, begin + second, 300);
    const Moment position(begin);
    bar.SetCurrentPosition_ValuePath(position.path());
    QCOMPARE(bar.readings().constFirst(), QStringLiteral("23:13:20.000000"));
    TiedBar::set(position.path(), begin - second);
    QCOMPARE(bar.readings(), QStringList{"2023-11-14 23:13:19.000000 CET"});
}

void ReplayBarPaintingTest::colorsCanBeTold_data()
{
    QTest::addColumn<QColor>("window");
    QTest::newRow("light") << QColor(239, 239, 239);
    QTest::newRow("dark") << QColor(45, 48, 52);
}

void ReplayBarPaintingTest::colorsCanBeTold()
{
    QFETCH(QColor, window);
    ReadBar bar(begin, begin + second, 300);
    QPalette palette(window);
    const bool isDark = window.lightness() < 128;
    palette.setColor(QPalette::Base, isDark ? QColor(27, 30, 33) : QColor(Qt::white));
    palette.setColor(QPalette::Text, isDark ? QColor(Qt::white) : QColor(Qt::black));
    bar.setPalette(palette);
    const QColor flag = bar.markerColor(VCReplayBar::FirstBookmarkMarker);
    const QColor position = bar.markerColor(VCReplayBar::PositionMarker);
    QVERIFY(contrast(position, palette.color(QPalette::Base)) >= 4.5);
    QVERIFY(contrast(flag, QColor(0x1A, 0x14, 0x00)) >= 7);
    QVERIFY(contrast(flag, palette.color(QPalette::Base)) >= 1.7);
    QVERIFY(contrast(flag, position) >= 1.3);
}

void ReplayBarPaintingTest::labelsAreReadableAtEveryWidth_data()
{
    QTest::addColumn<long long>("extent");
    constexpr long long hour = 3600 * second;
    QTest::newRow("some microseconds") << 7LL;
    QTest::newRow("a millisecond") << 1000LL;
    QTest::newRow("a burst") << 2 * second;
    QTest::newRow("minutes") << 100 * second;
    QTest::newRow("an hour") << hour;
    QTest::newRow("a night") << 12 * hour;
    QTest::newRow("a week") << 7 * 24 * hour;
    QTest::newRow("years") << 4000 * 24 * hour;
}

void ReplayBarPaintingTest::labelsAreReadableAtEveryWidth()
{
    QFETCH(long long, extent);
    for (int width = 100; width < 2000; width += 37) {
        ReadBar bar(begin + 12'345'678, begin + 12'345'678 + extent, width);
        const auto labels = bar.labels();
        QVERIFY(!labels.empty());
        QVERIFY(width < 600 || labels.size() >= 3);
        double end = 0;
        QString before;
        for (const auto& label : labels) {
            QVERIFY(label.left >= end);
            QVERIFY(label.text != std::exchange(before, label.text));
            end = label.left + bar.fontMetrics().horizontalAdvance(label.text) + 4;
        }
        QVERIFY(end - 4 <= std::max(width, bar.fontMetrics().horizontalAdvance(labels.front().text)));
    }
}

// Each move is painted when the events before it are handled, however many there are.
void ReplayBarPaintingTest::aDragPaintsOncePerTurn()
{
    class Counted final : public QObject
    {
    public:
        int paints = 0;
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return QObject::eventFilter(watched, event);
        }
    };
    TiedBar b;
    b.bar.SetBookmarks(std::vector<BookmarkType>(1000, BookmarkType(begin + 20 * second, QStringLiteral("b"))), false);
    QVERIFY(QTest::qWaitForWindowExposed(&b.bar, patience));
    b.press(20);
    QCoreApplication::processEvents();
    Counted counted;
    b.bar.installEventFilter(&counted);
    for (int to = 30; to < 60; ++to) {
        QMouseEvent move(QEvent::MouseMove, b.headOf(to), b.bar.mapToGlobal(b.headOf(to)), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(&b.bar, &move);
    }
    QCOMPARE(counted.paints, 0);
    QTRY_COMPARE_WITH_TIMEOUT(counted.paints, 1, patience);
}

QTEST_MAIN(ReplayBarPaintingTest)
#include "tst_replaybarpainting.moc"
