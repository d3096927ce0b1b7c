#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QSortFilterProxyModel>

#include <memory>

class QItemSelectionModel;

namespace ZelkoGUI::Filter {

class AbstractFilterCondition;

/// Shows the rows of a list that pass all of its conditions, and marks the columns that hide rows in the header.
///
/// Each condition reads a column and a role of the source of its own; they combine with AND. The expression, key column
/// and role of the base class are not looked at. Sorting is the base class's.
///
/// A change of the conditions is taken at once. If it shows or hides rows in many places of the list it is one change
/// of the layout, otherwise rows are removed and inserted. Either way persistent indexes follow their rows, and hidden
/// rows that were selected or current leave the selection by a removal of rows, so that selection models tell of it;
/// with a layout change this removal comes behind it, before other rows are shown, and it need not name each of them.
/// A layout change puts rows with equal sort keys into the order of the source. Lists that do not follow their source
/// (`dynamicSortFilter`) always get single steps.
///
/// Conditions may be changed by whoever is told of a change of the list or of its source. Such a change is taken when
/// the one that was told of is complete, before the operation that began it returns.
///
/// The decoration of a horizontal header section is an icon while an active condition on its column rejects a row of
/// the source, whether or not others reject that row too; a decoration of the source's own goes first.
/// headerDataChanged for all columns follows each change of the shown rows, their cells, or the conditions. A mark
/// outlives the last row that it stood for, where the source removes that row, until the next of these changes.
///
/// Each operation may be called without a source. GUI thread only.
class ZELKOGUIBASE_EXPORT MultiFilterSortProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit MultiFilterSortProxyModel(QObject* parent);
    ~MultiFilterSortProxyModel() override;

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Whether all active conditions pass the row; no cell is read for the others, nor behind the first that fails.
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

    /// Adds a condition behind those that are there; nothing happens if it is one of them. A condition without a parent
    /// becomes a child of this model. One that dies is taken out by itself.
    void addFilter(AbstractFilterCondition* filter);

    /// Takes a condition out, and deletes it if it is a child of this model, also one that was never added.
    void removeFilter(AbstractFilterCondition* filter);

    /// Takes all conditions out, deletes those that are children of this model, and filters anew, also if none was
    /// active; nothing happens if there are none.
    void clearFilters();

    /// Lets many rows leave a selection of this list at once. A selection that is followed is told of rows that a
    /// change of the layout has hidden by a few removals; others, of which nothing is known, get one for each range
    /// that they consist of. Where one selection of the list is followed, all have to be. Nothing happens for null; the
    /// selection may go first.
    void followSelection(const QItemSelectionModel* selection);

private Q_SLOTS:
    void filterHasChanged();
    void filterDestroyed(QObject* object);
    void invalidateHeaderData();

private:
    class Private;

    void followOwnChanges();
    void followSource();
    void followSourceContent();
    void followBeginningsOfSourceChanges();
    void followEndsOfSourceChanges();
    void sourceChangeEnded();
    bool filterAnew();
    void judgeAndShow();
    void showInLayouts();
    void hideBeforeShowing();
    void takeInLayout();
    void invalidateRows();

    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI::Filter
