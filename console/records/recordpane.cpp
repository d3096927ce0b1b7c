#include <console/records/recordpane.h>

#include <console/devices/workdevice.h>
#include <console/records/consolecontroller.h>
#include <console/records/devicerecords.h>
#include <console/records/recordactions.h>
#include <console/records/recordtable.h>
#include <console/records/selectionsummary.h>
#include <console/widgets/heading.h>

#include <host/activedevicecontrol.h>
#include <resources/zelkoicons.h>
#include <widgetbase/elidedlabel.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QHBoxLayout>
#include <QLayout>
#include <QSortFilterProxyModel>
#include <QStyle>
#include <QTableView>
#include <QToolBar>

namespace ZelkoConsole {

using ZelkoCommon::AbstractServerConnectionData;
using ZelkoGUI::RecordListWidget;
using ZelkoGUI::ZelkoServerGUIController;

namespace {

// Most devices are found at the controller's first look, and a text that stands for no longer is a flicker.
constexpr std::chrono::milliseconds settlingTime(400);

ZelkoServerGUIController* makeController(const std::shared_ptr<AbstractServerConnectionData>& connection,
                                         ActiveDeviceControl* activeDevice)
{
    const auto handler = std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(connection);
    return new ConsoleController(handler, activeDevice, QStringLiteral("console"), RecordActions::offered(), nullptr);
}

QString listName()
{
    return QStringLiteral("recordList");
}

RecordListWidget* makeList(ZelkoServerGUIController* controller)
{
    registerZelkoIcons();
    constexpr RecordListWidget::Options everything(QFlag(1023));
    constexpr QFlags<ZelkoGUI::Filter::ExtendedFilterDialog::enFilterColumn> allColumns(QFlag(0x3fff));
    return new RecordListWidget(controller, everything, allColumns, nullptr, listName());
}

} // namespace

RecordPane::RecordPane(const std::shared_ptr<AbstractServerConnectionData>& connection, QWidget* parent)
    : QWidget(parent)
    , m_connection(connection)
    , m_activeDevice(new ActiveDeviceControl(this))
    , m_workDevice(new WorkDevice(connection))
    , m_controller(makeController(connection, m_activeDevice))
    , m_records(new DeviceRecords(m_controller.get(), this))
    , m_list(makeList(m_controller.get()))
    , m_view(m_list->findChild<QTableView*>(QStringLiteral("RecordTableView")))
    , m_table(new RecordTable(m_view, listName()))
    , m_summary(new SelectionSummary(m_view->selectionModel(), this))
    , m_title(new Heading)
    , m_subtitle(new guiHelper::ElidedLabel)
    , m_selection(new guiHelper::ElidedLabel)
    , m_statusWidget(makeStatusWidget())
    , m_actions(new RecordActions(m_controller.get(), this))
{
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    dressList();
    arrange();
    connectParts();
    updateTitle();
    updateEmptyState();
}

// Whoever shows the records hears of the controller's end while he is there.
RecordPane::~RecordPane()
{
    m_controller.reset();
}

void RecordPane::arrange()
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(makeHead());
    layout->addWidget(m_list, 1);
}

void RecordPane::dressList()
{
    qobject_cast<QSortFilterProxyModel*>(m_view->model())->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_table->restoreColumns();
    const int side = toolBar()->style()->pixelMetric(QStyle::PM_ButtonIconSize) + 4;
    toolBar()->setIconSize(QSize(side, side));
    toolBar()->layout()->setContentsMargins(0, 0, 0, 0); // it begins where the table does
}

void RecordPane::savePlaces(QSettings& settings) const
{
    m_table->saveColumns();
    m_table->saveSorting(settings);
}

QToolBar* RecordPane::toolBar() const
{
    return m_list->findChild<QToolBar*>(QStringLiteral("ActionToolbar"));
}

void RecordPane::connectParts()
{
    connect(&m_settling, &QTimer::timeout, this, &RecordPane::updateEmptyState);
    connect(m_records, &DeviceRecords::connectionChanged, this, &RecordPane::updateEmptyState);
    connect(m_records, &DeviceRecords::progressChanged, this, &RecordPane::updateEmptyState);
    connect(m_summary, &SelectionSummary::changed, this, [this] { m_selection->setText(m_summary->text()); });
}

QWidget* RecordPane::makeHead()
{
    m_title->setObjectName(QStringLiteral("deviceTitle"));
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);

    auto* const head = new QWidget;
    auto* const layout = new QHBoxLayout(head);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(m_title, 0, Qt::AlignBaseline);
    layout->addWidget(m_subtitle, 1, Qt::AlignBaseline);
    layout->addWidget(m_workDevice);
    return head;
}

QWidget* RecordPane::makeStatusWidget()
{
    m_selection->setObjectName(QStringLiteral("selectionSummary"));

    auto* const widget = new QWidget(this);
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(m_selection, 1);
    return widget;
}

void RecordPane::setDevice(const QString& subSystem, const QString& device)
{
    if (shows(subSystem, device)) {
        return;
    }
    m_subSystem = subSystem;
    m_device = device;
    m_settling.start();
    m_connection->GetConfiguration()->SetCurrentSubSystem(subSystem); // in which the controller looks for the device
    m_activeDevice->setActiveDevice(device, subSystem);
    m_workDevice->setSubSystem(subSystem);
    updateTitle();
    updateEmptyState();
}

void RecordPane::setStatus(const SubSystemStatus& status)
{
    m_status = status;
    updateEmptyState();
}

void RecordPane::updateTitle()
{
    m_title->setText(m_device.isEmpty() ? m_subSystem : m_device);
    m_subtitle->setText(m_device.isEmpty() ? QString() : tr("in %1").arg(m_subSystem));
}

void RecordPane::updateEmptyState()
{
    m_table->setEmptyState(isSettling() ? EmptyState() : emptyStateNow());
}

bool RecordPane::isSettling() const
{
    return m_settling.isActive() && m_status.isConnected() && !m_device.isEmpty() && !m_records->isConnected();
}

EmptyState RecordPane::emptyStateNow() const
{
    return emptyState(m_subSystem, m_status, m_device, m_records->isConnected(), m_records->progress().isLoading());
}

} // namespace ZelkoConsole
