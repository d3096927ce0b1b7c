#pragma once

#include "testrecords.h"

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QStringList>

/// A record list that a test fills and changes itself.
class ListedRecords : public ZelkoCommon::AbstractRecordListModel
{
public:
    explicit ListedRecords(const QStringList& ids = {})
    {
        for (const QString& id : ids) {
            m_records.append(makeRecord(id));
        }
    }

    RecordDataPtr recordData(int row) const override { return has(row) ? m_records[row] : nullptr; }
    QString recordID(int row) const override { return has(row) ? m_records[row]->GetRecordID() : QString(); }
    int recordCount() const override { return static_cast<int>(m_records.size()); }

    /// Behind the others.
    void add(const RecordDataPtr& record)
    {
        beginInsertRows({}, recordCount(), recordCount());
        m_records.append(record);
        endInsertRows();
    }

    void remove(const QString& id)
    {
        const int row = recordRow(id);
        beginRemoveRows({}, row, row);
        m_records.removeAt(row);
        endRemoveRows();
    }

    void change(const RecordDataPtr& record)
    {
        const int row = recordRow(record->GetRecordID());
        m_records[row] = record;
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    }

    /// All rows at once.
    void replace(const QStringList& ids)
    {
        beginResetModel();
        m_records.clear();
        for (const QString& id : ids) {
            m_records.append(makeRecord(id));
        }
        endResetModel();
    }

private:
    bool has(int row) const { return row >= 0 && row < recordCount(); }

    QList<RecordDataPtr> m_records;
};
