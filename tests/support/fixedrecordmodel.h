#pragma once

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <utility>
#include <vector>

/// A record list that shows what it was made with; the ID of a row need not have data.
class FixedRecordModel final : public ZelkoCommon::AbstractRecordListModel
{
public:
    using Rows = std::vector<std::pair<QString, RecordDataPtr>>;

    explicit FixedRecordModel(Rows rows)
        : m_rows(std::move(rows))
    {}

    RecordDataPtr recordData(int row) const override { return has(row) ? at(row).second : nullptr; }
    QString recordID(int row) const override { return has(row) ? at(row).first : QString(); }
    int recordCount() const override { return static_cast<int>(m_rows.size()); }

private:
    bool has(int row) const { return row >= 0 && row < recordCount(); }
    const Rows::value_type& at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }

    Rows m_rows;
};
