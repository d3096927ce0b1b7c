#include "recordlistwidget_p.h"

#include "columnheaderview_p.h"

#include "../controller/waitcursor_p.h"

#include <QAction>
#include <QClipboard>
#include <QScrollBar>
#include <QSet>

#include <algorithm>
#include <utility>

namespace ZelkoGUI {

using Filter::AbstractFilterCondition;
using Filter::ExtendedFilterDialog;
using ZelkoCommon::AbstractRecordListModel;

// A selection model also tells that selected rows have moved up because others went, which is no news of the records.
void RecordListWidget::Private::followSelection()
{
    QObject::disconnect(selectionChanges); // somebody who was told of a selection may have made another one
    selectionChanges = connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, &lifetime,
                               [this](const QItemSelection& selectedNow, const QItemSelection& deselected) {
                                   if (!selectedNow.isEmpty() || !deselected.isEmpty()) {
                                       owner->sl_recordSelectionChanged();
                                   }
                               });
}

void RecordListWidget::Private::replaceSource()
{
    if (QAbstractItemModel* const old = proxy->sourceModel()) {
        old->disconnect(owner);
    }
    setSource();
    countRowsOf(proxy->sourceModel());
    keeper->forget();
}

// A proxy whose source dies says nothing of its rows, and whoever shows them would do so for ever.
void RecordListWidget::Private::setSource()
{
    QAbstractItemModel* const source = controller->recordListModel();
    proxy->setSourceModel(source);
    QObject::disconnect(sourceDeath);
    if (source) {
        sourceDeath = connect(source, &QObject::destroyed, &lifetime, [this] { proxy->setSourceModel(nullptr); });
    }
}

RecordListWidget::Private::Place RecordListWidget::Private::place() const
{
    return controller ? Place{controller->activeDevice(), controller->activeSubsystem()} : Place();
}

// The same device announces itself anew when its connection is back, and its records are on their way then.
void RecordListWidget::Private::lookAtPlace()
{
    const Place before = std::exchange(lastPlace, place());
    if (lastPlace != before) {
        keeper->forget();
    }
}

QString RecordListWidget::Private::deviceText() const
{
    const auto& [device, subSystem] = place();
    if (device.isEmpty()) {
        return tr("Device: ") + tr("n/a");
    }
    return tr("Device: ") + (subSystem.isEmpty() ? device : device + QStringLiteral(", ") + subSystem);
}

// In a list in which only one can be selected it is the first that is shown.
QStringList RecordListWidget::Private::shownOf(const QStringList& ids) const
{
    QStringList shown;
    for (const QString& id : ids) {
        if (records.indexOf(id).isValid()) {
            shown.append(id);
            if (isSingleSelection()) {
                break;
            }
        }
    }
    return shown;
}

void RecordListWidget::Private::updateClipboardMenu()
{
    if (clipboardMenu) {
        const auto count = selected.size();
        clipboardMenu->setEnabled(count > 0);
        clipboardMenu->setTitle(count > 0 ? tr("Copy to Clipboard (%1)").arg(count) : tr("Copy to Clipboard"));
    }
}

// Said in so many words: a view that is asked to select a row does what a click would, by the keys that are held.
bool RecordListWidget::Private::selectShown(const QString& id)
{
    const QModelIndex index = records.indexOf(id);
    if (!index.isValid()) {
        return false;
    }
    keeper->forget();
    view->selectionModel()->setCurrentIndex(index.siblingAtColumn(columnInSight()),
                                            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
    return true;
}

void RecordListWidget::Private::resetFilters()
{
    if (filterDialog) {
        filterDialog->resetFilter();
    }
    if (nameFilter) {
        nameFilter->resetFilter();
    }
}

// The first one, which is on the right where that is where lines begin.
int RecordListWidget::Private::columnInSight() const
{
    return std::max(header->logicalIndexAt(header->isRightToLeft() ? header->viewport()->width() - 1 : 0), 0);
}

// Up and down only, and also while the column of the names is hidden.
void RecordListWidget::Private::scrollTo(const QModelIndex& row)
{
    anchor->settle();
    const int left = view->horizontalScrollBar()->value();
    view->scrollTo(row.siblingAtColumn(columnInSight()));
    view->horizontalScrollBar()->setValue(left);
}

QStringList RecordListWidget::Private::highlighted() const
{
    QStringList ids;
    const QModelIndexList rows = view->selectionModel()->selectedRows(AbstractRecordListModel::NameColumn);
    for (const QModelIndex& row : rows) {
        ids.append(records.idOf(row));
    }
    return ids;
}

// A selection goes without a word when all rows are replaced at once.
void RecordListWidget::Private::tellWhatIsLeft()
{
    const QStringList left = highlighted();
    if (QSet<QString>(left.begin(), left.end()) != QSet<QString>(selected.begin(), selected.end())) {
        owner->sl_recordSelectionChanged();
    }
}

QString RecordListWidget::Private::textOf(const QModelIndex& sourceRow, int column) const
{
    if (column != allColumns) {
        return sourceRow.siblingAtColumn(column).data().toString();
    }
    QStringList cells;
    for (int each = 0; each < sourceRow.model()->columnCount(); ++each) {
        cells.append(sourceRow.siblingAtColumn(each).data().toString());
    }
    return cells.join(u';');
}

RecordListWidget::RecordListWidget(IZelkoGUIController* controller, const QFlags<enOption>& options,
                                   const QFlags<ExtendedFilterDialog::enFilterColumn>& filterColumns, QWidget* parent,
                                   const QString& name)
    : QWidget(parent)
    , d(std::make_unique<Private>(this, controller))
{
    setObjectName(name);
    controller->setDialogParent(this);
    connect(controller, &IZelkoGUIController::si_userActionTriggered, this, &RecordListWidget::sl_userActionTriggered);
    d->makeView(options);
    d->followSelection();
    connect(this, &RecordListWidget::si_selectedRecordsChanged, controller,
            &IZelkoGUIController::sl_selectedRecordsChanged);
    connect(controller, &IZelkoGUIController::si_selectedRecordsChanged, this,
            &RecordListWidget::sl_controllerSelectedRecordsChanged);
    // Also without a label for the device: the list of another device may be another model.
    connect(controller, &IZelkoGUIController::si_activeDeviceChanged, this, &RecordListWidget::sl_activeDeviceChanged);
    connect(d->view, &QTableView::doubleClicked, this, &RecordListWidget::sl_doubleClicked);
    d->keepColumns();
    d->makeParts(options, filterColumns);
    d->takeColumns();
    if (d->popupMenu) {
        d->view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(d->view, &QWidget::customContextMenuRequested, this, &RecordListWidget::sl_contextMenu);
    }
    d->arrange();
    sl_recordSelectionChanged();
}

RecordListWidget::~RecordListWidget()
{
    d->columnHandler->saveColumnStatus();
}

// A filter that stays is left where it is: taken out, it would be deleted if it has no other owner than the proxy.
void RecordListWidget::setFixedFilter(QList<AbstractFilterCondition*> filters)
{
    for (const auto& filter : std::exchange(d->fixedFilters, {filters.begin(), filters.end()})) {
        if (filter && !filters.contains(filter)) {
            d->proxy->removeFilter(filter);
        }
    }
    for (const auto& filter : std::as_const(d->fixedFilters)) {
        d->proxy->addFilter(filter);
    }
}

void RecordListWidget::resetFixedFilter()
{
    setFixedFilter({});
}

QStringList RecordListWidget::selectedRecords() const
{
    return d->selected;
}

void RecordListWidget::select(const QString& recordID, bool resetFilter)
{
    if (!d->records.sourceIndexOf(recordID).isValid()) {
        return;
    }
    if (!d->selectShown(recordID) && resetFilter) {
        d->resetFilters();
        d->selectShown(recordID);
    }
}

void RecordListWidget::setFocusOnList()
{
    d->view->setFocus();
}

void RecordListWidget::enableInterfaceFilter(bool enable)
{
    if (d->filterDialog) {
        d->filterDialog->enableInterfaceFilter(enable);
    }
}

void RecordListWidget::sl_recordSelectionChanged()
{
    d->selected = d->highlighted();
    d->updateClipboardMenu();
    Q_EMIT si_selectedRecordsChanged(d->selected);
}

// What this widget has told the controller comes back from there; that it is known is the end of it.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with this type.
void RecordListWidget::sl_controllerSelectedRecordsChanged(QStringList recordIds)
{
    if (recordIds == d->selected) {
        return;
    }
    disconnect(d->selectionChanges);
    d->selected = d->shownOf(recordIds);
    if (!d->selected.isEmpty()) {
        d->keeper->forget();
    }
    d->view->selectionModel()->select(d->records.rowsOf(d->selected), QItemSelectionModel::ClearAndSelect);
    if (d->selected.size() == 1) {
        d->scrollTo(d->records.indexOf(d->selected.constFirst()));
    }
    d->followSelection();
    d->updateClipboardMenu();
}

// A record that is being deleted has no row to scroll to soon.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with these types.
void RecordListWidget::sl_userActionTriggered(QStringList recordIDs, IZelkoGUIController::enUserAction action)
{
    if (recordIDs.size() == 1 && action != IZelkoGUIController::UserActionDelete) {
        d->scrollTo(d->records.indexOf(recordIDs.constFirst()));
    }
}

void RecordListWidget::sl_doubleClicked(QModelIndex index)
{
    Q_EMIT si_recordDoubleClicked(d->records.idOf(index));
}

// The place is one of the rows' viewport and taken for one of the table: so the menu opens a header's height and width
// off, clear of the row that it is for. The menu key asks for it at the current cell, which may be far out of sight.
void RecordListWidget::sl_contextMenu(QPoint point)
{
    const QRect inSight = d->view->viewport()->rect();
    const QPoint place(std::clamp(point.x(), inSight.left(), inSight.right()),
                       std::clamp(point.y(), inSight.top(), inSight.bottom()));
    d->popupMenu->exec(d->view->mapToGlobal(place));
}

// Whatever has placed the window before anybody saw it: the first time it comes up where new windows do, later where
// its user has left it.
void RecordListWidget::sl_showExtendedFilter()
{
    if (d->filterDialog->isMinimized()) {
        d->filterDialog->showNormal();
    }
    if (!std::exchange(d->isDialogPlaced, true)) {
        d->filterDialog->setAttribute(Qt::WA_Moved, false);
    }
    d->filterDialog->show();
    d->filterDialog->raise();
    d->filterDialog->activateWindow();
}

// While the menu is open anything may happen to this widget.
void RecordListWidget::sl_filterContextMenu(QPoint point)
{
    if (!d->filterDialog->hasActiveFilter()) {
        return;
    }
    const QPointer<QMenu> menu = new QMenu(d->filterButton);
    connect(menu->addAction(tr("Reset")), &QAction::triggered, d->filterDialog, &ExtendedFilterDialog::sl_resetFilter);
    menu->exec(d->filterButton->mapToGlobal(point));
    delete menu;
}

void RecordListWidget::sl_extendedFilterChanged()
{
    const bool isActive = d->filterDialog->hasActiveFilter();
    d->filterButton->setIcon(QIcon(isActive ? QStringLiteral(":/Filter/Icons/FilterActive.svg")
                                            : QStringLiteral(":/Filter/Icons/Filter.svg")));
    d->filterButton->setToolTip(isActive ? tr("Change extended filter settings...")
                                         : tr("Set extended filter settings..."));
}

void RecordListWidget::sl_loadProgress(int current, int total)
{
    d->progressBar->setMaximum(total);
    d->progressBar->setValue(current);
    d->progressBar->setVisible(current < total);
    d->progressLabel->setVisible(current < total);
}

void RecordListWidget::sl_activeDeviceChanged()
{
    if (d->deviceLabel) {
        d->deviceLabel->setText(d->deviceText());
    }
    if (d->controller->recordListModel() != d->proxy->sourceModel()) {
        d->replaceSource();
    }
    d->lookAtPlace();
    sl_recordSelectionChanged();
}

void RecordListWidget::sl_recordCountChanged()
{
    if (!d->countLabel) {
        return;
    }
    const int shown = d->proxy->rowCount();
    const int total = d->proxy->sourceModel() ? d->proxy->sourceModel()->rowCount() : 0;
    if (shown == d->shownCount && total == d->totalCount) {
        return;
    }
    d->shownCount = shown;
    d->totalCount = total;
    d->countLabel->setText(shown == total ? tr("%1 recordings").arg(total)
                                          : tr("%1/%2 recordings").arg(shown).arg(total));
}

void RecordListWidget::sl_clipboardAction(QAction* action)
{
    const int column = action->data().toInt();
    const WaitCursor waiting;
    QStringList lines;
    for (const QString& id : std::as_const(d->selected)) {
        if (const QModelIndex row = d->records.sourceIndexOf(id); row.isValid()) {
            lines.append(d->textOf(row, column));
        }
    }
    QGuiApplication::clipboard()->setText(lines.join(QStringLiteral("\r\n")));
}

} // namespace ZelkoGUI
