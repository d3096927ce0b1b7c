#include <widgetbase/sortlistviewitem.h>

#include <widgetbase/sortlistview.h>

SortListViewItem::SortListViewItem(SortListView* list)
    : QTreeWidgetItem(list, Type)
{}

SortListViewItem::~SortListViewItem() = default;

SortListView* SortListViewItem::sortListView() const
{
    return qobject_cast<SortListView*>(treeWidget());
}

// A cell comes into being with its first value.
void SortListViewItem::SetColumnCount(int columns)
{
    if (columns > columnCount()) {
        setText(columns - 1, QString());
    }
}

void SortListViewItem::SetSortKey(int column, const QString& key)
{
    m_sortKeys[column] = key;
    emitDataChanged();
}

void SortListViewItem::RemoveSortKey(int column)
{
    if (m_sortKeys.remove(column)) {
        emitDataChanged();
    }
}

QString SortListViewItem::sortKey(int column) const
{
    const auto found = m_sortKeys.constFind(column);
    return found == m_sortKeys.constEnd() ? text(column) : *found;
}

QVariant SortListViewItem::data(int column, int role) const
{
    const SortListView* const list = role == Qt::TextAlignmentRole ? sortListView() : nullptr;
    return list == nullptr ? QTreeWidgetItem::data(column, role) : QVariant::fromValue(list->columnAlignment(column));
}

bool SortListViewItem::operator<(const QTreeWidgetItem& other) const
{
    const SortListView* const list = sortListView();
    const auto* const item = dynamic_cast<const SortListViewItem*>(&other);
    if (list == nullptr || item == nullptr) {
        return QTreeWidgetItem::operator<(other);
    }
    const int column = list->sortColumn();
    return list->compareFunction(column)(*this, *item, column) < 0;
}
