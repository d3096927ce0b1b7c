#pragma once

#include "listedrecords.h"
#include "patience.h"

#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QtTest>

/// A table of records "r00", "r01" and so on behind a proxy, by their names, which are "name of r00" and so on.
struct RecordTableSetting
{
    explicit RecordTableSetting(int count)
        : records(ids(0, count))
    {
        proxy.setSourceModel(&records);
        proxy.setSortCaseSensitivity(Qt::CaseInsensitive);
    }

    /// Whoever follows the proxy before the table does is there by now.
    void show()
    {
        table.setModel(&proxy);
        table.setSortingEnabled(true);
        table.sortByColumn(0, Qt::AscendingOrder);
        table.setSelectionBehavior(QAbstractItemView::SelectRows);
        table.resize(900, 320);
        table.show();
    }

    static QString id(int number) { return QStringLiteral("r%1").arg(number, 2, 10, QLatin1Char('0')); }

    static QStringList ids(int first, int end)
    {
        QStringList all;
        for (int number = first; number < end; ++number) {
            all << id(number);
        }
        return all;
    }

    void lose() { records.replace({}); }
    void comeBack(int first, int end)
    {
        for (int number = first; number < end; ++number) {
            records.add(makeRecord(id(number)));
        }
    }

    /// Rows have their places only after the next turn of the event loop.
    void scrollTo(int value)
    {
        QTRY_VERIFY_WITH_TIMEOUT(table.verticalScrollBar()->maximum() >= value, patience);
        table.verticalScrollBar()->setValue(value);
    }

    QString idAt(const QModelIndex& index) const { return records.getRecordID(proxy.mapToSource(index)); }
    QString topId() const { return idAt(table.indexAt(QPoint(0, 0))); }
    int scrolled() const { return table.verticalScrollBar()->value(); }

    QStringList selected() const
    {
        QStringList all;
        const QModelIndexList rows = table.selectionModel()->selectedRows();
        for (const QModelIndex& row : rows) {
            all << idAt(row);
        }
        all.sort();
        return all;
    }

    ListedRecords records;
    QSortFilterProxyModel proxy;
    QTableView table;
};
