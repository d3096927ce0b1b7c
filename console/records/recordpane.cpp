#include <console/records/recordpane.h>

#include <console/records/devicerecords.h>
#include <console/records/recordactions.h>
#include <console/records/recordsortmodel.h>
#include <console/records/recordtableview.h>
#include <console/records/selectionkeeper.h>
#include <console/records/selectionreporter.h>
#include <console/records/selectionsummary.h>
#include <console/widgets/heading.h>

#include <host/activedevicecontrol.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QToolBar>

namespace ZelkoConsole {

using ZelkoCommon::AbstractServerConnectionData;
using ZelkoGUI::RecordItemMapModel;
using ZelkoGUI::ZelkoServerGUIController;

namespace {

// Most devices are found at the controller's first look, and a text that stands for no longer is a flicker.
constexpr std::chrono::milliseconds settlingTime(400);

ZelkoServerGUIController* makeController(const std::shared_ptr<AbstractServerConnectionData>& connection,
                                         ActiveDeviceControl* activeDevice)
{
    const auto handler = std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(connection);
    return new ZelkoServerGUIController(handler, activeDevice, QStringLiteral("console"), RecordActions::offered(),
                                        nullptr);
}

} // namespace

RecordPane::RecordPane(const std::shared_ptr<AbstractServerConnectionData>& connection, QWidget* parent)
    : QWidget(parent)
    , m_connection(connection)
    , m_activeDevice(new ActiveDeviceControl(this))
    , m_controller(makeController(connection, m_activeDevice))
    , m_model(qobject_cast<RecordItemMapModel*>(m_controller->recordListModel()))
    , m_records(new DeviceRecords(m_controller.get(), this))
    , m_proxy(new RecordSortModel(this))
    , m_table(new RecordTableView)
    , m_title(new Heading)
    , m_subtitle(new ElidedLabel)
    , m_count(new QLabel)
    , m_selection(new ElidedLabel)
    , m_progressLabel(new QLabel(tr("Loading Records: ")))
    , m_progress(new QProgressBar)
    , m_progressCount(new QLabel)
    , m_statusWidget(makeStatusWidget())
{
    m_proxy->setSourceModel(m_model);
    m_table->setModel(m_proxy);
    m_keeper = new SelectionKeeper(m_table, m_proxy, m_model, this);
    m_reporter = new SelectionReporter(m_table->selectionModel(), this);
    m_summary = new SelectionSummary(m_table->selectionModel(), this);
    m_actions = new RecordActions(m_controller.get(), this);
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    arrange();
    connectParts();
    updateTitle();
    updateCount();
    updateProgress();
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
    layout->addWidget(m_actions->toolBar());
    layout->addWidget(m_table, 1);
}

void RecordPane::connectParts()
{
    connect(m_reporter, &SelectionReporter::selected, m_controller.get(),
            &ZelkoServerGUIController::sl_selectedRecordsChanged);
    connect(m_keeper, &SelectionKeeper::done, m_reporter, &SelectionReporter::report);
    connect(m_table, &RecordTableView::menuWanted, m_actions->menu(),
            [this](const QPoint& place) { m_actions->menu()->popup(place); });
    connect(&m_settling, &QTimer::timeout, this, &RecordPane::updateTexts);
    connect(m_records, &DeviceRecords::connectionChanged, this, &RecordPane::updateTexts);
    connect(m_records, &DeviceRecords::progressChanged, this, &RecordPane::updateProgress);
    connect(m_proxy, &QAbstractItemModel::rowsInserted, this, &RecordPane::updateCount);
    connect(m_proxy, &QAbstractItemModel::rowsRemoved, this, &RecordPane::updateCount);
    connect(m_proxy, &QAbstractItemModel::modelReset, this, &RecordPane::updateCount);
    connect(m_summary, &SelectionSummary::changed, this, [this] { m_selection->setText(m_summary->text()); });
}

QWidget* RecordPane::makeHead()
{
    m_title->setObjectName(QStringLiteral("deviceTitle"));
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    m_count->setObjectName(QStringLiteral("recordCount"));

    auto* const head = new QWidget;
    auto* const layout = new QHBoxLayout(head);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(m_title, 0, Qt::AlignBaseline);
    layout->addWidget(m_subtitle, 0, Qt::AlignBaseline);
    layout->addStretch(1);
    layout->addWidget(m_count, 0, Qt::AlignBaseline);
    return head;
}

QWidget* RecordPane::makeStatusWidget()
{
    m_selection->setObjectName(QStringLiteral("selectionSummary"));
    m_progressLabel->setObjectName(QStringLiteral("loadLabel"));
    m_progress->setObjectName(QStringLiteral("loadProgress"));
    m_progress->setAccessibleName(tr("Loading Records"));
    m_progress->setTextVisible(false);
    m_progress->setFixedSize(fontMetrics().averageCharWidth() * 20, fontMetrics().height());

    auto* const widget = new QWidget(this);
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(6, 0, 6, 0);
    layout->addWidget(m_selection, 1);
    layout->addWidget(m_progressLabel);
    layout->addWidget(m_progress);
    layout->addWidget(m_progressCount);
    return widget;
}

void RecordPane::setDevice(const QString& subSystem, const QString& device)
{
    if (m_subSystem == subSystem && m_device == device) {
        return;
    }
    m_subSystem = subSystem;
    m_device = device;
    m_settling.start();
    m_connection->GetConfiguration()->SetCurrentSubSystem(subSystem); // in which the controller looks for the device
    m_activeDevice->setActiveDevice(device, subSystem);
    m_keeper->forget(); // the rows of the device before are gone, and none of this one have come
    updateTitle();
    updateTexts();
}

void RecordPane::setStatus(const SubSystemStatus& status)
{
    m_status = status;
    updateTexts();
}

void RecordPane::updateTitle()
{
    m_title->setText(m_device.isEmpty() ? m_subSystem : m_device);
    m_subtitle->setText(m_device.isEmpty() ? QString() : tr("in %1").arg(m_subSystem));
}

void RecordPane::updateTexts()
{
    m_table->setEmptyState(isSettling() ? EmptyState() : emptyStateNow());
    updateCount();
}

bool RecordPane::isSettling() const
{
    return m_settling.isActive() && m_status.isConnected() && !m_device.isEmpty() && !m_records->isConnected();
}

EmptyState RecordPane::emptyStateNow() const
{
    return emptyState(m_subSystem, m_status, m_device, m_records->isConnected(), m_records->progress().isLoading());
}

void RecordPane::updateCount()
{
    const int count = m_proxy->rowCount();
    const QString text = count == 1 ? tr("1 record") : tr("%1 records").arg(count);
    m_count->setText(m_records->isConnected() ? text : QString());
}

void RecordPane::updateProgress()
{
    m_proxy->setLoading(m_records->isConnected() && !m_records->isComplete());
    const LoadProgress progress = m_records->progress();
    for (QWidget* const part : {static_cast<QWidget*>(m_progressLabel), static_cast<QWidget*>(m_progress),
                                static_cast<QWidget*>(m_progressCount)}) {
        part->setVisible(progress.isLoading());
    }
    if (progress.isLoading()) {
        m_progress->setRange(0, progress.total);
        m_progress->setValue(progress.count);
        m_progressCount->setText(tr("%1 of %2").arg(progress.count).arg(progress.total));
    } else if (m_records->isComplete()) {
        m_keeper->finish();
    }
    updateTexts();
}

} // namespace ZelkoConsole
