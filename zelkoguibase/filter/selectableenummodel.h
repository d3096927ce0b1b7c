#pragma once

#include <zelkoguibase/filter/selectableenummodelbase.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <QList>
#include <QPair>
#include <QVector>

namespace ZelkoGUI::Filter {

/// The values of E, one of the enumerations of a record or `int`, with their names.
template <typename E>
class SelectableEnumModel : public SelectableEnumModelBase
{
public:
    /// Nothing is selected at first.
    SelectableEnumModel(const QList<QPair<E, QString>>& values, QObject* parent);
    ~SelectableEnumModel() override;

    int valueCount() const override;
    QString valueName(int value) const override;
    bool isSelected(int value) const override;
    void setSelected(int value, bool selected) override;

    /// In the order of the list.
    QList<E> selectedValues() const;

    /// Selects these values and no others; those that the list does not have are dropped. Resets the model.
    void setSelectedValues(const QList<E>& values);

private:
    bool exists(int value) const { return value >= 0 && value < valueCount(); }

    const QList<QPair<E, QString>> m_values;
    QVector<bool> m_selected;
};

extern template class ZELKOGUIBASE_EXPORT SelectableEnumModel<int>;
extern template class ZELKOGUIBASE_EXPORT SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::DataFormat>;
extern template class ZELKOGUIBASE_EXPORT SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::DataRate>;
extern template class ZELKOGUIBASE_EXPORT SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::Interface>;
extern template class ZELKOGUIBASE_EXPORT SelectableEnumModel<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
