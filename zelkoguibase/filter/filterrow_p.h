#pragma once

#include <zelkoguibase/filter/extendedfilterdialog.h>

#include <vector>

namespace ZelkoGUI::Filter {

/// One row of the extended filter window: the column that it filters by, what it is called, and how its conditions and
/// their editor are made.
class FilterRow
{
public:
    using Conditions = QList<AbstractFilterCondition*>;

    /// What the rows of one type of cells have in common.
    struct Kind
    {
        /// New conditions on that column, without parent and name.
        Conditions (*conditions)(int column);

        /// A new editor of conditions that the function above has made. It is an IFilterUI.
        QWidget* (*editor)(const Conditions& conditions, QWidget* parent);
    };

    /// All rows that there are, in the order of their columns.
    static const std::vector<FilterRow>& all();

    /// Number of the column in the record list.
    int column() const;

    /// New conditions with their names in filter files, without parent.
    Conditions makeConditions() const;

    /// The editor of those conditions, with its object name.
    QWidget* makeEditor(const Conditions& conditions, QWidget* parent) const;

    ExtendedFilterDialog::enFilterColumn bit;
    const char* label; ///< to be translated by ExtendedFilterDialog
    const char* editorName;
    std::vector<const char*> conditionNames; ///< one for each condition of the kind
    Kind kind;
};

} // namespace ZelkoGUI::Filter
