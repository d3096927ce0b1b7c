#include "plainrecordmodel.h"

#include <algorithm>

int PlainRecordModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int PlainRecordModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 14;
}

QVariant PlainRecordModel::data(const QModelIndex& index, int role) const
{
    return role == Qt::DisplayRole ? m_rows[static_cast<std::size_t>(index.row())]->GetRecordName() : QVariant();
}

void PlainRecordModel::set(const RecordPtr& record)
{
    if (!update(record)) {
        const int row = rowCount();
        beginInsertRows(QModelIndex(), row, row);
        append(record);
        endInsertRows();
    }
}

void PlainRecordModel::setAll(const std::vector<RecordPtr>& records)
{
    std::vector<RecordPtr> fresh;
    for (const RecordPtr& record : records) {
        if (!update(record)) {
            fresh.push_back(record);
        }
    }
    if (!fresh.empty()) {
        beginInsertRows(QModelIndex(), rowCount(), rowCount() + static_cast<int>(fresh.size()) - 1);
        for (const RecordPtr& record : fresh) {
            append(record);
        }
        endInsertRows();
    }
}

void PlainRecordModel::removeAll(const std::vector<QString>& ids)
{
    std::vector<int> rows;
    rows.reserve(ids.size());
    for (const QString& id : ids) {
        rows.push_back(m_rowOfId.at(id));
    }
    std::sort(rows.begin(), rows.end());
    for (std::size_t end = rows.size(); end > 0;) {
        std::size_t first = end - 1;
        while (first > 0 && rows[first - 1] == rows[first] - 1) {
            --first;
        }
        removeRun(rows[first], static_cast<int>(end - first));
        end = first;
    }
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        m_rowOfId[m_rows[row]->GetRecordID()] = static_cast<int>(row);
    }
}

bool PlainRecordModel::update(const RecordPtr& record)
{
    const auto found = m_rowOfId.find(record->GetRecordID());
    if (found == m_rowOfId.end()) {
        return false;
    }
    m_rows[static_cast<std::size_t>(found->second)] = record;
    Q_EMIT dataChanged(index(found->second, 0), index(found->second, columnCount() - 1));
    return true;
}

void PlainRecordModel::append(const RecordPtr& record)
{
    m_rowOfId.emplace(record->GetRecordID(), static_cast<int>(m_rows.size()));
    m_rows.push_back(record);
}

void PlainRecordModel::removeRun(int first, int count)
{
    beginRemoveRows(QModelIndex(), first, first + count - 1);
    const auto begin = m_rows.begin() + first;
    for (auto record = begin; record != begin + count; ++record) {
        m_rowOfId.erase((*record)->GetRecordID());
    }
    m_rows.erase(begin, begin + count);
    endRemoveRows();
}
