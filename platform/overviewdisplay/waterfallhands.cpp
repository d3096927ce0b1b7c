#include <overviewdisplay/waterfallhands_p.h>

#include <overviewdisplay/waterfallmenu_p.h>
#include <widgetbase/plaintooltip.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr int unitsPerStep = 120; // Qt's, in eighths of a degree
constexpr double reach = 4;       // pixels beside an edge at which the mouse still finds it
constexpr int fast = 10;
constexpr int pagesPerView = 10;
constexpr double stepsPerView = 8; // of Shift with the wheel
constexpr double halfView = 0.5;
constexpr double doubleClickZoom = 4;

// Where an arrow key points to.
std::optional<QPoint> directionOf(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return QPoint(0, -1);
    case Qt::Key_Down:
        return QPoint(0, 1);
    case Qt::Key_Left:
        return QPoint(-1, 0);
    case Qt::Key_Right:
        return QPoint(1, 0);
    default:
        return std::nullopt;
    }
}

bool doesSelect(const QKeyEvent& event)
{
    return event.modifiers().testFlag(Qt::ShiftModifier);
}

} // namespace

WaterfallHands::WaterfallHands(WaterfallView& view, WaterfallScene& scene)
    : m_view(view)
    , m_scene(scene)
{}

bool WaterfallHands::isOnPicture(const QPointF& place) const
{
    return m_scene.canPoint() && m_scene.layout().plot.contains(place);
}

quint64 WaterfallHands::edgeTime(const QPointF& place) const
{
    return m_scene.rows().timeOf(m_scene.layout().edgeAt(place.y()));
}

// The end of the selection that stays when the one at this place is dragged.
std::optional<quint64> WaterfallHands::otherEdge(const QPointF& place) const
{
    const auto& range = m_scene.selection().range();
    if (!range || !isOnPicture(place)) {
        return std::nullopt;
    }
    const auto away = [&](quint64 time) {
        return std::abs(m_scene.layout().yOf(m_scene.rows().placeOf(time)) - place.y());
    };
    const double fromStart = away(range->start);
    const double fromStop = away(range->stop);
    if (std::min(fromStart, fromStop) > reach) {
        return std::nullopt;
    }
    return fromStart < fromStop ? range->stop : range->start;
}

bool WaterfallHands::press(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !isOnPicture(event.position())) {
        return false;
    }
    m_anchor.reset();
    if (const auto fixed = otherEdge(event.position())) {
        m_scene.changeSelection([&](WaterfallSelection& selection) { selection.grab(*fixed); });
    } else {
        m_pressed = event.position();
    }
    return true;
}

void WaterfallHands::grabSelection(const QPointF& place)
{
    if (m_pressed && std::abs(place.y() - m_pressed->y()) >= QApplication::startDragDistance()) {
        const quint64 fixed = edgeTime(*m_pressed);
        m_pressed.reset();
        m_scene.changeSelection([&](WaterfallSelection& selection) { selection.grab(fixed); });
    }
}

void WaterfallHands::drag(const QPointF& place)
{
    grabSelection(place);
    if (m_scene.selection().isDragging()) {
        m_scene.changeSelection([&](WaterfallSelection& selection) { selection.dragTo(edgeTime(place)); });
    }
}

// The release of the button may have gone to somebody else.
bool WaterfallHands::move(const QMouseEvent& event)
{
    if (!m_scene.canPoint()) {
        return false;
    }
    if (!event.buttons().testFlag(Qt::LeftButton)) {
        letGo();
    }
    drag(event.position());
    const bool isDragging = m_scene.selection().isDragging();
    if (isDragging || isOnPicture(event.position())) {
        m_anchor.reset();
        m_scene.moveCursorTo(m_scene.layout().columnAt(event.position().x()),
                             m_scene.layout().rowAt(event.position().y()));
    }
    showShape(event.position());
    return true;
}

void WaterfallHands::showShape(const QPointF& place)
{
    if (m_scene.selection().isDragging() || otherEdge(place)) {
        m_view.setCursor(Qt::SizeVerCursor);
    } else if (isOnPicture(place)) {
        m_view.setCursor(Qt::CrossCursor);
    } else {
        m_view.unsetCursor();
    }
}

bool WaterfallHands::release(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton) {
        return false;
    }
    if (m_pressed) {
        click(*m_pressed);
    }
    letGo();
    return true;
}

// One inside may become a double click, which is about the selection.
void WaterfallHands::click(const QPointF& place)
{
    if (!m_scene.selection().contains(m_scene.rows().timeOf(m_scene.layout().rowAt(place.y())))) {
        m_scene.changeSelection([](WaterfallSelection& selection) { selection.set(std::nullopt); });
    }
}

void WaterfallHands::letGo()
{
    m_pressed.reset();
    m_scene.changeSelection([](WaterfallSelection& selection) { selection.drop(); });
}

bool WaterfallHands::doubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !isOnPicture(event.position())) {
        return false;
    }
    const quint64 time = m_scene.rows().timeOf(m_scene.layout().rowAt(event.position().y()));
    if (m_scene.selection().contains(time)) {
        ask(*m_scene.selection().range());
    } else {
        zoom(time, 1 / doubleClickZoom);
    }
    return true;
}

// A fine wheel turns many times for one step, and each step may be a question to a recorder.
bool WaterfallHands::turn(const QWheelEvent& event)
{
    if (!isOnPicture(event.position())) {
        return false;
    }
    const QPoint turned = event.angleDelta();
    m_turned += turned.y() != 0 ? turned.y() : turned.x();
    const int steps = m_turned / unitsPerStep;
    m_turned -= steps * unitsPerStep;
    if (steps == 0) {
        return true;
    }
    const double factor = std::pow(zoomStep, -steps);
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        const int column = m_scene.layout().columnAt(event.position().x());
        m_scene.zoomFrequencies(m_scene.shareOf(column), factor);
    } else if (event.modifiers().testFlag(Qt::ShiftModifier)) {
        ask(moved(m_scene.timeRange(), -steps / stepsPerView));
    } else {
        zoom(m_scene.rows().timeOf(m_scene.layout().rowAt(event.position().y())), factor);
    }
    return true;
}

bool WaterfallHands::key(const QKeyEvent& event)
{
    return m_scene.canPoint() && (moveKey(event) || zoomKey(event) || otherKey(event));
}

// A line, where it is higher than a pixel of the window; and one that is another time.
int WaterfallHands::rowStep() const
{
    const auto extent = static_cast<double>(m_scene.rows().extent());
    const double perTime = m_scene.rows().rows / extent;
    const OverviewLevels* const levels = m_scene.levels();
    double line = perTime;
    if (levels != nullptr && levels->lineCount() > 0) {
        line = perTime * static_cast<double>(levels->wish().stop - levels->wish().start) / levels->lineCount();
    }
    const double step = std::max({m_scene.layout().ratio, std::round(line), std::ceil(perTime)});
    return static_cast<int>(std::min(step, double(m_scene.rows().rows)));
}

int WaterfallHands::columnStep() const
{
    const OverviewLevels* const levels = m_scene.levels();
    const int bins = levels == nullptr ? 0 : levels->binCount();
    const double bin = bins > 0 ? m_scene.columnsOf(1.0 / bins) : 0;
    return static_cast<int>(std::max(m_scene.layout().ratio, std::round(bin)));
}

bool WaterfallHands::moveKey(const QKeyEvent& event)
{
    const auto direction = directionOf(event.key());
    if (!direction) {
        return pageKey(event);
    }
    const int times = event.modifiers().testFlag(Qt::ControlModifier) ? fast : 1;
    moveBy(direction->x() * columnStep() * times, direction->y() * rowStep() * times, doesSelect(event));
    return true;
}

bool WaterfallHands::pageKey(const QKeyEvent& event)
{
    if (event.key() != Qt::Key_PageUp && event.key() != Qt::Key_PageDown) {
        return false;
    }
    const int direction = event.key() == Qt::Key_PageUp ? -1 : 1;
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        ask(moved(m_scene.timeRange(), direction * halfView));
    } else {
        moveBy(0, direction * std::max(m_scene.rows().rows / pagesPerView, 1), doesSelect(event));
    }
    return true;
}

// The first key shows the cursor in the middle.
void WaterfallHands::moveBy(int columns, int rows, bool doesSelect)
{
    const auto& place = m_scene.place();
    if (!place) {
        m_scene.moveCursorTo(m_scene.layout().pixels.width() / 2, m_scene.rows().rows / 2);
        announce(false);
        return;
    }
    moveTo(m_scene.columnOf(place->share) + columns, m_scene.rows().rowAt(place->time) + rows, doesSelect);
}

void WaterfallHands::moveTo(int column, int row, bool doesSelect)
{
    if (!doesSelect) {
        m_anchor.reset();
    } else if (!m_anchor) {
        m_anchor = m_scene.place()->time;
    }
    m_scene.moveCursorTo(column, row);
    if (m_anchor) {
        select(*m_anchor, m_scene.place()->time);
    }
    announce(doesSelect);
}

// Both rows belong to it.
void WaterfallHands::select(quint64 from, quint64 to)
{
    const TimeRows& rows = m_scene.rows();
    const auto [first, last] = std::minmax({rows.rowAt(from), rows.rowAt(to)}); // values, not references
    const TimeRange range{rows.timeOf(first), rows.timeOf(last + 1)};
    m_scene.changeSelection([&](WaterfallSelection& selection) { selection.set(range); });
}

// Only what was done with keys: programs that read the screen would talk without end while the mouse moves.
void WaterfallHands::announce(bool doesSelect)
{
    QAccessibleValueChangeEvent value(&m_view, m_view.cursorText());
    QAccessible::updateAccessibility(&value);
    if (doesSelect) {
        QAccessibleEvent description(&m_view, QAccessible::DescriptionChanged);
        QAccessible::updateAccessibility(&description);
    }
}

bool WaterfallHands::zoomKey(const QKeyEvent& event)
{
    const bool isIn = event.key() == Qt::Key_Plus || event.key() == Qt::Key_Equal;
    const bool isOut = event.key() == Qt::Key_Minus || event.key() == Qt::Key_Underscore;
    if (!isIn && !isOut) {
        return false;
    }
    const double factor = isIn ? 1 / zoomStep : zoomStep;
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        m_scene.zoomFrequencies(centreShare(), factor);
    } else {
        zoom(centre(), factor);
    }
    return true;
}

bool WaterfallHands::otherKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Home:
        askWhole();
        return true;
    case Qt::Key_Escape:
        return escape();
    case Qt::Key_Insert:
        if (m_scene.place()) {
            Q_EMIT m_view.si_bookmarkAsked(m_scene.place()->time);
        }
        return m_scene.place().has_value();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const auto range = m_scene.selection().range()) {
            ask(*range);
            return true;
        }
        return false;
    default:
        return false;
    }
}

// What there is none of the window may have its own use for, which is to close.
bool WaterfallHands::escape()
{
    m_anchor.reset();
    if (m_pressed || m_scene.selection().isDragging()) {
        m_pressed.reset();
        m_scene.changeSelection([](WaterfallSelection& selection) { selection.cancel(); });
        return true;
    }
    const bool hasSelection = m_scene.selection().range().has_value();
    m_scene.changeSelection([](WaterfallSelection& selection) { selection.set(std::nullopt); });
    return hasSelection;
}

quint64 WaterfallHands::centre() const
{
    const TimeRange& range = m_scene.timeRange();
    const auto& place = m_scene.place();
    const bool isShown = place && place->time >= range.start && place->time < range.stop;
    return isShown ? place->time : m_scene.rows().timeOf(m_scene.rows().rows / 2);
}

double WaterfallHands::centreShare() const
{
    return m_scene.place() ? m_scene.place()->share : m_scene.shareOf(m_scene.layout().pixels.width() / 2);
}

void WaterfallHands::zoom(quint64 centre, double factor)
{
    ask(zoomed(m_scene.timeRange(), centre, factor));
}

void WaterfallHands::ask(const TimeRange& range)
{
    if (range != m_scene.timeRange()) {
        Q_EMIT m_view.si_zoomAsked(range.start, range.stop);
    }
}

void WaterfallHands::askWhole()
{
    m_view.showAllFrequencies();
    Q_EMIT m_view.si_zoomOutAsked();
}

bool WaterfallHands::openMenu(const QContextMenuEvent& event)
{
    if (!m_scene.canPoint()) {
        return false;
    }
    const bool isMouse = event.reason() == QContextMenuEvent::Mouse;
    if (isMouse && !isOnPicture(event.pos())) {
        return false;
    }
    letGo();
    const quint64 time = isMouse ? m_scene.rows().timeOf(m_scene.layout().rowAt(event.pos().y())) : centre();
    const QPointF shown(m_scene.layout().plot.center().x(), m_scene.layout().yOf(m_scene.rows().placeOf(time)));
    auto* const menu = new WaterfallMenu(m_view, time);
    Q_EMIT m_view.si_menuAboutToShow(menu);
    menu->popup(isMouse ? event.globalPos() : m_view.mapToGlobal(shown.toPoint()));
    return true;
}

void WaterfallHands::showToolTip(const QHelpEvent& event)
{
    const QString text = m_scene.canPoint()
                             ? m_scene.flags().textAt(event.pos(), m_scene.layout().plot, m_view.fontMetrics())
                             : QString();
    if (text.isEmpty()) {
        QToolTip::hideText();
    } else {
        guiHelper::showPlainToolTip(event.globalPos(), text, &m_view, QRect(event.pos(), QSize(1, 1)));
    }
}

} // namespace SPECTRUM_OVERVIEW
