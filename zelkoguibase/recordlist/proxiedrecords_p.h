#pragma once

#include <QItemSelection>
#include <QString>
#include <QStringList>

class QSortFilterProxyModel;

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

/// A record list as a proxy shows it, by record IDs. The proxy must outlive this object; its source may change.
class ProxiedRecords
{
public:
    explicit ProxiedRecords(const QSortFilterProxyModel& proxy)
        : m_proxy(proxy)
    {}

    /// The list behind the proxy; null if there is none.
    const ZelkoCommon::AbstractRecordListModel* source() const;

    /// The ID of a row of the proxy; empty for an invalid index.
    QString idOf(const QModelIndex& proxyIndex) const;

    /// The index of a record's name in the list behind the proxy; invalid for one that is not known.
    QModelIndex sourceIndexOf(const QString& id) const;

    /// The index of a record's name in the proxy; invalid for one that is not known or not shown.
    QModelIndex indexOf(const QString& id) const;

    /// The whole rows of those of the records that are shown; adjacent ones are one range, since a selection is slow by
    /// the number of its ranges.
    QItemSelection rowsOf(const QStringList& ids) const;

private:
    const QSortFilterProxyModel& m_proxy;
};

} // namespace ZelkoGUI
