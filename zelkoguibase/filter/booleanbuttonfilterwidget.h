#pragma once

#include <zelkoguibase/filter/ifilterui.h>

#include <QIcon>
#include <QPair>
#include <QWidget>

#include <memory>

namespace ZelkoGUI::Filter {

class BooleanFilterCondition;

/// Edits a flag with a button that says which one passes. GUI thread only.
class ZELKOGUIBASE_EXPORT BooleanButtonFilterWidget : public QWidget, public IFilterUI
{
    Q_OBJECT

public:
    /// Switches the condition off, and shows its flag as "false" or "true". The condition stays the caller's,
    /// and may die before the widget, which is disabled then.
    BooleanButtonFilterWidget(BooleanFilterCondition* condition, QWidget* parent);
    ~BooleanButtonFilterWidget() override;

    /// What the button says in its two states.
    void setLabels(const QPair<QString, QIcon>& falseLabel, const QPair<QString, QIcon>& trueLabel);

    /// Switches the condition off. The flag stays.
    void resetFilter() override;

private Q_SLOTS:
    void sl_validateFilter();
    void sl_toggled(bool on);
    void sl_filterContentChanged();

private:
    class Private;

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
