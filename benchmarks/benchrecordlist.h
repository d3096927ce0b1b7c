#pragma once

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <vector>

/// A record list in memory, whose rows can be appended and replaced. Names and sizes differ without a pattern; an
/// eighth of the names contains "nor", a quarter "no". Lists share their records.
class BenchRecordList : public ZelkoCommon::AbstractRecordListModel
{
    Q_OBJECT

public:
    explicit BenchRecordList(int rows);

    RecordDataPtr recordData(int row) const override { return m_rows[static_cast<std::size_t>(row)]; }
    QString recordID(int row) const override { return recordData(row)->GetRecordID(); }
    int recordCount() const override { return static_cast<int>(m_rows.size()); }

    /// Appends rows with one notification.
    void append(int rows);

    /// Gives a row another record, of the same name, and tells it.
    void update(int row, quint64 size);

protected:
    QVariant cell(int row, Column column, int role) const override
    {
        return cellOf(*m_rows[static_cast<std::size_t>(row)], column, role);
    }

private:
    std::vector<RecordDataPtr> m_rows;
};
