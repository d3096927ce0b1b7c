#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <QColor>

class QPalette;

/// The colours of what stands on an axis, which are the same on each.
namespace axiscolours {

/// Whether texts are lighter than what they stand on.
MAPWIDGETS_EXPORT bool isDark(const QPalette& palette);

/// Of a bookmark's flag and its pole.
MAPWIDGETS_EXPORT QColor bookmark(const QPalette& palette);

/// Of a text on that colour.
MAPWIDGETS_EXPORT QColor textOn(const QColor& color);

} // namespace axiscolours
