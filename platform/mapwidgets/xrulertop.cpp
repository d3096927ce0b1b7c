#include <mapwidgets/xrulertop.h>

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int tickLength = 5;
constexpr int textGap = 2;
constexpr int gapBetweenTexts = 12;

} // namespace

XRulerTop::XRulerTop(QWidget* parent)
    : AxisBase(parent)
{}

XRulerTop::~XRulerTop() = default;

int XRulerTop::rulerHeight() const
{
    return fontMetrics().height() + textGap + tickLength;
}

double XRulerTop::tickDistance(double least) const
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (power * factor >= least) {
            return power * factor;
        }
    }
    return power * 10;
}

double XRulerTop::firstTick(double value, double distance) const
{
    return std::ceil(value / distance) * distance;
}

QString XRulerTop::tickText(double value, double) const
{
    return QString::number(value, 'g', 10);
}

QString XRulerTop::longestTickText() const
{
    return QStringLiteral("-0.000000001");
}

void XRulerTop::paintRuler(QPainter& painter) const
{
    const int bottom = rulerHeight();
    const int left = pixelAt(visibleStart());
    const int right = pixelAt(visibleStop());
    if (visibleStop() <= visibleStart() || right <= left) {
        return;
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawLine(left, bottom, right, bottom);
    const int room = fontMetrics().horizontalAdvance(longestTickText()) + gapBetweenTexts;
    const double distance = tickDistance((visibleStop() - visibleStart()) * room / (right - left));
    const double first = firstTick(visibleStart(), distance);
    // Counted, because adding a distance that is too small for a large number never arrives.
    for (int i = 0; i <= (right - left) / room + 1 && first + i * distance <= visibleStop(); ++i) {
        const double value = first + i * distance;
        const int x = pixelAt(value);
        painter.drawLine(x, bottom - tickLength, x, bottom);
        const QString text = tickText(value, distance);
        const int textWidth = fontMetrics().horizontalAdvance(text);
        const int textLeft = std::clamp(x - textWidth / 2, 0, std::max(width() - textWidth, 0));
        painter.drawText(textLeft, fontMetrics().ascent(), text);
    }
}
