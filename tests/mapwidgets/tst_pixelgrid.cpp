#include <mapwidgets/pixelgrid.h>

#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

/// A picture of twenty by ten, at a scale, that is moved by a part of a pixel.
struct Canvas
{
    Canvas(double scale, double shift)
        : image(QSize(int(20 * scale), int(10 * scale)), QImage::Format_RGB32)
        , painter((image.setDevicePixelRatio(scale), image.fill(Qt::white), &image))
    {
        painter.translate(shift, shift);
    }

    /// The colours in a row of pixels.
    QList<QRgb> colors(int row)
    {
        QList<QRgb> found;
        for (int x = 0; x < image.width(); ++x) {
            if (!found.contains(image.pixel(x, row))) {
                found << image.pixel(x, row);
            }
        }
        return found;
    }
    int black(int row) const
    {
        int count = 0;
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, row) == qRgb(0, 0, 0) ? 1 : 0;
        }
        return count;
    }

    QImage image;
    QPainter painter;
};

} // namespace

class PixelGridTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreSharpAtEveryScale_data();
    void linesAreSharpAtEveryScale();
    void whatIsTurnedIsLeftAlone();
};

void PixelGridTest::linesAreSharpAtEveryScale_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("shift");
    QTest::addColumn<double>("place");
    QTest::addColumn<double>("thickness");
    QTest::addColumn<int>("pixels");
    for (const double place : {3.0, 3.3, 3.5, 3.7}) {
        for (const double shift : {0.0, 0.4}) {
            QTest::addRow("a line at %g shifted by %g", place, shift) << 1.0 << shift << place << 1.0 << 1;
            QTest::addRow("a line of two at %g shifted by %g", place, shift) << 1.0 << shift << place << 2.0 << 2;
            QTest::addRow("at 125 %% at %g shifted by %g", place, shift) << 1.25 << shift << place << 1.0 << 1;
            QTest::addRow("at 150 %% at %g shifted by %g", place, shift) << 1.5 << shift << place << 1.0 << 2;
            QTest::addRow("at 200 %% at %g shifted by %g", place, shift) << 2.0 << shift << place << 1.0 << 2;
            QTest::addRow("the thinnest at %g shifted by %g", place, shift) << 2.0 << shift << place << 0.0 << 1;
        }
    }
}

void PixelGridTest::linesAreSharpAtEveryScale()
{
    QFETCH(double, scale);
    QFETCH(double, shift);
    QFETCH(double, place);
    QFETCH(double, thickness);
    QFETCH(int, pixels);
    Canvas canvas(scale, shift);
    canvas.painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid(canvas.painter);
    canvas.painter.fillRect(grid.vertical(place, 2, 6.2, thickness), Qt::black);
    const int row = int(4 * scale);
    QCOMPARE(canvas.colors(row), (QList<QRgb>{qRgb(255, 255, 255), qRgb(0, 0, 0)}));
    QCOMPARE(canvas.black(row), pixels);
    for (int y = 0; y < canvas.image.height(); ++y) {
        QVERIFY(canvas.black(y) == 0 || canvas.black(y) == pixels);
    }
}

void PixelGridTest::whatIsTurnedIsLeftAlone()
{
    Canvas canvas(1, 0);
    canvas.painter.rotate(30);
    const PixelGrid grid(canvas.painter);
    QCOMPARE(grid.x(3), 3.0);
    QCOMPARE(grid.rect({1, 2, 3, 4}), QRectF(1, 2, 3, 4));
}

QTEST_MAIN(PixelGridTest)
#include "tst_pixelgrid.moc"
