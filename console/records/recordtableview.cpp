#include <console/records/recordtableview.h>

#include <console/records/columnmenu.h>
#include <console/records/recorddelegate.h>
#include <console/records/sortmenu.h>
#include <console/records/statusdelegate.h>
#include <console/widgets/roomystyle.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPainter>
#include <QSettings>

#include <array>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::AbstractRecordListModel;
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

constexpr QLatin1String settingsKey("recordTable/columns");

} // namespace

RecordTableView::RecordTableView(QWidget* parent)
    : QTableView(parent)
    , m_columnMenu(new ColumnMenu(this))
    , m_sortMenu(new SortMenu(this))
{
    setObjectName(QStringLiteral("recordTable"));
    setAccessibleName(tr("Records"));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setSortingEnabled(true);
    setItemDelegate(new RecordDelegate(this));
    setItemDelegateForColumn(Model::StatusColumn, new StatusDelegate(this));
    dress();
    setUpHeader();
}

RecordTableView::~RecordTableView() = default;

void RecordTableView::dress()
{
    RoomyStyle::apply(this);
    RoomyStyle::apply(horizontalHeader());
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideRight);
    setWordWrap(false);
    setShowGrid(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerItem);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(RoomyStyle::rowHeight(this));
}

void RecordTableView::setUpHeader()
{
    QHeaderView* const header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setHighlightSections(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& position) { m_columnMenu->popup(horizontalHeader()->mapToGlobal(position)); });
    connect(m_columnMenu, &ColumnMenu::resetWanted, this, &RecordTableView::resetColumns);
}

void RecordTableView::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    resetColumns();
    QList<int> columns;
    for (const ColumnLayout& layout : columnLayout) {
        columns.append(layout.column);
    }
    m_columnMenu->setColumns(columns);
    m_sortMenu->setColumns(columns);
}

void RecordTableView::setEmptyState(const EmptyState& state)
{
    if (m_emptyState != state) {
        m_emptyState = state;
        viewport()->update();
    }
}

const EmptyState& RecordTableView::emptyState() const
{
    return m_emptyState;
}

void RecordTableView::resetColumns()
{
    QHeaderView* const header = horizontalHeader();
    const int margins = 2 * RoomyStyle::cellMargin();
    const int spare = 3; // texts are a little wider in a cell than measured here
    for (int place = 0; place < Model::ColumnCount; ++place) {
        const auto& [column, widest] = columnLayout[static_cast<std::size_t>(place)];
        const int text = fontMetrics().horizontalAdvance(QLatin1String(widest)) + margins + spare;
        const int sign = column == Model::StatusColumn ? style()->pixelMetric(QStyle::PM_SmallIconSize) + margins : 0;
        header->moveSection(header->visualIndex(column), place);
        header->setSectionHidden(column, false);
        header->resizeSection(column, std::max(text + sign, header->sectionSizeHint(column)));
    }
    sortByColumn(Model::StartTimeColumn, Qt::DescendingOrder);
    m_columnMenu->update();
}

QMenu* RecordTableView::columnMenu() const
{
    return m_columnMenu;
}

QMenu* RecordTableView::sortMenu() const
{
    return m_sortMenu;
}

void RecordTableView::saveColumns(QSettings& settings) const
{
    settings.setValue(settingsKey, horizontalHeader()->saveState());
}

void RecordTableView::restoreColumns(const QSettings& settings)
{
    QHeaderView* const header = horizontalHeader();
    if (!header->restoreState(settings.value(settingsKey).toByteArray()) ||
        header->hiddenSectionCount() == header->count()) {
        resetColumns();
    }
    m_columnMenu->update();
}

// The key knows of the whole table; what is meant is the row that the operator is at.
void RecordTableView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const QRect row = visualRect(currentIndex()).intersected(viewport()->rect());
    Q_EMIT menuWanted(isKey && !row.isEmpty() ? viewport()->mapToGlobal(row.center()) : event->globalPos());
    event->accept();
}

void RecordTableView::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (model() && model()->rowCount() == 0 && !m_emptyState.text.isEmpty()) {
        QPainter painter(viewport());
        painter.setFont(font());
        paintEmptyState(painter, viewport()->rect(), m_emptyState, palette());
    }
}

} // namespace ZelkoConsole
