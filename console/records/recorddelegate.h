#pragma once

#include <QStyledItemDelegate>

namespace ZelkoConsole {

/// Shows the cells of a record table; what is cut off in a cell stands in its tool tip.
class RecordDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
};

} // namespace ZelkoConsole
