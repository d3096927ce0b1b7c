#include <console/records/recordpane.h>

#include <console/records/devicerecords.h>
#include <console/records/recordtableview.h>
#include <console/records/selectionkeeper.h>
#include <console/records/selectionsummary.h>
#include <console/treepaths.h>

#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QProgressBar>
#include <QSortFilterProxyModel>

namespace ZelkoConsole {

using ZelkoCommon::AbstractRecordListModel;

namespace {

QSortFilterProxyModel* makeProxy(AbstractRecordListModel* records, QObject* parent)
{
    auto* const proxy = new QSortFilterProxyModel(parent);
    proxy->setSortRole(AbstractRecordListModel::SortRole);
    proxy->setSortCaseSensitivity(Qt::CaseInsensitive);
    proxy->setDynamicSortFilter(true);
    proxy->setSourceModel(records);
    return proxy;
}

// A place that stays where it is when there is nothing to show in it.
void keepPlace(QWidget* widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

} // namespace

RecordPane::RecordPane(QWidget* parent)
    : QWidget(parent)
    , m_records(new DeviceRecords(this))
    , m_proxy(makeProxy(m_records->model(), this))
    , m_table(new RecordTableView)
    , m_title(new QLabel)
    , m_subtitle(new QLabel)
    , m_count(new QLabel)
    , m_selection(new QLabel)
    , m_progressLabel(new QLabel(tr("Loading Records: ")))
    , m_progress(new QProgressBar)
{
    m_table->setModel(m_proxy);
    m_keeper = new SelectionKeeper(m_table, m_proxy, m_records->model(), this);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(makeHead());
    layout->addWidget(m_table, 1);
    layout->addWidget(makeFoot());

    connect(m_records, &DeviceRecords::connectionChanged, this, &RecordPane::updateTexts);
    connect(m_records, &DeviceRecords::progressChanged, this, &RecordPane::updateProgress);
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(m_proxy, signal, this, &RecordPane::updateCount);
    }
    connect(m_proxy, &QAbstractItemModel::modelReset, this, &RecordPane::updateCount);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &RecordPane::updateSelection);
    connect(m_proxy, &QAbstractItemModel::dataChanged, this, &RecordPane::updateSelection);
    connect(m_proxy, &QAbstractItemModel::modelReset, this, &RecordPane::updateSelection);
    updateTitle();
    updateCount();
    updateProgress();
}

RecordPane::~RecordPane() = default;

QWidget* RecordPane::makeHead()
{
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    m_title->setFont(large);
    m_title->setObjectName(QStringLiteral("deviceTitle"));
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    m_count->setObjectName(QStringLiteral("recordCount"));

    auto* const head = new QWidget;
    auto* const layout = new QHBoxLayout(head);
    layout->setContentsMargins(2, 2, 2, 0);
    layout->addWidget(m_title, 0, Qt::AlignBaseline);
    layout->addWidget(m_subtitle, 0, Qt::AlignBaseline);
    layout->addStretch(1);
    layout->addWidget(m_count, 0, Qt::AlignBaseline);
    return head;
}

QWidget* RecordPane::makeFoot()
{
    m_selection->setObjectName(QStringLiteral("selectionSummary"));
    m_progressLabel->setObjectName(QStringLiteral("loadLabel"));
    m_progress->setObjectName(QStringLiteral("loadProgress"));
    m_progress->setAccessibleName(tr("Loading Records"));
    m_progress->setFormat(tr("%v of %m"));
    m_progress->setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('m')) * 18);
    keepPlace(m_progress);
    keepPlace(m_progressLabel);

    auto* const foot = new QWidget;
    auto* const layout = new QHBoxLayout(foot);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(m_selection, 1);
    layout->addWidget(m_progressLabel);
    layout->addWidget(m_progress);
    return foot;
}

void RecordPane::setDevice(const QString& subSystem, const QString& device)
{
    if (m_subSystem == subSystem && m_device == device) {
        return;
    }
    m_subSystem = subSystem;
    m_device = device;
    m_records->follow(device.isEmpty() ? QString() : treepath::device(subSystem, device));
    m_keeper->forget();
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
    m_table->setEmptyState(
        emptyState(m_subSystem, m_status, m_device, m_records->isConnected(), m_records->progress().isLoading()));
    updateCount();
}

void RecordPane::updateCount()
{
    const int count = m_proxy->rowCount();
    const QString text = count == 1 ? tr("1 recording") : tr("%1 recordings").arg(count);
    m_count->setText(m_records->isConnected() ? text : QString());
}

void RecordPane::updateSelection()
{
    m_selection->setText(selectionSummary(m_table->selectionModel()->selectedRows()));
}

void RecordPane::updateProgress()
{
    const LoadProgress progress = m_records->progress();
    m_progressLabel->setVisible(progress.isLoading());
    m_progress->setVisible(progress.isLoading());
    if (progress.isLoading()) {
        m_progress->setRange(0, progress.total);
        m_progress->setValue(progress.count);
    } else if (m_records->isComplete()) {
        m_keeper->finish();
    }
    updateTexts();
}

} // namespace ZelkoConsole
