#include <overviewdisplay/waterfallpicture_p.h>

#include <QElapsedTimer>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

constexpr double firstLowest = -120;
constexpr double firstHighest = 0;

bool isKnown(qint16 level)
{
    return level != OverviewLevels::noLevel;
}

} // namespace

WaterfallPicture::WaterfallPicture()
    : m_colours(firstLowest, firstHighest, qRgb(0, 0, 0))
{}

void WaterfallPicture::setLevels(const OverviewLevels* levels)
{
    m_given = levels;
    m_binCount = 0;
    startAgain();
}

void WaterfallPicture::forget()
{
    m_old = Pixels();
    std::fill(m_now.levels.begin(), m_now.levels.end(), OverviewLevels::noLevel);
    m_now.image.fill(m_colours.missing());
    findOldColumns();
    markAll(Row::Old);
}

void WaterfallPicture::setPart(const QSize& size, const TimeRange& time, const BandPart& band)
{
    const bool isThere = !size.isEmpty() && time.start < time.stop && band.low < band.high;
    const QSize wanted = isThere ? size : QSize(0, 0);
    if (wanted == m_now.size() && time == m_now.times.range && band == m_now.band) {
        return;
    }
    if (isWorthKeeping()) {
        m_old = std::move(m_now);
    }
    m_now = {{time, wanted.height()}, band, wanted.width(), {}, QImage(wanted, QImage::Format_RGB32)};
    m_now.levels.assign(static_cast<std::size_t>(wanted.width()) * static_cast<std::size_t>(wanted.height()),
                        OverviewLevels::noLevel);
    m_rows.assign(static_cast<std::size_t>(wanted.height()), Row::Done);
    m_waiting = 0;
    m_next = 0;
    findOldColumns();
    m_binCount = 0;
    markAll(Row::New);
}

// Pixels that are made only in part, or tell of nothing, are less than those before them.
bool WaterfallPicture::isWorthKeeping() const
{
    const bool isWhole = std::find(m_rows.begin(), m_rows.end(), Row::New) == m_rows.end();
    return isWhole && std::any_of(m_now.levels.begin(), m_now.levels.end(), isKnown);
}

// What the pixels show now is what is known of their places from here on.
void WaterfallPicture::startAgain()
{
    if (isWorthKeeping()) {
        m_old = m_now;
        findOldColumns();
    }
    markAll(Row::Old);
}

void WaterfallPicture::setColours(double lowest, double highest, QRgb missing)
{
    if (lowest != m_colours.lowest() || highest != m_colours.highest() || missing != m_colours.missing()) {
        m_colours = LevelColours(lowest, highest, missing);
        markAll(Row::Uncoloured);
    }
}

// A row that needs more than is asked for keeps that.
void WaterfallPicture::mark(int row, Row state)
{
    Row& marked = m_rows[static_cast<std::size_t>(row)];
    m_waiting += marked == Row::Done ? 1 : 0;
    marked = std::max(marked, state);
}

void WaterfallPicture::markAll(Row state)
{
    for (int row = 0; row < m_now.times.rows; ++row) {
        mark(row, state);
    }
}

// The line before these may end elsewhere now, and that behind them begin elsewhere.
void WaterfallPicture::linesArrived(int first, int last)
{
    if (m_given == nullptr || m_rows.empty() || first > last) {
        return;
    }
    if (m_given->binCount() != m_binCount) {
        markAll(Row::Old);
        return;
    }
    const TimeRows& times = m_now.times;
    const int begin = times.firstRowFrom(m_given->time(std::max(first, 0) - 1));
    const int end = times.firstRowFrom(m_given->time(std::min(last, m_given->lineCount()) + 2));
    for (int row = std::max(begin - 1, 0); row < end; ++row) {
        mark(row, Row::Old);
    }
}

std::vector<WaterfallPicture::Rows> WaterfallPicture::work(std::chrono::microseconds time)
{
    QElapsedTimer clock;
    clock.start();
    std::vector<Rows> changed;
    const auto isOver = [&] { return !changed.empty() && std::chrono::nanoseconds(clock.nsecsElapsed()) >= time; };
    while (m_waiting > 0 && !isOver()) {
        const int row = m_next;
        m_next = (m_next + 1) % m_now.times.rows;
        if (m_rows[static_cast<std::size_t>(row)] == Row::Done) {
            continue;
        }
        workOn(row);
        if (!changed.empty() && changed.back().last == row - 1) {
            changed.back().last = row;
        } else {
            changed.push_back({row, row});
        }
    }
    return changed;
}

void WaterfallPicture::finish()
{
    while (hasWork()) {
        work(std::chrono::hours(1));
    }
}

void WaterfallPicture::workOn(int row)
{
    Row& state = m_rows[static_cast<std::size_t>(row)];
    if (state != Row::Uncoloured) {
        findLevels(row);
    }
    const qint16* const levels = m_now.row(row);
    auto* const pixels = reinterpret_cast<QRgb*>(m_now.image.scanLine(row));
    std::transform(levels, levels + m_now.columns, pixels, [this](qint16 level) { return m_colours.of(level); });
    state = Row::Done;
    --m_waiting;
}

void WaterfallPicture::findLevels(int row)
{
    if (m_given != nullptr && m_given->binCount() != m_binCount) {
        m_binCount = m_given->binCount();
        findBins();
    }
    const qint16* const bins = m_given == nullptr ? nullptr : strongest(row);
    if (bins == nullptr) {
        takeOld(row);
        return;
    }
    qint16* const levels = m_now.row(row);
    for (int column = 0; column < m_now.columns; ++column) {
        const auto place = static_cast<std::size_t>(column);
        const int first = m_bins[place];
        levels[column] = *std::max_element(bins + first, bins + std::max(m_bins[place + 1], first + 1));
    }
}

// Of each bin of the lines in a row the strongest; null where no line of it has come.
const qint16* WaterfallPicture::strongest(int row)
{
    const OverviewWish& wish = m_given->wish();
    const quint64 start = std::max(m_now.times.timeOf(row), wish.start);
    const quint64 stop = std::min(std::max(m_now.times.timeOf(row + 1), start + 1), wish.stop);
    if (start >= stop) {
        return nullptr;
    }
    const qint16* found = nullptr;
    const int last = m_given->lineAt(stop - 1);
    for (int line = std::max(m_given->lineAt(start), 0); line <= last; ++line) {
        const qint16* const levels = m_given->levels(line);
        if (levels == nullptr) {
            continue;
        }
        if (found == nullptr) {
            found = levels;
            continue;
        }
        if (found != m_folded.data()) {
            m_folded.assign(found, found + m_binCount);
            found = m_folded.data();
        }
        fold(levels);
    }
    return found;
}

void WaterfallPicture::fold(const qint16* line)
{
    const int first = m_bins.front();
    const int end = std::max(m_bins.back(), m_bins[m_bins.size() - 2] + 1);
    qint16* const folded = m_folded.data();
    for (int bin = first; bin < end; ++bin) {
        folded[bin] = folded[bin] < line[bin] ? line[bin] : folded[bin];
    }
}

void WaterfallPicture::findBins()
{
    const BandPart& band = m_now.band;
    m_bins.resize(static_cast<std::size_t>(m_now.columns) + 1);
    for (std::size_t column = 0; column < m_bins.size(); ++column) {
        const double share = static_cast<double>(column) / m_now.columns;
        const double bin = std::floor(std::lerp(band.low, band.high, share) * m_binCount + 1e-6);
        m_bins[column] = static_cast<int>(std::clamp<double>(bin, 0, m_binCount));
    }
    for (std::size_t column = 0; column + 1 < m_bins.size(); ++column) {
        m_bins[column] = std::min(m_bins[column], m_binCount - 1);
    }
}

void WaterfallPicture::takeOld(int row)
{
    const TimeRows& times = m_now.times;
    const quint64 middle = times.timeOf(row) + (times.timeOf(row + 1) - times.timeOf(row)) / 2;
    const TimeRange& known = m_old.times.range;
    qint16* const levels = m_now.row(row);
    if (m_old.levels.empty() || middle < known.start || middle >= known.stop) {
        std::fill(levels, levels + m_now.columns, OverviewLevels::noLevel);
        return;
    }
    const qint16* const old = m_old.row(m_old.times.rowAt(middle));
    std::transform(m_oldColumns.begin(), m_oldColumns.end(), levels,
                   [old](int column) { return column < 0 ? OverviewLevels::noLevel : old[column]; });
}

void WaterfallPicture::findOldColumns()
{
    m_oldColumns.assign(static_cast<std::size_t>(m_now.columns), -1);
    const BandPart& old = m_old.band;
    for (std::size_t column = 0; column < m_oldColumns.size() && m_old.columns > 0; ++column) {
        const double share = (static_cast<double>(column) + 0.5) / m_now.columns;
        const double place = std::lerp(m_now.band.low, m_now.band.high, share);
        const double found = std::floor((place - old.low) / (old.high - old.low) * m_old.columns);
        m_oldColumns[column] = found >= 0 && found < m_old.columns ? static_cast<int>(found) : -1;
    }
}

qint16 WaterfallPicture::level(int column, int row) const
{
    const bool isInside = QRect(QPoint(0, 0), m_now.size()).contains(column, row);
    return isInside ? m_now.row(row)[column] : OverviewLevels::noLevel;
}

bool WaterfallPicture::hasLevels() const
{
    return !m_old.levels.empty() || (m_given != nullptr && m_given->completeLines() > 0);
}

// Where the old pixels lie on the new ones.
QRectF WaterfallPicture::oldArea() const
{
    const double top = m_now.times.placeOf(m_old.times.range.start);
    const double bottom = m_now.times.placeOf(m_old.times.range.stop);
    const double columns = m_now.columns / (m_now.band.high - m_now.band.low);
    const double left = (m_old.band.low - m_now.band.low) * columns;
    return {left, top, (m_old.band.high - m_old.band.low) * columns, bottom - top};
}

void WaterfallPicture::paint(QPainter& painter) const
{
    const auto isOwn = [](Row row) { return row != Row::New; };
    if (!std::all_of(m_rows.begin(), m_rows.end(), isOwn)) {
        painter.fillRect(QRect(QPoint(0, 0), m_now.size()), QColor(m_colours.missing()));
        painter.drawImage(oldArea(), m_old.image);
    }
    for (auto begin = std::find_if(m_rows.begin(), m_rows.end(), isOwn); begin != m_rows.end();) {
        const auto end = std::find_if_not(begin, m_rows.end(), isOwn);
        const auto top = static_cast<int>(begin - m_rows.begin());
        painter.drawImage(QPoint(0, top), m_now.image, QRect(0, top, m_now.columns, static_cast<int>(end - begin)));
        begin = std::find_if(end, m_rows.end(), isOwn);
    }
}

} // namespace SPECTRUM_OVERVIEW
