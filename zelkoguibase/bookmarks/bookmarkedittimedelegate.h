#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QStyledItemDelegate>

namespace ZelkoGUI {

/// Edits the times of a BookmarkModel, or of one proxy on it, to the millisecond and within the record. A bookmark that
/// lies outside the record can be opened without being moved. GUI thread only.
class ZELKOGUIBASE_EXPORT BookmarkEditTimeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit BookmarkEditTimeDelegate(QObject* parent = nullptr);
    ~BookmarkEditTimeDelegate() override;

    /// The usual editor; one of a time in another model has no limits. The date is left out where it cannot change.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace ZelkoGUI
