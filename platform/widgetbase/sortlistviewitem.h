#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QHash>
#include <QTreeWidgetItem>

class SortListView;

/// An item of a SortListView, with a key per column that it is sorted by in place of the text that is shown.
class WIDGETBASE_EXPORT SortListViewItem : public QTreeWidgetItem
{
public:
    static constexpr int Type = QTreeWidgetItem::UserType + 1;

    explicit SortListViewItem(SortListView* list);
    ~SortListViewItem() override;

    /// The list that it stands in, null if it is in none.
    SortListView* sortListView() const;

    /// An empty key is one too.
    void SetSortKey(int column, const QString& key);

    /// The text of the column where no key was set.
    QString sortKey(int column) const;

    /// Alignment as the column of the list has it, all else as usual.
    QVariant data(int column, int role) const override;

    bool operator<(const QTreeWidgetItem& other) const override;

private:
    QHash<int, QString> m_sortKeys;
};
