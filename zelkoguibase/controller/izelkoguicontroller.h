#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkobase/data/zelkodatatypes.h>
#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QFlags>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class QAction;
class QWidget;

namespace ZelkoGUI {

class AbstractTransferScheduler;
class IZelkoGuiActionProvider;

/// What stands behind a record list, whatever its records come from: the selection, and the actions that a user has on
/// it.
///
/// Each action has a pair of operations that a derived class supplies: whether it is available for certain records, and
/// the operation itself. The first is asked to enable the action, and again at the moment of a trigger, since what it
/// rests on may have changed in between; a trigger that comes too late does nothing and says nothing. What the user may
/// do at all, by `UserRights`, is checked here and nowhere else.
///
/// | action            | enabled for one record if                              | for several if |
/// |-------------------|--------------------------------------------------------|----------------|
/// | copy, edit, rename, bookmarks, spectrum overview | available                | never          |
/// | history           | available, and `HistoryCommentAllowed`                 | never          |
/// | reset             | available, and `ResetRecordAllowed` or rights skipped  | never          |
/// | delete            | available for the deletable ones, and `DeleteRecordsAllowed` | the same |
/// | download          | available, and `ArchivingAllowed`                      | the same       |
/// | deletable flag    | available, and `DeleteRecordsAllowed`                  | the same       |
///
/// Without a selection no action is enabled. GUI thread only. No slot of this class's signals destroys the controller;
/// whatever happens while one of its message boxes or dialogs is open, or while a failure is told to the user, may.
class ZELKOGUIBASE_EXPORT IZelkoGUIController : public QObject
{
    Q_OBJECT

public:
    /// The actions, as flags: which of them a controller offers.
    enum enUserAction : unsigned int {
        UserActionCopy = 1,
        UserActionDelete = 2,
        UserActionDownload = 4,
        UserActionEdit = 8,
        UserActionReset = 16,
        UserActionRename = 32,
        UserActionBookmarks = 64,
        UserActionDeletable = 128,
        UserActionHistory = 256,
        UserActionOverview = 512
    };
    Q_DECLARE_FLAGS(UserActions, enUserAction)
    Q_FLAG(UserActions)

    /// Makes the actions of `userActions`, all of them disabled.
    IZelkoGUIController(const QFlags<enUserAction>& userActions, QObject* parent);

    /// As above, with actions of the application; `provider` is not owned, may be null, and may go at any time.
    IZelkoGUIController(IZelkoGuiActionProvider* provider, const QFlags<enUserAction>& userActions, QObject* parent);

    ~IZelkoGUIController() override;

    /// The action of a flag; null if it is not offered. It belongs to the controller.
    QAction* recordAction(const enUserAction& action) const;

    /// IDs of the selected records, in the order in which they were given.
    QStringList selectedRecords() const;

    /// Follows `scheduler` instead of the one so far: availability is looked at again whenever that of transfers
    /// changes. Not owned; null for none. Nothing happens if it is the same one.
    void setTransferScheduler(AbstractTransferScheduler* scheduler);

    /// The parent of every dialog and message box of this controller; null, as at first, for none. Not owned.
    void setDialogParent(QWidget* parent);

    /// Null also once that widget is gone.
    QWidget* dialogParent() const;

    /// Offers exactly the actions of `userActions` from here on. One that was not offered yet is made, and stays
    /// disabled until availability is looked at. One that is not offered any more lives on as a child of the
    /// controller, but is neither listed nor enabled or disabled any more, and not taken up again later.
    virtual void setUserActions(const QFlags<enUserAction>& userActions);

    /// All actions to be shown, ascending by flag; those of the provider in front or behind, as it says.
    virtual QList<QAction*> recordActions() const;

    /// The records that the IDs of the selection stand for. Never null in a controller that is fully made.
    virtual ZelkoCommon::AbstractRecordListModel* recordListModel() const = 0;

    /// ID of the device that the records are on; empty for none.
    virtual QString activeDevice() const = 0;

    /// The same as `activeDevice()`, unless overridden.
    virtual QString activeDeviceID() const;

    /// Name of the sub system of that device; empty for none.
    virtual QString activeSubsystem() const = 0;

public Q_SLOTS:
    /// Another user, or other rights of the same one: looks at availability again. `msg` is not read.
    virtual void sl_activeUserChanged(const QString& msg);

    /// Another device, or another connection of the same one; an empty ID for none.
    virtual void sl_activeDeviceChanged(const QString& deviceID, const QString& subSystem = QString()) = 0;

    /// Takes over the selection and enables the actions that are available for it; also called with the present
    /// selection, when availability may have changed. Then `si_selectedRecordsChanged` if it differs from the one
    /// before, then `updateActions` of the provider.
    virtual void sl_selectedRecordsChanged(const QStringList& records);

    /// Copies the samples between `start` and `stop` into a new record of that name. Both are handed on as they are:
    /// moments in microseconds since the epoch, or places in the record as its start and stop offsets count them, which
    /// is what the window for copies sends. The recorder tells them apart. Here and below, an empty `deviceID` means
    /// the active device.
    virtual void sl_copyRecord(QString recordId, quint64 start, quint64 stop, QString recordName,
                               QString deviceID = QString()) = 0;

    /// Adds a comment of the user's to the history of a record of the active device. Its moment is set there.
    virtual void sl_addHistoryEntry(QString recordID, QString entry) = 0;

    /// `timestamp` is that of the entry, microseconds since the epoch.
    virtual void sl_deleteHistoryEntry(QString recordID, quint64 timestamp) = 0;

    /// Has the bookmarks stored with the record.
    virtual void sl_setBookmarkEntries(QString recordId, QVector<ZELKO_XML::BookmarkEntry> bookmarks,
                                       QString deviceID = QString()) = 0;

    /// With `delayed`, a record that is not in the list yet gets the flag when it comes.
    virtual void sl_setDeletableFlag(QString recordID, bool flag, bool delayed = false) = 0;

    /// Has the spectrum between `start` and `stop`, microseconds since the epoch, sent line by line to the address.
    virtual void sl_overviewSpectrumStreamed(QString recordID, qint64 start, qint64 stop, uint resolution,
                                             ulong fftLength, ZelkoDataTypes::eFFT_Window windowType, QString ipAddress,
                                             uint port, QString deviceID = QString()) = 0;

    /// A failure that a window of this controller reports.
    virtual void sl_errorText(QString text, QString description) = 0;

    /// @name The actions, as their QActions trigger them
    /// Each asks for availability again, runs its operation on the selection and emits `si_userActionTriggered`.
    /// @{
    void sl_resetRecord();
    void sl_downloadRecord();
    void sl_showHistory();
    void sl_renameRecord();
    void sl_editBookmarks();
    void sl_copyRecord();
    void sl_editRecording();
    void sl_spectrumOverview();

    /// Leaves out what is not deletable, and asks before the rest is deleted; blocks as long as the user takes. Nothing
    /// is deleted or signalled if meanwhile another device became the active one, or the delete is not available any
    /// more: the user, who confirmed what he saw before, is told that instead. The right to delete is not asked for
    /// again.
    void sl_deleteRecord();

    /// Here neither.
    void sl_toggleDeletable();
    /// @}

    /// Has the whole list sent anew, or one record with all that is known of it, if that is available. Neither counts
    /// as a user action.
    void sl_resyncRecordList();
    void sl_resyncRecord(QString recordID, QString deviceID = QString());

    /// Looks at availability again.
    void sl_transferAvailableChanged();

Q_SIGNALS:
    /// The active device or its connection changed.
    void si_activeDeviceChanged(QString deviceID, QString subSystem);

    /// Records loaded so far, of how many; (0, 0) when nothing is loading.
    void si_loadProgress(int current, int total);

    /// The user wants these records transferred from the device at that address; `writeProtected` are those of them
    /// that are not deletable.
    void si_downloadRecordings(QStringList recordIDs, QString zelkoIP, QStringList writeProtected);

    /// An action has run, on these records. A delete names the deletable ones, not the whole selection.
    void si_userActionTriggered(QStringList recordIDs, ZelkoGUI::IZelkoGUIController::enUserAction action);

    /// The selection is another one; the actions are enabled for it already.
    void si_selectedRecordsChanged(QStringList recordIDs);

    /// The controller has all that it needs of the device.
    void si_connectionEstablished(QString deviceID);

protected:
    // The queue decides what may be replaced at its destination and deletes what it has moved, without the user's
    // rights.
    friend class AbstractTransferScheduler;

    /// @name The pairs: whether an operation is available for records, and the operation
    /// The IDs need not be known. `is...Available` is asked often and answers at once.
    /// @{
    virtual bool isResetAvailable(const QString& recordID) const = 0;
    virtual void resetRecord(const QString& recordID) = 0;
    virtual bool isDownloadRecordAvailable(const QStringList& recordIDs) const = 0;
    virtual void downloadRecord(const QStringList& recordIDs) = 0;
    virtual bool isHistoryAvailable(const QString& recordID) const = 0;
    virtual void showHistory(const QString& recordID) = 0;
    virtual bool isRenameRecordAvailable(const QString& recordID) const = 0;
    virtual void renameRecord(const QString& recordID) = 0;
    virtual bool isEditBookmarksAvailable(const QString& recordID) const = 0;
    virtual void editBookmarks(const QString& recordID) = 0;
    virtual bool isCopyRecordAvailable(const QString& recordID) const = 0;
    virtual void copyRecord(const QString& recordID) = 0;
    virtual bool isEditRecordAvailable(const QString& recordID) const = 0;
    virtual void editRecord(const QString& recordID) = 0;
    virtual bool isSpectrumOverviewAvailable(const QString& recordID) const = 0;
    virtual void showSpectrumOverview(const QString& recordID) = 0;

    /// Asked with the deletable ones of the selection only, which may be none of them.
    virtual bool isDeleteRecordAvailable(const QStringList& recordIDs) const = 0;

    /// `source` is where the records are, a device or a folder; empty for the active one.
    virtual void deleteRecording(const QStringList& recordIDs, const QString& source) = 0;

    virtual bool isToggleDeletableAvailable(const QStringList& recordIDs) const = 0;
    virtual void toggleDeletable(const QStringList& recordIDs) = 0;
    virtual bool isResynchRecordListAvailable() const = 0;
    virtual void resynchRecordList() = 0;

    /// An empty `deviceID` means the active device.
    virtual bool isResynchRecordAvailable(const QString& recordID, const QString& deviceID) const = 0;
    virtual void resynchRecord(const QString& recordID, const QString& deviceID) = 0;
    /// @}

    /// True if anybody may reset a record; false, unless overridden.
    virtual bool skipUserRightsForReset() const;

    /// Null if there is none, or not any more.
    AbstractTransferScheduler* transferScheduler();
    const AbstractTransferScheduler* transferScheduler() const;

private:
    friend class IZelkoGuiActionProvider;

    using Availability = bool (IZelkoGUIController::*)(const QString&) const;
    using Operation = void (IZelkoGUIController::*)(const QString&);

    void forgetActionProvider();
    void updateAction(enUserAction action, QAction* shown);
    bool isActionAvailable(enUserAction action) const;
    bool isOneSelected(Availability isAvailable) const;
    bool isResetAllowed() const;
    QStringList getDeletableRecordings(const QStringList& recordIDs) const;
    void setDeletableAction(QAction* action, const QStringList& recordIDs);
    bool isDeleteConfirmed(const QStringList& deletable);
    bool isDeleteAnsweredByYes(const QStringList& deletable);
    void runOn(const QStringList& recordIDs, enUserAction action,
               const std::function<void(const QStringList&)>& operation);
    void run(bool isAllowed, Availability isAvailable, Operation operation, enUserAction action);

    struct Private;
    const std::unique_ptr<Private> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(IZelkoGUIController::UserActions)

} // namespace ZelkoGUI
