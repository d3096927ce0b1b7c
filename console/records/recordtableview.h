#pragma once

#include <console/records/emptystate.h>

#include <QTableView>

class QMenu;
class QSettings;

namespace ZelkoConsole {

class ColumnMenu;
class SortMenu;

/// The table of records: column order and widths that suit them, columns that can be moved and hidden, and a text where
/// there are no rows. Its model has the columns of a record list.
class RecordTableView : public QTableView
{
    Q_OBJECT

public:
    explicit RecordTableView(QWidget* parent = nullptr);
    ~RecordTableView() override;

    /// Sets the model and gives the columns their places.
    void setModel(QAbstractItemModel* model) override;

    /// What stands there while there are no rows.
    void setEmptyState(const EmptyState& state);
    const EmptyState& emptyState() const;

    /// Places, widths, visible columns and sorting as they were at first.
    void resetColumns();

    /// Shows, hides and resets the columns, in their first order on screen. Owned by the view.
    QMenu* columnMenu() const;

    /// Sorts by each column in either direction. Owned by the view.
    QMenu* sortMenu() const;

    void saveColumns(QSettings& settings) const;
    /// Settings that do not fit are passed over.
    void restoreColumns(const QSettings& settings);

Q_SIGNALS:
    /// The operator wants to see what can be done to the selection, at that place of the screen: by a click or by the
    /// menu key. A click on a row that was not selected has selected it.
    void menuWanted(const QPoint& place);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void dress();
    void setUpHeader();

    EmptyState m_emptyState;
    ColumnMenu* m_columnMenu;
    SortMenu* m_sortMenu;
};

} // namespace ZelkoConsole
