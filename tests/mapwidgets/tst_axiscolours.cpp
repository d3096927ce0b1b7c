#include "contrast.h"

#include <mapwidgets/axiscolours.h>

#include <QPalette>
#include <QtTest>

class AxisColoursTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsADarkPalette();
    void textsOnBookmarksAreLegible();
};

static QPalette paletteOf(const QColor& ground, const QColor& text)
{
    QPalette palette;
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, text);
    return palette;
}

void AxisColoursTest::knowsADarkPalette()
{
    QVERIFY(axiscolours::isDark(paletteOf(Qt::black, Qt::white)));
    QVERIFY(!axiscolours::isDark(paletteOf(Qt::white, Qt::black)));
}

void AxisColoursTest::textsOnBookmarksAreLegible()
{
    for (const QPalette& palette : {paletteOf(Qt::black, Qt::white), paletteOf(Qt::white, Qt::black)}) {
        const QColor flag = axiscolours::bookmark(palette);
        QVERIFY(contrast(flag, axiscolours::textOn(flag)) > 4.5);
    }
    QVERIFY(contrast(Qt::darkRed, axiscolours::textOn(Qt::darkRed)) > 4.5);
}

QTEST_MAIN(AxisColoursTest)
#include "tst_axiscolours.moc"
