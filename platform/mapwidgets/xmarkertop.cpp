#include <mapwidgets/xmarkertop.h>

#include <controlwidgets/axisbase.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int headWidth = 11;
constexpr int headHeight = 10;

} // namespace

XMarkerTop::XMarkerTop(AxisBase& axis)
    : m_axis(axis)
{}

XMarkerTop::~XMarkerTop() = default;

int XMarkerTop::markerAt(QPoint place) const
{
    int found = 0;
    for (const int number : GetMarkerNumbers()) {
        const Marker& marker = *GetMarker(number);
        const bool isBeside = std::abs(m_axis.pixelAt(marker.GetPosition()) - place.x()) <= headWidth / 2 + 1;
        const bool isBelow = place.y() >= markerTop() && place.y() <= markerTop() + headHeight + 2;
        if (marker.IsVisible() && isBeside && isBelow) {
            found = number == GetCurrentMarker() || found != GetCurrentMarker() ? number : found;
        }
    }
    return found;
}

// The current one last, so that it lies on top.
void XMarkerTop::paintMarkers(QPainter& painter) const
{
    for (const int number : GetMarkerNumbers()) {
        if (number != GetCurrentMarker()) {
            paintMarker(painter, number);
        }
    }
    if (GetCurrentMarker() != 0) {
        paintMarker(painter, GetCurrentMarker());
    }
}

void XMarkerTop::paintMarker(QPainter& painter, int number) const
{
    const Marker& marker = *GetMarker(number);
    if (!marker.IsVisible()) {
        return;
    }
    const int x = m_axis.pixelAt(marker.GetPosition());
    QColor color = markerColor(number);
    color.setAlphaF(marker.IsEnabled() ? 1 : 0.4F);
    painter.setPen(color);
    painter.drawLine(x, markerTop() + headHeight, x, m_axis.height() - 1);
    const bool isCurrent = number == GetCurrentMarker() && m_axis.hasFocus();
    painter.setPen(QPen(isCurrent ? m_axis.palette().color(QPalette::WindowText) : color, isCurrent ? 2 : 1));
    painter.setBrush(color);
    const int half = headWidth / 2;
    const QPoint head[] = {{x - half, markerTop()}, {x + half, markerTop()}, {x, markerTop() + headHeight}};
    painter.drawPolygon(head, static_cast<int>(std::size(head)));
}

// An axis without extent has but one place, and moving a marker there would lose its own.
bool XMarkerTop::canBeMoved(int number) const
{
    const Marker* const marker = GetMarker(number);
    const bool hasPlaces = m_axis.axisStart() < m_axis.axisStop();
    return hasPlaces && marker != nullptr && marker->IsVisible() && marker->IsEnabled() && marker->IsMoveable();
}

bool XMarkerTop::grabMarker(const QMouseEvent& event)
{
    const QPoint place = event.position().toPoint();
    const int number = event.button() == Qt::LeftButton ? markerAt(place) : 0;
    if (number == 0) {
        return false;
    }
    SetCurrentMarker(number);
    if (canBeMoved(number)) {
        m_dragged = number;
        m_grabOffset = place.x() - m_axis.pixelAt(GetMarker(number)->GetPosition());
    }
    return true;
}

bool XMarkerTop::dragMarker(const QMouseEvent& event)
{
    if (m_dragged == 0) {
        return false;
    }
    if (canBeMoved(m_dragged)) {
        GetMarker(m_dragged)->MoveTo(m_axis.valueAt(event.position().toPoint().x() - m_grabOffset));
    }
    return true;
}

bool XMarkerTop::dropMarker(const QMouseEvent& event)
{
    const bool wasDragged = event.button() == Qt::LeftButton && m_dragged != 0;
    if (wasDragged) {
        endDrag();
    }
    return wasDragged;
}

bool XMarkerTop::stepMarker(const QKeyEvent& event)
{
    if (event.key() != Qt::Key_Left && event.key() != Qt::Key_Right) {
        return false;
    }
    const int direction = event.key() == Qt::Key_Left ? -1 : 1;
    return event.modifiers().testFlag(Qt::ControlModifier) ? chooseNext(direction) : moveCurrent(direction);
}

bool XMarkerTop::moveCurrent(int pixels)
{
    if (!canBeMoved(GetCurrentMarker())) {
        return false;
    }
    Marker& marker = *GetMarker(GetCurrentMarker());
    return marker.MoveTo(m_axis.valueAt(m_axis.pixelAt(marker.GetPosition()) + pixels));
}

std::vector<int> XMarkerTop::visibleFromLeftToRight() const
{
    std::vector<int> numbers = GetMarkerNumbers();
    std::erase_if(numbers, [this](int number) { return !GetMarker(number)->IsVisible(); });
    std::stable_sort(numbers.begin(), numbers.end(),
                     [this](int a, int b) { return GetMarker(a)->GetPosition() < GetMarker(b)->GetPosition(); });
    return numbers;
}

bool XMarkerTop::chooseNext(int direction)
{
    const std::vector<int> numbers = visibleFromLeftToRight();
    const auto current = std::find(numbers.begin(), numbers.end(), GetCurrentMarker());
    const std::ptrdiff_t next = current - numbers.begin() + direction;
    if (current == numbers.end() || next < 0 || next >= std::ssize(numbers)) {
        return false;
    }
    SetCurrentMarker(numbers[static_cast<std::size_t>(next)]);
    return true;
}
