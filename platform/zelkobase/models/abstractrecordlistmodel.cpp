#include <zelkobase/models/abstractrecordlistmodel.h>

#include "keptcells_p.h"
#include "recordcolumns_p.h"

namespace ZelkoCommon {
namespace {

// Known by name before a filter asks for a value of the type, or a queued connection carries one.
void registerMetaTypes()
{
    qRegisterMetaType<ZELKO_XML::ZELKO_RecordData::DataFormat>("ZELKO_XML::ZELKO_RecordData::DataFormat");
    qRegisterMetaType<ZELKO_XML::ZELKO_RecordData::DataRate>("ZELKO_XML::ZELKO_RecordData::DataRate");
    qRegisterMetaType<ZELKO_XML::ZELKO_RecordData::Interface>("ZELKO_XML::ZELKO_RecordData::Interface");
    qRegisterMetaType<ZELKO_XML::ZELKO_RecordData::RecordStatus>("ZELKO_XML::ZELKO_RecordData::RecordStatus");
}

QVariant alignment(const RecordColumn& column)
{
    return column.number ? QVariant(static_cast<int>(Qt::AlignRight | Qt::AlignVCenter)) : QVariant();
}

bool isSortRole(int role)
{
    return role == AbstractRecordListModel::SortRole || role == Qt::UserRole;
}

bool isValueRole(int role)
{
    return role == AbstractRecordListModel::ValueRole || role == Qt::UserRole + 1;
}

} // namespace

AbstractRecordListModel::AbstractRecordListModel(QObject* parent)
    : QAbstractTableModel(parent)
    , m_sortKeys(std::make_unique<KeptCells>(
          ColumnCount, [this](int row, int column) { return cell(row, static_cast<Column>(column), SortRole); }))
    , m_values(std::make_unique<KeptCells>(
          ColumnCount, [this](int row, int column) { return cell(row, static_cast<Column>(column), ValueRole); }))
{
    registerMetaTypes();
    keepUpToDate(*m_sortKeys);
    keepUpToDate(*m_values);
}

AbstractRecordListModel::~AbstractRecordListModel() = default;

// Nobody was connected before, so whoever is told of a change and sorts or filters is given the cells behind it.
void AbstractRecordListModel::keepUpToDate(KeptCells& cells)
{
    using Model = QAbstractItemModel;
    connect(this, &Model::dataChanged, this, [&cells](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
        if (topLeft.isValid() && bottomRight.isValid()) {
            cells.cellsChanged(topLeft.row(), bottomRight.row(), topLeft.column(), bottomRight.column());
        } else {
            cells.forget(); // where, nobody says
        }
    });
    connect(this, &Model::rowsInserted, this,
            [&cells](const QModelIndex&, int first, int last) { cells.rowsInserted(first, last); });
    const auto onAny = [&](auto... changes) { (connect(this, changes, this, [&cells] { cells.forget(); }), ...); };
    onAny(&Model::layoutChanged, &Model::modelReset, &Model::rowsRemoved, &Model::rowsMoved);
}

int AbstractRecordListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : recordCount();
}

int AbstractRecordListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int{ColumnCount};
}

// Sorting and filtering make one for every cell that they look at.
QModelIndex AbstractRecordListModel::index(int row, int column, const QModelIndex& parent) const
{
    const bool exists = row >= 0 && row < recordCount() && column >= 0 && column < ColumnCount && !parent.isValid();
    return exists ? createIndex(row, column) : QModelIndex();
}

QVariant AbstractRecordListModel::data(const QModelIndex& index, int role) const
{
    const int row = index.row();
    const int column = index.column();
    if (isSortRole(role) && index.model() == this && m_sortKeys->keeps(row, column)) {
        return m_sortKeys->cell(row, column);
    }
    if (isValueRole(role) && index.model() == this && m_values->keeps(row, column)) {
        return m_values->cellOfWalk(row, column);
    }
    const bool exists = index.isValid() && index.model() == this && row < recordCount();
    return exists ? existingCell(row, static_cast<Column>(column), role) : QVariant();
}

QVariant AbstractRecordListModel::existingCell(int row, Column column, int role) const
{
    if (isSortRole(role)) {
        return m_sortKeys->ask(row, column, recordCount());
    }
    if (isValueRole(role)) {
        return m_values->ask(row, column, recordCount());
    }
    switch (role) {
    case Qt::DisplayRole:
        return cell(row, column, role);
    case Qt::TextAlignmentRole:
        return alignment(recordColumn(column));
    default:
        return {};
    }
}

QVariant AbstractRecordListModel::cell(int row, Column column, int role) const
{
    const RecordDataPtr record = recordData(row);
    return record ? cellOf(*record, column, role) : cellWithoutData(row, column);
}

QVariant AbstractRecordListModel::cellOf(const RecordData& record, Column column, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return recordColumn(column).text(record);
    case SortRole:
    case Qt::UserRole:
        return recordColumn(column).sort(record);
    default:
        return recordColumn(column).value(record);
    }
}

QVariant AbstractRecordListModel::cellWithoutData(int row, Column column) const
{
    return column == RecordIDColumn ? QVariant(recordID(row)) : QVariant();
}

QVariant AbstractRecordListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isColumn = orientation == Qt::Horizontal && section >= 0 && section < ColumnCount;
    if (isColumn && role == Qt::DisplayRole) {
        return tr(recordColumn(section).header);
    }
    if (isColumn && role == Qt::TextAlignmentRole) {
        return alignment(recordColumn(section));
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

bool AbstractRecordListModel::hasRecord(const QString& recordID) const
{
    return recordRow(recordID) >= 0;
}

AbstractRecordListModel::RecordDataPtr AbstractRecordListModel::getRecordData(const QString& recordID) const
{
    return recordData(recordRow(recordID));
}

QString AbstractRecordListModel::getRecordID(const QModelIndex& index) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? recordID(index.row()) : QString();
}

QModelIndex AbstractRecordListModel::recordIndex(const QString& recordID) const
{
    return index(recordRow(recordID), NameColumn);
}

int AbstractRecordListModel::recordRow(const QString& recordID) const
{
    for (int row = 0; row < recordCount(); ++row) {
        if (this->recordID(row) == recordID) {
            return row;
        }
    }
    return -1;
}

} // namespace ZelkoCommon
