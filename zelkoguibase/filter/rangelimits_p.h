#pragma once

#include "switchededitor_p.h"

#include <zelkoguibase/filter/numberfiltercondition.h>

#include <QHBoxLayout>

namespace ZelkoGUI::Filter {

/// The two ends of a range that a widget edits.
template <typename Condition, typename Editor>
struct RangeLimits
{
    using Limit = SwitchedEditor<Condition, Editor>;

    bool conditionsLive() const { return lower.condition && upper.condition; }

    /// Lines both limits up, the lower one first. The row may be continued.
    void addTo(QHBoxLayout* row) const
    {
        row->addWidget(lower.check);
        row->addWidget(lower.editor);
        row->addStretch(1);
        row->addWidget(upper.check);
        row->addWidget(upper.editor);
    }

    void validate() const
    {
        lower.validate();
        upper.validate();
    }

    void load() const
    {
        lower.load();
        upper.load();
    }

    /// As of each limit.
    template <typename Widget>
    void connectTo(Widget* widget, void (Widget::*validateFilter)(), void (Widget::*loadContent)()) const
    {
        lower.connectTo(widget, validateFilter, loadContent);
        upper.connectTo(widget, validateFilter, loadContent);
    }

    /// As of each limit.
    [[nodiscard]] auto blockSignals() const { return std::array{lower.blockSignals(), upper.blockSignals()}; }

    /// Nothing happens in a widget that stayed empty.
    void switchOff() const
    {
        for (QCheckBox* const check : {lower.check, upper.check}) {
            if (check) {
                check->setChecked(false);
            }
        }
    }

    Limit lower;
    Limit upper;
};

inline QCheckBox* makeLimitCheck(const QString& text, const QString& name, QWidget* parent)
{
    auto* const check = new FramedCheckBox(text, parent);
    check->setObjectName(name);
    return check;
}

/// Switches both conditions off and makes them the ends of a range.
template <typename T>
void startRange(const QList<NumberFilterCondition<T>*>& conditions, const T& lower, const T& upper)
{
    const auto start = [](NumberFilterCondition<T>* condition, const T& limit,
                          NumberComparison::Comparator comparator) {
        if (condition) {
            condition->setEnabled(false);
            condition->setValue(limit);
            condition->setComparator(comparator);
        }
    };
    start(conditions[0], lower, NumberComparison::GreaterOrEqual);
    start(conditions[1], upper, NumberComparison::LessOrEqual);
}

} // namespace ZelkoGUI::Filter
