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

    /// Gives the item a cell for each of that many columns, empty ones at its end; it never takes one away.
    void SetColumnCount(int columns);

    /// An empty key is one too.
    void SetSortKey(int column, const QString& key);

    /// The column is sorted by its text again.
    void RemoveSortKey(int column);

    /// The text of the column where no key is set.
    QString sortKey(int column) const;

    /// Alignment as the column of the list has it, all else as usual.
    QVariant data(int column, int role) const override;

    bool operator<(const QTreeWidgetItem& other) const override;

private:
    QHash<int, QString> m_sortKeys;
};
