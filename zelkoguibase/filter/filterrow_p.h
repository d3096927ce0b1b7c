#pragma once

#include <zelkoguibase/filter/extendedfilterdialog.h>

#include <QCoreApplication>

#include <vector>

namespace ZelkoGUI::Filter {

/// One row of the extended filter window: the column that it filters by, what it is called, and how its conditions and
/// their editor are made.
struct FilterRow
{
    Q_DECLARE_TR_FUNCTIONS(ZelkoGUI::Filter::ExtendedFilterDialog)

public:
    using Conditions = QList<AbstractFilterCondition*>;

    /// An editor, as the widget that it is and as what a window resets. Both are the same object.
    struct Editor
    {
        template <typename W>
        explicit Editor(W* editor)
            : widget(editor)
            , filterUI(editor)
        {}

        QWidget* widget;
        IFilterUI* filterUI;
    };

    /// What the rows of one type of cells have in common.
    struct Kind
    {
        /// New conditions on that column, without parent and name.
        Conditions (*conditions)(int column);

        /// A new editor of conditions that the function above has made.
        Editor (*editor)(const Conditions& conditions, QWidget* parent);
    };

    /// All rows that there are, in the order of their columns.
    static const std::vector<FilterRow>& all();

    /// Number of the column in the record list.
    int column() const;

    /// New conditions with their names in filter files, without parent.
    Conditions makeConditions() const;

    /// The editor of those conditions, with its object name.
    Editor makeEditor(const Conditions& conditions, QWidget* parent) const;

    ExtendedFilterDialog::enFilterColumn bit;
    const char* label; ///< not translated yet
    QString editorName;
    QStringList conditionNames; ///< one for each condition of the kind
    Kind kind;
};

} // namespace ZelkoGUI::Filter
