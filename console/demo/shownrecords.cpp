#include <console/demo/shownrecords.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QItemSelectionModel>
#include <QTableView>

namespace ZelkoConsole::shownrecords {

QString id(const QModelIndex& index)
{
    return index.siblingAtColumn(ZelkoCommon::AbstractRecordListModel::RecordIDColumn).data().toString();
}

QStringList ids(const QAbstractItemModel& list)
{
    QStringList shown;
    for (int row = 0; row < list.rowCount(); ++row) {
        shown.append(id(list.index(row, 0)));
    }
    return shown;
}

QStringList selectedIds(const QTableView& table)
{
    QStringList selected;
    for (const QModelIndex& row : table.selectionModel()->selectedRows()) {
        selected.append(id(row));
    }
    selected.sort();
    return selected;
}

} // namespace ZelkoConsole::shownrecords
