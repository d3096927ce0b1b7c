#pragma once

#include <QList>
#include <QPersistentModelIndex>

#include <map>
#include <vector>

class QAbstractItemModel;

namespace ZelkoGUI::Filter {

class AbstractFilterCondition;
class FilterRound;

/// Which columns of a source have a row that an active condition on that column rejects.
///
/// An answer takes a pass over the rows at most, and none while it is known. It stays known as long as the conditions
/// stay, the row that it rests on is not changed or removed, and the notifications of changed, inserted and removed
/// rows come in. That a column rejects nothing is brought up to date when somebody asks, so that changes of a list that
/// hides nothing cost nothing.
class RejectingColumns
{
public:
    /// The list must outlive this object.
    explicit RejectingColumns(const QList<AbstractFilterCondition*>& filters)
        : m_filters(filters)
    {}

    bool contains(const QAbstractItemModel& source, int column);

    /// The conditions changed, or all rows: nothing is known.
    void forget() { m_known.clear(); }

    /// Takes over what a pass over all rows found.
    void take(const QAbstractItemModel& source, const FilterRound& round);

    /// Cells of the source between these columns and rows are other ones.
    void cellsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);

    /// Rows came to the source.
    void rowsInserted(const QAbstractItemModel& source, int first, int last);

    /// Rows left the source.
    void rowsRemoved() { forgetUnread(); }

private:
    struct Rows
    {
        int first;
        int last;
    };
    struct Known
    {
        bool rejects;
        QPersistentModelIndex rowCell; // in a row that is rejected; invalid once that is gone
        std::vector<Rows> unread;      // if nothing was rejected: rows of which that is not known yet

        bool isUpToDate() const { return rejects ? rowCell.isValid() : unread.empty(); }
    };
    using Entry = std::map<int, Known>::iterator;

    bool isUsed(int column) const;
    bool rejects(const QAbstractItemModel& source, int column, int row) const;
    Known bringUpToDate(const QAbstractItemModel& source, int column);
    Known search(const QAbstractItemModel& source, int column, const std::vector<Rows>& spans) const;
    void forgetUnread();
    Entry addUnread(Entry entry, Rows rows);
    static Known known(const QAbstractItemModel& source, int rejectedRow);

    const QList<AbstractFilterCondition*>& m_filters;
    std::map<int, Known> m_known;
};

} // namespace ZelkoGUI::Filter
