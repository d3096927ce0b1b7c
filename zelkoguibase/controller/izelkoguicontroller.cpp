#include <zelkoguibase/controller/izelkoguicontroller.h>

#include <zelkoguibase/controller/izelkoguiactionprovider.h>
#include <zelkoguibase/transfer/abstracttransferscheduler.h>

#include "deletablestate_p.h"

#include <host/userrights.h>
#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <widgetbase/warningbox.h>

#include <QAction>
#include <QIcon>
#include <QMap>
#include <QPointer>
#include <QWidget>

namespace ZelkoGUI {

namespace {

using Controller = IZelkoGUIController;

/// How an action looks and what it triggers.
struct ActionDescription
{
    Controller::enUserAction flag;
    const char* icon;
    const char* text;
    const char* objectName;
    const char* toolTip;
    Qt::Key key; // with Ctrl
    void (Controller::*slot)();
};

const char setDeletableIcon[] = ":/Zelko/RecordList/SetDeletable.svg";
const char resetDeletableIcon[] = ":/Zelko/RecordList/ResetDeletable.svg";

#define ZELKO_ACTION_TEXT(text) QT_TRANSLATE_NOOP("ZelkoGUI::IZelkoGUIController", text)

// In the order in which the actions are made.
const ActionDescription descriptions[] = {
    {Controller::UserActionReset, ":/Zelko/RecordList/Reset.svg", ZELKO_ACTION_TEXT("&Reset Record"), "ActionReset",
     ZELKO_ACTION_TEXT("Reset Record"), Qt::Key_I, &Controller::sl_resetRecord},
    {Controller::UserActionDownload, ":/Zelko/RecordList/Download.svg", ZELKO_ACTION_TEXT("Down&load Record"),
     "ActionDownload", ZELKO_ACTION_TEXT("Download Record"), Qt::Key_D, &Controller::sl_downloadRecord},
    {Controller::UserActionHistory, ":/Zelko/RecordList/History.svg", ZELKO_ACTION_TEXT("Edit &History Comments..."),
     "ActionHistory", ZELKO_ACTION_TEXT("Edit History Comments..."), Qt::Key_H, &Controller::sl_showHistory},
    {Controller::UserActionRename, ":/Zelko/RecordList/Rename.svg", ZELKO_ACTION_TEXT("&Rename Record..."),
     "ActionRecordingName", ZELKO_ACTION_TEXT("Rename Record..."), Qt::Key_R, &Controller::sl_renameRecord},
    {Controller::UserActionBookmarks, ":/Zelko/RecordList/Bookmarks.svg", ZELKO_ACTION_TEXT("Edit &Bookmarks..."),
     "ActionEditBookmarks", ZELKO_ACTION_TEXT("Edit Bookmarks..."), Qt::Key_B, &Controller::sl_editBookmarks},
    {Controller::UserActionCopy, ":/Zelko/RecordList/EditCopy.svg", ZELKO_ACTION_TEXT("&Copy Record..."),
     "ActionCopyRecording", ZELKO_ACTION_TEXT("Copy Record..."), Qt::Key_C, qOverload<>(&Controller::sl_copyRecord)},
    {Controller::UserActionEdit, ":/Zelko/RecordList/Edit.svg", ZELKO_ACTION_TEXT("&Edit Record..."),
     "ActionEditRecording", ZELKO_ACTION_TEXT("Edit Record..."), Qt::Key_E, &Controller::sl_editRecording},
    {Controller::UserActionOverview, ":/Zelko/RecordList/SpectrumOverview.svg",
     ZELKO_ACTION_TEXT("&Spectrum Overview..."), "ActionSpectrumOverview", ZELKO_ACTION_TEXT("Spectrum Overview..."),
     Qt::Key_O, &Controller::sl_spectrumOverview},
    {Controller::UserActionDelete, ":/Zelko/RecordList/Delete.svg", ZELKO_ACTION_TEXT("&Delete Record..."),
     "ActionDelete", ZELKO_ACTION_TEXT("Delete Record..."), Qt::Key_X, &Controller::sl_deleteRecord},
    {Controller::UserActionDeletable, setDeletableIcon, ZELKO_ACTION_TEXT("Toggle on/off Deletable Flag"),
     "ActionToggleDeletable", ZELKO_ACTION_TEXT("Toggle on/off Deletable Flag"), Qt::Key_T,
     &Controller::sl_toggleDeletable},
};

// Not destroyed at the end of the process, when the image plugins that drew it may be gone already.
const QIcon& keptIcon(bool setsFlag)
{
    static const QIcon& sets = *new QIcon(QLatin1String(setDeletableIcon));
    static const QIcon& resets = *new QIcon(QLatin1String(resetDeletableIcon));
    return setsFlag ? sets : resets;
}

QAction* makeAction(const ActionDescription& description, Controller* owner)
{
    auto* const action = new QAction(QIcon(QLatin1String(description.icon)), Controller::tr(description.text), owner);
    action->setObjectName(QLatin1String(description.objectName));
    action->setToolTip(Controller::tr(description.toolTip));
    action->setShortcut(QKeySequence(Qt::CTRL | description.key));
    action->setEnabled(false);
    QObject::connect(action, &QAction::triggered, owner, description.slot);
    return action;
}

// From within a slot, which no exception crosses.
void tellUser(const QString& text)
{
    try {
        ErrorHandler::Instance()->ShowMessage(text);
    } catch (...) {
        if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
            _Q_Trace(QStringLiteral("IZelkoGUIController::sl_deleteRecord: the user was not told: ") + text, __FILE__,
                     __LINE__);
        }
    }
}

} // namespace

struct IZelkoGUIController::Private
{
    QStringList selected;
    QMap<enUserAction, QAction*> actions;
    QPointer<AbstractTransferScheduler> transferScheduler;
    QPointer<QWidget> dialogParent;
    IZelkoGuiActionProvider* actionProvider = nullptr;
};

IZelkoGUIController::IZelkoGUIController(const QFlags<enUserAction>& userActions, QObject* parent)
    : IZelkoGUIController(nullptr, userActions, parent)
{}

IZelkoGUIController::IZelkoGUIController(IZelkoGuiActionProvider* provider, const QFlags<enUserAction>& userActions,
                                         QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->actionProvider = provider;
    if (provider) {
        provider->addController(this);
    }
    IZelkoGUIController::setUserActions(userActions);
    connect(UserRights::Instance(), &UserRights::UpdateUserRights, this, &IZelkoGUIController::sl_activeUserChanged);
}

// Letting go of the scheduler looks at availability and calls the provider, both of which lead to operations that are
// pure virtual by now and would end the process. So nothing is selected before, and the provider, which may ask the
// controller whatever it likes, is left before and not after it.
IZelkoGUIController::~IZelkoGUIController()
{
    d->selected.clear();
    if (d->actionProvider) {
        d->actionProvider->removeController(this);
        forgetActionProvider();
    }
    setTransferScheduler(nullptr);
}

void IZelkoGUIController::forgetActionProvider()
{
    d->actionProvider = nullptr;
}

QAction* IZelkoGUIController::recordAction(const enUserAction& action) const
{
    return d->actions.value(action);
}

QStringList IZelkoGUIController::selectedRecords() const
{
    return d->selected;
}

void IZelkoGUIController::setTransferScheduler(AbstractTransferScheduler* scheduler)
{
    if (scheduler == d->transferScheduler) {
        return;
    }
    if (d->transferScheduler) {
        d->transferScheduler->disconnect(this);
    }
    d->transferScheduler = scheduler;
    if (scheduler) {
        connect(scheduler, &AbstractTransferScheduler::si_transferAvailable, this,
                &IZelkoGUIController::sl_transferAvailableChanged);
    }
    sl_transferAvailableChanged();
}

AbstractTransferScheduler* IZelkoGUIController::transferScheduler()
{
    return d->transferScheduler;
}

const AbstractTransferScheduler* IZelkoGUIController::transferScheduler() const
{
    return d->transferScheduler;
}

void IZelkoGUIController::setDialogParent(QWidget* parent)
{
    d->dialogParent = parent;
}

QWidget* IZelkoGUIController::dialogParent() const
{
    return d->dialogParent;
}

void IZelkoGUIController::setUserActions(const QFlags<enUserAction>& userActions)
{
    d->actions.removeIf([&userActions](auto action) { return !userActions.testFlag(action.key()); });
    for (const ActionDescription& description : descriptions) {
        if (userActions.testFlag(description.flag) && !d->actions.contains(description.flag)) {
            d->actions.insert(description.flag, makeAction(description, this));
        }
    }
}

QList<QAction*> IZelkoGUIController::recordActions() const
{
    QList<QAction*> own = d->actions.values();
    if (!d->actionProvider) {
        return own;
    }
    const QList<QAction*> provided = d->actionProvider->providedActions();
    return d->actionProvider->prependActions() ? provided + own : own + provided;
}

QString IZelkoGUIController::activeDeviceID() const
{
    return activeDevice();
}

bool IZelkoGUIController::skipUserRightsForReset() const
{
    return false;
}

void IZelkoGUIController::sl_activeUserChanged(const QString&)
{
    sl_selectedRecordsChanged(selectedRecords());
}

void IZelkoGUIController::sl_transferAvailableChanged()
{
    sl_selectedRecordsChanged(selectedRecords());
}

void IZelkoGUIController::sl_selectedRecordsChanged(const QStringList& records)
{
    const bool differs = records != d->selected;
    d->selected = records;
    // Whoever watches an action may change which of them there are.
    const QMap<enUserAction, QAction*> actions = d->actions;
    for (auto it = actions.begin(); it != actions.end(); ++it) {
        updateAction(it.key(), it.value());
    }
    if (differs) {
        Q_EMIT si_selectedRecordsChanged(d->selected);
    }
    if (d->actionProvider) {
        d->actionProvider->updateActions(this);
    }
}

void IZelkoGUIController::updateAction(enUserAction flag, QAction* action)
{
    action->setEnabled(false);
    if (d->selected.isEmpty()) {
        return;
    }
    if (flag == UserActionDeletable) {
        setDeletableAction(action, d->selected);
    } else {
        action->setEnabled(isActionAvailable(flag));
    }
}

bool IZelkoGUIController::isActionAvailable(enUserAction action) const
{
    switch (action) {
    case UserActionCopy:
        return isOneSelected(&IZelkoGUIController::isCopyRecordAvailable);
    case UserActionDelete:
        return isDeleteRecordAvailable(getDeletableRecordings(d->selected)) && UserRights::DeleteRecordsAllowed();
    case UserActionDownload:
        return isDownloadRecordAvailable(d->selected) && UserRights::ArchivingAllowed();
    case UserActionEdit:
        return isOneSelected(&IZelkoGUIController::isEditRecordAvailable);
    case UserActionReset:
        return isOneSelected(&IZelkoGUIController::isResetAvailable) && isResetAllowed();
    case UserActionRename:
        return isOneSelected(&IZelkoGUIController::isRenameRecordAvailable);
    case UserActionBookmarks:
        return isOneSelected(&IZelkoGUIController::isEditBookmarksAvailable);
    case UserActionHistory:
        return isOneSelected(&IZelkoGUIController::isHistoryAvailable) && UserRights::HistoryCommentAllowed();
    case UserActionOverview:
        return isOneSelected(&IZelkoGUIController::isSpectrumOverviewAvailable);
    case UserActionDeletable:
        break;
    }
    return false;
}

bool IZelkoGUIController::isOneSelected(Availability isAvailable) const
{
    return d->selected.size() == 1 && (this->*isAvailable)(d->selected.first());
}

bool IZelkoGUIController::isResetAllowed() const
{
    return skipUserRightsForReset() || UserRights::ResetRecordAllowed();
}

QStringList IZelkoGUIController::getDeletableRecordings(const QStringList& recordIDs) const
{
    const ZelkoCommon::AbstractRecordListModel* const model = recordListModel();
    QStringList deletable;
    for (const QString& id : recordIDs) {
        const auto record = model->getRecordData(id);
        if (record && record->GetDeletable()) {
            deletable.append(id);
        }
    }
    return deletable;
}

void IZelkoGUIController::setDeletableAction(QAction* action, const QStringList& recordIDs)
{
    action->setIcon(keptIcon(!notDeletable(*recordListModel(), recordIDs).isEmpty()));
    action->setEnabled(isToggleDeletableAvailable(recordIDs) && UserRights::DeleteRecordsAllowed());
}

// An operation may open a dialog or have a failure told, and much can happen meanwhile: the signal names the records
// that the operation ran on, and is left out if the controller is gone by then.
void IZelkoGUIController::runOn(const QStringList& recordIDs, enUserAction action,
                                const std::function<void(const QStringList&)>& operation)
{
    const QPointer<IZelkoGUIController> self(this);
    operation(recordIDs);
    if (self) {
        Q_EMIT si_userActionTriggered(recordIDs, action);
    }
}

void IZelkoGUIController::run(bool isAllowed, Availability isAvailable, Operation operation, enUserAction action)
{
    if (isOneSelected(isAvailable) && isAllowed) {
        runOn(selectedRecords(), action, [=, this](const QStringList& ids) { (this->*operation)(ids.first()); });
    }
}

void IZelkoGUIController::sl_resetRecord()
{
    run(isResetAllowed(), &IZelkoGUIController::isResetAvailable, &IZelkoGUIController::resetRecord, UserActionReset);
}

void IZelkoGUIController::sl_showHistory()
{
    run(UserRights::HistoryCommentAllowed(), &IZelkoGUIController::isHistoryAvailable,
        &IZelkoGUIController::showHistory, UserActionHistory);
}

void IZelkoGUIController::sl_renameRecord()
{
    run(true, &IZelkoGUIController::isRenameRecordAvailable, &IZelkoGUIController::renameRecord, UserActionRename);
}

void IZelkoGUIController::sl_editBookmarks()
{
    run(true, &IZelkoGUIController::isEditBookmarksAvailable, &IZelkoGUIController::editBookmarks, UserActionBookmarks);
}

void IZelkoGUIController::sl_copyRecord()
{
    run(true, &IZelkoGUIController::isCopyRecordAvailable, &IZelkoGUIController::copyRecord, UserActionCopy);
}

void IZelkoGUIController::sl_editRecording()
{
    run(true, &IZelkoGUIController::isEditRecordAvailable, &IZelkoGUIController::editRecord, UserActionEdit);
}

void IZelkoGUIController::sl_spectrumOverview()
{
    run(true, &IZelkoGUIController::isSpectrumOverviewAvailable, &IZelkoGUIController::showSpectrumOverview,
        UserActionOverview);
}

void IZelkoGUIController::sl_downloadRecord()
{
    const QStringList selected = d->selected;
    if (selected.isEmpty() || !isDownloadRecordAvailable(selected) || !UserRights::ArchivingAllowed()) {
        return;
    }
    runOn(selected, UserActionDownload, [this](const QStringList& ids) { downloadRecord(ids); });
}

void IZelkoGUIController::sl_toggleDeletable()
{
    const QStringList selected = d->selected;
    if (selected.isEmpty() || !isToggleDeletableAvailable(selected)) {
        return;
    }
    runOn(selected, UserActionDeletable, [this](const QStringList& ids) { toggleDeletable(ids); });
}

void IZelkoGUIController::sl_deleteRecord()
{
    const QStringList deletable = getDeletableRecordings(d->selected);
    if (deletable.isEmpty() || !isDeleteRecordAvailable(deletable)) {
        return;
    }
    if (isDeleteConfirmed(deletable)) {
        runOn(deletable, UserActionDelete, [this](const QStringList& ids) { deleteRecording(ids, QString()); });
    }
}

// An ID counts on its device only, and the user has confirmed what was to be seen when the box opened: the delete of
// one device must not reach another one that became the active one meanwhile, or one that is not there any more.
bool IZelkoGUIController::isDeleteConfirmed(const QStringList& deletable)
{
    const QPointer<IZelkoGUIController> self(this);
    const auto place = [this] { return QStringList{activeDevice(), activeDeviceID(), activeSubsystem()}; };
    const QStringList before = place();
    if (!isDeleteAnsweredByYes(deletable) || !self) {
        return false;
    }
    const bool isSamePlace = place() == before;
    if (isSamePlace && isDeleteRecordAvailable(deletable)) {
        return true;
    }
    tellUser(isSamePlace ? tr("Nothing was deleted: the records cannot be deleted any more.")
                         : tr("Nothing was deleted: the device has changed while the question was open."));
    return false;
}

bool IZelkoGUIController::isDeleteAnsweredByYes(const QStringList& deletable)
{
    const QString text = deletable.size() == 1 ? tr("Really delete record with ID\n'%1'?").arg(deletable.first())
                                               : tr("Do you really want to delete the SELECTED records?");
    const QMessageBox::StandardButtons buttons = QMessageBox::Yes | QMessageBox::No;
    return guiHelper::warn(dialogParent(), tr("Delete Record"), text, buttons) == QMessageBox::Yes;
}

void IZelkoGUIController::sl_resyncRecordList()
{
    if (isResynchRecordListAvailable()) {
        resynchRecordList();
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with these types.
void IZelkoGUIController::sl_resyncRecord(QString recordID, QString deviceID)
{
    if (isResynchRecordAvailable(recordID, deviceID)) {
        resynchRecord(recordID, deviceID);
    }
}

} // namespace ZelkoGUI
