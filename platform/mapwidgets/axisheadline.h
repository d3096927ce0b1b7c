#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <QColor>
#include <QStringList>

class QFontMetrics;
class QPainter;

/// The line above an axis of time: the dates with their zone on the left, and a reading with a sign in the colour of
/// what is read on the right. Both come in several lengths, the longest one first; the longest that have room are
/// painted, and dates before a reading.
struct MAPWIDGETS_EXPORT AxisHeadline
{
    QStringList dates; ///< at least one; the last one is painted also where it has no room
    QStringList readings;
    QColor color;

    /// What has room in a width; empty: no reading.
    struct Chosen
    {
        QString date;
        QString reading;
    };
    Chosen chosen(const QFontMetrics& metrics, int width) const;

    /// Between two places, in the font and the pen of the painter, at the top edge.
    void paint(QPainter& painter, int left, int right) const;
};
