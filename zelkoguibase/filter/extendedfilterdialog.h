#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>
#include <zelkoguibase/filter/ifilterui.h>

#include <QDialog>
#include <QPointer>

#include <memory>

namespace ZelkoGUI::Filter {

class MultiFilterSortProxyModel;

/// The window with a row for each column of a record list that can be filtered.
///
/// It makes the conditions of its rows, gives them to the proxy, and makes their editors. What the user does takes
/// effect at once, so there is nothing to confirm: its buttons reset all filters, save them to a file, and restore them
/// from one. The conditions belong to the proxy and stay in force while the window is closed, and when it is gone. The
/// object name of a condition is its name in filter files.
///
/// A filter file is a FilterConditionList with the ID "ExtendedRecordListFilter". One that cannot be read, has a
/// pattern that is too complex, or is none of this window, is refused with a warning, and no filter changes. One that
/// was saved by a window with other rows is taken as far as it goes: entries without a row are ignored, rows without an
/// entry stay as they are. The folder of the file that was last saved or restored is kept in the user's configuration
/// as "ExtendedRecordListFilterFolder".
///
/// Files are saved with ".xml" behind the name that was chosen, if it does not end so. A file that has the longer name
/// already is replaced unasked, for the user was asked about the name that he chose. A file that cannot be saved is
/// traced, and nobody is told.
///
/// Texts and enumerations have no check box, their conditions are always on. A file can have them off all the same: the
/// column Interface is so in the files of lists that know nothing of interfaces. Restoring it disables the row, and
/// resetting does not revive it. A file that has it on does, but for Interface, which takes enableInterfaceFilter().
///
/// GUI thread only. Reading a file and filtering anew block.
class ZELKOGUIBASE_EXPORT ExtendedFilterDialog : public QDialog, public IFilterUI
{
    Q_OBJECT

public:
    /// A row: 1 shifted left by the number of its column of AbstractRecordListModel.
    enum enFilterColumn : unsigned {
        NameColumn = 0x1,
        SizeColumn = 0x2,
        StartTimeColumn = 0x4,
        StopTimeColumn = 0x8,
        DurationColumn = 0x10,
        DataRateColumn = 0x20,
        DataFormatColumn = 0x40,
        RecordIDColumn = 0x80,
        StatusColumn = 0x100,
        FrequencyColumn = 0x200,
        BandwidthColumn = 0x400,
        SampleRateColumn = 0x800,
        DeletableColumn = 0x1000,
        InterfaceColumn = 0x2000
    };

    /// `model` must not be null and gets the conditions, behind those that it has. `columns` says which rows there are;
    /// bits of no row are ignored.
    ///
    /// The conditions of enumerations are on with nothing selected until their editors select all values, which is with
    /// the next turn of the event loop: until then no record passes. Whoever cannot wait calls resetFilter().
    ExtendedFilterDialog(MultiFilterSortProxyModel* model, const QFlags<enFilterColumn>& columns, QWidget* parent);
    ~ExtendedFilterDialog() override;

    /// The conditions of all rows, in the order of the columns, a lower limit before its upper one. A condition that
    /// was deleted stays in the list as null.
    QList<QPointer<AbstractFilterCondition>> filters() const;

    /// Whether any condition could reject a row.
    bool hasActiveFilter() const;

    /// Switches the filter of the column Interface on or off, and shows or hides its row: off is for lists that know
    /// nothing of interfaces. While it is off, by this or by a file, restoring a file does not touch it: nothing but
    /// this function switches it on again.
    void enableInterfaceFilter(bool enable);

    /// Resets the editors of all rows, from the first to the last. A row that is disabled stays so, and a limit that
    /// has lost the other one of its range stays in force.
    void resetFilter() override;

public Q_SLOTS:
    void sl_resetFilter();

protected:
    /// The Return key presses the button that has the focus and nothing else: it also ends the entry of a text, which
    /// must not press a button elsewhere.
    void keyPressEvent(QKeyEvent* event) override;

private Q_SLOTS:
    void sl_saveFilterSettings();
    void sl_restoreFilterSettings();
    void sl_filterChanged();

private:
    class Private;

    const std::unique_ptr<Private> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(QFlags<ExtendedFilterDialog::enFilterColumn>)

} // namespace ZelkoGUI::Filter
