#pragma once

#include <QImage>
#include <QPalette>
#include <QTest>

#include <algorithm>

/// The grounds on which the frame of a check box must be seen: columns and rows of a test.
namespace boxground {

inline void addGrounds()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("text");
    QTest::newRow("a light one") << QColor(239, 239, 239) << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("a dark one") << QColor(45, 48, 52) << QColor(27, 30, 33) << QColor(230, 233, 237);
    QTest::newRow("a black one") << QColor(Qt::black) << QColor(Qt::black) << QColor(Qt::white);
}

/// The palette of the present row.
inline QPalette palette()
{
    QFETCH(QColor, window);
    QFETCH(QColor, base);
    QFETCH(QColor, text);
    QPalette all(window);
    all.setColor(QPalette::Base, base);
    all.setColor(QPalette::Text, text);
    return all;
}

/// How much lighter or darker than its ground the frame is, of 255 at most. `line` is a row of pixels from outside into
/// the box.
inline int contrast(const QImage& line, const QColor& ground)
{
    int largest = 0;
    for (int x = 0; x < line.width(); ++x) {
        largest = std::max(largest, std::abs(line.pixelColor(x, 0).lightness() - ground.lightness()));
    }
    return largest;
}

} // namespace boxground
