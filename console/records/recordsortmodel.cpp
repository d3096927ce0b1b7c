#include <console/records/recordsortmodel.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoConsole {
namespace {

using Model = ZelkoCommon::AbstractRecordListModel;

bool isQuantity(int column)
{
    switch (column) {
    case Model::SizeColumn:
    case Model::DurationColumn:
    case Model::FrequencyColumn:
    case Model::BandwidthColumn:
    case Model::SampleRateColumn:
        return true;
    default:
        return false;
    }
}

} // namespace

RecordSortModel::RecordSortModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    setSortRole(Model::SortRole);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setDynamicSortFilter(true);
}

QVariant RecordSortModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
        return QVariant((isQuantity(section) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    return QSortFilterProxyModel::headerData(section, orientation, role);
}

} // namespace ZelkoConsole
