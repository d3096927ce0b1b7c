#pragma once

#include <QStringList>

class QAbstractItemModel;
class QModelIndex;
class QTableView;

/// What an operator sees of a record list, by the IDs of its records. The models have the columns of a record list.
namespace ZelkoConsole::shownrecords {

/// The record of an index, whatever its column; empty for an invalid index.
QString id(const QModelIndex& index);

/// From top to bottom.
QStringList ids(const QAbstractItemModel& list);

/// Sorted.
QStringList selectedIds(const QTableView& table);

} // namespace ZelkoConsole::shownrecords
