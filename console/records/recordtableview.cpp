#include <console/records/recordtableview.h>

#include <console/records/recorddelegate.h>
#include <console/records/sortmenu.h>
#include <console/records/statusdelegate.h>
#include <console/widgets/roomystyle.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QHeaderView>
#include <QMenu>
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
    , m_columnMenu(new QMenu(tr("&Columns"), this))
    , m_sortMenu(new SortMenu(this))
{
    RoomyStyle::apply(this);
    RoomyStyle::apply(horizontalHeader());
    setObjectName(QStringLiteral("recordTable"));
    setAccessibleName(tr("Recordings"));
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setWordWrap(false);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerItem);
    setSortingEnabled(true);
    setItemDelegate(new RecordDelegate(this));
    setItemDelegateForColumn(Model::StatusColumn, new StatusDelegate(this));

    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(RoomyStyle::rowHeight(this));

    QHeaderView* const header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setHighlightSections(false);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& position) { m_columnMenu->popup(horizontalHeader()->mapToGlobal(position)); });
    connect(m_columnMenu, &QMenu::aboutToShow, this, &RecordTableView::updateColumnMenu);
}

RecordTableView::~RecordTableView() = default;

void RecordTableView::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    resetColumns();
    fillColumnMenu();
    QList<int> columns;
    for (const ColumnLayout& layout : columnLayout) {
        columns.append(layout.column);
    }
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
    updateColumnMenu();
}

QMenu* RecordTableView::columnMenu() const
{
    return m_columnMenu;
}

QMenu* RecordTableView::sortMenu() const
{
    return m_sortMenu;
}

void RecordTableView::fillColumnMenu()
{
    m_columnMenu->clear();
    for (const ColumnLayout& layout : columnLayout) {
        const QString name = model()->headerData(layout.column, Qt::Horizontal).toString();
        QAction* const action = m_columnMenu->addAction(name);
        action->setCheckable(true);
        action->setData(int{layout.column});
        connect(action, &QAction::toggled, this, [this, column = layout.column](bool shown) {
            setColumnHidden(column, !shown);
            updateColumnMenu();
        });
    }
    m_columnMenu->addSeparator();
    connect(m_columnMenu->addAction(tr("&Reset Columns")), &QAction::triggered, this, &RecordTableView::resetColumns);
    updateColumnMenu();
}

void RecordTableView::updateColumnMenu()
{
    const bool onlyOneLeft = horizontalHeader()->count() - horizontalHeader()->hiddenSectionCount() == 1;
    for (QAction* const action : m_columnMenu->actions()) {
        if (action->isCheckable()) {
            const bool shown = !isColumnHidden(action->data().toInt());
            action->setChecked(shown);
            action->setEnabled(!(shown && onlyOneLeft));
        }
    }
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
    updateColumnMenu();
}

void RecordTableView::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (model() && model()->rowCount() == 0) {
        paintEmptyState();
    }
}

void RecordTableView::paintEmptyState()
{
    QPainter painter(viewport());
    QFont font = this->font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    painter.setFont(font);
    const int line = QFontMetrics(font).height();
    const QRect area = viewport()->rect().adjusted(2 * line, line, -2 * line, -line);
    const int flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    QRect text = painter.boundingRect(area, flags, m_emptyState.text);
    QRect sign(0, 0, 2 * line, 2 * line);
    const int gap = line / 2;
    const int top = area.top() + std::max(0, (area.height() - sign.height() - gap - text.height()) / 2);
    sign.moveCenter(QPoint(area.center().x(), top + sign.height() / 2));
    text = QRect(area.left(), top + sign.height() + gap, area.width(), text.height());

    paintGlyph(painter, sign, m_emptyState.glyph, glyphColor(m_emptyState.glyph, palette()),
               palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(text, flags, m_emptyState.text);
}

} // namespace ZelkoConsole
