#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include "deletablestate_p.h"
#include "devicesearch_p.h"
#include "devicevalues_p.h"
#include "recorddialogs_p.h"
#include "requestfailure_p.h"
#include "waitcursor_p.h"

#include <host/activedevicecontrol.h>
#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <overviewdisplay/spectrumoverviewwidget.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/data/recordstate.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/service/errordescriptor.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>

#include <QHash>
#include <QInputDialog>
#include <QPointer>

namespace ZelkoGUI {

namespace names = zelko::names;
using Record = ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::AbstractServerConnectionData;

namespace {

void trace(const QString& text, int line)
{
    _Q_Trace(text, "zelkoserverguicontroller", line);
}

void traceError(const char* text, int line)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
        trace(QString::fromLatin1(text), line);
    }
}

} // namespace

struct ZelkoServerGUIController::Private
{
    Private(ZelkoServerGUIController* owner, std::shared_ptr<ZelkoGuiToServerCorbaHandler> toServer, QString ownName)
        : connectionData(toServer->GetServerConnectionData())
        , handler(std::move(toServer))
        , adminHandler(handler)
        , name(std::move(ownName))
        , recordModel(new RecordItemMapModel(owner))
        , values(owner)
        , search(owner)
        , dialogs(owner)
    {}

    void lookUp();
    bool isComplete() const { return recordModel->connected() && values.areComplete(); }
    std::shared_ptr<Record> record(const QString& id) const { return recordModel->getRecordData(id); }

    const std::shared_ptr<AbstractServerConnectionData> connectionData;
    const std::shared_ptr<ZelkoGuiToServerCorbaHandler> handler;
    GuiToServerAdminCorbaHandler adminHandler;
    const QString name;
    QString activeDevice;
    QString deviceBasePath;
    RecordItemMapModel* const recordModel;
    DeviceValues values;
    DeviceSearch search;
    RecordDialogs dialogs;
    QHash<QString, bool> pendingFlags;
    std::shared_ptr<ErrorDescriptor> errorDescriptor;
    bool offersOverview = true;
    bool connected = false;
};

// A map that was found stays: to connect the model a second time would take all rows from the list and bring them
// again.
void ZelkoServerGUIController::Private::lookUp()
{
    if (!recordModel->connected()) {
        recordModel->connect(names::recordMapPath(deviceBasePath));
    }
    values.lookUp(deviceBasePath, connectionData->GetBasePath(activeDevice));
}

ZelkoServerGUIController::ZelkoServerGUIController(const std::shared_ptr<ZelkoGuiToServerCorbaHandler>& handler,
                                                   ActiveDeviceControl* control, const QString& name,
                                                   const QFlags<enUserAction>& userActions, QObject* parent)
    : IZelkoGUIController(userActions, parent)
    , d(std::make_unique<Private>(this, handler, name))
{
    observeRecords();
    if (control) {
        connect(control, &ActiveDeviceControl::si_activeDeviceChanged, this,
                &ZelkoServerGUIController::sl_activeDeviceChanged);
        connect(control, &ActiveDeviceControl::si_activeDeviceDeleted, this,
                &ZelkoServerGUIController::sl_activeDeviceDeleted);
    }
    connect(d->connectionData.get(), &AbstractServerConnectionData::si_allTicsConnected, this,
            &ZelkoServerGUIController::sl_connectionChanged);
    connect(this, &IZelkoGUIController::si_activeDeviceChanged, &d->adminHandler,
            &GuiToServerAdminCorbaHandler::sl_activeDeviceChanged);
    connect(&d->search.timer(), &QTimer::timeout, this, &ZelkoServerGUIController::sl_connectVT);
    resetAll(true);
}

ZelkoServerGUIController::ZelkoServerGUIController(const std::shared_ptr<ZelkoGuiToServerCorbaHandler>& handler,
                                                   const QFlags<enUserAction>& userActions, QObject* parent)
    : ZelkoServerGUIController(handler, nullptr, QString(), UserActions(userActions).setFlag(UserActionOverview, false),
                               parent)
{
    d->offersOverview = false;
}

ZelkoServerGUIController::~ZelkoServerGUIController()
{
    resetAll(true);
}

void ZelkoServerGUIController::setUserActions(const QFlags<enUserAction>& userActions)
{
    UserActions offered(userActions);
    offered.setFlag(UserActionOverview, d->offersOverview && userActions.testFlag(UserActionOverview));
    IZelkoGUIController::setUserActions(offered);
}

void ZelkoServerGUIController::observeRecords()
{
    const RecordItemMapModel* const model = d->recordModel;
    connect(model, &QAbstractItemModel::rowsInserted, this, &ZelkoServerGUIController::sl_updateLoadProgress);
    connect(model, &RecordItemMapModel::si_allRecordsChanged, this, &ZelkoServerGUIController::sl_updateLoadProgress);
    connect(model, &RecordItemMapModel::si_recordChanged, this, &ZelkoServerGUIController::sl_recordDataChanged);
    connect(model, &RecordItemMapModel::si_allRecordsChanged, this, &ZelkoServerGUIController::sl_allRecordsChanged);
}

bool ZelkoServerGUIController::isConnected() const
{
    return d->connected;
}

bool ZelkoServerGUIController::isLoadedCompletely() const
{
    return d->connected && d->values.loadedCompletely && d->values.loadedCompletely->GetValue();
}

ZelkoCommon::AbstractRecordListModel* ZelkoServerGUIController::recordListModel() const
{
    return d->recordModel;
}

QString ZelkoServerGUIController::activeDevice() const
{
    return d->activeDevice;
}

QString ZelkoServerGUIController::activeSubsystem() const
{
    return d->handler->GetCurrentSubsystem();
}

QString ZelkoServerGUIController::deviceOr(const QString& deviceID) const
{
    return deviceID.isEmpty() ? d->activeDevice : deviceID;
}

// Connection

void ZelkoServerGUIController::sl_activeDeviceChanged(const QString& deviceID, const QString&)
{
    d->activeDevice = deviceID;
    announceDevice();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with this type.
void ZelkoServerGUIController::sl_connectionChanged(QString subSystem)
{
    if (activeSubsystem() == subSystem && d->handler->IsConnected()) {
        announceDevice();
    }
}

void ZelkoServerGUIController::announceDevice()
{
    d->errorDescriptor = std::make_shared<ErrorDescriptor>(names::errorDescriptorPath(activeSubsystem()));
    connectVT();
    Q_EMIT si_activeDeviceChanged(activeDevice(), activeSubsystem());
}

// The path goes with the device, or the same device would not be connected to when it is configured again.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with these types.
void ZelkoServerGUIController::sl_activeDeviceDeleted(QString deviceID, QString subSystem)
{
    if (deviceID == activeDevice() && subSystem == activeSubsystem()) {
        d->activeDevice.clear();
        d->deviceBasePath.clear();
        resetAll(true);
        // Who hears of it may have made another device the active one, whose search the rest of the reset has ended.
        if (!d->activeDevice.isEmpty() && !d->connected) {
            d->search.begin(false);
        }
    }
}

// The active device is read anew after the reset: who hears of that may have made another one active, or none.
void ZelkoServerGUIController::connectVT()
{
    if (!d->activeDevice.isEmpty() && d->connectionData->GetDeviceBasePath(d->activeDevice) == d->deviceBasePath) {
        return;
    }
    resetAll(false);
    d->deviceBasePath.clear();
    if (!d->activeDevice.isEmpty()) {
        d->deviceBasePath = d->connectionData->GetDeviceBasePath(d->activeDevice);
        d->search.begin(false);
    }
}

void ZelkoServerGUIController::sl_connectVT()
{
    if (!d->connected) {
        d->lookUp();
    }
    if (!d->isComplete()) {
        d->search.stillMisses(d->deviceBasePath);
        return;
    }
    const std::shared_ptr<IVtClient> client =
        d->connectionData->getVtClient(activeSubsystem(), ZelkoCommon::ConnectionType::Client);
    if (!client) {
        return;
    }
    d->values.addCommandsTo(*client);
    d->search.end();
    sl_selectedRecordsChanged(selectedRecords());
    sl_updateLoadProgress();
    // Who hears of these may have made another device the active one.
    if (d->isComplete()) {
        d->connected = true;
        Q_EMIT si_connectionEstablished(activeDevice());
    }
}

void ZelkoServerGUIController::resetAll(bool notify)
{
    d->connected = false;
    d->pendingFlags.clear();
    d->recordModel->disconnect();
    d->values.letGo();
    d->search.end();
    sl_selectedRecordsChanged(QStringList());
    Q_EMIT si_loadProgress(0, 0);
    if (notify) {
        Q_EMIT si_activeDeviceChanged(activeDevice(), activeSubsystem());
    }
    d->dialogs.reset();
}

// Changes of the device's values

void ZelkoServerGUIController::Update(Observable* source, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged) {
        contentChanged(source);
        return;
    }
    const auto* const value = code == TChangeCode::StateChanged ? dynamic_cast<const ValueBase*>(source) : nullptr;
    if (value && value->GetState() == TValueState::Deleted) {
        valueDeleted(value->GetName());
    }
}

void ZelkoServerGUIController::contentChanged(const Observable* source)
{
    if (source == d->values.loadCount.get() || source == d->values.loadedCompletely.get()) {
        sl_updateLoadProgress();
    } else if (source == d->values.extended.get() || source == d->values.ipAddress.get()) {
        sl_selectedRecordsChanged(selectedRecords());
    }
}

// The handle on the value is null only after this notification, so what rests on it is looked at later: at the
// selection of that moment, which may be another one by then.
void ZelkoServerGUIController::valueDeleted(const QString& name)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        trace(QStringLiteral("ZelkoServerGUIController: VT element <%1> has been deleted.").arg(name), __LINE__);
    }
    d->connected = false;
    QMetaObject::invokeMethod(
        this, [this] { searchAgain(); }, Qt::QueuedConnection);
}

// The values of a lost connection come back under the path that they had, as new ones. That path is no news to
// connectVT, which would leave the controller with nothing for good.
void ZelkoServerGUIController::searchAgain()
{
    sl_selectedRecordsChanged(selectedRecords());
    if (d->deviceBasePath.isEmpty() || d->search.isOn()) {
        return;
    }
    sl_updateLoadProgress();
    d->search.begin(true);
}

void ZelkoServerGUIController::sl_updateLoadProgress()
{
    const int count = d->recordModel->rowCount();
    const int total = d->values.loadCount ? d->values.loadCount->GetValue() : 0;
    if (!d->values.loadCount || !d->values.loadedCompletely || d->values.loadedCompletely->GetValue() ||
        count >= total) {
        Q_EMIT si_loadProgress(0, 0);
    } else {
        Q_EMIT si_loadProgress(count, total);
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the applications' connections name the slot with this type.
void ZelkoServerGUIController::sl_recordDataChanged(QString recordID)
{
    if (selectedRecords().contains(recordID)) {
        sl_selectedRecordsChanged(selectedRecords());
    }
    const auto pending = d->pendingFlags.constFind(recordID);
    if (pending != d->pendingFlags.constEnd()) {
        const bool flag = *pending;
        d->pendingFlags.erase(pending);
        sl_setDeletableFlag(recordID, flag, false);
    }
}

void ZelkoServerGUIController::sl_allRecordsChanged()
{
    if (!selectedRecords().isEmpty()) {
        sl_selectedRecordsChanged(selectedRecords());
    }
}

// Commands of the device

bool ZelkoServerGUIController::isResetAvailable(const QString& recordID) const
{
    return d->values.recordIdle && d->recordModel->hasRecord(recordID);
}

void ZelkoServerGUIController::resetRecord(const QString& recordID)
{
    DeviceValues::write(d->values.recordIdle, recordID);
}

bool ZelkoServerGUIController::isDeleteRecordAvailable(const QStringList& recordIDs) const
{
    return d->values.deleteList && !recordIDs.isEmpty();
}

void ZelkoServerGUIController::deleteRecording(const QStringList& recordIDs, const QString&)
{
    DeviceValues::write(d->values.deleteList, recordIDs.join(names::idSeparator));
}

bool ZelkoServerGUIController::isResynchRecordListAvailable() const
{
    return static_cast<bool>(d->values.synchronize);
}

void ZelkoServerGUIController::resynchRecordList()
{
    if (d->values.synchronize) {
        d->values.synchronize->HasChanged(TChangeCode::ValueChanged, nullptr);
    }
}

bool ZelkoServerGUIController::isResynchRecordAvailable(const QString&, const QString& deviceID) const
{
    return !deviceID.isEmpty() || d->values.syncOneRecord;
}

void ZelkoServerGUIController::resynchRecord(const QString& recordID, const QString& deviceID)
{
    if (deviceOr(deviceID) == activeDevice()) {
        DeviceValues::write(d->values.syncOneRecord, recordID);
    } else {
        const WaitCursor waiting;
        d->adminHandler.requestRecordDataDetail(deviceID, recordID);
    }
}

// Transfer

bool ZelkoServerGUIController::isDownloadRecordAvailable(const QStringList&) const
{
    return static_cast<bool>(d->values.ipAddress);
}

void ZelkoServerGUIController::downloadRecord(const QStringList& recordIDs)
{
    Q_EMIT si_downloadRecordings(recordIDs, d->values.address(), notDeletable(*d->recordModel, recordIDs));
}

// Windows on a record

bool ZelkoServerGUIController::canBeAskedFor(const QString& recordID) const
{
    return d->recordModel->hasRecord(recordID) && isResynchRecordAvailable(recordID, QString());
}

bool ZelkoServerGUIController::isHistoryAvailable(const QString& recordID) const
{
    return canBeAskedFor(recordID);
}

void ZelkoServerGUIController::showHistory(const QString& recordID)
{
    resynchRecord(recordID, QString());
    d->dialogs.showHistory(recordID);
}

bool ZelkoServerGUIController::isEditBookmarksAvailable(const QString& recordID) const
{
    return canBeAskedFor(recordID);
}

void ZelkoServerGUIController::editBookmarks(const QString& recordID)
{
    resynchRecord(recordID, QString());
    d->dialogs.showBookmarks(recordID);
}

bool ZelkoServerGUIController::isCopyRecordAvailable(const QString& recordID) const
{
    const auto record = d->record(recordID);
    return record && canBeAskedFor(recordID) && record->GetDataRate() != Record::DataRate::RawStream;
}

void ZelkoServerGUIController::copyRecord(const QString& recordID)
{
    resynchRecord(recordID, QString());
    d->dialogs.showCopy(recordID);
}

bool ZelkoServerGUIController::isEditRecordAvailable(const QString& recordID) const
{
    return isCopyRecordAvailable(recordID);
}

void ZelkoServerGUIController::editRecord(const QString& recordID)
{
    resynchRecord(recordID, QString());
    d->dialogs.showEdit(recordID);
}

bool ZelkoServerGUIController::isSpectrumOverviewAvailable(const QString& recordID) const
{
    const auto record = d->record(recordID);
    return d->values.ipAddress && d->values.isExtended() && record && canBeAskedFor(recordID) && isFinished(*record) &&
           !isBeingRecorded(*record) && hasSpectrum(*record);
}

void ZelkoServerGUIController::showSpectrumOverview(const QString& recordID)
{
    resynchRecord(recordID, QString());
    openSpectrumOverview(recordID);
}

// Several of them can be compared, so none is kept. The window may outlive this controller, which it is no child of.
void ZelkoServerGUIController::openSpectrumOverview(const QString& recordID)
{
    using Overview = SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
    using Self = ZelkoServerGUIController;
    auto* const overview = new Overview(d->connectionData->GetConfiguration()->cfgPath());
    connect(overview, &Overview::si_resyncRecord, this, &Self::sl_resyncRecord);
    connect(overview, &Overview::si_copyRecord, this,
            qOverload<QString, quint64, quint64, QString, QString>(&Self::sl_copyRecord));
    connect(overview, &Overview::si_setBookmarkEntries, this, &Self::sl_setBookmarkEntries);
    connect(overview, &Overview::si_overviewSpectrumStreamed, this, &Self::sl_overviewSpectrumStreamed);
    connect(overview, &Overview::si_errorText, this, &Self::sl_errorText);
    overview->setAttribute(Qt::WA_DeleteOnClose);
    overview->setRecord(activeDevice(), recordID, recordListModel(), d->values.address());
    overview->show();
}

// Requests to the recorder's service

bool ZelkoServerGUIController::isRenameRecordAvailable(const QString& recordID) const
{
    const auto record = d->record(recordID);
    return d->values.isExtended() && record && isFinished(*record);
}

void ZelkoServerGUIController::renameRecord(const QString& recordID)
{
    try {
        renameAsked(recordID);
    } catch (...) {
        traceError("Exception in NewRecordList::SlotSetRecordingName", __LINE__);
    }
}

// The device and the controller may be others, or none, when the user is done with the dialog. In another sub system
// the device of that name is another one.
void ZelkoServerGUIController::renameAsked(const QString& recordID)
{
    const auto record = d->record(recordID);
    if (!record) {
        return;
    }
    const QString device = activeDevice();
    const QString subSystem = activeSubsystem();
    const QPointer<ZelkoServerGUIController> self(this);
    bool confirmed = false;
    const QString name =
        QInputDialog::getText(dialogParent(), tr("Rename Record"), tr("New record name:"), QLineEdit::Normal,
                              record->GetRecordName(), &confirmed, Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    if (!confirmed || !self) {
        return;
    }
    if (activeSubsystem() != subSystem) {
        ErrorHandler::Instance()->ShowMessage(
            tr("The record was not renamed: the sub system has changed while the question was open."));
        return;
    }
    const auto code = askWaiting([&] { return d->adminHandler.SetRecordComment(device, recordID, name); });
    showFailure(code, d->handler->service());
}

bool ZelkoServerGUIController::isToggleDeletableAvailable(const QStringList& recordIDs) const
{
    return deletableState(*d->recordModel, recordIDs) != DeletableState::NotToggled;
}

unsigned long ZelkoServerGUIController::setDeletableFlags(const QStringList& recordIDs, bool flag)
{
    unsigned long code = 0;
    for (auto id = recordIDs.begin(); code == 0 && id != recordIDs.end(); ++id) {
        code = d->adminHandler.SetRecordDeletableFlag(activeDevice(), *id, flag);
    }
    return code;
}

void ZelkoServerGUIController::toggleDeletable(const QStringList& recordIDs)
{
    try {
        const bool flag = deletableState(*d->recordModel, recordIDs) == DeletableState::NoneDeletable;
        const auto code = askWaiting([&] { return setDeletableFlags(recordIDs, flag); });
        showFailure(code, d->handler->service());
    } catch (...) {
        traceError("Exception in NewRecordList::toggleDeletable", __LINE__);
    }
}

void ZelkoServerGUIController::sl_copyRecord(QString recordId, quint64 start, quint64 stop, QString recordName,
                                             QString deviceID)
{
    const WaitCursor waiting;
    d->adminHandler.copyRecord(deviceOr(deviceID), recordId, static_cast<qint64>(start), static_cast<qint64>(stop),
                               recordName);
}

void ZelkoServerGUIController::sl_addHistoryEntry(QString recordID, QString entry)
{
    const WaitCursor waiting;
    d->adminHandler.addHistory(activeDevice(), recordID, entry);
}

void ZelkoServerGUIController::sl_deleteHistoryEntry(QString recordID, quint64 timestamp)
{
    const WaitCursor waiting;
    d->adminHandler.removeHistoryEntry(activeDevice(), recordID, static_cast<qint64>(timestamp));
}

void ZelkoServerGUIController::sl_setBookmarkEntries(QString recordId, QVector<ZELKO_XML::BookmarkEntry> bookmarks,
                                                     QString deviceID)
{
    const WaitCursor waiting;
    d->adminHandler.addBookmarkEntries(deviceOr(deviceID), recordId, bookmarks);
}

// A new copy of a record, for instance, can be flagged before it has arrived.
void ZelkoServerGUIController::sl_setDeletableFlag(QString recordID, bool flag, bool delayed)
{
    if (delayed && !d->recordModel->hasRecord(recordID)) {
        d->pendingFlags.insert(recordID, flag);
    } else {
        const WaitCursor waiting;
        d->adminHandler.SetRecordDeletableFlag(activeDevice(), recordID, flag);
    }
}

void ZelkoServerGUIController::sl_overviewSpectrumStreamed(QString recordID, qint64 start, qint64 stop, uint resolution,
                                                           ulong fftLength, ZelkoDataTypes::eFFT_Window windowType,
                                                           QString ipAddress, uint port, QString deviceID)
{
    const WaitCursor waiting;
    d->adminHandler.overviewSpectrumStreamed(deviceOr(deviceID), recordID, start, stop, resolution, fftLength,
                                             windowType, ipAddress, port);
}

void ZelkoServerGUIController::sl_errorText(QString text, QString description)
{
    try {
        if (const auto descriptor = d->errorDescriptor) { // a copy: whoever shows the text may end this controller
            descriptor->WriteCommandResponse(ErrorClassifier::Error, text, description);
        }
    } catch (...) {
        traceError("Exception in ZelkoServerGUIController::sl_errorText", __LINE__);
    }
}

} // namespace ZelkoGUI
