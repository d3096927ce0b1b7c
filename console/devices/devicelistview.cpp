#include <console/devices/devicelistview.h>

#include <console/devices/devicelistmodel.h>
#include <console/widgets/roomystyle.h>

#include <QHeaderView>

namespace ZelkoConsole {

DeviceListView::DeviceListView(DeviceListModel* model, QWidget* parent)
    : QTreeView(parent)
    , m_model(model)
{
    RoomyStyle::apply(this);
    RoomyStyle::apply(header());
    setObjectName(QStringLiteral("deviceList"));
    setAccessibleName(tr("Devices"));
    setModel(model);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(true);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    header()->resizeSection(DeviceListModel::NameColumn,
                            fontMetrics().horizontalAdvance(QLatin1String("mmmmmmmmmmmm")) + 40);
    connect(model, &QAbstractItemModel::rowsInserted, this, &DeviceListView::rowsCame);
    connect(model, &QAbstractItemModel::modelReset, this, &DeviceListView::modelCame);
    modelCame();
}

QString DeviceListView::chosenSubSystem() const
{
    return m_model->subSystem(currentIndex());
}

QString DeviceListView::chosenDevice() const
{
    return m_model->device(currentIndex());
}

void DeviceListView::choose(const QString& subSystem, const QString& device)
{
    if (const QModelIndex index = m_model->deviceIndex(subSystem, device); index.isValid()) {
        setCurrentIndex(index);
    }
}

void DeviceListView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTreeView::currentChanged(current, previous);
    m_operatorChose = m_operatorChose || (!m_choosing && current.isValid());
    Q_EMIT chosen();
}

QSize DeviceListView::sizeHint() const
{
    const int state = fontMetrics().horizontalAdvance(QLatin1String("not available")) + 24;
    return {header()->sectionSize(DeviceListModel::NameColumn) + state, QTreeView::sizeHint().height()};
}

void DeviceListView::rowsCame(const QModelIndex& parent)
{
    if (!parent.isValid()) {
        return;
    }
    expand(parent);
    if (m_model->device(currentIndex()).isEmpty()) {
        chooseForOperator(m_model->index(0, DeviceListModel::NameColumn, parent));
    }
}

void DeviceListView::modelCame()
{
    expandAll();
    m_operatorChose = false;
    chooseForOperator(m_model->index(0, DeviceListModel::NameColumn));
}

void DeviceListView::chooseForOperator(const QModelIndex& index)
{
    if (!m_operatorChose) {
        m_choosing = true;
        setCurrentIndex(index);
        m_choosing = false;
    }
}

} // namespace ZelkoConsole
