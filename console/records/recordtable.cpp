#include <console/records/recordtable.h>

#include <console/records/emptystatenote.h>
#include <console/records/recorddelegate.h>
#include <console/records/statusdelegate.h>
#include <console/widgets/roomystyle.h>

#include <widgetbase/qheaderviewcolumnhandler.h>
#include <widgetbase/sourcerows.h>
#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/recordlist/columnmenu.h>
#include <zelkoguibase/recordlist/sortmenu.h>

#include <QAbstractProxyModel>
#include <QHeaderView>
#include <QSettings>
#include <QTableView>

#include <array>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::AbstractRecordListModel;
using ZelkoGUI::ColumnMenu;
using ZelkoGUI::SortMenu;
using Model = AbstractRecordListModel;

struct ColumnLayout
{
    Model::Column column;
    const char* widest; // a text that should fit
};

// What one looks for first stands on the left.
constexpr std::array<ColumnLayout, Model::ColumnCount> columnLayout{{
    {Model::NameColumn, "Some name of a recording"},
    {Model::StatusColumn, "recording in a loop"},
    {Model::StartTimeColumn, "2000-00-00 00:00:00 "},
    {Model::DurationColumn, "10 d 00:00:00"},
    {Model::SizeColumn, "1023.99 MByte"},
    {Model::FrequencyColumn, "1433.920001 MHz"},
    {Model::BandwidthColumn, "200.123 kHz"},
    {Model::SampleRateColumn, "200.123 kHz"},
    {Model::DataFormatColumn, "demodulated bits"},
    {Model::StopTimeColumn, "2000-00-00 00:00:00 "},
    {Model::DataRateColumn, "up to 512 MB/s"},
    {Model::InterfaceColumn, "analogue IF"},
    {Model::DeletableColumn, "yes"},
    {Model::RecordIDColumn, "00000000-0000-0000-0000"},
}};

constexpr QLatin1String columnKey("recordTable/sortedColumn");
constexpr QLatin1String descendingKey("recordTable/sortedDescending");

} // namespace

RecordTable::RecordTable(QTableView* view, const QString& columnsKey)
    : QObject(view)
    , m_view(view)
    , m_columnMenu(new ColumnMenu(view))
    , m_sortMenu(new SortMenu(view))
    , m_note(new EmptyStateNote(view))
    , m_columns(new guiHelper::QHeaderViewColumnHandler(view->horizontalHeader(), columnsKey, this))
    , m_rows(new guiHelper::SourceRows(qobject_cast<QAbstractProxyModel*>(view->model()), this))
{
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setItemDelegate(new RecordDelegate(this));
    view->setItemDelegateForColumn(Model::StatusColumn, new StatusDelegate(this));
    dress();
    setUpHeaders();
    resetColumns();
    offerColumns();
    connect(m_rows, &guiHelper::SourceRows::changed, this, &RecordTable::look);
    look();
}

RecordTable::~RecordTable() = default;

void RecordTable::dress()
{
    RoomyStyle::apply(m_view);
    RoomyStyle::apply(m_view->horizontalHeader());
    m_view->setShowGrid(false);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(RoomyStyle::rowHeight(m_view));
}

void RecordTable::setUpHeaders()
{
    QHeaderView* const header = m_view->horizontalHeader();
    header->setHighlightSections(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& position) { m_columnMenu->popup(m_view->horizontalHeader()->mapToGlobal(position)); });
    connect(m_columnMenu, &ColumnMenu::resetWanted, this, &RecordTable::resetColumns);
}

void RecordTable::offerColumns()
{
    QList<int> columns;
    for (const ColumnLayout& layout : columnLayout) {
        columns.append(layout.column);
    }
    m_columnMenu->setColumns(columns);
    m_sortMenu->setColumns(columns);
}

void RecordTable::look()
{
    m_note->setVisible(m_rows->count() == 0);
}

void RecordTable::setEmptyState(const EmptyState& state)
{
    m_note->setState(state);
}

const EmptyState& RecordTable::emptyState() const
{
    return m_note->state();
}

void RecordTable::resetColumns()
{
    QHeaderView* const header = m_view->horizontalHeader();
    const int margins = 2 * RoomyStyle::cellMargin();
    const int spare = 3; // texts are a little wider in a cell than measured here
    for (int place = 0; place < Model::ColumnCount; ++place) {
        const auto& [column, widest] = columnLayout[static_cast<std::size_t>(place)];
        const int text = m_view->fontMetrics().horizontalAdvance(QLatin1String(widest)) + margins + spare;
        const int sign =
            column == Model::StatusColumn ? m_view->style()->pixelMetric(QStyle::PM_SmallIconSize) + margins : 0;
        header->moveSection(header->visualIndex(column), place);
        header->setSectionHidden(column, false);
        header->resizeSection(column, std::max(text + sign, header->sectionSizeHint(column)));
    }
    m_view->sortByColumn(Model::StartTimeColumn, Qt::DescendingOrder);
    m_columnMenu->update();
}

void RecordTable::saveColumns() const
{
    m_columns->saveColumnStatus();
}

void RecordTable::restoreColumns()
{
    m_columns->restoreColumnStatus();
    m_columnMenu->update();
}

QMenu* RecordTable::columnMenu() const
{
    return m_columnMenu;
}

QMenu* RecordTable::sortMenu() const
{
    return m_sortMenu;
}

void RecordTable::saveSorting(QSettings& settings) const
{
    settings.setValue(columnKey, m_view->horizontalHeader()->sortIndicatorSection());
    settings.setValue(descendingKey, m_view->horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder);
}

void RecordTable::restoreSorting(const QSettings& settings)
{
    bool isNumber = false;
    const int column = settings.value(columnKey).toInt(&isNumber);
    if (isNumber && column >= 0 && column < Model::ColumnCount) {
        m_view->sortByColumn(column, settings.value(descendingKey).toBool() ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
}

} // namespace ZelkoConsole
