#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QAbstractItemModel>

namespace ZelkoGUI::Filter {

/// Whether the cell of a row that the condition reads passes it.
inline bool passesRow(const AbstractFilterCondition& condition, const QAbstractItemModel& source, int row,
                      const QModelIndex& parent = QModelIndex())
{
    const QModelIndex cell = source.index(row, condition.filterKeyColumn(), parent);
    return condition.passes(source.data(cell, condition.filterRole()));
}

/// Whether a cell holds an enumerator. QVariant would make a number or a flag of it, but to a condition on either it is
/// a cell of the wrong type.
inline bool isEnumerator(const QVariant& cell)
{
    return cell.metaType().flags() & QMetaType::IsEnumeration;
}

} // namespace ZelkoGUI::Filter
