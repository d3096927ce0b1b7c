#pragma once

#include <widgetbase/widgetbase_export.h>

class QWidget;

namespace guiHelper {

/// Paints the text of a widget in the colours that it has, with `alpha` from 0 to 255. A disabled widget still looks
/// so.
WIDGETBASE_EXPORT void setTextAlpha(QWidget& widget, int alpha);

} // namespace guiHelper
