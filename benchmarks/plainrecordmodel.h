#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QAbstractTableModel>

#include <memory>
#include <unordered_map>
#include <vector>

/// What one writes without any of our parts: a table model over a vector of records, with a hash from ID to row.
class PlainRecordModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using RecordPtr = std::shared_ptr<ZELKO_XML::ZELKO_RecordData>;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Updates the row of the record or appends one.
    void set(const RecordPtr& record);

    /// Updates rows, and appends those of new records with one notification. All IDs differ.
    void setAll(const std::vector<RecordPtr>& records);

    /// Removes rows in runs from the last to the first, and renumbers once.
    void removeAll(const std::vector<QString>& ids);

private:
    bool update(const RecordPtr& record);
    void append(const RecordPtr& record);
    void removeRun(int first, int count);

    std::vector<RecordPtr> m_rows;
    std::unordered_map<QString, int> m_rowOfId;
};
