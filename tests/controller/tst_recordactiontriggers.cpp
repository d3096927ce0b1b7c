#include <zelkoguibase/controller/izelkoguicontroller.h>

#include "dialoganswers.h"
#include "fixedrecordmodel.h"
#include "patience.h"
#include "scriptedcontroller.h"
#include "shownmessages.h"
#include "testrecords.h"
#include "tracetexts.h"
#include "userlogin.h"

#include <resources/zelkoicons.h>

#include <QAction>
#include <QMainWindow>
#include <QToolBar>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoConsole::DialogAnswer;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

/// A window with the actions of a controller on a toolbar.
class ActionWindow : public QMainWindow
{
public:
    explicit ActionWindow(Controller& controller)
        : m_controller(controller)
    {
        m_bar.addActions(controller.recordActions());
        addToolBar(&m_bar);
        controller.setDialogParent(this);
        resize(1000, 200);
        show();
    }

    bool isReady() { return QTest::qWaitForWindowActive(this, patience); }

    void click(Controller::enUserAction action)
    {
        QTest::mouseClick(m_bar.widgetForAction(m_controller.recordAction(action)), Qt::LeftButton);
    }

private:
    Controller& m_controller;
    QToolBar m_bar;
};

/// What a message box showed.
struct BoxContent
{
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QWidget* parent = nullptr;
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(ScriptedController&)>)

class RecordActionTriggersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_login.emplace();
        m_controller = std::make_unique<ScriptedController>(&m_model);
        m_window = std::make_unique<ActionWindow>(*m_controller);
        QVERIFY(m_window->isReady());
    }
    void cleanup()
    {
        m_window.reset();
        m_controller.reset();
        m_login.reset();
    }

    void aClickRunsTheAction_data() { addActions(); }
    void aClickRunsTheAction();
    void theShortcutRunsTheAction_data() { addActions(); }
    void theShortcutRunsTheAction();
    void aStaleTriggerDoesNothing_data() { addActions(); }
    void aStaleTriggerDoesNothing();
    void aTriggerWithoutASelectionDoesNothing_data() { addActions(); }
    void aTriggerWithoutASelectionDoesNothing();

    void oneRecordActionsDoNothingForTwoRecords_data();
    void oneRecordActionsDoNothingForTwoRecords();
    void actionsOnSeveralRecordsRunOnAllOfThem();

    void rightsAreAskedForAgainWhereTheyCount_data();
    void rightsAreAskedForAgainWhereTheyCount();
    void aResetForEverybodyRunsWithoutTheRight();

    void resynchronisingIsNoUserAction();
    void resynchronisingThatIsNotAvailableDoesNothing();

    void aDeleteIsConfirmed_data();
    void aDeleteIsConfirmed();
    void aDeleteThatIsNotConfirmedDoesNothing_data();
    void aDeleteThatIsNotConfirmedDoesNothing();
    void aDeleteOfNothingDeletableDoesNotAsk_data();
    void aDeleteOfNothingDeletableDoesNotAsk();
    void theParentOfTheBoxMayGoWhileItIsOpen();
    void theControllerMayGoWhileTheBoxIsOpen();
    void aDeleteIsOfWhatTheBoxWasOpenedFor_data();
    void aDeleteIsOfWhatTheBoxWasOpenedFor();
    void aDeleteThatCannotBeToldToBeLeftOutEndsWithATrace();
    void theControllerMayGoWhileTheUserIsToldOfADeleteThatIsLeftOut();
    void theControllerMayGoWhileAnOperationRuns_data() { addActions(); }
    void theControllerMayGoWhileAnOperationRuns();
    void theSignalNamesTheRecordsThatTheOperationRanOn();

private:
    static void addActions();
    void trigger(Controller::enUserAction action);

    /// Has a delete confirmed when there is no device any more.
    void deleteWithTheDeviceGone();

    /// Triggers a delete and answers its box by `answer`, of which nothing is left open.
    BoxContent boxOfDelete(const std::function<void(QMessageBox*)>& answer);

    FixedRecordModel m_model{{{u"P"_s, makeDeletable(u"P"_s, false)},
                              {u"Q"_s, makeDeletable(u"Q"_s, false)},
                              {u"D"_s, makeDeletable(u"D"_s, true)},
                              {u"E"_s, makeDeletable(u"E"_s, true)}}};
    std::optional<UserLogin> m_login;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<ActionWindow> m_window;
};

void RecordActionTriggersTest::addActions()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("operation");
    QTest::newRow("copy") << 1 << u"copy D"_s;
    QTest::newRow("delete") << 2 << u"delete D from ''"_s;
    QTest::newRow("download") << 4 << u"download D"_s;
    QTest::newRow("edit") << 8 << u"edit D"_s;
    QTest::newRow("reset") << 16 << u"reset D"_s;
    QTest::newRow("rename") << 32 << u"rename D"_s;
    QTest::newRow("bookmarks") << 64 << u"bookmarks D"_s;
    QTest::newRow("deletable flag") << 128 << u"toggle D"_s;
    QTest::newRow("history") << 256 << u"history D"_s;
    QTest::newRow("spectrum overview") << 512 << u"overview D"_s;
}

void RecordActionTriggersTest::trigger(Controller::enUserAction action)
{
    m_controller->take();
    m_window->click(action);
}

void RecordActionTriggersTest::aClickRunsTheAction()
{
    QFETCH(const int, action);
    QFETCH(const QString, operation);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const DialogAnswer yes(answers::click(QMessageBox::Yes));
    trigger(static_cast<Controller::enUserAction>(action));
    QCOMPARE(yes.wasGiven(), action == Controller::UserActionDelete);
    QCOMPARE(m_controller->take(), (QStringList{operation, u"signal action %1 D"_s.arg(action)}));
}

void RecordActionTriggersTest::theShortcutRunsTheAction()
{
    QFETCH(const int, action);
    QFETCH(const QString, operation);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    m_controller->take();
    const DialogAnswer yes(answers::click(QMessageBox::Yes));
    const QKeySequence keys = m_controller->recordAction(static_cast<Controller::enUserAction>(action))->shortcut();
    QTest::keySequence(m_window.get(), keys);
    QCOMPARE(m_controller->take(), (QStringList{operation, u"signal action %1 D"_s.arg(action)}));
}

void RecordActionTriggersTest::aStaleTriggerDoesNothing()
{
    QFETCH(const int, action);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    m_controller->available.setFlag(static_cast<Controller::enUserAction>(action), false);
    const DialogAnswer no([](QWidget*) {});
    trigger(static_cast<Controller::enUserAction>(action));
    QCOMPARE(m_controller->take(), QStringList());
    QVERIFY(!no.wasGiven());
}

void RecordActionTriggersTest::aTriggerWithoutASelectionDoesNothing()
{
    QFETCH(const int, action);
    QAction* const stale = m_controller->recordAction(static_cast<Controller::enUserAction>(action));
    stale->setEnabled(true);
    trigger(static_cast<Controller::enUserAction>(action));
    QCOMPARE(m_controller->take(), QStringList());
}

void RecordActionTriggersTest::oneRecordActionsDoNothingForTwoRecords_data()
{
    QTest::addColumn<int>("action");
    for (const int action : {1, 8, 16, 32, 64, 256, 512}) {
        QTest::addRow("action %d", action) << action;
    }
}

void RecordActionTriggersTest::oneRecordActionsDoNothingForTwoRecords()
{
    QFETCH(const int, action);
    m_controller->sl_selectedRecordsChanged({u"D"_s, u"E"_s});
    m_controller->recordAction(static_cast<Controller::enUserAction>(action))->setEnabled(true);
    trigger(static_cast<Controller::enUserAction>(action));
    QCOMPARE(m_controller->take(), QStringList());
}

void RecordActionTriggersTest::actionsOnSeveralRecordsRunOnAllOfThem()
{
    m_controller->sl_selectedRecordsChanged({u"P"_s, u"E"_s});
    trigger(Controller::UserActionDownload);
    QCOMPARE(m_controller->take(), (QStringList{u"download P,E"_s, u"signal action 4 P,E"_s}));
    trigger(Controller::UserActionDeletable);
    QCOMPARE(m_controller->take(), (QStringList{u"toggle P,E"_s, u"signal action 128 P,E"_s}));
}

void RecordActionTriggersTest::rightsAreAskedForAgainWhereTheyCount_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("history") << 256 << QStringList{};
    QTest::newRow("reset") << 16 << QStringList{};
    QTest::newRow("download") << 4 << QStringList{};
    QTest::newRow("deletable flag") << 128 << QStringList{u"toggle D"_s, u"signal action 128 D"_s};
    QTest::newRow("rename") << 32 << QStringList{u"rename D"_s, u"signal action 32 D"_s};
}

// The action is enabled behind the controller's back: the click comes with a right that is gone.
void RecordActionTriggersTest::rightsAreAskedForAgainWhereTheyCount()
{
    QFETCH(const int, action);
    m_login->change({});
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    m_controller->recordAction(static_cast<Controller::enUserAction>(action))->setEnabled(true);
    trigger(static_cast<Controller::enUserAction>(action));
    QTEST(m_controller->take(), "entries");
}

void RecordActionTriggersTest::aResetForEverybodyRunsWithoutTheRight()
{
    m_login->change({});
    m_controller->skipsRights = true;
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    trigger(Controller::UserActionReset);
    QCOMPARE(m_controller->take(), (QStringList{u"reset D"_s, u"signal action 16 D"_s}));
}

void RecordActionTriggersTest::resynchronisingIsNoUserAction()
{
    m_controller->sl_resyncRecordList();
    m_controller->sl_resyncRecord(u"D"_s, u"device 2"_s);
    QCOMPARE(m_controller->take(), (QStringList{u"resync list"_s, u"resync D on 'device 2'"_s}));
}

void RecordActionTriggersTest::resynchronisingThatIsNotAvailableDoesNothing()
{
    m_controller->resyncIsAvailable = false;
    m_controller->sl_resyncRecordList();
    m_controller->sl_resyncRecord(u"D"_s, QString());
    QCOMPARE(m_controller->take(), QStringList());
}

BoxContent RecordActionTriggersTest::boxOfDelete(const std::function<void(QMessageBox*)>& answer)
{
    BoxContent content;
    const DialogAnswer answered([&](QWidget* window) {
        auto* const box = qobject_cast<QMessageBox*>(window);
        QVERIFY(box);
        content = {box->windowTitle(), box->text(), box->standardButtons(), box->icon(), box->parentWidget()};
        answer(box);
    });
    trigger(Controller::UserActionDelete);
    return content;
}

void RecordActionTriggersTest::aDeleteIsConfirmed_data()
{
    const QString single = u"Really delete record with ID\n'%1'?"_s;
    const QString several = u"Do you really want to delete the SELECTED records?"_s;
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("deleted");
    QTest::newRow("one record") << QStringList{u"D"_s} << single.arg("D") << u"D"_s;
    QTest::newRow("two records") << QStringList{u"E"_s, u"D"_s} << several << u"E,D"_s;
    QTest::newRow("one deletable of three") << QStringList{u"P"_s, u"E"_s, u"Q"_s} << single.arg("E") << u"E"_s;
    QTest::newRow("one that is not known, one that is") << QStringList{u"X"_s, u"D"_s} << single.arg("D") << u"D"_s;
}

void RecordActionTriggersTest::aDeleteIsConfirmed()
{
    QFETCH(const QStringList, selection);
    QFETCH(const QString, deleted);
    m_controller->sl_selectedRecordsChanged(selection);
    const BoxContent box = boxOfDelete(answers::click(QMessageBox::Yes));
    QCOMPARE(box.title, u"Delete Record"_s);
    QTEST(box.text, "text");
    QCOMPARE(box.buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.parent, m_window.get());
    QCOMPARE(m_controller->take(),
             (QStringList{u"delete %1 from ''"_s.arg(deleted), u"signal action 2 %1"_s.arg(deleted)}));
    QCOMPARE(m_controller->selectedRecords(), selection);
}

void RecordActionTriggersTest::aDeleteThatIsNotConfirmedDoesNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("a click on No") << false;
    QTest::newRow("the escape key") << true;
}

void RecordActionTriggersTest::aDeleteThatIsNotConfirmedDoesNothing()
{
    QFETCH(const bool, byKey);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const BoxContent box = boxOfDelete([byKey](QMessageBox* shown) {
        if (byKey) {
            QTest::keyClick(shown, Qt::Key_Escape);
        } else {
            answers::clickOn(shown, QMessageBox::No);
        }
    });
    QCOMPARE(box.title, u"Delete Record"_s);
    QCOMPARE(m_controller->take(), QStringList());
}

void RecordActionTriggersTest::aDeleteOfNothingDeletableDoesNotAsk_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<bool>("available");
    QTest::newRow("nothing that is deletable") << QStringList{u"P"_s, u"Q"_s} << true;
    QTest::newRow("not available any more") << QStringList{u"D"_s} << false;
}

void RecordActionTriggersTest::aDeleteOfNothingDeletableDoesNotAsk()
{
    QFETCH(const QStringList, selection);
    QFETCH(const bool, available);
    m_controller->sl_selectedRecordsChanged(selection);
    m_controller->available.setFlag(Controller::UserActionDelete, available);
    const DialogAnswer answer([](QWidget*) {});
    trigger(Controller::UserActionDelete);
    QVERIFY(!answer.wasGiven());
    QCOMPARE(m_controller->take(), QStringList());
}

void RecordActionTriggersTest::theParentOfTheBoxMayGoWhileItIsOpen()
{
    auto* const parent = new QWidget;
    m_controller->setDialogParent(parent);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const BoxContent box = boxOfDelete([parent](QMessageBox*) { delete parent; });
    QCOMPARE(box.parent, parent);
    QCOMPARE(m_controller->take(), QStringList());
}

void RecordActionTriggersTest::theControllerMayGoWhileTheBoxIsOpen()
{
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const DialogAnswer answer([this](QWidget* box) {
        m_controller.reset();
        answers::clickOn(box, QMessageBox::Yes);
    });
    m_controller->sl_deleteRecord();
    QVERIFY(answer.wasGiven());
    QVERIFY(!m_controller);
}

void RecordActionTriggersTest::aDeleteIsOfWhatTheBoxWasOpenedFor_data()
{
    using Change = std::function<void(ScriptedController&)>;
    const QString changed = u"Nothing was deleted: the device has changed while the question was open."_s;
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("message");
    QTest::newRow("another device") << Change([](ScriptedController& controller) { controller.device = u"other"_s; })
                                    << changed;
    QTest::newRow("the device of that name in another sub system")
        << Change([](ScriptedController& controller) { controller.subSystem = u"south"_s; }) << changed;
    QTest::newRow("no device") << Change([](ScriptedController& controller) { controller.device.clear(); }) << changed;
    QTest::newRow("the same device without its connection") << Change([](ScriptedController& controller) {
        controller.available.setFlag(Controller::UserActionDelete, false);
    }) << u"Nothing was deleted: the records cannot be deleted any more."_s;
}

void RecordActionTriggersTest::aDeleteIsOfWhatTheBoxWasOpenedFor()
{
    QFETCH(const std::function<void(ScriptedController&)>, change);
    QFETCH(const QString, message);
    const ShownMessages messages;
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const BoxContent box = boxOfDelete([&](QMessageBox* shown) {
        change(*m_controller);
        answers::clickOn(shown, QMessageBox::Yes);
    });
    QCOMPARE(box.title, u"Delete Record"_s);
    QCOMPARE(m_controller->take(), QStringList());
    QCOMPARE(messages.texts(), QStringList{message});
}

void RecordActionTriggersTest::deleteWithTheDeviceGone()
{
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    const DialogAnswer answer([this](QWidget* box) {
        m_controller->device.clear();
        m_controller->take();
        answers::clickOn(box, QMessageBox::Yes);
    });
    m_controller->sl_deleteRecord();
    QVERIFY(answer.wasGiven());
}

void RecordActionTriggersTest::aDeleteThatCannotBeToldToBeLeftOutEndsWithATrace()
{
    const ShownMessages messages;
    const TraceTexts traces;
    ErrorHandler::Instance()->SetMessageSink([](const QString&) { throw std::runtime_error("no window"); });
    deleteWithTheDeviceGone();
    QCOMPARE(m_controller->take(), QStringList());
    QVERIFY(traces.contain(u"IZelkoGUIController::sl_deleteRecord: the user was not told: Nothing was deleted"_s));
}

void RecordActionTriggersTest::theControllerMayGoWhileTheUserIsToldOfADeleteThatIsLeftOut()
{
    const ShownMessages messages;
    ErrorHandler::Instance()->SetMessageSink([this](const QString&) { m_controller.reset(); });
    deleteWithTheDeviceGone();
    QVERIFY(!m_controller);
}

void RecordActionTriggersTest::theControllerMayGoWhileAnOperationRuns()
{
    QFETCH(const int, action);
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    QSignalSpy triggered(m_controller.get(), &Controller::si_userActionTriggered);
    m_controller->duringOperation = [this] { m_controller.reset(); };
    const DialogAnswer yes(answers::click(QMessageBox::Yes));
    m_window->click(static_cast<Controller::enUserAction>(action));
    QVERIFY(!m_controller);
    QCOMPARE(triggered.size(), 0);
}

void RecordActionTriggersTest::theSignalNamesTheRecordsThatTheOperationRanOn()
{
    m_controller->sl_selectedRecordsChanged({u"D"_s});
    m_controller->duringOperation = [this] { m_controller->sl_selectedRecordsChanged({u"E"_s, u"P"_s}); };
    trigger(Controller::UserActionRename);
    QCOMPARE(m_controller->take(), (QStringList{u"rename D"_s, u"signal selected E,P"_s, u"signal action 32 D"_s}));
}

QTEST_MAIN(RecordActionTriggersTest)
#include "tst_recordactiontriggers.moc"
