#pragma once

#include <QStyledItemDelegate>

/// Paints items in the colours that they have, as far as these can be read on the background of the list: on a dark one
/// a dark colour is shown as a lighter one of the same hue. The item keeps its colour. Rows get some air between them.
class LegibleTextDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit LegibleTextDelegate(QObject* parent);
    ~LegibleTextDelegate() override;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
