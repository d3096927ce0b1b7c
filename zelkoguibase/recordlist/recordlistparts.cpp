#include "recordlistwidget_p.h"

#include "columnheaderview_p.h"

#include <zelkoguibase/recordlist/selectheaderview.h>

#include <widgetbase/elidedlabel.h>

#include <QAction>
#include <QBoxLayout>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace ZelkoGUI {

using Filter::AbstractFilterCondition;
using Filter::ExtendedFilterDialog;
using Filter::MultiFilterSortProxyModel;
using ZelkoCommon::AbstractRecordListModel;

namespace {

// When no rows have come for so long, those that are still missing are gone.
constexpr std::chrono::seconds refillPause(5);

QList<QAction*> withIcon(QList<QAction*> actions)
{
    actions.removeIf([](const QAction* action) { return !action->isSeparator() && action->icon().isNull(); });
    return actions;
}

} // namespace

RecordListWidget::Private::Private(RecordListWidget* widget, IZelkoGUIController* itsController)
    : owner(widget)
    , controller(itsController)
    , view(new QTableView(widget))
    , proxy(new MultiFilterSortProxyModel(widget))
    , records(*proxy)
    , lastPlace(place())
{
    setSource();
    proxy->setSortRole(AbstractRecordListModel::SortRole);
    proxy->setDynamicSortFilter(true);
}

// The table is left by the Tab key, or one could not leave it by keys at all.
void RecordListWidget::Private::makeView(Options options)
{
    view->setObjectName(QStringLiteral("RecordTableView"));
    view->setAccessibleName(tr("Records"));
    header = new ColumnHeaderView(view);
    view->setHorizontalHeader(header);
    connect(header, &ColumnHeaderView::resetWanted, &lifetime, [this] { resetColumns(); });
    if (options & OptionSelectHeader) {
        view->setVerticalHeader(new SelectHeaderView(Qt::Vertical, view));
        view->verticalHeader()->setAccessibleName(tr("Selection of recordings"));
    } else {
        view->verticalHeader()->hide();
    }
    anchor = new ScrollAnchor(view, proxy, owner);
    view->setModel(proxy);
    proxy->followSelection(view->selectionModel());
    view->setSortingEnabled(true);
    view->horizontalHeader()->setSectionsMovable(true);
    view->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter); // as the texts below it
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(options & OptionMultiSelection ? QAbstractItemView::ExtendedSelection
                                                          : QAbstractItemView::SingleSelection);
    view->setAlternatingRowColors(true);
    view->setWordWrap(false);
    view->setTextElideMode(Qt::ElideRight);
    view->setTabKeyNavigation(false);
    new FilteredOutNote(view, proxy);
    keeper = new SelectionKeeper(view, proxy, refillPause, owner);
    connect(keeper, &SelectionKeeper::replaced, &lifetime, [this] { tellWhatIsLeft(); });
}

void RecordListWidget::Private::keepColumns()
{
    const QString name = owner->objectName();
    columnHandler = new guiHelper::QHeaderViewColumnHandler(
        view->horizontalHeader(), name.isEmpty() ? QStringLiteral("RecordListWidget") : name, owner);
    connect(header, &QHeaderView::sectionCountChanged, &lifetime, [this] { takeColumns(); });
}

// Of the first list that there is. The widget of a device without one waits for it.
void RecordListWidget::Private::takeColumns()
{
    if (header->count() == 0 || std::exchange(hasTakenColumns, true)) {
        return;
    }
    if (!columnHandler->restoreColumnStatus()) {
        makeRoomForTexts();
    }
    if (clipboardMenu) {
        offerColumnsForClipboard();
    }
}

void RecordListWidget::Private::resetColumns()
{
    for (int column = 0; column < header->count(); ++column) {
        header->moveSection(header->visualIndex(column), column);
        header->setSectionHidden(column, false);
        header->resizeSection(column, header->defaultSectionSize());
    }
    makeRoomForTexts();
}

// As long as nobody has said how wide the columns are to be: the usual width cuts off times and IDs.
void RecordListWidget::Private::makeRoomForTexts()
{
    const QString wide(24, u'0');
    const int room = view->fontMetrics().horizontalAdvance(wide);
    for (const int column : {AbstractRecordListModel::NameColumn, AbstractRecordListModel::StartTimeColumn,
                             AbstractRecordListModel::StopTimeColumn, AbstractRecordListModel::RecordIDColumn}) {
        view->setColumnWidth(column, std::max(room, view->columnWidth(column)));
    }
}

void RecordListWidget::Private::makeToolbar()
{
    const QList<QAction*> actions = withIcon(controller->recordActions());
    if (actions.isEmpty()) {
        return;
    }
    toolbar = new QToolBar(owner);
    toolbar->setObjectName(QStringLiteral("ActionToolbar"));
    toolbar->setAccessibleName(tr("Record actions"));
    toolbar->setOrientation(Qt::Vertical);
    toolbar->addActions(actions);
    // By keys only: a click is meant for the records that are selected, and leaves the keys to them.
    const auto buttons = toolbar->findChildren<QToolButton*>();
    for (QToolButton* const button : buttons) {
        button->setFocusPolicy(Qt::TabFocus);
    }
}

void RecordListWidget::Private::makeNameFilter()
{
    nameCondition = new Filter::StringFilterCondition(AbstractRecordListModel::NameColumn,
                                                      AbstractRecordListModel::ValueRole, proxy);
    proxy->addFilter(nameCondition);
    nameFilter = new Filter::TextFilterWidget(nameCondition, owner);
    nameFilter->setObjectName(QStringLiteral("RecordNameFilterWidget"));
    nameFilter->setAccessibleName(tr("Filter by name"));
    nameFilter->removeMargins(); // a part of the row, like the others
    nameCondition->setEnabled(true);
}

void RecordListWidget::Private::makeExtendedFilter(QFlags<ExtendedFilterDialog::enFilterColumn> columns)
{
    filterButton = new QToolButton(owner);
    filterButton->setObjectName(QStringLiteral("ShowExtendedFilterButton"));
    filterButton->setAccessibleName(tr("Extended filter"));
    filterButton->setContextMenuPolicy(Qt::CustomContextMenu);
    filterDialog = new ExtendedFilterDialog(proxy, columns, owner);
    // Editors of enumerations would take their first values, all of them, a turn of the event loop later: until then
    // every record would be hidden, and none could be selected.
    filterDialog->resetFilter();
    connect(filterButton, &QToolButton::clicked, owner, &RecordListWidget::sl_showExtendedFilter);
    connect(filterButton, &QWidget::customContextMenuRequested, owner, &RecordListWidget::sl_filterContextMenu);
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Down), QKeySequence(Qt::ALT | Qt::Key_Down)}) {
        auto* const opens = new QShortcut(keys, filterButton);
        opens->setContext(Qt::WidgetShortcut);
        connect(opens, &QShortcut::activated, owner,
                [this] { owner->sl_filterContextMenu(filterButton->rect().bottomLeft()); });
    }
    const auto conditions = filterDialog->filters();
    for (const auto& condition : conditions) {
        connect(condition.data(), &AbstractFilterCondition::si_filterChanged, owner,
                &RecordListWidget::sl_extendedFilterChanged);
        connect(condition.data(), &QObject::destroyed, &lifetime, [this] { owner->sl_extendedFilterChanged(); });
    }
    owner->sl_extendedFilterChanged();
}

void RecordListWidget::Private::makeCountLabel()
{
    countLabel = new QLabel(owner);
    countLabel->setObjectName(QStringLiteral("RecordCountLabel"));
    countRowsOf(proxy);
    countRowsOf(proxy->sourceModel());
    // The proxy takes a large change of its filters in one step, which is one of its layout.
    connect(proxy, &QAbstractItemModel::layoutChanged, owner, &RecordListWidget::sl_recordCountChanged);
    owner->sl_recordCountChanged();
}

void RecordListWidget::Private::countRowsOf(const QAbstractItemModel* model) const
{
    if (model == nullptr) {
        return;
    }
    connect(model, &QAbstractItemModel::rowsInserted, owner, &RecordListWidget::sl_recordCountChanged);
    connect(model, &QAbstractItemModel::rowsRemoved, owner, &RecordListWidget::sl_recordCountChanged);
    connect(model, &QAbstractItemModel::modelReset, owner, &RecordListWidget::sl_recordCountChanged);
}

void RecordListWidget::Private::makeDeviceLabel()
{
    constexpr int fewestCharacters = 12;
    auto* const label = new guiHelper::ElidedLabel(deviceText(), owner);
    label->setObjectName(QStringLiteral("ActiveDeviceLabel"));
    label->setFewestCharacters(fewestCharacters);
    deviceLabel = label;
}

void RecordListWidget::Private::makeProgress()
{
    progressLabel = new QLabel(tr("Loading Records: "), owner);
    progressLabel->setObjectName(QStringLiteral("LoadProgressLabel"));
    progressBar = new QProgressBar(owner);
    progressBar->setObjectName(QStringLiteral("LoadProgressBar"));
    progressBar->setAccessibleName(tr("Loading Records"));
    connect(controller, &IZelkoGUIController::si_loadProgress, owner, &RecordListWidget::sl_loadProgress);
    owner->sl_loadProgress(0, 0);
}

void RecordListWidget::Private::makeActionMenu()
{
    const QList<QAction*> actions = controller->recordActions();
    if (actions.isEmpty()) {
        return;
    }
    popupMenu = new QMenu(owner);
    popupMenu->setObjectName(QStringLiteral("RecordListWidgetPopupMenu"));
    popupMenu->addActions(actions);
    owner->addActions(actions);
}

void RecordListWidget::Private::makeClipboardMenu()
{
    if (popupMenu) {
        if (!popupMenu->actions().isEmpty()) {
            popupMenu->addSeparator();
        }
        clipboardMenu = popupMenu->addMenu(tr("Copy to Clipboard"));
        clipboardMenu->setObjectName(QStringLiteral("CopyToClipboardMenu"));
    } else {
        makeOwnClipboardMenu();
    }
    connect(clipboardMenu, &QMenu::triggered, owner, &RecordListWidget::sl_clipboardAction);
}

void RecordListWidget::Private::offerColumnsForClipboard()
{
    for (int column = 0; column < proxy->columnCount(); ++column) {
        const QString text = proxy->headerData(column, Qt::Horizontal).toString();
        addClipboardAction(text, text, column);
    }
    addClipboardAction(tr("All Columns"), QStringLiteral("All"), allColumns);
    QAction* const all = clipboardMenu->actions().constLast();
    QFont bold = all->font();
    bold.setBold(true);
    all->setFont(bold);
}

// Where there is nothing else in the menu, the columns need no menu of their own.
void RecordListWidget::Private::makeOwnClipboardMenu()
{
    popupMenu = new QMenu(owner);
    popupMenu->setObjectName(QStringLiteral("RecordListWidgetPopupMenu"));
    popupMenu->addAction(tr("Copy to Clipboard"))->setEnabled(false);
    popupMenu->addSeparator();
    clipboardMenu = popupMenu;
}

void RecordListWidget::Private::addClipboardAction(const QString& text, const QString& name, int column)
{
    QAction* const action = clipboardMenu->addAction(text);
    action->setObjectName(QStringLiteral("Copy_%1_toClipboard").arg(name));
    action->setData(column);
}

void RecordListWidget::Private::makeParts(Options options, QFlags<ExtendedFilterDialog::enFilterColumn> columns)
{
    if (options & OptionToolbar) {
        makeToolbar();
    }
    if (options & OptionNameFilter) {
        makeNameFilter();
    }
    if (options & OptionExtendedFilter) {
        makeExtendedFilter(columns);
    }
    if (options & OptionRecordCount) {
        makeCountLabel();
    }
    if (options & OptionDeviceLabel) {
        makeDeviceLabel();
    }
    if (options & OptionLoadProgress) {
        makeProgress();
    }
    if (options & OptionActionMenu) {
        makeActionMenu();
    }
    if (options & OptionClipboardMenu) {
        makeClipboardMenu();
    }
}

void RecordListWidget::Private::arrange()
{
    auto* const layout = new QVBoxLayout(owner);
    layout->setContentsMargins(0, 0, 0, 0);
    if (toolbar) {
        auto* const row = new QHBoxLayout;
        row->addWidget(toolbar);
        row->addWidget(view, 1);
        layout->addLayout(row, 1);
    } else {
        layout->addWidget(view, 1);
    }
    if (progressLabel && progressBar) {
        auto* const row = new QHBoxLayout;
        row->addWidget(progressLabel);
        row->addWidget(progressBar, 1);
        layout->addLayout(row);
    }
    if (nameFilter || filterButton || deviceLabel || countLabel) {
        layout->addLayout(filterRow());
    }
}

// The last part above the row of filters that the Tab key reaches.
QWidget* RecordListWidget::Private::lastAboveRow() const
{
    const auto buttons = toolbar ? toolbar->findChildren<QToolButton*>() : QList<QToolButton*>();
    return buttons.isEmpty() ? static_cast<QWidget*>(header) : buttons.constLast();
}

QLayout* RecordListWidget::Private::filterRow() const
{
    auto* const row = new QHBoxLayout;
    if (filterButton) {
        QWidget::setTabOrder(lastAboveRow(), filterButton); // the first one of its row, which was made last
        row->addWidget(filterButton);
    }
    if (countLabel) {
        row->addWidget(countLabel);
    }
    if (nameFilter) {
        row->addWidget(nameFilter, 1);
    } else {
        row->addStretch(1);
    }
    if (deviceLabel) {
        row->addWidget(deviceLabel);
    }
    return row;
}

} // namespace ZelkoGUI
