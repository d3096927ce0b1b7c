#pragma once

#include <zelkoguibase/filter/enumerationfiltercondition.h>
#include <zelkoguibase/filter/enumerationfilterwidgetbase.h>
#include <zelkoguibase/filter/ifilterui.h>
#include <zelkoguibase/filter/selectableenummodel.h>

#include <QPointer>

namespace ZelkoGUI::Filter {

/// Edits a set of enumerators of E, one of the enumerations of a record.
template <typename E>
class EnumerationFilterWidget : public EnumerationFilterWidgetBase, public IFilterUI
{
public:
    /// `values` are those that can be chosen, with the names that are shown. Switches the condition on for good: it is
    /// all values that reject nothing. All of them are selected at first, which reaches the condition with the next
    /// turn of the event loop. The condition stays the caller's, and may die before the widget, which is disabled then.
    EnumerationFilterWidget(EnumerationFilterCondition<E>* condition, const QList<QPair<E, QString>>& values,
                            QWidget* parent);
    ~EnumerationFilterWidget() override;

    /// The values of an enumeration whose numbers are the places of their names.
    static QList<QPair<E, QString>> numbered(const QStringList& names);

    /// Selects all values.
    void resetFilter() override;

    QStringList selectedNames() const override;
    int valueCount() const override;
    void setFilterEnabled(bool enabled) override;
    bool filterEnabled() const override;
    SelectableEnumModelBase* model() const override;
    void applySelection() override;
    void loadSelection() override;

private:
    const QPointer<EnumerationFilterCondition<E>> m_condition;
    SelectableEnumModel<E>* const m_model;
};

extern template class ZELKOGUIBASE_EXPORT EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::DataFormat>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::DataRate>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::Interface>;
extern template class ZELKOGUIBASE_EXPORT EnumerationFilterWidget<ZELKO_XML::ZELKO_RecordData::RecordStatus>;

} // namespace ZelkoGUI::Filter
