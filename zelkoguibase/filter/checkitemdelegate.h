#pragma once

#include <zelkoguibase/filter/enumerationfilterwidgetbase.h>

#include <QStyledItemDelegate>

namespace ZelkoGUI::Filter {

/// Toggles an item that can be checked, but not selected, by a press anywhere on its row. Boxes that are not checked
/// can be seen on a dark list as well.
class ZELKOGUIBASE_EXPORT EnumerationFilterWidgetBase::CheckItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CheckItemDelegate(QObject* parent);
    ~CheckItemDelegate() override;

    /// Some more room than usual, so that the boxes do not touch each other.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace ZelkoGUI::Filter
