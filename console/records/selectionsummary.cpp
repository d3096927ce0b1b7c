#include <console/records/selectionsummary.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkobase/models/unittext.h>

#include <QItemSelectionModel>

#include <numeric>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::AbstractRecordListModel;

QString idOf(const QModelIndex& row)
{
    return row.siblingAtColumn(AbstractRecordListModel::RecordIDColumn).data().toString();
}

quint64 quantity(const QModelIndex& row, int column)
{
    return row.siblingAtColumn(column).data(AbstractRecordListModel::SortRole).toULongLong();
}

template <typename Visit>
void forEachRow(const QModelIndex& first, const QModelIndex& last, Visit visit)
{
    for (int row = first.row(); row <= last.row(); ++row) {
        visit(first.siblingAtRow(row));
    }
}

} // namespace

SelectionSummary::SelectionSummary(const QItemSelectionModel* selection, QObject* parent)
    : QObject(parent)
{
    connect(selection, &QItemSelectionModel::selectionChanged, this,
            [this, selection](const QItemSelection& selected, const QItemSelection& deselected) {
                drop(deselected);
                take(selected);
                dropUntold(selection->selection());
                Q_EMIT changed();
            });
    connect(selection->model(), &QAbstractItemModel::dataChanged, this, &SelectionSummary::update);
    connect(selection->model(), &QAbstractItemModel::modelReset, this, &SelectionSummary::clear);
    take(selection->selection());
}

QString SelectionSummary::text() const
{
    if (m_amounts.isEmpty()) {
        return {};
    }
    return tr("%1 selected, %2, %3")
        .arg(m_amounts.size())
        .arg(ZelkoCommon::unittext::size(m_total.size), ZelkoCommon::unittext::duration(m_total.duration));
}

SelectionSummary::Amount SelectionSummary::amountOf(const QModelIndex& row)
{
    return {quantity(row, AbstractRecordListModel::SizeColumn), quantity(row, AbstractRecordListModel::DurationColumn)};
}

void SelectionSummary::count(Amount& counted, const Amount& amount)
{
    m_total.size += amount.size - counted.size;
    m_total.duration += amount.duration - counted.duration;
    counted = amount;
}

void SelectionSummary::take(const QItemSelection& selected)
{
    for (const QItemSelectionRange& range : selected) {
        forEachRow(range.topLeft(), range.bottomRight(),
                   [this](const QModelIndex& row) { count(m_amounts[idOf(row)], amountOf(row)); });
    }
}

void SelectionSummary::drop(const QItemSelection& deselected)
{
    for (const QItemSelectionRange& range : deselected) {
        forEachRow(range.topLeft(), range.bottomRight(), [this](const QModelIndex& row) {
            Amount counted = m_amounts.take(idOf(row));
            count(counted, {});
        });
    }
}

// A list that hides many rows at once need not name each of those that were selected.
void SelectionSummary::dropUntold(const QItemSelection& selection)
{
    const int rows = std::accumulate(selection.begin(), selection.end(), 0,
                                     [](int sum, const QItemSelectionRange& range) { return sum + range.height(); });
    if (rows < m_amounts.size()) {
        m_amounts.clear();
        m_total = {};
        take(selection);
    }
}

void SelectionSummary::update(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    const Amount before = m_total;
    forEachRow(topLeft, bottomRight, [this](const QModelIndex& row) {
        const auto known = m_amounts.find(idOf(row));
        if (known != m_amounts.end()) {
            count(*known, amountOf(row));
        }
    });
    if (m_total != before) {
        Q_EMIT changed();
    }
}

void SelectionSummary::clear()
{
    m_amounts.clear();
    m_total = {};
    Q_EMIT changed();
}

} // namespace ZelkoConsole
