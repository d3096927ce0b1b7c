#include <mapwidgets/axisheadline.h>

#include <mapwidgets/pixelgrid.h>

#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int gapBetweenTexts = 14;
constexpr int gapBehindSign = 6;
constexpr int signSize = 7;

} // namespace

AxisHeadline::Chosen AxisHeadline::chosen(const QFontMetrics& metrics, int width) const
{
    for (const QString& date : dates) {
        const int used = metrics.horizontalAdvance(date) + gapBetweenTexts + signSize + gapBehindSign;
        for (const QString& reading : readings) {
            if (used + metrics.horizontalAdvance(reading) <= width) {
                return {date, reading};
            }
        }
    }
    for (const QString& date : dates) {
        if (metrics.horizontalAdvance(date) <= width) {
            return {date, {}};
        }
    }
    return {dates.constLast(), {}};
}

void AxisHeadline::paint(QPainter& painter, int left, int right) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    const auto [date, reading] = chosen(metrics, right - left);
    painter.drawText(left, metrics.ascent(), date);
    if (reading.isEmpty()) {
        return;
    }
    const int readingLeft = right - metrics.horizontalAdvance(reading);
    painter.drawText(readingLeft, metrics.ascent(), reading);
    const double top = metrics.ascent() - metrics.capHeight() / 2.0 - signSize / 2.0;
    const QRectF sign(readingLeft - gapBehindSign - signSize, top, signSize, signSize);
    painter.fillRect(PixelGrid(painter).rect(sign), color);
}
