#include <controlwidgets/axisbase.h>

#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double zoomPerNotch = 1.25;
constexpr int unitsPerNotch = 120; // Qt's, in eighths of a degree

// A part smaller than this share of the whole range has no room for two numbers that a double can tell apart.
constexpr double smallestPart = 1e-9;

constexpr double farBeyond = 100'000; // pixels

} // namespace

AxisBase::AxisBase(QWidget* parent)
    : QWidget(parent)
{}

AxisBase::~AxisBase() = default;

void AxisBase::SetAxisRange(double start, double stop)
{
    const bool isRange = std::isfinite(start) && std::isfinite(stop) && start <= stop;
    const double newStart = isRange ? start : 0;
    const double newStop = isRange ? stop : 0;
    if (newStart == m_start && newStop == m_stop) {
        return;
    }
    m_start = newStart;
    m_stop = newStop;
    showPart(newStart, newStop);
}

void AxisBase::SetPixOffset(int left, int right)
{
    m_leftOffset = std::max(left, 0);
    m_rightOffset = std::max(right, 0);
    update();
}

void AxisBase::SetAxisZoomEnable(bool horizontal, bool)
{
    m_isZoomEnabled = horizontal;
    if (!horizontal) {
        showPart(m_start, m_stop);
    }
}

double AxisBase::axisWidth() const
{
    return std::max(width() - 1 - m_leftOffset - m_rightOffset, 1);
}

int AxisBase::pixelAt(double value) const
{
    return static_cast<int>(std::lround(placeAt(value)));
}

double AxisBase::placeAt(double value) const
{
    const double extent = m_visibleStop - m_visibleStart;
    const double share = extent > 0 ? (value - m_visibleStart) / extent : 0;
    return m_leftOffset + (std::isnan(share) ? 0 : std::clamp(share * axisWidth(), -farBeyond, farBeyond));
}

double AxisBase::valueAt(double place) const
{
    const double share = std::clamp((place - m_leftOffset) / axisWidth(), 0.0, 1.0);
    return m_visibleStart + share * (m_visibleStop - m_visibleStart);
}

void AxisBase::reveal(double value)
{
    if ((value >= m_visibleStart && value <= m_visibleStop) || !(value >= m_start && value <= m_stop)) {
        return;
    }
    const double part = m_visibleStop - m_visibleStart;
    const double start = std::clamp(value - part / 2, m_start, m_stop - part);
    showPart(start, start + part);
}

void AxisBase::showPart(double start, double stop)
{
    m_visibleStart = start;
    m_visibleStop = stop;
    update();
    Q_EMIT signalAxisChanged();
}

// The number under the mouse keeps its place where that is possible.
void AxisBase::zoom(double centre, double factor)
{
    const double whole = m_stop - m_start;
    const double part = std::clamp((m_visibleStop - m_visibleStart) / factor, whole * smallestPart, whole);
    const double share = (centre - m_visibleStart) / (m_visibleStop - m_visibleStart);
    const double start = std::clamp(centre - share * part, m_start, m_stop - part);
    showPart(start, start + part);
}

void AxisBase::wheelEvent(QWheelEvent* event)
{
    const int turned = event->angleDelta().y();
    if (!m_isZoomEnabled || turned == 0 || m_stop <= m_start) {
        event->ignore();
        return;
    }
    zoom(valueAt(event->position().x()), std::pow(zoomPerNotch, double(turned) / unitsPerNotch));
    event->accept();
}
