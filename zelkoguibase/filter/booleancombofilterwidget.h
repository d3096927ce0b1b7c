#pragma once

#include <zelkoguibase/filter/ifilterui.h>

#include <QWidget>

#include <memory>

namespace ZelkoGUI::Filter {

class BooleanFilterCondition;

/// Edits a flag with a box of its two texts. GUI thread only.
class ZELKOGUIBASE_EXPORT BooleanComboFilterWidget : public QWidget, public IFilterUI
{
    Q_OBJECT

public:
    /// Switches the condition off, and shows its flag. The condition stays the caller's, and may die before the
    /// widget, which is disabled then.
    BooleanComboFilterWidget(BooleanFilterCondition* condition, const QString& falseText, const QString& trueText,
                             QWidget* parent);
    ~BooleanComboFilterWidget() override;

    /// Switches the condition off. The flag stays.
    void resetFilter() override;

private Q_SLOTS:
    void sl_validateFilter();
    void sl_selectionChanged(int index);
    void sl_filterContentChanged();

private:
    class Private;

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
