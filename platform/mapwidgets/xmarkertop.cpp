#include <mapwidgets/xmarkertop.h>

#include <controlwidgets/axisbase.h>
#include <mapwidgets/axiscolours.h>
#include <mapwidgets/markerflags_p.h>
#include <mapwidgets/pixelgrid.h>

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int handleHalf = 5;
constexpr int handleHeight = 11;
constexpr double reach = 4;         // how far beside a line the mouse still finds it
constexpr double dragThreshold = 3; // below it a click that trembles leaves a flag where it is
constexpr double longestUnfolded = 260;
constexpr int pagesPerAxis = 10;
constexpr int fineStepsPerStep = 10;

QColor blended(const QColor& color, const QColor& other, float share)
{
    return QColor::fromRgbF(color.redF() * (1 - share) + other.redF() * share,
                            color.greenF() * (1 - share) + other.greenF() * share,
                            color.blueF() * (1 - share) + other.blueF() * share);
}

MarkerFlags::Texts textsOf(const QFontMetricsF& metrics)
{
    return {[metrics](const QString& text) { return std::ceil(metrics.horizontalAdvance(text)); },
            [metrics](const QString& text, double room) { return metrics.elidedText(text, Qt::ElideRight, room); }};
}

} // namespace

/// The flags, and the other markers that are shown, as they were found last, and of which axis.
struct XMarkerTop::Places
{
    std::optional<std::vector<MarkerFlag>> flags;
    std::vector<int> handles;
    double left = 0;
    double right = 0;
    double ratio = 0;
};

XMarkerTop::XMarkerTop(AxisBase& axis)
    : m_axis(axis)
    , m_places(std::make_unique<Places>())
{}

XMarkerTop::~XMarkerTop() = default;

int XMarkerTop::flagHeight() const
{
    return m_axis.fontMetrics().height() + 2;
}

// What is forgotten already is going to be painted.
void XMarkerTop::forgetPlaces()
{
    if (m_places->flags) {
        m_places->flags.reset();
        m_axis.update();
    }
}

void XMarkerTop::markerChanged(int number, bool moved)
{
    forgetPlaces();
    if (number == m_dragged && !moved && !canBeMoved(number)) {
        cancelDrag();
    }
}

bool XMarkerTop::isOnAxis(const Marker& marker) const
{
    return marker.IsVisible() && marker.GetPosition() >= m_axis.visibleStart() &&
           marker.GetPosition() <= m_axis.visibleStop();
}

const std::vector<MarkerFlag>& XMarkerTop::flags() const
{
    const double left = m_axis.placeAt(m_axis.visibleStart());
    const double right = m_axis.rightBorder();
    const double ratio = m_axis.devicePixelRatioF();
    if (!m_places->flags || left != m_places->left || right != m_places->right || ratio != m_places->ratio) {
        m_places->left = left;
        m_places->right = right;
        m_places->ratio = ratio;
        findFlags();
    }
    return *m_places->flags;
}

const std::vector<int>& XMarkerTop::handles() const
{
    flags();
    return m_places->handles;
}

void XMarkerTop::findFlags() const
{
    MarkerFlags flags({m_places->left, m_places->right, 1 / m_places->ratio});
    m_places->handles.clear();
    ForEachMarker([this, &flags](int number, const Marker& marker) {
        if (!isOnAxis(marker)) {
            return;
        }
        if (isFlag(number)) {
            flags.add(number, m_axis.placeAt(marker.GetPosition()), number == GetCurrentMarker());
        } else {
            m_places->handles.push_back(number);
        }
    });
    m_places->flags = flags.layOut(textsOf(QFontMetricsF(m_axis.font())),
                                   [this](int number) { return GetMarker(number)->GetName(); });
}

// The flag of the current marker has its whole text, over its neighbours if need be.
MarkerFlag XMarkerTop::unfolded(const MarkerFlag& flag) const
{
    const MarkerFlags::Texts texts = textsOf(QFontMetricsF(m_axis.font()));
    MarkerFlag whole = flag;
    const QString text = MarkerFlags::textOf(flag, GetMarker(flag.number)->GetName());
    const double border = m_axis.width();
    whole.text = texts.elided(text, std::min(longestUnfolded, border - 2 * MarkerFlags::padding));
    const double width =
        whole.text.isEmpty() ? flag.right - flag.left : texts.width(whole.text) + 2 * MarkerFlags::padding;
    whole.left = std::max(std::min(flag.place, border - width), 0.0);
    whole.right = whole.left + width;
    return whole;
}

// Of a cloth that is partly covered nothing is left, rather than the end of a text.
MarkerFlag XMarkerTop::besides(const MarkerFlag& flag, const MarkerFlag& onTop) const
{
    MarkerFlag seen = flag;
    if (flag.left < onTop.right && flag.right > onTop.left) {
        seen.text.clear();
        seen.left = flag.place;
        seen.right = flag.place + 1 / m_places->ratio;
    }
    return seen;
}

const MarkerFlag* XMarkerTop::flagOf(int number) const
{
    const Marker* const marker = GetMarker(number);
    if (marker == nullptr || !isFlag(number) || !isOnAxis(*marker)) {
        return nullptr;
    }
    const double place = m_axis.placeAt(marker->GetPosition());
    const auto nearer = [place](const MarkerFlag& a, const MarkerFlag& b) {
        return std::abs(a.place - place) < std::abs(b.place - place);
    };
    const auto found = std::min_element(flags().begin(), flags().end(), nearer);
    return found == flags().end() ? nullptr : &*found;
}

std::vector<int> XMarkerTop::markersBeside(int number) const
{
    const MarkerFlag* const flag = flagOf(number);
    if (flag == nullptr || flag->count == 1) {
        return {number};
    }
    std::vector<int> numbers;
    const double half = 0.5 / m_places->ratio;
    ForEachMarker([&](int other, const Marker& marker) {
        if (isFlag(other) && isOnAxis(marker) && std::abs(m_axis.placeAt(marker.GetPosition()) - flag->place) <= half) {
            numbers.push_back(other);
        }
    });
    return numbers;
}

int XMarkerTop::clothAt(QPointF place) const
{
    if (place.y() > markerTop() + flagHeight()) {
        return 0;
    }
    const auto contains = [place](const MarkerFlag& flag) {
        return place.x() >= flag.left && place.x() < std::max(flag.right, flag.place + 1);
    };
    const MarkerFlag* const current = flagOf(GetCurrentMarker());
    if (current != nullptr && contains(unfolded(*current))) {
        return current->number;
    }
    const auto found = std::find_if(flags().begin(), flags().end(), contains);
    return found == flags().end() ? 0 : found->number;
}

int XMarkerTop::handleAt(QPointF place) const
{
    const bool isAtHandle = place.y() >= m_axis.height() - handleHeight;
    int found = 0;
    for (const int number : handles()) {
        const double away = std::abs(m_axis.placeAt(GetMarker(number)->GetPosition()) - place.x());
        if (away <= (isAtHandle ? handleHalf + 1 : reach) && (found == 0 || found != GetCurrentMarker())) {
            found = number;
        }
    }
    return found;
}

int XMarkerTop::poleAt(QPointF place) const
{
    const auto nearer = [place](const MarkerFlag& a, const MarkerFlag& b) {
        return std::abs(a.place - place.x()) < std::abs(b.place - place.x());
    };
    const auto found = std::min_element(flags().begin(), flags().end(), nearer);
    return found != flags().end() && std::abs(found->place - place.x()) <= reach ? found->number : 0;
}

int XMarkerTop::markerAt(QPointF place) const
{
    if (place.y() < markerTop() || place.y() >= m_axis.height()) {
        return 0;
    }
    for (const int found : {clothAt(place), handleAt(place)}) {
        if (found != 0) {
            return found;
        }
    }
    return poleAt(place);
}

QColor XMarkerTop::paintColor(int number) const
{
    const bool isOpen = GetMarker(number)->IsEnabled() && m_axis.isEnabled();
    return isOpen ? markerColor(number) : blended(markerColor(number), m_axis.palette().color(QPalette::Base), 0.55F);
}

// The current one last, so that it lies on top, and lines above the poles of flags.
void XMarkerTop::paintMarkers(QPainter& painter) const
{
    const PixelGrid grid(painter);
    painter.setFont(m_axis.font());
    const MarkerFlag* const current = flagOf(GetCurrentMarker());
    const MarkerFlag onTop = current == nullptr ? MarkerFlag() : unfolded(*current);
    for (const MarkerFlag& flag : flags()) {
        paintFlag(painter, grid, besides(flag, onTop));
    }
    if (current != nullptr) {
        paintFlag(painter, grid, onTop);
    }
    for (const int number : handles()) {
        paintHandle(painter, grid, number);
    }
}

// Where flags stand too close for texts their poles are translucent, so that a range under them is still seen.
void XMarkerTop::paintFlag(QPainter& painter, const PixelGrid& grid, const MarkerFlag& flag) const
{
    const QColor color = paintColor(flag.number);
    const double bottom = markerTop() + flagHeight();
    const QRectF cloth = grid.rect({flag.left, double(markerTop()), flag.right - flag.left, double(flagHeight())});
    QColor pole = color;
    pole.setAlphaF(flag.isCrowded ? 0.35F : 1.0F);
    painter.fillRect(grid.rect({flag.place, bottom, flag.isCrowded ? 0 : grid.width(1), m_axis.height() - 1 - bottom}),
                     pole);
    painter.fillRect(cloth, color);
    if (flag.number == GetCurrentMarker() && m_axis.hasFocus()) {
        const double line = grid.width(1);
        painter.fillRect(cloth, m_axis.palette().color(QPalette::WindowText));
        painter.fillRect(cloth.adjusted(line, line, -line, -line), color);
    }
    if (!flag.text.isEmpty()) {
        painter.setPen(axiscolours::textOn(color));
        painter.drawText(QPointF(flag.left + MarkerFlags::padding, markerTop() + 1 + m_axis.fontMetrics().ascent()),
                         flag.text);
    }
}

void XMarkerTop::paintHandle(QPainter& painter, const PixelGrid& grid, int number) const
{
    const QColor color = paintColor(number);
    const double bottom = m_axis.height() - 1;
    const QRectF line = grid.vertical(m_axis.placeAt(GetMarker(number)->GetPosition()), markerTop(), bottom, 2);
    painter.fillRect(line, color);
    const double x = line.center().x();
    const QPointF handle[] = {{x, bottom - handleHeight},
                              {x + handleHalf, bottom - handleHalf - 1},
                              {x + handleHalf, bottom},
                              {x - handleHalf, bottom},
                              {x - handleHalf, bottom - handleHalf - 1}};
    const bool isCurrent = number == GetCurrentMarker() && m_axis.hasFocus();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isCurrent ? QPen(m_axis.palette().color(QPalette::WindowText), 1) : QPen(Qt::NoPen));
    painter.setBrush(color);
    painter.drawPolygon(handle, static_cast<int>(std::size(handle)));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

// An axis without extent has but one place, and moving a marker there would lose its own.
bool XMarkerTop::canBeMoved(int number) const
{
    const Marker* const marker = GetMarker(number);
    const bool hasPlaces = m_axis.axisStart() < m_axis.axisStop();
    return hasPlaces && marker != nullptr && marker->IsVisible() && marker->IsEnabled() && marker->IsMoveable() &&
           !marker->IsLocked();
}

bool XMarkerTop::grabMarker(const QMouseEvent& event)
{
    const int number = event.button() == Qt::LeftButton ? markerAt(event.position()) : 0;
    if (number == 0) {
        return false;
    }
    SetCurrentMarker(number);
    if (canBeMoved(number)) {
        m_dragged = number;
        m_hasMoved = false;
        m_pressedAt = event.position().x();
        m_grabbedPosition = GetMarker(number)->GetPosition();
        m_grabOffset = m_pressedAt - m_axis.placeAt(m_grabbedPosition);
    }
    return true;
}

// The release of the button may have gone to somebody else.
bool XMarkerTop::dragMarker(const QMouseEvent& event)
{
    if (m_dragged != 0 && !event.buttons().testFlag(Qt::LeftButton)) {
        cancelDrag();
    }
    if (m_dragged == 0) {
        return false;
    }
    const double x = event.position().x();
    m_hasMoved = m_hasMoved || !isFlag(m_dragged) || std::abs(x - m_pressedAt) >= dragThreshold;
    if (m_hasMoved && canBeMoved(m_dragged)) {
        moveByUser(m_dragged, heldOnAxis(m_axis.valueAt(x - m_grabOffset)));
    }
    return true;
}

bool XMarkerTop::dropMarker(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || m_dragged == 0) {
        return false;
    }
    const int number = std::exchange(m_dragged, 0);
    markerDropped(number);
    return true;
}

void XMarkerTop::cancelDrag()
{
    if (GetMarker(m_dragged) != nullptr) {
        moveByUser(m_dragged, m_grabbedPosition);
    }
    endDrag();
}

bool XMarkerTop::keyOnMarker(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Escape && m_dragged != 0) {
        cancelDrag();
        return true;
    }
    const bool isSideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (isSideways && event.modifiers().testFlag(Qt::ControlModifier)) {
        return chooseNext(event.key() == Qt::Key_Left ? -1 : 1);
    }
    return moveCurrent(event);
}

double XMarkerTop::arrowStep(int partsOfPixel) const
{
    const double extent = m_axis.visibleStop() - m_axis.visibleStart();
    const double pixels = m_axis.placeAt(m_axis.visibleStop()) - m_axis.placeAt(m_axis.visibleStart());
    return keyStep(extent / std::max(pixels, 1.0) / partsOfPixel);
}

// The position itself for keys that do not move.
double XMarkerTop::target(const QKeyEvent& event, double position) const
{
    const double extent = m_axis.visibleStop() - m_axis.visibleStart();
    const double step = arrowStep(event.modifiers().testFlag(Qt::ShiftModifier) ? fineStepsPerStep : 1);
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        return position - step;
    case Qt::Key_Right:
    case Qt::Key_Up:
        return position + step;
    case Qt::Key_PageDown:
        return position - keyStep(extent / pagesPerAxis);
    case Qt::Key_PageUp:
        return position + keyStep(extent / pagesPerAxis);
    case Qt::Key_Home:
        return m_axis.axisStart();
    case Qt::Key_End:
        return m_axis.axisStop();
    default:
        return position;
    }
}

bool XMarkerTop::moveCurrent(const QKeyEvent& event)
{
    static constexpr int keys[] = {Qt::Key_Left,   Qt::Key_Right,    Qt::Key_Up,   Qt::Key_Down,
                                   Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
    const bool moves = std::find(std::begin(keys), std::end(keys), event.key()) != std::end(keys);
    return moves && moveTo(GetCurrentMarker(), target(event, GetMarker(GetCurrentMarker())->GetPosition()));
}

bool XMarkerTop::moveTo(int number, double position)
{
    if (!canBeMoved(number)) {
        return false;
    }
    const double held = heldOnAxis(position);
    m_axis.reveal(held);
    return moveByUser(number, held);
}

bool XMarkerTop::moveByUser(int number, double position)
{
    const bool isMoved = GetMarker(number)->MoveTo(position);
    if (isMoved) {
        markerMovedByUser(number, position);
    }
    return isMoved;
}

bool XMarkerTop::moveBySteps(int number, int steps)
{
    return canBeMoved(number) && moveTo(number, GetMarker(number)->GetPosition() + steps * arrowStep(1));
}

double XMarkerTop::heldOnAxis(double position) const
{
    return std::clamp(roundedPosition(position), m_axis.axisStart(), m_axis.axisStop());
}

// Of markers in the same place the one with the lower number comes first.
int XMarkerTop::nextMarker(int number, int direction) const
{
    using Place = std::pair<double, int>;
    const auto comesBefore = [direction](const Place& a, const Place& b) { return direction > 0 ? a < b : b < a; };
    const Place own(GetMarker(number)->GetPosition(), number);
    Place nearest;
    ForEachMarker([&](int other, const Marker& marker) {
        const Place place(marker.GetPosition(), other);
        const bool isOn = marker.IsVisible() && place.first >= m_axis.axisStart() && place.first <= m_axis.axisStop();
        if (isOn && comesBefore(own, place) && (nearest.second == 0 || comesBefore(place, nearest))) {
            nearest = place;
        }
    });
    return nearest.second;
}

bool XMarkerTop::chooseNext(int direction)
{
    const int number = nextMarker(GetCurrentMarker(), direction);
    if (number == 0) {
        return false;
    }
    m_axis.reveal(GetMarker(number)->GetPosition());
    SetCurrentMarker(number);
    return true;
}
