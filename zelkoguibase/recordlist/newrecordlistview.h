#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <observerbase/iobserver.h>
#include <widgetbase/sortlistview.h>

/// A record list that an application fills itself, with NewRecordListViewItems. The columns stand from the start; users
/// sort by each. GUI thread only.
class ZELKOGUIBASE_EXPORT NewRecordListView : public SortListView, public IObserver
{
    Q_OBJECT

public:
    /// What a list can tell of a record; see getColumnNumber().
    enum enCOLUMN : int {
        ColumnName = 0,
        ColumnSize = 1,
        ColumnStartTime = 2,
        ColumnStopTime = 3,
        ColumnDuration = 4,
        ColumnDataRateClass = 5,
        ColumnDataFormat = 6,
        ColumnStatus = 7,
        ColumnId = 8,
        ColumnCenterFrequency = 9,
        ColumnBandwidth = 10,
        ColumnStartPosition = 11, ///< kept in the item, never shown
        ColumnStopPosition = 12   ///< kept in the item, never shown
    };

    /// `name` is the object name, under which the layout of the columns is kept too. The two texts belong to the
    /// application: they are kept for it and mean nothing to the list. `selectionMode` is 1 for a list in which one
    /// record can be selected, anything else for several. With `reducedColumns` there is no status, no centre frequency
    /// and no bandwidth.
    NewRecordListView(QWidget* parent, const char* name, const QString& firstText, const QString& secondText,
                      int selectionMode, bool reducedColumns);
    ~NewRecordListView() override;

    /// Where `column` stands in this list; -1 for a number that is no column. What this list does not show has a number
    /// as well, beyond the last column that is shown.
    int getColumnNumber(const enCOLUMN& column) const;

    /// Whether a column of that number is shown.
    bool isColumnAvailable(int column) const;

    /// Keeps the layout of the columns for the next run, as SortListView has it. False if that fails.
    bool saveColumnStatusPersistent();

    const QString& firstText() const { return m_firstText; }
    const QString& secondText() const { return m_secondText; }

    /// Nothing: it is the application that follows the tree and changes the items. Derived lists may do it here.
    void Update(Observable* source, TChangeCode code) override;

protected:
    enum eCompareType : int { CompareText = 0, CompareNumeric = 1 };

    /// Adds a column behind the others, of which it must be number `column`. `alignment` is one of Qt::Alignment.
    void AddColumn(int column, const QString& title, int alignment, eCompareType compareType);

private:
    void addAllColumns();
    int shownColumns() const;

    const QString m_firstText;
    const QString m_secondText;
    const bool m_reducedColumns;
};
