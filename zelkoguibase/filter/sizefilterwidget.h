#pragma once

#include <zelkoguibase/filter/ifilterui.h>
#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QWidget>

#include <memory>

class QHBoxLayout;

namespace ZelkoGUI::Filter {

/// Edits a range of numbers in units: sizes as well as frequencies. Each limit can be switched on by itself. GUI thread
/// only.
class ZELKOGUIBASE_EXPORT SizeFilterWidget : public QWidget, public IFilterUI
{
    Q_OBJECT

public:
    /// `conditions` are the lower and the upper limit; any other number of them leaves an empty widget. They are
    /// switched off, and start at 1 and 100 of the first unit. A unit is its name, and the number of base units that it
    /// stands for, which is not 0; without units the numbers are entered as they are. The conditions stay the caller's,
    /// and may die before the widget, which is disabled then.
    SizeFilterWidget(const QList<NumberFilterCondition<double>*>& conditions,
                     const QList<QPair<QString, double>>& units, QWidget* parent);
    ~SizeFilterWidget() override;

    /// Switches both limits off. The numbers stay. When one limit is gone the other stays as it is, on or off: what is
    /// left of a range is nothing that the editor could show.
    void resetFilter() override;

private Q_SLOTS:
    void sl_unitChanged(int index);
    void sl_bottomChanged(const QString& text);
    void sl_topChanged(const QString& text);
    void sl_validateFilter();
    void sl_filterContentChanged();

private:
    class Private;

    void addChildren(const QList<NumberFilterCondition<double>*>& conditions);
    void addUnits(QHBoxLayout* row);
    void connectChildren();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
