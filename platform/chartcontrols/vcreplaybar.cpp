#include <chartcontrols/vcreplaybar.h>

#include <chartcontrols/timeticks_p.h>
#include <controlwidgets/guicentral.h>

#include <QDateTime>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <limits>

namespace {

constexpr int barHeight = 26;
constexpr int gap = 2;

// Microseconds as a double keep their last digit up to the year 2255.
long long toTime(double moment)
{
    constexpr double largest = 9.2e18;
    return static_cast<long long>(std::clamp(moment, -largest, largest));
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
{
    setObjectName(QLatin1String(name));
    setAccessibleName(tr("Replay bar"));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
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
    return {400, markerTop() + barHeight};
}

QSize VCReplayBar::minimumSizeHint() const
{
    return {100, markerTop() + barHeight};
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
    setBookmarkCount(bookmarks.size());
    m_bookmarks = bookmarks;
    for (std::size_t index = 0; index < m_bookmarks.size(); ++index) {
        showBookmark(index);
    }
    m_isSettingBookmarks = false;
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
    if (draggedMarker() < FirstBookmarkMarker) {
        return;
    }
    const auto index = static_cast<std::size_t>(draggedMarker() - FirstBookmarkMarker);
    if (index >= bookmarks.size() || !(bookmarks[index] == m_bookmarks[index])) {
        endDrag();
    }
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

void VCReplayBar::showBookmark(std::size_t index)
{
    Marker& marker = *GetMarker(bookmarkMarker(index));
    marker.SetName(m_bookmarks[index].text);
    marker.MoveTo(static_cast<double>(m_bookmarks[index].time));
}

bool VCReplayBar::canBeBookmarked(double moment) const
{
    return m_allowCreation && axisStop() > axisStart() && moment >= axisStart() && moment <= axisStop();
}

void VCReplayBar::createBookmark(double moment)
{
    std::vector<BookmarkType> bookmarks = m_bookmarks;
    bookmarks.emplace_back(toTime(moment), tr("Bookmark %1").arg(bookmarks.size() + 1));
    SetBookmarks(bookmarks, false);
    SetCurrentMarker(bookmarkMarker(bookmarks.size() - 1));
    Q_EMIT signalBookmarksChanged();
}

void VCReplayBar::removeBookmark(int number)
{
    std::vector<BookmarkType> bookmarks = m_bookmarks;
    bookmarks.erase(bookmarks.begin() + (number - FirstBookmarkMarker));
    SetBookmarks(bookmarks, true);
}

void VCReplayBar::markerChanged(int number, bool moved)
{
    update();
    if (number < FirstBookmarkMarker || !moved || m_isSettingBookmarks) {
        return;
    }
    BookmarkType& bookmark = m_bookmarks[static_cast<std::size_t>(number - FirstBookmarkMarker)];
    const long long time = toTime(GetMarker(number)->GetPosition());
    if (time != bookmark.time) {
        bookmark.time = time;
        Q_EMIT signalBookmarksChanged();
    }
}

int VCReplayBar::markerTop() const
{
    return m_showRuler ? rulerHeight() + gap : gap;
}

QColor VCReplayBar::markerColor(int number) const
{
    return number >= FirstBookmarkMarker ? QColor(0xD9, 0x8B, 0x00) : QColor(0xD6, 0x45, 0x45);
}

double VCReplayBar::tickDistance(double least) const
{
    return timeticks::distance(least);
}

double VCReplayBar::firstTick(double value, double distance) const
{
    return timeticks::first(value, distance);
}

QString VCReplayBar::tickText(double value, double distance) const
{
    return timeticks::text(value, distance);
}

QString VCReplayBar::longestTickText() const
{
    return QStringLiteral("00:00:00.000");
}

void VCReplayBar::paintRanges(QPainter& painter) const
{
    QColor color = palette().color(QPalette::Highlight);
    color.setAlphaF(0.5F);
    for (const auto& [first, last] : m_ranges) {
        const int left = pixelAt(static_cast<double>(first));
        const int right = pixelAt(static_cast<double>(last));
        painter.fillRect(QRect(QPoint(left, markerTop()), QPoint(std::max(left, right), height() - 1)), color);
    }
}

void VCReplayBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect bar(QPoint(pixelAt(visibleStart()), markerTop()), QPoint(pixelAt(visibleStop()), height() - 1));
    if (visibleStart() < visibleStop()) {
        painter.fillRect(bar, palette().brush(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Base));
    }
    paintRanges(painter);
    if (m_showRuler) {
        paintRuler(painter);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintMarkers(painter);
}

bool VCReplayBar::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return XRulerTop::event(event);
    }
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const Marker* const marker = GetMarker(markerAt(help.pos()));
    if (marker == nullptr) {
        return XRulerTop::event(event);
    }
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(toTime(marker->GetPosition()) / 1000);
    const QString text =
        time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")) + QLatin1Char('\n') + marker->GetName();
    QToolTip::showText(help.globalPos(), text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")), this);
    return true;
}

void VCReplayBar::mousePressEvent(QMouseEvent* event)
{
    event->setAccepted(grabMarker(*event));
}

void VCReplayBar::mouseMoveEvent(QMouseEvent* event)
{
    event->setAccepted(dragMarker(*event));
}

void VCReplayBar::mouseReleaseEvent(QMouseEvent* event)
{
    event->setAccepted(dropMarker(*event));
}

void VCReplayBar::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint place = event->position().toPoint();
    const double moment = valueAt(place.x());
    if (event->button() == Qt::LeftButton && markerAt(place) == 0 && canBeBookmarked(moment)) {
        createBookmark(moment);
    } else {
        mousePressEvent(event);
    }
}

void VCReplayBar::keyPressEvent(QKeyEvent* event)
{
    const Marker& position = *GetMarker(PositionMarker);
    const Marker* const current = GetMarker(GetCurrentMarker());
    const bool isBookmark = GetCurrentMarker() >= FirstBookmarkMarker && current->IsEnabled();
    if (event->key() == Qt::Key_Insert && position.IsVisible() && canBeBookmarked(position.GetPosition())) {
        createBookmark(position.GetPosition());
    } else if (event->key() == Qt::Key_Delete && isBookmark && m_allowCreation) {
        removeBookmark(GetCurrentMarker());
    } else if (!stepMarker(*event)) {
        XRulerTop::keyPressEvent(event);
    }
}
