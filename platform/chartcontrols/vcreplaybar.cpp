#include <chartcontrols/vcreplaybar.h>

#include <chartcontrols/replaybaraccessible_p.h>
#include <chartcontrols/replaybarannouncer_p.h>
#include <chartcontrols/replaybarmenu_p.h>
#include <chartcontrols/replaybartooltip_p.h>
#include <chartcontrols/replaybartrack_p.h>
#include <controlwidgets/guicentral.h>
#include <mapwidgets/axiscolours.h>
#include <mapwidgets/axisheadline.h>
#include <mapwidgets/timeticks.h>

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int roomForHandle = 16;
constexpr int gap = 2;

double toMoment(long long time)
{
    return static_cast<double>(time);
}

// The notice of a deletion comes while the value still exists.
bool isThere(const ValueObservingPtr<Value<double>>& value)
{
    return value && value->GetState() != TValueState::Deleted;
}

double momentOf(const ValueObservingPtr<Value<double>>& value)
{
    return isThere(value) ? value->GetValue() : 0;
}

} // namespace

VCReplayBar::VCReplayBar(QWidget* parent, const char* name, bool showRuler)
    : XRulerTop(parent)
    , XMarkerTop(static_cast<AxisBase&>(*this))
    , m_showRuler(showRuler)
    , m_announcer(std::make_unique<ReplayBarAnnouncer>(*this))
{
    ReplayBarAccessible::install(); // before anything is told of this object
    setObjectName(QLatin1String(name));
    setAccessibleName(tr("Replay bar"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &AxisBase::signalAxisChanged, this, [this] { forgetPlaces(); });
    for (const int number : {PositionMarker, 2, 3}) {
        addMarker(number);
    }
}

// The markers of the bookmarks let go of their values first.
VCReplayBar::~VCReplayBar()
{
    m_isSettingBookmarks = true;
    setBookmarkCount(0);
}

QSize VCReplayBar::sizeHint() const
{
    return {400, markerTop() + flagHeight() + roomForHandle};
}

QSize VCReplayBar::minimumSizeHint() const
{
    return {100, markerTop() + flagHeight() + roomForHandle};
}

void VCReplayBar::tie(ValueObservingPtr<Value<double>>& value, const QString& path)
{
    value.GetFromTree(path);
    updateRange();
}

void VCReplayBar::SetRecordingStart_ValuePath(const QString& path)
{
    tie(m_start, path);
}

void VCReplayBar::SetRecordingStop_ValuePath(const QString& path)
{
    tie(m_stop, path);
}

void VCReplayBar::SetCurrentPosition_ValuePath(const QString& path)
{
    GetMarker(PositionMarker)->SetValueTreePath(path);
}

double VCReplayBar::GetRecordingStart() const
{
    return momentOf(m_start);
}

double VCReplayBar::GetRecordingStop() const
{
    return momentOf(m_stop);
}

void VCReplayBar::updateRange()
{
    if (isThere(m_start) && isThere(m_stop)) {
        SetAxisRange(GetRecordingStart(), GetRecordingStop());
    } else {
        SetAxisRange(0, 0);
    }
}

void VCReplayBar::Update(Observable*, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged || code == TChangeCode::ValueRefreshed || code == TChangeCode::StateChanged) {
        updateRange();
    }
}

void VCReplayBar::SetRangeVector(const std::vector<std::pair<long long, long long>>& ranges)
{
    m_ranges = ranges;
    update();
}

void VCReplayBar::AllowCreationOfBookMarks(bool allow)
{
    m_allowCreation = allow;
}

void VCReplayBar::SetBookmarks(const std::vector<BookmarkType>& bookmarks, bool notify)
{
    m_isSettingBookmarks = true;
    endDragUnlessKept(bookmarks);
    const int current = currentAmong(bookmarks);
    setBookmarkCount(bookmarks.size());
    for (std::size_t index = 0; index < bookmarks.size(); ++index) {
        showBookmark(index, bookmarks[index]);
    }
    SetCurrentMarker(current);
    m_isSettingBookmarks = false;
    m_announcer->tell();
    update();
    if (notify) {
        Q_EMIT signalBookmarksChanged();
    }
}

std::vector<BookmarkType> VCReplayBar::GetBookmarks() const
{
    return m_bookmarks;
}

// The mouse holds a number, which is another bookmark's once those before it are gone.
void VCReplayBar::endDragUnlessKept(const std::vector<BookmarkType>& bookmarks)
{
    if (!isFlag(draggedMarker())) {
        return;
    }
    const auto index = static_cast<std::size_t>(draggedMarker() - FirstBookmarkMarker);
    if (index >= bookmarks.size() || (bookmarks[index] != m_bookmarks[index] && bookmarks[index] != m_grabbed)) {
        endDrag();
    }
}

// In another list the same bookmark may have another number.
int VCReplayBar::currentAmong(const std::vector<BookmarkType>& bookmarks) const
{
    const int number = GetCurrentMarker();
    if (!isFlag(number) || number == draggedMarker()) {
        return number;
    }
    const auto index = static_cast<std::size_t>(number - FirstBookmarkMarker);
    if (index < bookmarks.size() && bookmarks[index] == m_bookmarks[index]) {
        return number;
    }
    const auto found = std::find(bookmarks.begin(), bookmarks.end(), m_bookmarks[index]);
    if (found != bookmarks.end()) {
        return bookmarkMarker(static_cast<std::size_t>(found - bookmarks.begin()));
    }
    return isEdited(index, bookmarks) ? number : PositionMarker;
}

// A table edits one of the two at a time. Bookmarks of the same text are found in other recordings too, at other times.
bool VCReplayBar::isEdited(std::size_t index, const std::vector<BookmarkType>& bookmarks) const
{
    if (bookmarks.size() != m_bookmarks.size()) {
        return false;
    }
    const auto& [time, text] = bookmarks[index];
    const bool isInRecording = toMoment(time) >= axisStart() && toMoment(time) <= axisStop();
    return time == m_bookmarks[index].time || (text == m_bookmarks[index].text && isInRecording);
}

// What stays keeps its marker and its value, so that an editor that is open on it stays tied to it.
void VCReplayBar::setBookmarkCount(std::size_t count)
{
    while (m_bookmarkPaths.size() > count) {
        removeMarker(bookmarkMarker(m_bookmarkPaths.size() - 1));
        GuiCentral::Instance().RemoveValue(m_bookmarkPaths.back());
        m_bookmarkPaths.pop_back();
    }
    while (m_bookmarkPaths.size() < count) {
        constexpr double largest = std::numeric_limits<double>::max();
        m_bookmarkPaths.push_back(GuiCentral::Instance().CreateUniqueValueFloat(0, -largest, largest, 1));
        Marker& marker = addMarker(bookmarkMarker(m_bookmarkPaths.size() - 1));
        marker.SetMoveable(true);
        marker.SetValueTreePath(m_bookmarkPaths.back());
    }
    m_bookmarks.resize(count);
}

void VCReplayBar::showBookmark(std::size_t index, const BookmarkType& bookmark)
{
    Marker& marker = *GetMarker(bookmarkMarker(index));
    marker.SetName(bookmark.text);
    if (marker.GetPosition() != toMoment(bookmark.time)) {
        marker.MoveTo(toMoment(bookmark.time));
    }
    m_bookmarks[index] = bookmark;
}

bool VCReplayBar::canBeBookmarked(double moment) const
{
    return m_allowCreation && axisStop() > axisStart() && moment >= axisStart() && moment <= axisStop();
}

bool VCReplayBar::canBeRemoved(int number) const
{
    return m_allowCreation && isFlag(number) && GetMarker(number) != nullptr && GetMarker(number)->IsEnabled();
}

void VCReplayBar::createBookmark(double moment)
{
    std::vector<BookmarkType> bookmarks = m_bookmarks;
    bookmarks.emplace_back(timeticks::whole(moment), tr("Bookmark %1").arg(bookmarks.size() + 1));
    SetBookmarks(bookmarks, false);
    SetCurrentMarker(bookmarkMarker(bookmarks.size() - 1));
    Q_EMIT signalBookmarksChanged();
}

// The one behind it, as far as there is one.
int VCReplayBar::bookmarkBeside(int number) const
{
    for (const int direction : {1, -1}) {
        int next = nextMarker(number, direction);
        while (next != 0 && !isFlag(next)) {
            next = nextMarker(next, direction);
        }
        if (next != 0) {
            return next;
        }
    }
    return PositionMarker;
}

void VCReplayBar::removeBookmark(int number)
{
    if (number == GetCurrentMarker()) {
        SetCurrentMarker(bookmarkBeside(number));
    }
    std::vector<BookmarkType> bookmarks = m_bookmarks;
    bookmarks.erase(bookmarks.begin() + (number - FirstBookmarkMarker));
    SetBookmarks(bookmarks, true);
}

// A time that a double cannot hold to the last digit stays as it is until its marker really moves.
void VCReplayBar::markerChanged(int number, bool moved)
{
    XMarkerTop::markerChanged(number, moved);
    if (m_isSettingBookmarks) {
        return; // they are half the old ones
    }
    m_announcer->tell();
    if (!isFlag(number) || !moved) {
        return;
    }
    BookmarkType& bookmark = bookmarkOf(number);
    const double position = GetMarker(number)->GetPosition();
    if (position == toMoment(bookmark.time)) {
        return;
    }
    bookmark.time =
        position == toMoment(m_grabbed.time) && number == draggedMarker() ? m_grabbed.time : timeticks::whole(position);
    if (number != draggedMarker()) {
        Q_EMIT signalBookmarksChanged();
    }
}

void VCReplayBar::markerMovedByUser(int number, double position)
{
    if (number == PositionMarker) {
        Q_EMIT signalPositionMoved(position);
    }
}

void VCReplayBar::markerDropped(int number)
{
    if (isFlag(number) && bookmarkOf(number).time != m_grabbed.time) {
        Q_EMIT signalBookmarksChanged();
    }
}

QString VCReplayBar::positionText() const
{
    const Marker& marker = *GetMarker(GetCurrentMarker());
    return marker.GetValueTreePath().isEmpty() ? QString()
                                               : timeticks::dateAndTime(timeticks::whole(marker.GetPosition()));
}

int VCReplayBar::rulerTop() const
{
    return fontMetrics().height() + gap;
}

int VCReplayBar::markerTop() const
{
    return m_showRuler ? rulerHeight() + gap / 2 : gap / 2;
}

QColor VCReplayBar::markerColor(int number) const
{
    if (isFlag(number)) {
        return axiscolours::bookmark(palette());
    }
    return axiscolours::isDark(palette()) ? QColor(0xFF, 0x6B, 0x6B) : QColor(0xC9, 0x2A, 0x2A);
}

double VCReplayBar::keyStep(double least) const
{
    return timeticks::distance(least);
}

double VCReplayBar::roundedPosition(double position) const
{
    return std::round(position);
}

double VCReplayBar::tickDistance(double least) const
{
    return timeticks::distance(least);
}

double VCReplayBar::firstTick(double value, double distance) const
{
    return timeticks::first(value, distance);
}

double VCReplayBar::nextTick(double tick, double distance) const
{
    return timeticks::next(tick, distance);
}

QString VCReplayBar::tickText(double value, double distance) const
{
    return timeticks::text(value, distance);
}

QString VCReplayBar::endText(double value) const
{
    return timeticks::endText(value, visibleStop() - visibleStart());
}

QString VCReplayBar::longestTickText(double distance) const
{
    return timeticks::longestText(distance, timeticks::isSameDay(visibleStart(), visibleStop()));
}

bool VCReplayBar::hasRecording() const
{
    return isThere(m_start) && isThere(m_stop) && axisStop() > 0;
}

// What is read beside the dates: the current marker, and shorter texts for where there is less room. Outside of the
// recording a time is of any day, so none stands there without its date.
QStringList VCReplayBar::readings() const
{
    const Marker& marker = *GetMarker(GetCurrentMarker());
    if (!marker.IsVisible()) {
        return {};
    }
    const long long time = timeticks::whole(marker.GetPosition());
    const bool isInside = marker.GetPosition() >= axisStart() && marker.GetPosition() <= axisStop();
    QStringList texts = isInside ? timeticks::timesOfDay(time) : QStringList();
    if (!isInside || !timeticks::isSameDay(axisStart(), axisStop())) {
        texts.prepend(timeticks::dateAndTime(time));
    }
    const QString name = fontMetrics().elidedText(marker.GetName(), Qt::ElideRight, width() / 4);
    if (isFlag(GetCurrentMarker()) && !name.isEmpty()) {
        texts.prepend(name + QStringLiteral("  ") + texts.constFirst());
    }
    return texts;
}

void VCReplayBar::paintHeadline(QPainter& painter) const
{
    painter.setPen(palette().color(QPalette::WindowText));
    const AxisHeadline headline{timeticks::dates(axisStart(), axisStop()), readings(), markerColor(GetCurrentMarker())};
    headline.paint(painter, pixelAt(visibleStart()), static_cast<int>(std::lround(rightBorder())) + 1);
}

ReplayBarTrack VCReplayBar::track() const
{
    const double left = placeAt(visibleStart());
    return {palette(), isEnabled(), hasFocus(),
            QRectF(QPointF(left, markerTop()), QPointF(rightBorder(), height() - 1))};
}

void VCReplayBar::paintRecording(QPainter& painter) const
{
    const ReplayBarTrack track = this->track();
    track.paintRecording(painter);
    for (const double tick : m_showRuler ? ticks() : std::vector<double>()) {
        track.paintTick(painter, placeAt(tick));
    }
    for (const auto& [first, last] : m_ranges) {
        const double from = placeAt(toMoment(first));
        track.paintRange(painter, from, std::max(placeAt(toMoment(last)), from));
    }
}

void VCReplayBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!hasRecording()) {
        track().paintEmpty(painter, fontMetrics().elidedText(tr("No recording"), Qt::ElideRight, width()));
        return;
    }
    paintRecording(painter);
    if (m_showRuler) {
        paintHeadline(painter);
        paintRuler(painter);
    }
    paintMarkers(painter);
}

void VCReplayBar::changeEvent(QEvent* event)
{
    forgetPlaces();
    XRulerTop::changeEvent(event);
}

bool VCReplayBar::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return XRulerTop::event(event);
    }
    const auto& help = static_cast<const QHelpEvent&>(*event);
    showToolTip(help.pos(), help.globalPos());
    return true;
}

void VCReplayBar::showToolTip(QPoint place, QPoint screenPlace)
{
    const int number = hasRecording() ? markerAt(place) : 0;
    if (number == 0) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(screenPlace, replayBarToolTip(*this, number), this);
    }
}

void VCReplayBar::contextMenuEvent(QContextMenuEvent* event)
{
    if (!hasRecording() || draggedMarker() != 0) {
        event->ignore();
        return;
    }
    const bool isMouse = event->reason() == QContextMenuEvent::Mouse;
    const int number = isMouse ? markerAt(event->pos()) : GetCurrentMarker();
    const double moment = number != 0 ? GetMarker(number)->GetPosition() : valueAt(event->pos().x());
    SetCurrentMarker(number);
    const QPoint place(std::clamp(pixelAt(moment), 0, width()), markerTop() + flagHeight());
    auto* const menu = new ReplayBarMenu(*this, number, moment);
    menu->popup(isMouse ? event->globalPos() : mapToGlobal(place));
}

void VCReplayBar::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(grabMarker(*event));
    if (isFlag(draggedMarker())) {
        m_grabbed = bookmarkOf(draggedMarker());
    }
}

void VCReplayBar::mouseMoveEvent(QMouseEvent* event)
{
    event->setAccepted(dragMarker(*event));
    const int number = draggedMarker() != 0 ? draggedMarker() : markerAt(event->position());
    if (canBeMoved(number)) {
        setCursor(Qt::SizeHorCursor);
    } else {
        unsetCursor();
    }
}

void VCReplayBar::mouseReleaseEvent(QMouseEvent* event)
{
    event->setAccepted(dropMarker(*event));
}

void VCReplayBar::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPointF place = event->position();
    const double moment = valueAt(place.x());
    if (event->button() == Qt::LeftButton && markerAt(place) == 0 && canBeBookmarked(moment)) {
        createBookmark(moment);
    } else {
        mousePressEvent(event);
    }
}

void VCReplayBar::keyPressEvent(QKeyEvent* event)
{
    if (!editByKey(*event) && !keyOnMarker(*event)) {
        XRulerTop::keyPressEvent(event);
    }
}

bool VCReplayBar::editByKey(const QKeyEvent& event)
{
    const Marker& position = *GetMarker(PositionMarker);
    const int current = GetCurrentMarker();
    if (event.key() == Qt::Key_Insert && position.IsVisible() && canBeBookmarked(position.GetPosition())) {
        createBookmark(position.GetPosition());
        return true;
    }
    if (event.key() == Qt::Key_Delete && canBeRemoved(current)) {
        removeBookmark(current);
        return true;
    }
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return isReturn && isFlag(current) && moveTo(PositionMarker, GetMarker(current)->GetPosition());
}
