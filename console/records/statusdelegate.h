#pragma once

#include <QStyledItemDelegate>

namespace ZelkoConsole {

/// Puts a sign before the status of a record: one sees at a glance which ones are being recorded and which are damaged.
class StatusDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace ZelkoConsole
