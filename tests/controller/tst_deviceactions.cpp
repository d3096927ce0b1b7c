#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "dialoganswers.h"
#include "loopbackservice.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "testrecords.h"
#include "tracemask.h"

#include <resources/zelkoicons.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QAction>
#include <QTranslator>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoCommon::ServiceStatus;
using ZelkoConsole::DialogAnswer;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

std::shared_ptr<Record> makeWithSpectrum(const QString& id, bool deletable)
{
    auto record = makeDeletable(id, deletable);
    record->SetDataFormat(Record::DataFormat::IQ16);
    return record;
}

QString textOf(ServiceStatus status)
{
    return ZelkoCommon::ToolbarHelper::Instance()->ErrorId2Text(ZelkoCommon::statusCode(status), 1);
}

/// Fails at the question for a name, as a part that an application supplies may.
class FailingTranslator final : public QTranslator
{
public:
    QString translate(const char*, const char* text, const char*, int) const override
    {
        if (qstrcmp(text, "New record name:") == 0) {
            throw std::runtime_error("no translation");
        }
        return {};
    }
    bool isEmpty() const override { return false; }
};

} // namespace

/// What the actions and slots of a controller do to its device: what is written to the tree, and what is asked of the
/// recorder's service.
class DeviceActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        registerZelkoIcons();
        m_service.emplace();
    }
    void cleanupTestCase() { m_service.reset(); }
    void init();
    void cleanup();

    // Commands
    void aDeleteIsWrittenAndChangesNothingByItself();
    void theSameDeleteTwiceReachesTheDeviceTwice();
    void aDeleteIsOfTheDeviceItBeganOn();
    void aResetIsWritten();
    void theListIsAskedForEachTime();
    void aRecordOfTheActiveDeviceIsAskedForOnTheTree_data();
    void aRecordOfTheActiveDeviceIsAskedForOnTheTree();
    void aRecordOfAnotherDeviceIsAskedForAtTheService();
    void withoutADeviceNothingIsAskedFor();
    void windowsHaveTheirRecordAskedFor_data();
    void windowsHaveTheirRecordAskedFor();
    void aDownloadIsTold();

    // Rename
    void aRenameAsksForTheName();
    void aRenameThatIsCancelledChangesNothing();
    void aRenameThatFailsIsTold();
    void anExceptionEndsARenameWithATrace();
    void aRenameIsOfTheDeviceItBeganOn();
    void aRenameDoesNotFollowIntoAnotherSubSystem();
    void anExceptionBeforeTheQuestionEndsARenameWithATrace();
    void exceptionsAreNotTracedIfErrorsAreNotWanted();
    void theCursorShowsTheWaitAndIsBackBeforeAFailureIsTold_data();
    void theCursorShowsTheWaitAndIsBackBeforeAFailureIsTold();
    void theControllerMayGoWhileANameIsTyped();

    // Deletable flag
    void theFlagsOfAllAreTurned_data();
    void theFlagsOfAllAreTurned();
    void theFirstFlagThatFailsIsToldAndEndsIt();
    void anExceptionEndsAToggleWithATrace();
    void theControllerMayGoWhileAFailureIsTold();
    void aDelayedFlagWaitsForItsRecord();
    void aDelayedFlagOfAKnownRecordIsSentAtOnce();
    void aFlagThatIsNotDelayedIsSentAtOnce();
    void aDelayedFlagIsForgottenWithItsDevice();

private:
    using Trigger = std::function<void(ZelkoServerGUIController&)>;

    QStringList calls() const { return m_service->peer.calls(); }
    void trigger(IZelkoGUIController::enUserAction action) { m_controller->recordAction(action)->trigger(); }
    void deleteSelected();
    void rename(const std::function<void(QInputDialog*)>& answer);

    const OwnConfiguration m_configuration;
    std::optional<LoopbackService> m_service;
    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::optional<ControllerLog> m_log;
    std::optional<ShownMessages> m_messages;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

Q_DECLARE_METATYPE(std::function<void(ZelkoServerGUIController&)>)

void DeviceActionsTest::init()
{
    m_site.emplace(m_service->proxy.port());
    m_site->handler->setLimit(std::chrono::seconds(60)); // a loaded machine is no failure
    m_messages.emplace();
    m_branch.emplace(*m_site->data, u"D1"_s);
    m_branch->putAll();
    for (const auto& record :
         {makeWithSpectrum(u"P"_s, false), makeDeletable(u"Q"_s, false), makeDeletable(u"R"_s, false),
          makeDeletable(u"D"_s, true), makeDeletable(u"E"_s, true)}) {
        m_branch->setRecord(record);
    }
    m_controller = std::make_unique<ZelkoServerGUIController>(m_site->handler, nullptr, QString(),
                                                              IZelkoGUIController::UserActions(QFlag(1023)), nullptr);
    m_log.emplace(m_controller.get());
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    m_log->take();
    m_site->client->take();
    m_service->peer.forgetCalls();
}

void DeviceActionsTest::cleanup()
{
    for (const char* const operation : {"setRecordComment", "setRecordDeletableFlag", "copyRecord"}) {
        m_service->peer.setAnswer(QLatin1String(operation), 0);
        m_service->peer.setAction(QLatin1String(operation), {});
    }
    m_controller.reset();
    m_log.reset();
    m_branch.reset();
    m_messages.reset();
    m_site.reset();
}

// Commands

void DeviceActionsTest::deleteSelected()
{
    const DialogAnswer yes(answers::click(QMessageBox::Yes));
    trigger(IZelkoGUIController::UserActionDelete);
    QVERIFY(yes.wasGiven());
}

void DeviceActionsTest::aDeleteIsWrittenAndChangesNothingByItself()
{
    m_controller->sl_selectedRecordsChanged({u"E"_s, u"P"_s, u"D"_s});
    m_log->take();
    deleteSelected();
    QCOMPARE(m_site->client->take(), QStringList{u"DeleteRecordingList=E@D"_s});
    QCOMPARE(m_log->take(), QStringList{u"action 2 E,D"_s});
    QCOMPARE(m_controller->recordListModel()->rowCount(), 5);
    QCOMPARE(calls(), QStringList());
    m_branch->map()->EraseAt(u"E"_s, nullptr);
    QVERIFY(!m_controller->recordListModel()->hasRecord(u"E"_s));
}

void DeviceActionsTest::theSameDeleteTwiceReachesTheDeviceTwice()
{
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    deleteSelected();
    deleteSelected();
    QCOMPARE(m_site->client->take(), (QStringList{u"DeleteRecordingList=D"_s, u"DeleteRecordingList=D"_s}));
}

// The other device is ready to take the command by the time of the answer.
void DeviceActionsTest::aDeleteIsOfTheDeviceItBeganOn()
{
    DeviceBranch other(*m_site->data, u"D2"_s);
    other.putAll();
    other.setRecord(makeDeletable(u"D"_s, true));
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    m_log->take();
    const DialogAnswer yes([this](QWidget* box) {
        m_controller->sl_activeDeviceChanged(u"D2"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
        m_site->client->take();
        answers::clickOn(box, QMessageBox::Yes);
    });
    trigger(IZelkoGUIController::UserActionDelete);
    QVERIFY(yes.wasGiven());
    QCOMPARE(m_controller->activeDevice(), u"D2"_s);
    QCOMPARE(other.value<QString>("DeleteRecordingList")->GetValue(), QString());
    QCOMPARE(m_site->client->take(), QStringList());
    QCOMPARE(m_log->take().filter(u"action"_s), QStringList());
    QCOMPARE(m_messages->texts(),
             QStringList{u"Nothing was deleted: the device has changed while the question was open."_s});
}

void DeviceActionsTest::aResetIsWritten()
{
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    m_log->take();
    trigger(IZelkoGUIController::UserActionReset);
    trigger(IZelkoGUIController::UserActionReset);
    QCOMPARE(m_site->client->take(), (QStringList{u"SetRecordIdle=P"_s, u"SetRecordIdle=P"_s}));
    QCOMPARE(m_log->take(), (QStringList{u"action 16 P"_s, u"action 16 P"_s}));
}

void DeviceActionsTest::theListIsAskedForEachTime()
{
    m_controller->sl_resyncRecordList();
    m_controller->sl_resyncRecordList();
    QCOMPARE(m_site->client->take(), (QStringList{u"Synchronize=false"_s, u"Synchronize=false"_s}));
    QCOMPARE(m_log->take(), QStringList());
}

void DeviceActionsTest::aRecordOfTheActiveDeviceIsAskedForOnTheTree_data()
{
    QTest::addColumn<QString>("device");
    QTest::newRow("no device given") << QString();
    QTest::newRow("the active device") << u"D1"_s;
}

void DeviceActionsTest::aRecordOfTheActiveDeviceIsAskedForOnTheTree()
{
    QFETCH(const QString, device);
    m_controller->sl_resyncRecord(u"P"_s, device);
    m_controller->sl_resyncRecord(u"P"_s, device);
    QCOMPARE(m_site->client->take(), (QStringList{u"SyncOneRecord=P"_s, u"SyncOneRecord=P"_s}));
    QCOMPARE(calls(), QStringList());
}

void DeviceActionsTest::aRecordOfAnotherDeviceIsAskedForAtTheService()
{
    m_controller->sl_resyncRecord(u"P"_s, u"D2"_s);
    QCOMPARE(m_site->client->take(), QStringList());
    QCOMPARE(m_branch->value<QString>("SyncOneRecord")->GetValue(), QString());
    QCOMPARE(calls(), QStringList{u"requestRecordDataDetail D2 P"_s});
}

void DeviceActionsTest::withoutADeviceNothingIsAskedFor()
{
    m_controller->sl_activeDeviceChanged(QString());
    m_controller->sl_resyncRecordList();
    m_controller->sl_resyncRecord(u"P"_s);
    QCOMPARE(m_site->client->take(), QStringList());
    QCOMPARE(calls(), QStringList());
}

void DeviceActionsTest::windowsHaveTheirRecordAskedFor_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("history") << 256;
    QTest::newRow("bookmarks") << 64;
    QTest::newRow("copy") << 1;
    QTest::newRow("edit") << 8;
    QTest::newRow("spectrum overview") << 512;
}

void DeviceActionsTest::windowsHaveTheirRecordAskedFor()
{
    QFETCH(const int, action);
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    m_log->take();
    trigger(static_cast<IZelkoGUIController::enUserAction>(action));
    QCOMPARE(m_site->client->take(), QStringList{u"SyncOneRecord=P"_s});
    QCOMPARE(m_log->take(), QStringList{u"action %1 P"_s.arg(action)});
}

void DeviceActionsTest::aDownloadIsTold()
{
    m_controller->sl_selectedRecordsChanged({u"E"_s, u"Q"_s, u"X"_s, u"P"_s});
    m_log->take();
    trigger(IZelkoGUIController::UserActionDownload);
    QCOMPARE(m_log->take(), (QStringList{u"download E,Q,X,P from 192.0.2.7 protected Q,P"_s, u"action 4 E,Q,X,P"_s}));
}

// Rename

void DeviceActionsTest::rename(const std::function<void(QInputDialog*)>& answer)
{
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    m_log->take();
    const DialogAnswer given([&](QWidget* window) {
        auto* const dialog = qobject_cast<QInputDialog*>(window);
        QVERIFY(dialog);
        answer(dialog);
    });
    trigger(IZelkoGUIController::UserActionRename);
    QVERIFY(given.wasGiven());
}

void DeviceActionsTest::aRenameAsksForTheName()
{
    QWidget parent;
    m_controller->setDialogParent(&parent);
    rename([&](QInputDialog* dialog) {
        QCOMPARE(dialog->windowTitle(), u"Rename Record"_s);
        QCOMPARE(dialog->labelText(), u"New record name:"_s);
        QCOMPARE(dialog->textEchoMode(), QLineEdit::Normal);
        QCOMPARE(dialog->textValue(), u"name of P"_s);
        QCOMPARE(dialog->parentWidget(), &parent);
        QCOMPARE(dialog->windowFlags() & ~Qt::WindowFlags(Qt::WindowType_Mask), Qt::WindowFlags(12288));
        answers::typeInto(dialog, u"beacon 7"_s);
        answers::accept(dialog);
    });
    QCOMPARE(calls(), QStringList{u"setRecordComment D1 P beacon 7"_s});
    QCOMPARE(m_messages->texts(), QStringList());
    QCOMPARE(m_log->take(), QStringList{u"action 32 P"_s});
    QVERIFY(m_service->peer.wasCalledOverNetwork());
}

void DeviceActionsTest::aRenameThatIsCancelledChangesNothing()
{
    rename([](QInputDialog* dialog) {
        answers::typeInto(dialog, u"beacon 7"_s);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    QCOMPARE(calls(), QStringList());
    QCOMPARE(m_messages->texts(), QStringList());
}

void DeviceActionsTest::aRenameThatFailsIsTold()
{
    m_service->peer.setAnswer(u"setRecordComment"_s, ZelkoCommon::statusCode(ServiceStatus::NotAllowed));
    rename(answers::accept);
    QCOMPARE(calls(), QStringList{u"setRecordComment D1 P name of P"_s});
    QVERIFY(!textOf(ServiceStatus::NotAllowed).isEmpty());
    QCOMPARE(m_messages->texts(), QStringList{textOf(ServiceStatus::NotAllowed)});
}

void DeviceActionsTest::anExceptionEndsARenameWithATrace()
{
    const TraceTexts traces;
    ErrorHandler::Instance()->SetMessageSink([](const QString&) { throw std::runtime_error("no window"); });
    m_service->peer.setAnswer(u"setRecordComment"_s, ZelkoCommon::statusCode(ServiceStatus::NotAllowed));
    rename(answers::accept);
    QCOMPARE(traces.withSources(),
             QStringList{u"zelkoserverguicontroller: Exception in NewRecordList::SlotSetRecordingName"_s});
    QCOMPARE(m_log->take(), QStringList{u"action 32 P"_s});
}

void DeviceActionsTest::aRenameIsOfTheDeviceItBeganOn()
{
    rename([this](QInputDialog* dialog) {
        m_controller->sl_activeDeviceChanged(u"D2"_s);
        answers::accept(dialog);
    });
    QCOMPARE(calls(), QStringList{u"setRecordComment D1 P name of P"_s});
}

void DeviceActionsTest::aRenameDoesNotFollowIntoAnotherSubSystem()
{
    rename([this](QInputDialog* dialog) {
        m_site->data->configuration->SetCurrentSubSystem(u"south"_s);
        answers::accept(dialog);
    });
    QCOMPARE(calls(), QStringList());
    QCOMPARE(m_messages->texts(),
             QStringList{u"The record was not renamed: the sub system has changed while the question was open."_s});
}

void DeviceActionsTest::anExceptionBeforeTheQuestionEndsARenameWithATrace()
{
    const TraceTexts traces;
    FailingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    trigger(IZelkoGUIController::UserActionRename);
    QCOMPARE(traces.withSources(),
             QStringList{u"zelkoserverguicontroller: Exception in NewRecordList::SlotSetRecordingName"_s});
    QCOMPARE(calls(), QStringList());
}

void DeviceActionsTest::exceptionsAreNotTracedIfErrorsAreNotWanted()
{
    const TraceTexts traces;
    const TraceMask warningsOnly(ErrorHandler::TraceWarning);
    ErrorHandler::Instance()->SetMessageSink([](const QString&) { throw 1; });
    const unsigned long refusal = ZelkoCommon::statusCode(ServiceStatus::NotAllowed);
    m_service->peer.setAnswer(u"setRecordComment"_s, refusal);
    rename(answers::accept);
    m_service->peer.setAnswer(u"setRecordDeletableFlag"_s, refusal);
    trigger(IZelkoGUIController::UserActionDeletable);
    m_controller->sl_errorText(u"No spectrum"_s, u"record P"_s);
    QCOMPARE(calls().size(), 2);
    QCOMPARE(traces.withSources(), QStringList());
}

void DeviceActionsTest::theCursorShowsTheWaitAndIsBackBeforeAFailureIsTold_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<Trigger>("request");
    QTest::addColumn<bool>("isTold");
    QTest::newRow("a toggle") << u"setRecordDeletableFlag"_s
                              << Trigger([](ZelkoServerGUIController& c) { c.sl_toggleDeletable(); }) << true;
    QTest::newRow("a copy") << u"copyRecord"_s
                            << Trigger([](ZelkoServerGUIController& c) { c.sl_copyRecord(u"P"_s, 5, 9, u"copy"_s); })
                            << false;
}

// The answering thread reads what the asking one, which waits for it, has set.
void DeviceActionsTest::theCursorShowsTheWaitAndIsBackBeforeAFailureIsTold()
{
    QFETCH(const QString, operation);
    QFETCH(const Trigger, request);
    std::optional<Qt::CursorShape> during;
    m_service->peer.setAnswer(operation, ZelkoCommon::statusCode(ServiceStatus::RecordBusy));
    m_service->peer.setAction(operation, [&during] {
        if (const QCursor* const cursor = QGuiApplication::overrideCursor()) {
            during = cursor->shape();
        }
    });
    QList<bool> waitsWhenTold;
    ErrorHandler::Instance()->SetMessageSink(
        [&waitsWhenTold](const QString&) { waitsWhenTold << (QGuiApplication::overrideCursor() != nullptr); });
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    request(*m_controller);
    QCOMPARE(during, std::optional(Qt::WaitCursor));
    QFETCH(const bool, isTold);
    QCOMPARE(waitsWhenTold, QList<bool>(isTold ? 1 : 0, false));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void DeviceActionsTest::theControllerMayGoWhileANameIsTyped()
{
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    const DialogAnswer given([this](QWidget* window) {
        m_controller.reset();
        answers::accept(qobject_cast<QInputDialog*>(window));
    });
    m_controller->sl_renameRecord();
    QVERIFY(given.wasGiven());
    QCOMPARE(calls(), QStringList());
}

// Deletable flag

void DeviceActionsTest::theFlagsOfAllAreTurned_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QString>("flag");
    QTest::newRow("one protected record") << QStringList{u"P"_s} << u"true"_s;
    QTest::newRow("protected records") << QStringList{u"Q"_s, u"P"_s} << u"true"_s;
    QTest::newRow("deletable records") << QStringList{u"D"_s, u"E"_s} << u"false"_s;
}

void DeviceActionsTest::theFlagsOfAllAreTurned()
{
    QFETCH(const QStringList, selection);
    QFETCH(const QString, flag);
    m_controller->sl_selectedRecordsChanged(selection);
    m_log->take();
    trigger(IZelkoGUIController::UserActionDeletable);
    QStringList expected;
    for (const QString& id : selection) {
        expected << u"setRecordDeletableFlag D1 %1 %2"_s.arg(id, flag);
    }
    QCOMPARE(calls(), expected);
    QCOMPARE(m_log->take(), QStringList{u"action 128 %1"_s.arg(selection.join(','))});
    QCOMPARE(m_messages->texts(), QStringList());
}

void DeviceActionsTest::theFirstFlagThatFailsIsToldAndEndsIt()
{
    ServicePeer& peer = m_service->peer;
    peer.setAction(u"setRecordDeletableFlag"_s, [&peer] {
        peer.setAnswer(u"setRecordDeletableFlag"_s, ZelkoCommon::statusCode(ServiceStatus::NoSuchRecord));
    });
    m_controller->sl_selectedRecordsChanged({u"P"_s, u"Q"_s, u"R"_s});
    trigger(IZelkoGUIController::UserActionDeletable);
    QCOMPARE(calls(), (QStringList{u"setRecordDeletableFlag D1 P true"_s, u"setRecordDeletableFlag D1 Q true"_s}));
    QCOMPARE(m_messages->texts(), QStringList{textOf(ServiceStatus::NoSuchRecord)});
}

void DeviceActionsTest::anExceptionEndsAToggleWithATrace()
{
    const TraceTexts traces;
    ErrorHandler::Instance()->SetMessageSink([](const QString&) { throw 1; });
    m_service->peer.setAnswer(u"setRecordDeletableFlag"_s, ZelkoCommon::statusCode(ServiceStatus::RecordBusy));
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    trigger(IZelkoGUIController::UserActionDeletable);
    QCOMPARE(traces.withSources(),
             QStringList{u"zelkoserverguicontroller: Exception in NewRecordList::toggleDeletable"_s});
}

void DeviceActionsTest::theControllerMayGoWhileAFailureIsTold()
{
    ErrorHandler::Instance()->SetMessageSink([this](const QString&) { m_controller.reset(); });
    m_service->peer.setAnswer(u"setRecordDeletableFlag"_s, ZelkoCommon::statusCode(ServiceStatus::RecordBusy));
    m_controller->sl_selectedRecordsChanged({u"P"_s});
    m_log->take();
    m_controller->sl_toggleDeletable();
    QVERIFY(!m_controller);
    QCOMPARE(m_log->take().filter(u"action"_s), QStringList());
}

void DeviceActionsTest::aDelayedFlagWaitsForItsRecord()
{
    m_controller->sl_setDeletableFlag(u"N"_s, true, true);
    QCOMPARE(calls(), QStringList());
    m_branch->setRecord(makeDeletable(u"M"_s, false));
    QCOMPARE(calls(), QStringList());
    m_branch->setRecord(makeDeletable(u"N"_s, false));
    QCOMPARE(calls(), QStringList{u"setRecordDeletableFlag D1 N true"_s});
    m_branch->setRecord(makeDeletable(u"N"_s, true));
    QCOMPARE(calls().size(), 1);
}

void DeviceActionsTest::aDelayedFlagOfAKnownRecordIsSentAtOnce()
{
    m_controller->sl_setDeletableFlag(u"D"_s, false, true);
    QCOMPARE(calls(), QStringList{u"setRecordDeletableFlag D1 D false"_s});
    m_branch->setRecord(makeDeletable(u"D"_s, false));
    QCOMPARE(calls().size(), 1);
}

void DeviceActionsTest::aFlagThatIsNotDelayedIsSentAtOnce()
{
    m_controller->sl_setDeletableFlag(u"N"_s, true);
    QCOMPARE(calls(), QStringList{u"setRecordDeletableFlag D1 N true"_s});
}

void DeviceActionsTest::aDelayedFlagIsForgottenWithItsDevice()
{
    m_controller->sl_setDeletableFlag(u"N"_s, true, true);
    m_controller->sl_activeDeviceChanged(QString());
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    m_branch->setRecord(makeDeletable(u"N"_s, false));
    QVERIFY(m_controller->recordListModel()->hasRecord(u"N"_s));
    QCOMPARE(calls(), QStringList());
}

QTEST_MAIN(DeviceActionsTest)
#include "tst_deviceactions.moc"
