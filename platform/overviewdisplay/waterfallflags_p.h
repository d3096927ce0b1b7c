#pragma once

#include <overviewdisplay/timerows_p.h>

#include <QRectF>

#include <vector>

class QPainter;
class QPalette;

namespace SPECTRUM_OVERVIEW {

/// The bookmarks over a waterfall: a line across for each row that has any, and at its right end a flag with their text
/// where there is room for one.
class WaterfallFlags
{
public:
    void setBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& bookmarks);

    /// Finds their places. `ratio`: rows on each pixel of the window; `clothHeight`: of a flag, in pixels of the
    /// window.
    void layOut(const TimeRows& times, double ratio, double clothHeight);

    void paint(QPainter& painter, const QRectF& plot, const QPalette& palette) const;

    /// Times and texts of the bookmarks whose line or flag is there, a line for each of the first; empty where there
    /// are none. The place is one in the area in which they are painted.
    QString textAt(const QPointF& place, const QRectF& plot, const QFontMetrics& metrics) const;

private:
    struct Flag
    {
        double place = 0; ///< of the line, from the top
        double cloth = 0; ///< top of the flag
        qsizetype first = 0;
        int count = 0;
        bool hasCloth = false;
        double opacity = 1; ///< of the line
    };

    void hang();
    QString nameOf(const Flag& flag) const;
    QRectF clothOf(const Flag& flag, const QRectF& plot, const QString& text, const QFontMetrics& metrics) const;
    const Flag* flagAt(const QPointF& place, const QRectF& plot, const QFontMetrics& metrics) const;

    QVector<ZELKO_XML::BookmarkEntry> m_bookmarks; ///< ascending
    std::vector<Flag> m_flags;                     ///< from the top
    double m_height = 0;
    double m_clothHeight = 0;
};

} // namespace SPECTRUM_OVERVIEW
