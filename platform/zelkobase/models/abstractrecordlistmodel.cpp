#include <zelkobase/models/abstractrecordlistmodel.h>

#include "recordcolumns_p.h"
#include "sortkeys_p.h"

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

bool hasContent(int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case AbstractRecordListModel::SortRole:
    case AbstractRecordListModel::ValueRole:
    case Qt::UserRole:
    case Qt::UserRole + 1:
        return true;
    default:
        return false;
    }
}

} // namespace

AbstractRecordListModel::AbstractRecordListModel(QObject* parent)
    : QAbstractTableModel(parent)
    , m_sortKeys(std::make_unique<SortKeys>(
          [this](int row, int column) { return cell(row, static_cast<Column>(column), SortRole); }))
{
    registerMetaTypes();
    keepSortKeysUpToDate();
}

AbstractRecordListModel::~AbstractRecordListModel() = default;

// Nobody was connected before, so whoever is told of a change and sorts is given the keys behind it.
void AbstractRecordListModel::keepSortKeysUpToDate()
{
    using Model = QAbstractItemModel;
    connect(this, &Model::dataChanged, this, [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
        if (topLeft.isValid() && bottomRight.isValid()) {
            m_sortKeys->cellsChanged(topLeft.row(), bottomRight.row(), topLeft.column(), bottomRight.column());
        } else {
            m_sortKeys->forget(); // where, nobody says
        }
    });
    connect(this, &Model::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { m_sortKeys->rowsInserted(first, last); });
    const auto onAny = [this](auto... changes) {
        (connect(this, changes, this, [this] { m_sortKeys->forget(); }), ...);
    };
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
    if (isSortRole(role) && index.model() == this && m_sortKeys->keeps(index.row(), index.column())) {
        return m_sortKeys->key(index.row());
    }
    const bool exists = index.isValid() && index.model() == this && index.row() < recordCount();
    if (!exists) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return alignment(recordColumn(index.column()));
    }
    if (isSortRole(role)) {
        return m_sortKeys->ask(index.row(), index.column(), recordCount());
    }
    return hasContent(role) ? cell(index.row(), static_cast<Column>(index.column()), role) : QVariant();
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
