#pragma once

#include <QAbstractTableModel>
#include <QList>

/// A table of numbers that can be changed in every way, and counts how often its cells are read. The numbers stand
/// under every role that cells have, but the decoration.
class NumberTable : public QAbstractTableModel
{
public:
    using Row = QList<int>;

    explicit NumberTable(QList<Row> rows, int columns = 3)
        : m_rows(std::move(rows))
        , m_columns(columns)
    {}

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : m_columns;
    }
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override
    {
        const bool isContent = role == Qt::DisplayRole || role >= Qt::UserRole;
        if (!index.isValid() || !isContent) {
            return {};
        }
        ++m_reads;
        return m_rows[index.row()][index.column()];
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        const bool isDecorated = orientation == Qt::Horizontal && section >= 0 && section == decoratedSection;
        return isDecorated && role == Qt::DecorationRole ? QVariant(QStringLiteral("own"))
                                                         : QAbstractTableModel::headerData(section, orientation, role);
    }

    void set(int row, int column, int value)
    {
        m_rows[row][column] = value;
        Q_EMIT dataChanged(index(row, column), index(row, column));
    }
    void insert(int row, const QList<Row>& rows)
    {
        beginInsertRows({}, row, row + static_cast<int>(rows.size()) - 1);
        for (qsizetype i = 0; i < rows.size(); ++i) {
            m_rows.insert(row + i, rows[i]);
        }
        endInsertRows();
    }
    void remove(int row, int count = 1)
    {
        beginRemoveRows({}, row, row + count - 1);
        m_rows.remove(row, count);
        endRemoveRows();
    }
    void reset(QList<Row> rows)
    {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }
    void addColumn()
    {
        beginInsertColumns({}, m_columns, m_columns);
        for (Row& row : m_rows) {
            row.append(0);
        }
        ++m_columns;
        endInsertColumns();
    }

    void removeLastColumn()
    {
        beginRemoveColumns({}, m_columns - 1, m_columns - 1);
        for (Row& row : m_rows) {
            row.removeLast();
        }
        --m_columns;
        endRemoveColumns();
    }

    /// How many cells were read since the last call.
    int takeReads() const { return std::exchange(m_reads, 0); }

    int decoratedSection = -1; ///< the column whose header has a decoration of its own

private:
    QList<Row> m_rows;
    int m_columns;
    mutable int m_reads = 0;
};
