#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include "celltest_p.h"
#include "filterround_p.h"
#include "rejectingcolumns_p.h"
#include "rowchange_p.h"

#include <QIcon>
#include <QPointer>
#include <QSet>

#include <algorithm>
#include <numeric>
#include <optional>

namespace ZelkoGUI::Filter {
namespace {

// Never destroyed, since images must not outlive the application, which static objects do.
const QIcon& filterMark()
{
    static const QIcon& icon = *new QIcon(QStringLiteral(":/Filter/Icons/FilterActive.svg"));
    return icon;
}

} // namespace

class MultiFilterSortProxyModel::Private
{
public:
    explicit Private(const MultiFilterSortProxyModel* model)
        : q(model)
    {}

    bool hidesRows() const;
    int proxyColumn(int sourceColumn) const;
    void findFilteredColumns();
    std::vector<int> shownRows() const;
    std::vector<int> markedPlaces() const;
    bool mayBeWhollySelected() const;
    bool isSorted() const { return q->sortColumn() >= 0 || q->sortOrder() != Qt::AscendingOrder; }
    void forgetRound() { round.reset(); }
    void forgetSource();

    const MultiFilterSortProxyModel* const q;
    QList<AbstractFilterCondition*> filters;
    QSet<int> filteredColumns;
    RejectingColumns rejectingColumns{filters};
    std::optional<FilterRound> round; // while the rows are made to follow it
    std::unique_ptr<QObject> sourceConnections;
};

void MultiFilterSortProxyModel::Private::forgetSource()
{
    rejectingColumns.forget();
    forgetRound();
}

bool MultiFilterSortProxyModel::Private::hidesRows() const
{
    const QAbstractItemModel* source = q->sourceModel();
    return source && q->rowCount() != source->rowCount();
}

// Without a row there is nothing that could be mapped; the columns of the source are taken as they stand.
int MultiFilterSortProxyModel::Private::proxyColumn(int sourceColumn) const
{
    const QModelIndex first = q->mapToSource(q->index(0, 0));
    return first.isValid() ? q->mapFromSource(first.siblingAtColumn(sourceColumn)).column() : sourceColumn;
}

void MultiFilterSortProxyModel::Private::findFilteredColumns()
{
    for (const AbstractFilterCondition* filter : std::as_const(filters)) {
        const int column = proxyColumn(filter->filterKeyColumn());
        if (column >= 0 && column < q->columnCount() && !filteredColumns.contains(column) &&
            rejectingColumns.contains(*q->sourceModel(), filter->filterKeyColumn())) {
            filteredColumns.insert(column);
        }
    }
}

std::vector<int> MultiFilterSortProxyModel::Private::shownRows() const
{
    std::vector<int> rows(static_cast<std::size_t>(q->rowCount()));
    if (!isSorted() && !hidesRows()) {
        std::iota(rows.begin(), rows.end(), 0);
        return rows;
    }
    int place = 0;
    for (int& row : rows) {
        row = q->mapToSource(q->index(place++, 0)).row();
    }
    return rows;
}

std::vector<int> MultiFilterSortProxyModel::Private::markedPlaces() const
{
    std::vector<int> places;
    for (const QModelIndex& index : q->persistentIndexList()) {
        if (!index.parent().isValid()) {
            places.push_back(index.row());
        }
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

// A selection of the whole list is known by its two corners.
bool MultiFilterSortProxyModel::Private::mayBeWhollySelected() const
{
    const QModelIndexList indexes = q->persistentIndexList();
    return indexes.contains(q->index(0, 0)) && indexes.contains(q->index(q->rowCount() - 1, q->columnCount() - 1));
}

MultiFilterSortProxyModel::MultiFilterSortProxyModel(QObject* parent)
    : QSortFilterProxyModel(parent)
    , d(std::make_unique<Private>(this))
{
    followOwnChanges();
    connect(this, &QAbstractProxyModel::sourceModelChanged, this, &MultiFilterSortProxyModel::followSource);
}

MultiFilterSortProxyModel::~MultiFilterSortProxyModel() = default;

void MultiFilterSortProxyModel::followOwnChanges()
{
    using Proxy = MultiFilterSortProxyModel;
    connect(this, &Proxy::dataChanged, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::layoutChanged, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::modelReset, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::columnsRemoved, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::columnsInserted, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::rowsRemoved, this, &Proxy::invalidateHeaderData);
    connect(this, &Proxy::rowsInserted, this, &Proxy::invalidateHeaderData);
}

// These connections stand before those of the base class, which is told of its source only now. So what is known of the
// source is brought up to date before the base class asks about changed rows.
void MultiFilterSortProxyModel::followSource()
{
    d->forgetSource();
    d->sourceConnections = std::make_unique<QObject>();
    if (!sourceModel()) {
        return;
    }
    followSourceContent();
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... changes) {
        const auto forget = [this] { d->forgetSource(); };
        (connect(sourceModel(), changes, d->sourceConnections.get(), forget), ...);
    };
    onAny(&Model::layoutChanged, &Model::modelReset, &Model::rowsMoved, &Model::columnsInserted, &Model::columnsRemoved,
          &Model::columnsMoved);
}

void MultiFilterSortProxyModel::followSourceContent()
{
    const QAbstractItemModel* source = sourceModel();
    QObject* context = d->sourceConnections.get();
    connect(source, &QAbstractItemModel::dataChanged, context,
            [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                d->forgetRound();
                if (topLeft.isValid() && bottomRight.isValid() && !topLeft.parent().isValid()) {
                    d->rejectingColumns.cellsChanged(topLeft, bottomRight);
                }
            });
    connect(source, &QAbstractItemModel::rowsInserted, context,
            [this, source](const QModelIndex& parent, int first, int last) {
                d->forgetRound();
                if (!parent.isValid()) {
                    d->rejectingColumns.rowsInserted(*source, first, last);
                }
            });
    connect(source, &QAbstractItemModel::rowsRemoved, context, [this] { d->forgetRound(); });
}

QVariant MultiFilterSortProxyModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const QVariant given = QSortFilterProxyModel::headerData(section, orientation, role);
    const bool isMarked = orientation == Qt::Horizontal && role == Qt::DecorationRole && !given.isValid() &&
                          d->filteredColumns.contains(section);
    return isMarked ? QVariant(filterMark()) : given;
}

bool MultiFilterSortProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (d->round && !sourceParent.isValid() && sourceRow >= 0 && sourceRow < d->round->rowCount()) {
        return d->round->accepts(sourceRow);
    }
    return std::all_of(d->filters.begin(), d->filters.end(), [&](const AbstractFilterCondition* filter) {
        return !filter->filterActive() || passesRow(*filter, *sourceModel(), sourceRow, sourceParent);
    });
}

void MultiFilterSortProxyModel::addFilter(AbstractFilterCondition* filter)
{
    if (!filter || d->filters.contains(filter)) {
        return;
    }
    d->filters.append(filter);
    connect(filter, &AbstractFilterCondition::si_filterChanged, this, &MultiFilterSortProxyModel::filterHasChanged);
    connect(filter, &QObject::destroyed, this, &MultiFilterSortProxyModel::filterDestroyed);
    if (!filter->parent()) {
        filter->setParent(this);
    }
    if (filter->filterActive()) {
        filterHasChanged();
    }
}

void MultiFilterSortProxyModel::removeFilter(AbstractFilterCondition* filter)
{
    if (!filter) {
        return;
    }
    const QPointer<AbstractFilterCondition> alive(filter); // somebody may delete it because the list has changed
    d->filters.removeAll(filter);
    filter->disconnect(this);
    if (filter->filterActive()) {
        filterHasChanged();
    }
    if (alive && filter->parent() == this) {
        delete filter;
    }
}

void MultiFilterSortProxyModel::clearFilters()
{
    QList<AbstractFilterCondition*> filters = std::exchange(d->filters, {});
    if (filters.isEmpty()) {
        return;
    }
    for (AbstractFilterCondition* filter : std::as_const(filters)) {
        filter->disconnect(this);
    }
    filters.removeIf([this](AbstractFilterCondition* filter) { return filter->parent() != this; });
    qDeleteAll(filters);
    filterHasChanged();
}

void MultiFilterSortProxyModel::filterHasChanged()
{
    filterAnew();
    invalidateHeaderData();
}

// All that is left of the condition is a QObject: it can be compared, and cannot be asked whether it was active.
void MultiFilterSortProxyModel::filterDestroyed(QObject* object)
{
    d->filters.removeIf([object](QObject* filter) { return filter == object; });
    filterHasChanged();
}

void MultiFilterSortProxyModel::invalidateHeaderData()
{
    d->filteredColumns.clear();
    const int columns = columnCount();
    if (columns > 0 && d->hidesRows()) {
        d->findFilteredColumns();
    }
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns - 1);
}

// The rows are judged once; the base class, which asks for each row anew, is answered from that.
void MultiFilterSortProxyModel::filterAnew()
{
    d->forgetSource();
    if (!sourceModel()) {
        return;
    }
    d->round.emplace(*sourceModel(), d->filters);
    d->rejectingColumns.take(*sourceModel(), *d->round);
    if (dynamicSortFilter() && !d->mayBeWhollySelected()) {
        const RowChange change(d->shownRows(), *d->round, d->isSorted());
        if (change.isForLayout()) {
            changeLayout(change.hiddenAmong(d->markedPlaces()));
        }
    }
    invalidateFilter();
    d->forgetRound();
}

// A change of the layout lets hidden rows vanish from selections without a word. So those rows by which that would be
// noticed stay until the layout has changed; they go by themselves.
void MultiFilterSortProxyModel::changeLayout(const std::vector<int>& laterHiddenRows)
{
    for (const int row : laterHiddenRows) {
        d->round->accept(row);
    }
    invalidate();
    for (const int row : laterHiddenRows) {
        if (d->round) { // whoever was told of the layout has not changed anything himself
            d->round->reject(row);
        }
    }
}

} // namespace ZelkoGUI::Filter
