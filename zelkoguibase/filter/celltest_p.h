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

} // namespace ZelkoGUI::Filter
