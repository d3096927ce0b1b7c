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

    /// Switches each limit as its check box says. False, with `widget` disabled and both limits left alone, when one
    /// of them is gone.
    bool validateIn(QWidget* widget) const
    {
        const bool live = conditionsLive();
        if (live) {
            lower.validate();
            upper.validate();
        } else {
            widget->setEnabled(false);
        }
        return live;
    }

    /// Shows which limits are switched on, and has `loadEditors` show their content. Nothing of this gets back to them.
    /// When one of them is gone `widget` is disabled, and that is all.
    template <typename LoadEditors>
    void loadIn(QWidget* widget, const LoadEditors& loadEditors) const
    {
        if (conditionsLive()) {
            lower.loadWith([&] { upper.loadWith(loadEditors); });
        } else {
            widget->setEnabled(false);
        }
    }

    /// As of each limit.
    template <typename Widget>
    void connectTo(Widget* widget, void (Widget::*validateFilter)(), void (Widget::*loadContent)()) const
    {
        lower.connectTo(widget, validateFilter, loadContent);
        upper.connectTo(widget, validateFilter, loadContent);
    }

    /// As of each limit.
    void switchOff() const
    {
        lower.switchOff();
        upper.switchOff();
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
