#include <zelkoguibase/filter/selectableenummodel.h>

namespace ZelkoGUI::Filter {

template <typename E>
SelectableEnumModel<E>::SelectableEnumModel(const QList<QPair<E, QString>>& values, QObject* parent)
    : SelectableEnumModelBase(parent)
    , m_values(values)
    , m_selected(values.size(), false)
{}

template <typename E>
SelectableEnumModel<E>::~SelectableEnumModel() = default;

template <typename E>
int SelectableEnumModel<E>::valueCount() const
{
    return static_cast<int>(m_values.size());
}

template <typename E>
QString SelectableEnumModel<E>::valueName(int value) const
{
    return exists(value) ? m_values[value].second : QString();
}

template <typename E>
bool SelectableEnumModel<E>::isSelected(int value) const
{
    return exists(value) && m_selected[value];
}

template <typename E>
void SelectableEnumModel<E>::setSelected(int value, bool selected)
{
    if (exists(value)) {
        m_selected[value] = selected;
    }
}

template <typename E>
QList<E> SelectableEnumModel<E>::selectedValues() const
{
    QList<E> selected;
    for (int value = 0; value < valueCount(); ++value) {
        if (m_selected[value]) {
            selected << m_values[value].first;
        }
    }
    return selected;
}

template <typename E>
void SelectableEnumModel<E>::setSelectedValues(const QList<E>& values)
{
    beginResetModel();
    for (int value = 0; value < valueCount(); ++value) {
        m_selected[value] = values.contains(m_values[value].first);
    }
    endResetModel();
}

template class SelectableEnumModel<int>;
template class SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::DataFormat>;
template class SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::DataRate>;
template class SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::Interface>;
template class SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
