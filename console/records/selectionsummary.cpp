#include <console/records/selectionsummary.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkobase/models/unittext.h>

#include <QCoreApplication>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::AbstractRecordListModel;

quint64 sum(const QModelIndexList& rows, int column)
{
    quint64 total = 0;
    for (const QModelIndex& row : rows) {
        total += row.siblingAtColumn(column).data(AbstractRecordListModel::SortRole).toULongLong();
    }
    return total;
}

} // namespace

QString selectionSummary(const QModelIndexList& rows)
{
    if (rows.isEmpty()) {
        return {};
    }
    return QCoreApplication::translate("ZelkoConsole::SelectionSummary", "%1 selected, %2, %3")
        .arg(rows.size())
        .arg(ZelkoCommon::unittext::size(sum(rows, AbstractRecordListModel::SizeColumn)),
             ZelkoCommon::unittext::duration(sum(rows, AbstractRecordListModel::DurationColumn)));
}

} // namespace ZelkoConsole
