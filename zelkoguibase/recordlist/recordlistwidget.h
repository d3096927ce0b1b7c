#pragma once

#include <zelkoguibase/controller/izelkoguicontroller.h>
#include <zelkoguibase/filter/extendedfilterdialog.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QFlags>
#include <QList>
#include <QStringList>
#include <QWidget>

#include <memory>

class QAction;
class QModelIndex;
class QPoint;

namespace ZelkoGUI {

namespace Filter {
class AbstractFilterCondition;
}

/// The records of a controller as a table, with whatever of tool bar, filters, labels, load progress and menus the
/// application wants.
///
/// What the user selects goes to the controller, and what the controller has selected by others is selected here, which
/// is not signalled again.
///
/// When all rows go at once and come back, as they do when a connection is lost, the records that were selected are
/// selected again as they come, and the current row and the scroll position are restored; what the user does meanwhile
/// counts instead. What is told names records of the list only: a turn of the event loop after the loss nothing, then
/// those that are back, each time some come. When no row has come for five seconds, or rows have come for a minute,
/// the others count as gone and are not selected should they come after all.
///
/// While rows come, go and move, those in sight stay where they are: the record at the top of the table stays there for
/// as long as it is in the list, and then the next one keeps its place. A table that stands at the top of the list
/// stays there, so that new records are seen.
///
/// The widget follows the controller to another device, and to another list of records, with or without a label for the
/// device: its selection is looked at anew and told. A list that dies, and a device without one, have no rows.
///
/// A list in which the filters hide every record says so in place of the rows, and the count follows each change of the
/// filters, however many rows it moves. The extended filter lets every record pass at first: its editors would
/// otherwise narrow the list to their first values a turn of the event loop after it is shown.
///
/// All of it can be worked with the keyboard. The Tab key goes from the table to its header, in which columns are
/// chosen, sorted by, moved, made wider and hidden, then through the tool bar and to the filters; on the button of the
/// extended filter Down opens the menu that resets it.
///
/// Order, width and visibility of the columns outlive a run, under the object name that the widget is made with. GUI
/// thread only.
class ZELKOGUIBASE_EXPORT RecordListWidget : public QWidget
{
    Q_OBJECT

public:
    /// The parts of the widget, as flags.
    enum enOption : unsigned int {
        OptionToolbar = 1,        ///< a vertical tool bar with those of the controller's actions that have an icon
        OptionNameFilter = 2,     ///< a text filter on the name of the record
        OptionExtendedFilter = 4, ///< a button for the extended filter dialog
        OptionDeviceLabel = 8,    ///< a label with the active device
        OptionLoadProgress = 16,  ///< label and bar, while records are loaded
        OptionActionMenu = 32,    ///< the controller's actions in the context menu, with their shortcuts
        OptionClipboardMenu = 64, ///< "Copy to Clipboard" in the context menu
        OptionMultiSelection = 128,
        OptionRecordCount = 256, ///< a label with the number of records
        OptionSelectHeader = 512 ///< a vertical header that marks what is selected; without it there is none
    };
    Q_DECLARE_FLAGS(Options, enOption)
    Q_FLAG(Options)

    /// Becomes the dialog parent of `controller`, which must not be null and is not owned. It may go first: its records
    /// stay in the table for as long as the list that it had of them is there. What it has selected so far is not
    /// taken over: it is told that nothing is. `filterColumns` are the rows of the extended filter dialog. `name` is
    /// the object name; columns are kept under "RecordListWidget" if it is empty.
    RecordListWidget(IZelkoGUIController* controller, const QFlags<enOption>& options,
                     const QFlags<Filter::ExtendedFilterDialog::enFilterColumn>& filterColumns, QWidget* parent,
                     const QString& name);
    ~RecordListWidget() override;

    /// Replaces the filters of the application, which no reset of the user's filters touches. Those that have a parent
    /// stay their owner's and may go at any time; the others belong to this widget until they are replaced. A filter
    /// that is in the old list and in the new one stays where it is, alive and without the rows being filtered twice.
    void setFixedFilter(QList<Filter::AbstractFilterCondition*> filters);

    /// Takes the filters of the application away.
    void resetFixedFilter();

    /// IDs of the records that are selected, as they were told last. Those of the user are in the order in which he
    /// selected ranges of rows, and from top to bottom within a range, whichever way it was drawn; those of the
    /// controller are in its order; those that came back after a loss in the order in which they came.
    QStringList selectedRecords() const;

    /// Selects a record, and no other, and scrolls to it; nothing happens if the list does not have it. One that is
    /// filtered out is selected only with `resetFilter`, which resets the user's filters for it.
    void select(const QString& recordID, bool resetFilter);

    void setFocusOnList();

    /// As ExtendedFilterDialog::enableInterfaceFilter(); nothing without the dialog.
    void enableInterfaceFilter(bool enable);

Q_SIGNALS:
    /// The selection of the view changed, or was looked at anew because the device did. Not emitted for a selection
    /// that comes from the controller.
    void si_selectedRecordsChanged(QStringList recordIDs);

    void si_recordDoubleClicked(QString recordID);

private Q_SLOTS:
    void sl_recordSelectionChanged();
    void sl_contextMenu(QPoint point);
    void sl_showExtendedFilter();
    void sl_filterContextMenu(QPoint point);
    void sl_extendedFilterChanged();
    void sl_loadProgress(int current, int total);
    void sl_activeDeviceChanged();
    void sl_clipboardAction(QAction* action);
    void sl_doubleClicked(QModelIndex index);
    void sl_recordCountChanged();
    void sl_controllerSelectedRecordsChanged(QStringList recordIds);
    void sl_userActionTriggered(QStringList recordIDs, ZelkoGUI::IZelkoGUIController::enUserAction action);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(RecordListWidget::Options)

} // namespace ZelkoGUI
