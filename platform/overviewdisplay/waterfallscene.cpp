#include <overviewdisplay/waterfallscene_p.h>

#include <mapwidgets/axisheadline.h>
#include <mapwidgets/timeticks.h>
#include <overviewdisplay/verticalscale_p.h>
#include <overviewdisplay/waterfalloverlay_p.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace SPECTRUM_OVERVIEW {
namespace {

// What is left of a frame of the screen belongs to others.
constexpr std::chrono::milliseconds slice(4);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double smallestPart = 1e-4; ///< of the frequencies
constexpr int besideCross = 2;
constexpr int headlineLeft = 4;

} // namespace

WaterfallScene::WaterfallScene(WaterfallView& view)
    : m_view(view)
    , m_ruler(new FrequencyRuler(&view))
    , m_emptyText(WaterfallView::tr("No spectra"))
    , m_lowest(m_picture.colours().lowest())
    , m_highest(m_picture.colours().highest())
{
    m_slices.setSingleShot(true);
    QObject::connect(&m_slices, &QTimer::timeout, &view, [this] { work(); });
}

WaterfallScene::~WaterfallScene() = default;

bool WaterfallScene::isEmpty() const
{
    return !(m_range.start < m_range.stop) || !m_picture.hasLevels();
}

void WaterfallScene::setLevels(const OverviewLevels* levels)
{
    m_levels = levels;
    m_picture.setLevels(levels);
    if (levels == nullptr) {
        m_picture.forget();
        m_band = Band();
    } else if (!(m_range.start < m_range.stop)) {
        m_range = {levels->wish().start, levels->wish().stop};
    }
    takeBand();
    arrange();
    m_view.update();
    tellCursor();
}

// Until the first line has come the band is that of the levels before.
void WaterfallScene::takeBand()
{
    if (m_levels == nullptr || m_levels->lineCount() == 0) {
        return;
    }
    const Band band{m_levels->lowestFrequency(), m_levels->span(), m_levels->hasCentre()};
    if (band == m_band) {
        return;
    }
    if (m_band.span > 0) {
        m_picture.forget(); // what was there before lies elsewhere
    }
    m_band = band;
    arrange();
    m_view.update();
}

void WaterfallScene::linesArrived(int first, int last)
{
    const bool wasEmpty = isEmpty();
    takeBand();
    m_picture.linesArrived(first, last);
    if (wasEmpty) {
        m_view.update();
    }
    workSoon();
}

void WaterfallScene::setTimeRange(const TimeRange& range)
{
    if (range.start < range.stop && range != m_range) {
        changeTimeRange(range);
    }
}

void WaterfallScene::clearTimeRange()
{
    m_place.reset(); // it was at a time of that range
    changeTimeRange({});
}

void WaterfallScene::changeTimeRange(const TimeRange& range)
{
    m_range = range;
    arrange();
    m_view.update();
    tellCursor();
}

void WaterfallScene::setLevelRange(double lowest, double highest)
{
    if (!std::isfinite(lowest) || !std::isfinite(highest) || !(lowest < highest)) {
        return;
    }
    const std::pair before(m_lowest, m_highest);
    m_lowest = std::max(lowest, WaterfallView::LowestLevel);
    m_highest = std::max(std::min(highest, WaterfallView::HighestLevel), m_lowest + 0.01);
    if (before != std::pair(m_lowest, m_highest)) {
        recolour();
    }
}

void WaterfallScene::recolour()
{
    m_picture.setColours(m_lowest, m_highest, LevelColours::missingIn(m_view.palette()).rgb());
    m_view.update();
    workSoon();
}

void WaterfallScene::setBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks)
{
    m_flags.setBookmarks(bookmarks);
    arrange();
    m_view.update();
}

void WaterfallScene::setEmptyText(const QString& text)
{
    if (std::exchange(m_emptyText, text) != text && isEmpty()) {
        m_view.update();
    }
}

void WaterfallScene::setFrequencies(const std::optional<std::pair<double, double>>& frequencies)
{
    m_frequencies = frequencies;
    arrange();
    m_view.update();
    tellCursor();
}

void WaterfallScene::zoomFrequencies(double share, double factor)
{
    if (m_band.span <= 0) {
        return;
    }
    const BandPart shown = part();
    const double extent = std::clamp((shown.high - shown.low) * factor, smallestPart, 1.0);
    const double kept = (share - shown.low) / (shown.high - shown.low);
    const double low = std::clamp(share - kept * extent, 0.0, 1 - extent);
    setFrequencies(std::pair(frequencyOf(low), frequencyOf(low + extent)));
}

BandPart WaterfallScene::part() const
{
    if (!m_frequencies || m_band.span <= 0) {
        return {};
    }
    const auto shareOf = [this](double hertz) { return std::clamp((hertz - m_band.low) / m_band.span, 0.0, 1.0); };
    const BandPart wanted{shareOf(m_frequencies->first), shareOf(m_frequencies->second)};
    return wanted.high - wanted.low >= smallestPart / 2 ? wanted : BandPart();
}

double WaterfallScene::frequencyOf(double share) const
{
    return m_band.span > 0 ? m_band.low + share * m_band.span : nan;
}

QSize WaterfallScene::sizeAround(const QSize& picture) const
{
    return WaterfallLayout::around(picture, m_view.fontMetrics(), m_ruler->rulerHeight());
}

void WaterfallScene::arrange()
{
    const QFontMetrics metrics = m_view.fontMetrics();
    m_layout = WaterfallLayout(m_view.size(), metrics, m_ruler->rulerHeight(), m_view.devicePixelRatioF());
    m_picture.setPart(m_layout.pixels.size(), m_range, part());
    if (m_picture.colours().missing() != LevelColours::missingIn(m_view.palette()).rgb()) {
        recolour();
    }
    arrangeRuler();
    if (canPoint()) {
        m_flags.layOut(rows(), m_layout.ratio, metrics.height() + 2);
    }
    workSoon();
}

void WaterfallScene::arrangeRuler()
{
    const BandPart shown = part();
    m_ruler->setGeometry(0, m_layout.rulerTop, m_view.width(), m_ruler->rulerHeight());
    m_ruler->SetPixOffset(static_cast<int>(std::lround(m_layout.plot.left())),
                          m_view.width() - 1 - static_cast<int>(std::lround(m_layout.plot.right())));
    m_ruler->setHasCentre(m_band.hasCentre);
    m_ruler->setVisible(m_band.span > 0 && !m_layout.pixels.isEmpty());
    m_ruler->SetAxisRange(m_band.low + shown.low * m_band.span, m_band.low + shown.high * m_band.span);
}

void WaterfallScene::workSoon()
{
    if (m_picture.hasWork() && !m_slices.isActive()) {
        m_slices.start(0);
    }
}

void WaterfallScene::work()
{
    QRegion changed;
    for (const WaterfallPicture::Rows& rows : m_picture.work(slice)) {
        changed += areaOf(rows.first, rows.last + 1, 0);
    }
    m_view.update(changed);
    tellCursor();
    workSoon();
}

// Whole pixels of the window that have any part of these rows, and so many more.
QRect WaterfallScene::areaOf(int firstRow, int endRow, int beyond) const
{
    const int top = static_cast<int>(std::floor(m_layout.yOf(firstRow))) - beyond;
    const int bottom = static_cast<int>(std::ceil(m_layout.yOf(endRow))) + beyond;
    const QRect plot = m_layout.plot.toAlignedRect();
    return QRect(QPoint(plot.left(), top), QPoint(plot.right(), bottom - 1)) & plot;
}

QRect WaterfallScene::headline() const
{
    return {0, 0, m_view.width(), m_layout.rulerTop};
}

double WaterfallScene::columnsOf(double share) const
{
    const BandPart shown = part();
    return share / (shown.high - shown.low) * m_layout.pixels.width();
}

int WaterfallScene::columnOf(double share) const
{
    return static_cast<int>(std::floor(columnsOf(share - part().low)));
}

double WaterfallScene::shareOf(int column) const
{
    const BandPart shown = part();
    return std::lerp(shown.low, shown.high, (column + 0.5) / m_layout.pixels.width());
}

std::optional<WaterfallCursor> WaterfallScene::cursor() const
{
    if (!m_place) {
        return std::nullopt;
    }
    const bool isShown = canPoint() && m_place->time >= m_range.start && m_place->time < m_range.stop;
    const qint16 level =
        isShown ? m_picture.level(columnOf(m_place->share), rows().rowAt(m_place->time)) : OverviewLevels::noLevel;
    return WaterfallCursor{m_place->time, frequencyOf(m_place->share),
                           level == OverviewLevels::noLevel ? nan : level / 100.0};
}

WaterfallReading WaterfallScene::reading(const WaterfallCursor& cursor) const
{
    const BandPart shown = part();
    const double low = frequencyOf(shown.low);
    const double high = frequencyOf(shown.high);
    return {cursor, low, high, (high - low) / std::max(m_layout.pixels.width(), 1)};
}

QString WaterfallScene::cursorText() const
{
    const auto cursor = this->cursor();
    return cursor ? reading(*cursor).text() : QString();
}

void WaterfallScene::moveCursorTo(int column, int row)
{
    setPlace(Place{rows().timeOf(std::clamp(row, 0, rows().rows - 1)),
                   shareOf(std::clamp(column, 0, m_layout.pixels.width() - 1))});
}

void WaterfallScene::removeCursor()
{
    setPlace(std::nullopt);
}

void WaterfallScene::setPlace(const std::optional<Place>& place)
{
    updateCross();
    m_place = place;
    updateCross();
    tellCursor();
}

void WaterfallScene::tellCursor()
{
    const auto now = cursor();
    if (now != m_told) {
        m_told = now;
        m_view.update(headline());
        Q_EMIT m_view.si_cursorMoved();
    }
}

void WaterfallScene::updateCross()
{
    if (!m_place || !canPoint()) {
        return;
    }
    const int row = rows().rowAt(m_place->time);
    const QRect plot = m_layout.plot.toAlignedRect();
    const int x = static_cast<int>(m_layout.xOf(columnOf(m_place->share)));
    m_view.update(areaOf(row, row + 1, besideCross));
    m_view.update(QRect(x - besideCross, plot.top(), 2 * besideCross + 1, plot.height()) & plot);
}

void WaterfallScene::changeSelection(const std::function<void(WaterfallSelection&)>& change)
{
    const auto before = m_selection.range();
    change(m_selection);
    if (before != m_selection.range()) {
        updateEdges(before);
        Q_EMIT m_view.si_selectionChanged();
    }
}

// A drag changes a few rows beside its edge only.
void WaterfallScene::updateEdges(const std::optional<TimeRange>& before)
{
    const auto& now = m_selection.range();
    if (!before || !now || !canPoint()) {
        m_view.update();
        return;
    }
    const auto updateBetween = [this](quint64 one, quint64 other) {
        const auto [first, last] = std::minmax({rows().placeOf(one), rows().placeOf(other)}); // values, not references
        const double end = rows().rows;
        m_view.update(areaOf(static_cast<int>(std::clamp(first, 0.0, end)),
                             static_cast<int>(std::clamp(last, 0.0, end)), besideCross));
    };
    updateBetween(before->start, now->start);
    updateBetween(before->stop, now->stop);
}

void WaterfallScene::paintHeadline(QPainter& painter) const
{
    const auto start = static_cast<double>(m_range.start);
    const auto stop = static_cast<double>(m_range.stop - 1);
    const auto cursor = m_hidesCursor ? std::nullopt : this->cursor();
    const bool hasDate =
        cursor && (!timeticks::isSameDay(start, stop) || cursor->time < m_range.start || cursor->time >= m_range.stop);
    const QStringList texts = cursor ? reading(*cursor).shortTexts(hasDate) : QStringList();
    const bool hasLevel = cursor && std::isfinite(cursor->level);
    const QRgb sign = hasLevel ? m_picture.colours().of(static_cast<qint16>(std::lround(cursor->level * 100)))
                               : m_picture.colours().missing();
    painter.setPen(m_view.palette().color(QPalette::WindowText));
    const AxisHeadline headline{timeticks::dates(start, stop), texts, QColor(sign)};
    headline.paint(painter, headlineLeft, static_cast<int>(m_layout.right));
}

void WaterfallScene::paintPicture(QPainter& painter) const
{
    painter.save();
    painter.translate(m_layout.plot.topLeft());
    painter.scale(1 / m_layout.ratio, 1 / m_layout.ratio);
    m_picture.paint(painter);
    painter.restore();
}

void WaterfallScene::paintOver(QPainter& painter) const
{
    const WaterfallOverlay overlay{painter, m_layout, m_view.palette()};
    painter.save();
    painter.setClipRect(m_layout.plot, Qt::IntersectClip);
    if (const auto& range = m_selection.range()) {
        overlay.paintSelection(rows().placeOf(range->start), rows().placeOf(range->stop));
    }
    m_flags.paint(painter, m_layout.plot, m_view.palette());
    const bool isShown = m_place && m_place->time >= m_range.start && m_place->time < m_range.stop;
    if (isShown && !m_hidesCursor) {
        overlay.paintCross(columnOf(m_place->share), rows().rowAt(m_place->time));
    }
    painter.restore();
}

void WaterfallScene::paint(QPainter& painter)
{
    if (m_layout.ratio != m_view.devicePixelRatioF()) {
        arrange();
    }
    if (m_layout.pixels.isEmpty()) {
        return;
    }
    const WaterfallOverlay overlay{painter, m_layout, m_view.palette()};
    if (m_range.start < m_range.stop) {
        paintHeadline(painter);
        VerticalScale::paint(painter, VerticalScale::ofTime(m_range, m_layout.plot.height(), painter.fontMetrics()),
                             m_layout.plot, VerticalScale::Side::Left, m_view.palette().color(QPalette::WindowText));
    }
    overlay.paintScale(m_picture.colours());
    if (m_band.span <= 0 && !isEmpty()) {
        overlay.paintNoFrequencies();
    }
    if (isEmpty()) {
        overlay.paintEmpty(m_emptyText);
    } else {
        paintPicture(painter);
        paintOver(painter);
    }
    overlay.paintFrame(m_view.hasFocus() && !m_hidesCursor);
}

QImage WaterfallScene::image()
{
    arrange();
    m_picture.finish();
    m_view.update();
    m_hidesCursor = true;
    QImage image = m_view.grab().toImage();
    m_hidesCursor = false;
    tellCursor();
    return image;
}

} // namespace SPECTRUM_OVERVIEW
