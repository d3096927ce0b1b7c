#include <zelkoguibase/filter/enumerationfilterwidget.h>

#include <QTimer>

namespace ZelkoGUI::Filter {

template <typename E>
EnumerationFilterWidget<E>::EnumerationFilterWidget(EnumerationFilterCondition<E>* condition,
                                                    const QList<QPair<E, QString>>& values, QWidget* parent)
    : EnumerationFilterWidgetBase(parent)
    , m_condition(condition)
    , m_model(new SelectableEnumModel<E>(values, this))
{
    if (condition) {
        connect(condition, &QObject::destroyed, this, &EnumerationFilterWidget::sl_validateFilter);
        connect(condition, &AbstractFilterCondition::si_filterChanged, this,
                &EnumerationFilterWidget::sl_validateFilter);
        connect(condition, &AbstractFilterCondition::si_filterContentChanged, this,
                &EnumerationFilterWidget::sl_filterContentChanged);
    }
    m_model->setAll(true);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &EnumerationFilterWidget::sl_modelChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, &EnumerationFilterWidget::sl_modelChanged);
    QTimer::singleShot(0, this, &EnumerationFilterWidget::sl_modelChanged);
    if (condition) {
        condition->setEnabled(true);
    }
}

template <typename E>
EnumerationFilterWidget<E>::~EnumerationFilterWidget() = default;

template <typename E>
QList<QPair<E, QString>> EnumerationFilterWidget<E>::numbered(const QStringList& names)
{
    QList<QPair<E, QString>> values;
    for (const QString& name : names) {
        values.append({static_cast<E>(values.size()), name});
    }
    return values;
}

template <typename E>
void EnumerationFilterWidget<E>::resetFilter()
{
    m_model->setAll(true);
}

template <typename E>
QStringList EnumerationFilterWidget<E>::selectedNames() const
{
    return m_model->selectedNames();
}

template <typename E>
int EnumerationFilterWidget<E>::valueCount() const
{
    return m_model->valueCount();
}

template <typename E>
void EnumerationFilterWidget<E>::setFilterEnabled(bool enabled)
{
    if (m_condition) {
        m_condition->setEnabled(enabled);
    }
}

template <typename E>
bool EnumerationFilterWidget<E>::filterEnabled() const
{
    return m_condition && m_condition->enabled();
}

template <typename E>
SelectableEnumModelBase* EnumerationFilterWidget<E>::model() const
{
    return m_model;
}

template <typename E>
void EnumerationFilterWidget<E>::applySelection()
{
    if (m_condition) {
        m_condition->setValues(m_model->selectedValues());
    }
}

template <typename E>
void EnumerationFilterWidget<E>::loadSelection()
{
    if (m_condition) {
        m_model->setSelectedValues(m_condition->values());
    }
}

template class EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::DataFormat>;
template class EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::DataRate>;
template class EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::Interface>;
template class EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
