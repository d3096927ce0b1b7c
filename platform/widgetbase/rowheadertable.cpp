#include <widgetbase/rowheadertable.h>

#include <widgetbase/rowheaderkeys.h>

#include <QHeaderView>
#include <QTableView>

namespace guiHelper {

QTableView* makeRowHeaderTable(QAbstractItemModel* model, const QString& name, QWidget* parent)
{
    auto* const table = new QTableView(parent);
    table->setObjectName(name);
    table->setModel(model);
    table->setAlternatingRowColors(true);
    table->setSortingEnabled(false);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->horizontalHeader()->setStretchLastSection(true);
    new RowHeaderKeys(table);
    return table;
}

} // namespace guiHelper
