#pragma once

#include "framedcheckbox_p.h"

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <QHBoxLayout>
#include <QPointer>
#include <QSignalBlocker>

#include <array>

namespace ZelkoGUI::Filter {

/// A check box without a text.
inline QCheckBox* makeEnableCheck(const QString& spokenName, QWidget* parent)
{
    auto* const check = new FramedCheckBox(parent);
    check->setObjectName(QStringLiteral("EnableFilter"));
    check->setAccessibleName(spokenName);
    return check;
}

/// A condition, the check box that switches it, and the widget that edits its content.
template <typename Condition, typename Editor>
struct SwitchedEditor
{
    /// Switches the condition as the check box says, and the editor with it.
    void validate() const
    {
        if (condition) {
            condition->setEnabled(check->isChecked());
        }
        editor->setEnabled(isSwitchedOn());
    }

    /// The same for a widget that edits nothing else. It is disabled when the condition is gone.
    void validateIn(QWidget* widget) const
    {
        if (condition) {
            validate();
        } else {
            widget->setEnabled(false);
        }
    }

    /// Shows whether the condition is switched on.
    void load() const
    {
        check->setChecked(isSwitchedOn());
        editor->setEnabled(isSwitchedOn());
    }

    /// The same, and has `loadEditor` show the content. Nothing of this gets back to the condition.
    template <typename LoadEditor>
    void loadWith(const LoadEditor& loadEditor) const
    {
        const auto blocked = blockSignals();
        load();
        loadEditor();
    }

    /// As a user does it. Nothing happens in a widget that stayed empty.
    void switchOff() const
    {
        if (check) {
            check->setChecked(false);
        }
    }

    bool isSwitchedOn() const { return condition && condition->enabled(); }

    /// What is loaded in the sight of these does not get back to the condition.
    [[nodiscard]] std::array<QSignalBlocker, 2> blockSignals() const
    {
        return {QSignalBlocker(check), QSignalBlocker(editor)};
    }

    /// Has `widget` told when the user switches, when the condition dies, and when its content was replaced.
    template <typename Widget>
    void connectTo(Widget* widget, void (Widget::*validateFilter)(), void (Widget::*loadContent)()) const
    {
        QObject::connect(check, &QCheckBox::toggled, widget, validateFilter);
        if (condition) {
            QObject::connect(condition, &QObject::destroyed, widget, validateFilter);
            QObject::connect(condition, &AbstractFilterCondition::si_filterContentChanged, widget, loadContent);
        }
    }

    /// Lines both up in a row of their own.
    void addTo(QWidget* widget) const
    {
        auto* const row = new QHBoxLayout(widget);
        row->addWidget(check);
        row->addWidget(editor);
        row->addStretch(1);
    }

    QPointer<Condition> condition; ///< may die first
    QCheckBox* check = nullptr;
    Editor* editor = nullptr;
};

} // namespace ZelkoGUI::Filter
