#pragma once

#include <console/records/emptystate.h>

#include <QObject>

class QMenu;
class QSettings;
class QTableView;

namespace guiHelper {
class QHeaderViewColumnHandler;
class SourceRows;
} // namespace guiHelper

namespace ZelkoGUI {
class ColumnMenu;
class SortMenu;
} // namespace ZelkoGUI

namespace ZelkoConsole {

class EmptyStateNote;

/// What the console adds to the table of a record list: column order and widths that suit it, columns that can be
/// hidden, sorting without a mouse, cells that are easy to read, and a text where there are no records.
class RecordTable : public QObject
{
    Q_OBJECT

public:
    /// `view` shows a proxy over a record list, and outlives this object or dies with it. `columnsKey` is that under
    /// which the record list keeps its columns, its object name.
    RecordTable(QTableView* view, const QString& columnsKey);
    ~RecordTable() override;

    QTableView& view() const { return *m_view; }

    /// What stands there while the list is empty; nothing of it while there are records that a filter hides.
    void setEmptyState(const EmptyState& state);
    const EmptyState& emptyState() const;

    /// Places, widths, visible columns and sorting as they were at first.
    void resetColumns();

    /// @name Places, widths and visible columns, as the record list keeps them
    /// @{
    void saveColumns() const;
    void restoreColumns(); ///< if there are any
    /// @}

    /// Shows, hides and resets the columns, in their first order on screen. Owned by the view.
    QMenu* columnMenu() const;

    /// Sorts by each column in either direction. Owned by the view.
    QMenu* sortMenu() const;

    void saveSorting(QSettings& settings) const;
    /// Settings that do not fit are passed over.
    void restoreSorting(const QSettings& settings);

private:
    void dress();
    void setUpHeaders();
    void offerColumns();
    void look();

    QTableView* const m_view;
    ZelkoGUI::ColumnMenu* const m_columnMenu;
    ZelkoGUI::SortMenu* const m_sortMenu;
    EmptyStateNote* const m_note;
    guiHelper::QHeaderViewColumnHandler* const m_columns;
    const guiHelper::SourceRows* const m_rows;
};

} // namespace ZelkoConsole
