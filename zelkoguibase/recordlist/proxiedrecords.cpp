#include "proxiedrecords_p.h"

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QSortFilterProxyModel>

#include <algorithm>
#include <vector>

namespace ZelkoGUI {

using ZelkoCommon::AbstractRecordListModel;

const AbstractRecordListModel* ProxiedRecords::source() const
{
    return qobject_cast<const AbstractRecordListModel*>(m_proxy.sourceModel());
}

QString ProxiedRecords::idOf(const QModelIndex& proxyIndex) const
{
    const AbstractRecordListModel* const records = source();
    return records ? records->getRecordID(m_proxy.mapToSource(proxyIndex)) : QString();
}

QModelIndex ProxiedRecords::sourceIndexOf(const QString& id) const
{
    const AbstractRecordListModel* const records = source();
    return records ? records->recordIndex(id) : QModelIndex();
}

QModelIndex ProxiedRecords::indexOf(const QString& id) const
{
    return m_proxy.mapFromSource(sourceIndexOf(id));
}

QItemSelection ProxiedRecords::rowsOf(const QStringList& ids) const
{
    std::vector<int> rows;
    for (const QString& id : ids) {
        if (const QModelIndex index = indexOf(id); index.isValid()) {
            rows.push_back(index.row());
        }
    }
    std::sort(rows.begin(), rows.end());
    QItemSelection selection;
    const int lastColumn = m_proxy.columnCount() - 1;
    for (auto first = rows.begin(); first != rows.end();) {
        const auto gap = std::adjacent_find(first, rows.end(), [](int row, int next) { return next > row + 1; });
        const auto last = gap == rows.end() ? std::prev(gap) : gap;
        selection.append(QItemSelectionRange(m_proxy.index(*first, 0), m_proxy.index(*last, lastColumn)));
        first = std::next(last);
    }
    return selection;
}

} // namespace ZelkoGUI
