#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include "celltest_p.h"
#include "filterround_p.h"
#include "heldrows_p.h"
#include "rejectingcolumns_p.h"
#include "rowchange_p.h"
#include "shownrows_p.h"

#include <QIcon>
#include <QItemSelectionModel>
#include <QPointer>
#include <QScopedValueRollback>
#include <QSet>
#include <QSignalBlocker>

#include <algorithm>
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
    bool hidesHeldRows() const;
    std::vector<int> comingRows() const;
    bool mayBeWhollySelected() const;
    bool isForLayout() const;
    void forgetRound() { round.reset(); }
    void forgetSource();

    const MultiFilterSortProxyModel* const q;
    QList<AbstractFilterCondition*> filters;
    QSet<int> filteredColumns;
    RejectingColumns rejectingColumns{filters};
    std::optional<FilterRound> round; // while the rows are made to follow it
    HeldRows::Selections selections;
    int leavingRows = 0;   // of the source, which the list has lost already
    int sourceChanges = 0; // that the base class has not taken over whole, one within the other
    bool knowsEndsOfSourceChanges = false;
    bool isFiltering = false;
    bool isOutdated = false; // the conditions changed meanwhile
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
    return source && q->rowCount() != source->rowCount() - leavingRows;
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

bool MultiFilterSortProxyModel::Private::hidesHeldRows() const
{
    const ShownRows shown(*q);
    return !HeldRows(shown, q->persistentIndexList(), selections).hiddenBy(*round).empty();
}

std::vector<int> MultiFilterSortProxyModel::Private::comingRows() const
{
    const std::vector<bool> shown = ShownRows(*q).bySourceRow();
    std::vector<int> rows;
    for (int row = 0; row < round->rowCount(); ++row) {
        if (round->accepts(row) && !shown[static_cast<std::size_t>(row)]) {
            rows.push_back(row);
        }
    }
    return rows;
}

bool MultiFilterSortProxyModel::Private::mayBeWhollySelected() const
{
    return Filter::mayBeWhollySelected(q->persistentIndexList(), q->rowCount(), q->columnCount());
}

bool MultiFilterSortProxyModel::Private::isForLayout() const
{
    return RowChange(ShownRows(*q), *round).isForLayout();
}

MultiFilterSortProxyModel::MultiFilterSortProxyModel(QObject* parent)
    : QSortFilterProxyModel(parent)
    , d(std::make_unique<Private>(this))
{
    followOwnChanges();
    connect(this, &QAbstractProxyModel::sourceModelChanged, this, &MultiFilterSortProxyModel::followSource);
    connect(this, &QAbstractItemModel::modelReset, this, &MultiFilterSortProxyModel::followEndsOfSourceChanges);
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
    d->leavingRows = 0;
    d->sourceChanges = 0;
    d->knowsEndsOfSourceChanges = false;
    d->sourceConnections = std::make_unique<QObject>();
    if (!sourceModel()) {
        return;
    }
    followBeginningsOfSourceChanges();
    followSourceContent();
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... changes) {
        const auto forget = [this] { d->forgetSource(); };
        (connect(sourceModel(), changes, d->sourceConnections.get(), forget), ...);
    };
    onAny(&Model::layoutChanged, &Model::modelReset, &Model::rowsMoved, &Model::columnsInserted, &Model::columnsRemoved,
          &Model::columnsMoved);
}

void MultiFilterSortProxyModel::followBeginningsOfSourceChanges()
{
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... beginnings) {
        const auto begin = [this] { ++d->sourceChanges; };
        (connect(sourceModel(), beginnings, d->sourceConnections.get(), begin), ...);
    };
    onAny(&Model::dataChanged, &Model::rowsAboutToBeInserted, &Model::rowsAboutToBeRemoved, &Model::rowsAboutToBeMoved,
          &Model::columnsAboutToBeInserted, &Model::columnsAboutToBeRemoved, &Model::columnsAboutToBeMoved,
          &Model::layoutAboutToBeChanged, &Model::modelAboutToBeReset);
}

// Told of the first reset of this list behind a new source, these connections stand behind those of the base class.
void MultiFilterSortProxyModel::followEndsOfSourceChanges()
{
    if (!sourceModel() || std::exchange(d->knowsEndsOfSourceChanges, true)) {
        return;
    }
    using Model = QAbstractItemModel;
    const auto onAny = [this](auto... ends) {
        (connect(sourceModel(), ends, d->sourceConnections.get(), [this] { sourceChangeEnded(); }), ...);
    };
    onAny(&Model::dataChanged, &Model::rowsInserted, &Model::rowsRemoved, &Model::rowsMoved, &Model::columnsInserted,
          &Model::columnsRemoved, &Model::columnsMoved, &Model::layoutChanged, &Model::modelReset);
}

void MultiFilterSortProxyModel::sourceChangeEnded()
{
    d->sourceChanges = std::max(d->sourceChanges - 1, 0);
    if (d->isOutdated) {
        filterHasChanged();
    }
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
    connect(source, &QAbstractItemModel::rowsAboutToBeRemoved, context,
            [this](const QModelIndex& parent, int first, int last) {
                d->leavingRows = parent.isValid() ? 0 : last - first + 1;
            });
    connect(source, &QAbstractItemModel::rowsRemoved, context, [this] {
        d->leavingRows = 0;
        d->forgetRound();
        d->rejectingColumns.rowsRemoved();
    });
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
    const QList<QPointer<AbstractFilterCondition>> own(filters.begin(), filters.end());
    for (const auto& filter : own) {
        delete filter; // somebody may have taken others with one
    }
    filterHasChanged();
}

void MultiFilterSortProxyModel::followSelection(const QItemSelectionModel* selection)
{
    d->selections.removeAll(nullptr);
    if (selection && !d->selections.contains(selection)) {
        d->selections.append(selection);
    }
}

void MultiFilterSortProxyModel::filterHasChanged()
{
    if (filterAnew()) {
        invalidateHeaderData();
    }
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

// Rows that come and go in single steps are counted beforehand, also by the base class when the source changes, so a
// change from within one has to wait. False if it does.
bool MultiFilterSortProxyModel::filterAnew()
{
    d->isOutdated = true;
    if (d->isFiltering || d->sourceChanges > 0) {
        return false;
    }
    const QScopedValueRollback filtering(d->isFiltering, true);
    while (std::exchange(d->isOutdated, false)) {
        judgeAndShow();
    }
    return true;
}

// The rows are judged once; the base class, which asks for each row anew, is answered from that.
void MultiFilterSortProxyModel::judgeAndShow()
{
    d->forgetSource();
    if (!sourceModel()) {
        return;
    }
    d->round.emplace(*sourceModel(), d->filters);
    d->rejectingColumns.take(*sourceModel(), *d->round);
    if (dynamicSortFilter() && d->isForLayout()) {
        showInLayouts();
    }
    invalidateFilter();
    d->forgetRound();
}

void MultiFilterSortProxyModel::showInLayouts()
{
    if (d->mayBeWhollySelected() || d->hidesHeldRows()) {
        hideBeforeShowing();
    }
    if (d->round) {
        takeInLayout();
    }
}

// As single steps do it: whoever loses the current row is given one of those that were there. In a list that is
// selected as a whole, selection models take whatever a layout change shows for selected; with one new row in it, it is
// not.
void MultiFilterSortProxyModel::hideBeforeShowing()
{
    const std::vector<int> coming = d->comingRows();
    const auto judgeComing = [&](bool accepted) {
        if (d->round) { // whoever was told of the change has not changed the source
            d->round->judge(coming, accepted);
        }
    };
    judgeComing(false);
    takeInLayout();
    invalidateFilter();
    if (d->round && !coming.empty() && d->mayBeWhollySelected()) {
        d->round->judge({coming.front()}, true);
        invalidateFilter();
    }
    judgeComing(true);
}

// A change of the layout lets hidden rows vanish from selections without a word. So those rows by which that would be
// noticed stay until the layout has changed; they go by themselves.
void MultiFilterSortProxyModel::takeInLayout()
{
    if (!d->isForLayout()) {
        return;
    }
    const ShownRows shown(*this);
    const HeldRows held(shown, persistentIndexList(), d->selections);
    const std::vector<int> later = held.hiddenBy(*d->round);
    d->round->judge(later, true);
    if (held.areFromTheFirstColumn()) {
        invalidateRows();
    } else {
        invalidate();
    }
    if (d->round) {
        d->round->judge(later, false);
    }
}

// As the base class does it, but saying that rows are sorted, with which selection models remember one index for each
// row and not one for each cell.
void MultiFilterSortProxyModel::invalidateRows()
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    {
        const QSignalBlocker blocker(this);
        invalidate();
    }
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

} // namespace ZelkoGUI::Filter
