#include <overviewdisplay/waterfallflags_p.h>

#include "bookmarkchanges_p.h"

#include <mapwidgets/axiscolours.h>
#include <mapwidgets/markerflags_p.h>
#include <mapwidgets/pixelgrid.h>
#include <mapwidgets/timeticks.h>

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace SPECTRUM_OVERVIEW {
namespace {

using ZELKO_XML::BookmarkEntry;

constexpr double longestCloth = 260;
constexpr double emptyCloth = 10;
constexpr double reach = 3; // pixels beside a line at which the mouse still finds it
constexpr double mostOpaque = 0.85;
constexpr double palest = 0.1;
constexpr int mostLines = 10;
constexpr int mostLetters = 200;

// A flag has one line, and no room for more than the begin of a long text.
QString oneLine(const QString& text)
{
    return text.left(mostLetters).simplified();
}

QString lineOf(const BookmarkEntry& bookmark)
{
    return timeticks::dateAndTime(heldTime(bookmark.GetTimestamp())) + QLatin1Char(' ') +
           oneLine(bookmark.GetBookmark());
}

} // namespace

void WaterfallFlags::setBookmarks(const QVector<BookmarkEntry>& bookmarks)
{
    m_bookmarks = inOrder(bookmarks);
}

void WaterfallFlags::layOut(const TimeRows& times, double ratio, double clothHeight)
{
    m_flags.clear();
    m_height = times.rows / ratio;
    m_clothHeight = clothHeight;
    int rowBefore = -1;
    for (qsizetype i = 0; i < m_bookmarks.size(); ++i) {
        const quint64 time = m_bookmarks.at(i).GetTimestamp();
        if (time < times.range.start || time >= times.range.stop) {
            continue;
        }
        const int row = times.rowAt(time);
        if (row != rowBefore) {
            m_flags.push_back({row / ratio, row / ratio, i});
        }
        ++m_flags.back().count;
        rowBefore = row;
    }
    hang();
}

// Downwards from its line as far as the next one allows, the last one upwards where the picture ends. Where lines stand
// close they are paler, so that the picture under them is still seen.
void WaterfallFlags::hang()
{
    double free = 0;
    for (std::size_t i = 0; i < m_flags.size(); ++i) {
        Flag& flag = m_flags[i];
        const bool isLast = i + 1 == m_flags.size();
        const double end = isLast ? m_height : m_flags[i + 1].place;
        flag.hasCloth = flag.place + m_clothHeight <= end;
        if (isLast && !flag.hasCloth && flag.place - m_clothHeight >= free) {
            flag.cloth = flag.place - m_clothHeight;
            flag.hasCloth = true;
        }
        flag.opacity = std::clamp((end - flag.place) / m_clothHeight, palest, isLast || flag.hasCloth ? 1.0 : 0.5);
        free = flag.hasCloth ? flag.cloth + m_clothHeight : flag.place + 1;
    }
}

QString WaterfallFlags::nameOf(const Flag& flag) const
{
    MarkerFlag shown;
    shown.count = flag.count;
    return MarkerFlags::textOf(shown, oneLine(m_bookmarks.at(flag.first).GetBookmark()));
}

QRectF WaterfallFlags::clothOf(const Flag& flag, const QRectF& plot, const QString& text,
                               const QFontMetrics& metrics) const
{
    const double wanted = text.isEmpty() ? emptyCloth : metrics.horizontalAdvance(text) + 2 * MarkerFlags::padding;
    const double width = std::min({wanted, longestCloth, plot.width() / 2});
    return {plot.right() - width, plot.top() + flag.cloth, width, m_clothHeight};
}

void WaterfallFlags::paint(QPainter& painter, const QRectF& plot, const QPalette& palette) const
{
    const PixelGrid grid(painter);
    const QFontMetrics metrics = painter.fontMetrics();
    const QColor color = axiscolours::bookmark(palette);
    for (const Flag& flag : m_flags) {
        QColor line = color;
        line.setAlphaF(static_cast<float>(mostOpaque * flag.opacity));
        painter.fillRect(grid.horizontal(plot.top() + flag.place, plot.left(), plot.right()), line);
        const QString text = flag.hasCloth ? nameOf(flag) : QString();
        const QRectF cloth = flag.hasCloth ? clothOf(flag, plot, text, metrics)
                                           : QRectF(plot.right() - emptyCloth, plot.top() + flag.place, emptyCloth, 1);
        painter.fillRect(grid.rect(cloth), color);
        painter.setPen(axiscolours::textOn(color));
        const double room = cloth.width() - 2 * MarkerFlags::padding;
        painter.drawText(cloth.adjusted(MarkerFlags::padding, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(text, Qt::ElideRight, static_cast<int>(room) + 1));
    }
}

const WaterfallFlags::Flag* WaterfallFlags::flagAt(const QPointF& place, const QRectF& plot,
                                                   const QFontMetrics& metrics) const
{
    const Flag* nearest = nullptr;
    double least = reach;
    for (const Flag& flag : m_flags) {
        if (flag.hasCloth && clothOf(flag, plot, nameOf(flag), metrics).contains(place)) {
            return &flag;
        }
        const double away = std::abs(plot.top() + flag.place + 0.5 - place.y());
        if (away <= least) {
            least = away;
            nearest = &flag;
        }
    }
    return nearest;
}

QString WaterfallFlags::textAt(const QPointF& place, const QRectF& plot, const QFontMetrics& metrics) const
{
    const Flag* const flag = plot.contains(place) ? flagAt(place, plot, metrics) : nullptr;
    if (flag == nullptr) {
        return {};
    }
    QStringList lines;
    for (int i = 0; i < std::min(flag->count, mostLines); ++i) {
        lines << lineOf(m_bookmarks.at(flag->first + i));
    }
    if (flag->count > mostLines) {
        lines << WaterfallView::tr("and %1 more").arg(flag->count - mostLines);
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace SPECTRUM_OVERVIEW
