#pragma once

#include <widgetbase/widgetbase_export.h>

class QAbstractItemModel;
class QString;
class QTableView;
class QWidget;

namespace guiHelper {

/// A table of single rows with the buttons of the rows in its vertical header, which RowHeaderKeys presses by keys. It
/// is not sorted, its last column takes what room there is, and Tab goes on to the next part of the window. `name` is
/// its object name; what its rows are is left to be said with setAccessibleName. Neither pointer may be null, and
/// `parent` owns it.
WIDGETBASE_EXPORT QTableView* makeRowHeaderTable(QAbstractItemModel* model, const QString& name, QWidget* parent);

} // namespace guiHelper
