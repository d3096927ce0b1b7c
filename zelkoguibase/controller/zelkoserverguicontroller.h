#pragma once

#include <observerbase/iobserver.h>
#include <zelkoguibase/controller/izelkoguicontroller.h>

class ActiveDeviceControl;

namespace ZelkoGUI {

class ZelkoGuiToServerCorbaHandler;

/// The record controller of a recorder device.
///
/// It follows the active device: its record list shows the device's record map, and its actions go to the device,
/// either as command values of the tree or as calls on the recorder's service. The calls wait for their answer, at most
/// as long as the handler's limit says.
///
/// From a new device on it looks every 100 ms for all that it needs of it on the tree, and says
/// `si_connectionEstablished` when it is all there and can be written to. It looks again from the moment on in which
/// a value goes that it observes, which a lost connection takes all away, and so connects by itself when they are back;
/// the selection stays for that time, with the actions disabled that rest on what is gone. What is missing is traced as
/// a warning, at each look for a new device and once for one that was lost. The load count, whether all is loaded,
/// whether the device is an extended one, and its address are observed; a command value or the record map that went
/// alone would only be missed the next time that it is needed.
///
/// Its windows on a record, for the comments, the bookmarks, a copy and for both of these, have the dialog parent of
/// their first use. Each is kept for the life of the controller, or of that parent, and shows the record of its last
/// use. The windows are independent of each other; all are emptied and hidden when the device is another one. A
/// spectrum overview is a window of its own for each use, which lives until the user closes it and follows the record
/// list for as long as that is there.
///
/// GUI thread only, as the tree's.
class ZELKOGUIBASE_EXPORT ZelkoServerGUIController : public IZelkoGUIController, public IObserver
{
    Q_OBJECT

public:
    /// `handler` and its connection data must not be null. `control` says which device is the active one; it may be
    /// null and is not owned. `name` is kept for the application and not read. There is no active device until
    /// `control` or `sl_activeDeviceChanged` names one.
    ZelkoServerGUIController(const std::shared_ptr<ZelkoGuiToServerCorbaHandler>& handler, ActiveDeviceControl* control,
                             const QString& name, const QFlags<enUserAction>& userActions, QObject* parent);

    /// A controller of which the active device is set by `sl_activeDeviceChanged` only, and which does not offer the
    /// spectrum overview, whatever `userActions` says now or `setUserActions` later.
    ZelkoServerGUIController(const std::shared_ptr<ZelkoGuiToServerCorbaHandler>& handler,
                             const QFlags<enUserAction>& userActions, QObject* parent);

    /// Lets go of the device, which it says as for any other end of a connection.
    ~ZelkoServerGUIController() override;

    /// True from `si_connectionEstablished` on, until the device is another one or a value goes that is observed: from
    /// then on the controller is as little connected as before the first look.
    bool isConnected() const;

    /// Whether the device says that all its records are loaded; not while it is not connected. `si_loadProgress` comes
    /// with each change of it.
    bool isLoadedCompletely() const;

    void setUserActions(const QFlags<enUserAction>& userActions) override;
    ZelkoCommon::AbstractRecordListModel* recordListModel() const override;
    QString activeDevice() const override;

    /// The current sub system of the handler.
    QString activeSubsystem() const override;

    /// Of the values of the device.
    void Update(Observable* source, TChangeCode code) override;

    // The one without parameters is the action's.
    using IZelkoGUIController::sl_copyRecord;

public Q_SLOTS:
    /// `subSystem` is not kept: the device is looked for in the handler's current one. The same device on the same path
    /// stays connected; `si_activeDeviceChanged` comes in any case.
    void sl_activeDeviceChanged(const QString& deviceID, const QString& subSystem = QString()) override;

    /// @name Requests to the recorder's service
    /// Whether they succeeded is not told; what they change comes back with the record. The cursor shows the wait for
    /// the answer.
    /// @{
    void sl_copyRecord(QString recordId, quint64 start, quint64 stop, QString recordName,
                       QString deviceID = QString()) override;
    void sl_addHistoryEntry(QString recordID, QString entry) override;
    void sl_deleteHistoryEntry(QString recordID, quint64 timestamp) override;
    void sl_setBookmarkEntries(QString recordId, QVector<ZELKO_XML::BookmarkEntry> bookmarks,
                               QString deviceID = QString()) override;

    /// A delayed flag is forgotten when the device changes before the record has come.
    void sl_setDeletableFlag(QString recordID, bool flag, bool delayed = false) override;

    void sl_overviewSpectrumStreamed(QString recordID, qint64 start, qint64 stop, uint resolution, ulong fftLength,
                                     ZelkoDataTypes::eFFT_Window windowType, QString ipAddress, uint port,
                                     QString deviceID = QString()) override;
    /// @}

    /// Shows the user an error, in the name of the sub system that was the current one when the active device was last
    /// named or its connection last came; nothing before that. Does not throw.
    void sl_errorText(QString text, QString description) override;

protected:
    bool isResetAvailable(const QString& recordID) const override;
    void resetRecord(const QString& recordID) override;
    bool isDownloadRecordAvailable(const QStringList& recordIDs) const override;
    void downloadRecord(const QStringList& recordIDs) override;
    bool isHistoryAvailable(const QString& recordID) const override;
    void showHistory(const QString& recordID) override;
    bool isRenameRecordAvailable(const QString& recordID) const override;

    /// Blocks as long as the user takes for the name. The record is that of the device that was active at the
    /// beginning; if another sub system is the current one by then, the user is told that nothing was renamed. What the
    /// recorder itself says of a failure stands behind its text, in brackets.
    void renameRecord(const QString& recordID) override;
    bool isEditBookmarksAvailable(const QString& recordID) const override;
    void editBookmarks(const QString& recordID) override;
    bool isCopyRecordAvailable(const QString& recordID) const override;
    void copyRecord(const QString& recordID) override;
    bool isEditRecordAvailable(const QString& recordID) const override;
    void editRecord(const QString& recordID) override;
    bool isSpectrumOverviewAvailable(const QString& recordID) const override;
    void showSpectrumOverview(const QString& recordID) override;
    bool isDeleteRecordAvailable(const QStringList& recordIDs) const override;

    /// The active device deletes; `source` is not read.
    void deleteRecording(const QStringList& recordIDs, const QString& source) override;

    bool isToggleDeletableAvailable(const QStringList& recordIDs) const override;

    /// One request per record; the first that fails is told to the user and ends it.
    void toggleDeletable(const QStringList& recordIDs) override;

    bool isResynchRecordListAvailable() const override;
    void resynchRecordList() override;
    bool isResynchRecordAvailable(const QString& recordID, const QString& deviceID) const override;
    void resynchRecord(const QString& recordID, const QString& deviceID) override;

private Q_SLOTS:
    void sl_activeDeviceDeleted(QString deviceID, QString subSystem);
    void sl_connectionChanged(QString subSystem);
    void sl_connectVT();
    void sl_updateLoadProgress();
    void sl_recordDataChanged(QString recordID);
    void sl_allRecordsChanged();

private:
    void observeRecords();
    void announceDevice();
    void connectVT();
    void resetAll(bool notify);
    void contentChanged(const Observable* source);
    void valueDeleted(const QString& name);
    void searchAgain();
    bool canBeAskedFor(const QString& recordID) const;
    QString deviceOr(const QString& deviceID) const;
    unsigned long setDeletableFlags(const QStringList& recordIDs, bool flag);
    void renameAsked(const QString& recordID);

    void openSpectrumOverview(const QString& recordID);

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
