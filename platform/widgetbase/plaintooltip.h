#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QString>

class QPoint;
class QRect;
class QWidget;

namespace guiHelper {

/// A text that a tool tip shows just so, whatever it looks like: names come from recorders and may hold anything that
/// looks like markup.
WIDGETBASE_EXPORT QString plainToolTip(const QString& text);

/// Shows such a tool tip while the pointer stays in `area` of `widget`.
WIDGETBASE_EXPORT void showPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* widget,
                                        const QRect& area);

} // namespace guiHelper
