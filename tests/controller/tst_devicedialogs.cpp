#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "commenttable.h"
#include "controllersite.h"
#include "copyablerecord.h"
#include "dialoganswers.h"
#include "loopbackservice.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "testbookmarks.h"

#include <host/activedevicecontrol.h>
#include <resources/zelkoicons.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoConsole::DialogAnswer;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::EditRecordDialog;
using ZelkoGUI::HistoryDialog;
using ZelkoGUI::ZelkoServerGUIController;
using Action = ZelkoGUI::IZelkoGUIController::enUserAction;

namespace {

std::shared_ptr<ZELKO_XML::ZELKO_RecordData> record(const QString& id)
{
    const auto record = makeCopyable(id);
    record->SetBookmarkEntry(twoBookmarks);
    record->SetHistoryEntry(twoComments);
    return record;
}

QList<Action> windowActions()
{
    using Controller = ZelkoGUI::IZelkoGUIController;
    return {Controller::UserActionHistory, Controller::UserActionBookmarks, Controller::UserActionCopy,
            Controller::UserActionEdit};
}

/// Counts how often a window was put in front of the others, from now on.
class RaiseCounter : public QObject
{
public:
    explicit RaiseCounter(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        raises += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }

    int raises = 0;
};

} // namespace

/// The windows on a record that the controller of a device opens and keeps.
class DeviceDialogsTest : public QObject
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

    void noWindowIsMadeBeforeItsFirstUse();
    void anActionOpensItsWindow_data();
    void anActionOpensItsWindow();
    void aWindowIsKeptForTheNextRecord_data() { addActions(); }
    void aWindowIsKeptForTheNextRecord();
    void aMinimisedWindowComesBack_data() { addActions(); }
    void aMinimisedWindowComesBack();
    void aWindowBehindAnotherOneComesToTheFront_data() { addActions(); }
    void aWindowBehindAnotherOneComesToTheFront();
    void bookmarksCannotBeEditedYet_data();
    void bookmarksCannotBeEditedYet();
    void aCopyNeedsAName_data();
    void aCopyNeedsAName();
    void windowsAreIndependent();
    void aLostDeviceHidesItsWindows_data();
    void aLostDeviceHidesItsWindows();
    void theBookmarksOfALostDeviceAreNotSent();
    void commentsGoToTheDevice();
    void bookmarksGoToTheDevice();
    void copiesGoToTheDevice();
    void windowsGoWithTheController_data();
    void windowsGoWithTheController();
    void aWindowThatWentWithItsParentIsMadeAgain_data() { addActions(); }
    void aWindowThatWentWithItsParentIsMadeAgain();

private:
    static void addActions()
    {
        QTest::addColumn<int>("action");
        for (const Action action : windowActions()) {
            QTest::addRow("action %d", int(action)) << int(action);
        }
    }
    void open(Action action, const QString& record)
    {
        m_controller->sl_selectedRecordsChanged({record});
        m_controller->recordAction(action)->trigger();
    }
    void openAll(const QString& record)
    {
        for (const Action action : windowActions()) {
            open(action, record);
        }
    }
    QDialog* window(Action action) const;
    BookmarkModel& bookmarks(Action action) const
    {
        return *qobject_cast<EditRecordDialog*>(window(action))->bookmarkModel();
    }
    /// Leaves a window with a bookmark that is not sent.
    void moveBookmark(Action action)
    {
        QTRY_COMPARE_WITH_TIMEOUT(bookmarks(action).getSynchState(), BookmarkModel::SynchInSync, patience);
        QVERIFY(bookmarks(action).changeEntry(0, bookmarkAt(5, u"moved"_s)));
    }
    static void verifyEmpty(const QDialog& window);
    static QString shownRecord(const QDialog& window)
    {
        const auto isInfo = [](const QLabel* label) {
            return label->objectName() == u"RecordLabel" || label->objectName() == u"RecordInfoLabel";
        };
        const auto labels = window.findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
        const auto found = std::find_if(labels.begin(), labels.end(), isInfo);
        return found == labels.end() ? QString() : (*found)->text();
    }
    QStringList calls() const { return m_service->peer.calls(); }

    std::optional<OwnConfiguration> m_configuration;
    std::optional<LoopbackService> m_service;
    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::optional<ActiveDeviceControl> m_control;
    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

void DeviceDialogsTest::init()
{
    m_configuration.emplace();
    m_site.emplace(m_service->proxy.port());
    m_site->handler->setLimit(std::chrono::seconds(60)); // a loaded machine is no failure
    m_branch.emplace(*m_site->data, u"D1"_s);
    m_branch->putAll();
    m_branch->setRecord(record(u"P"_s));
    m_branch->setRecord(record(u"Q"_s));
    m_parent = std::make_unique<QWidget>();
    m_control.emplace();
    m_controller = std::make_unique<ZelkoServerGUIController>(
        m_site->handler, &*m_control, QString(), ZelkoServerGUIController::UserActions(QFlag(1023)), nullptr);
    m_controller->setDialogParent(m_parent.get());
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    m_service->peer.forgetCalls();
}

void DeviceDialogsTest::cleanup()
{
    m_controller.reset();
    m_control.reset();
    m_parent.reset();
    m_branch.reset();
    m_site.reset();
    m_configuration.reset();
}

// Null if there is none.
QDialog* DeviceDialogsTest::window(Action action) const
{
    switch (action) {
    case ZelkoServerGUIController::UserActionHistory:
        return m_parent->findChild<HistoryDialog*>();
    case ZelkoServerGUIController::UserActionBookmarks:
        return m_parent->findChild<EditRecordDialog*>(u"EditBookmarksDialog"_s);
    case ZelkoServerGUIController::UserActionCopy:
        return m_parent->findChild<EditRecordDialog*>(u"CopyRecordDialog"_s);
    default:
        return m_parent->findChild<EditRecordDialog*>(u"EditRecordDialog"_s);
    }
}

void DeviceDialogsTest::noWindowIsMadeBeforeItsFirstUse()
{
    QCOMPARE(m_parent->findChildren<QDialog*>().size(), 0);
    open(ZelkoServerGUIController::UserActionCopy, u"P"_s);
    QCOMPARE(m_parent->findChildren<QDialog*>().size(), 1);
}

void DeviceDialogsTest::anActionOpensItsWindow_data()
{
    using Controller = ZelkoServerGUIController;
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("parts");
    const QString bookmarks = u"BookmarkTableView"_s;
    const QString bar = u"ReplayBarWidget"_s;
    const QString copy = u"CopyRecordWidget"_s;
    QTest::newRow("history") << int(Controller::UserActionHistory) << u"Edit History Comments"_s
                             << QStringList{u"HistoryTableView"_s};
    QTest::newRow("bookmarks") << int(Controller::UserActionBookmarks) << u"Edit Bookmarks"_s
                               << QStringList{bookmarks, bar};
    QTest::newRow("copy") << int(Controller::UserActionCopy) << u"Copy Record"_s << QStringList{bar, copy};
    QTest::newRow("edit") << int(Controller::UserActionEdit) << u"Edit Record"_s << QStringList{bookmarks, bar, copy};
}

void DeviceDialogsTest::anActionOpensItsWindow()
{
    QFETCH(const int, action);
    m_site->client->take();
    open(Action(action), u"P"_s);
    QCOMPARE(m_site->client->take(), QStringList{u"SyncOneRecord=P"_s});
    const QDialog* const dialog = window(Action(action));
    QVERIFY(dialog && dialog->isVisible() && !dialog->isModal());
    QTEST(dialog->windowTitle(), "title");
    QCOMPARE(shownRecord(*dialog), u"Record: name of P"_s);
    QStringList parts;
    for (const char* const part : {"HistoryTableView", "BookmarkTableView", "ReplayBarWidget", "CopyRecordWidget"}) {
        if (dialog->findChild<QWidget*>(QLatin1String(part))) {
            parts << QLatin1String(part);
        }
    }
    QTEST(parts, "parts");
}

void DeviceDialogsTest::aWindowIsKeptForTheNextRecord()
{
    QFETCH(const int, action);
    open(Action(action), u"P"_s);
    QDialog* const dialog = window(Action(action));
    QVERIFY(dialog);
    dialog->close();
    open(Action(action), u"Q"_s);
    QCOMPARE(m_parent->findChildren<QDialog*>(), QList<QDialog*>{dialog});
    QVERIFY(dialog->isVisible());
    QCOMPARE(shownRecord(*dialog), u"Record: name of Q"_s);
}

void DeviceDialogsTest::aMinimisedWindowComesBack()
{
    QFETCH(const int, action);
    open(Action(action), u"P"_s);
    QDialog* const dialog = window(Action(action));
    QVERIFY(dialog);
    dialog->showMinimized();
    QVERIFY(dialog->isMinimized());
    open(Action(action), u"P"_s);
    QVERIFY(!dialog->isMinimized());
    QVERIFY(dialog->isVisible());
}

void DeviceDialogsTest::aWindowBehindAnotherOneComesToTheFront()
{
    QFETCH(const int, action);
    const bool isHistory = action == ZelkoServerGUIController::UserActionHistory;
    const Action other =
        isHistory ? ZelkoServerGUIController::UserActionCopy : ZelkoServerGUIController::UserActionHistory;
    open(Action(action), u"P"_s);
    open(other, u"P"_s);
    QDialog* const dialog = window(Action(action));
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), window(other), patience);
    const RaiseCounter counter(*dialog);
    open(Action(action), u"P"_s);
    QCOMPARE(counter.raises, 1);
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeWindow(), dialog, patience);
}

void DeviceDialogsTest::bookmarksCannotBeEditedYet_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("bookmarks") << int(ZelkoServerGUIController::UserActionBookmarks);
    QTest::newRow("edit") << int(ZelkoServerGUIController::UserActionEdit);
}

void DeviceDialogsTest::bookmarksCannotBeEditedYet()
{
    QFETCH(const int, action);
    open(Action(action), u"P"_s);
    BookmarkModel& model = bookmarks(Action(action));
    QCOMPARE(model.getSynchState(), BookmarkModel::SynchPending);
    QCOMPARE(model.entryCount(), 2);
    QVERIFY(!model.removeEntry(0));
    QTRY_COMPARE_WITH_TIMEOUT(model.getSynchState(), BookmarkModel::SynchInSync, patience);
    QVERIFY(model.removeEntry(0));
}

void DeviceDialogsTest::aCopyNeedsAName_data()
{
    QTest::addColumn<int>("action");
    QTest::newRow("copy") << int(ZelkoServerGUIController::UserActionCopy);
    QTest::newRow("edit") << int(ZelkoServerGUIController::UserActionEdit);
}

void DeviceDialogsTest::aCopyNeedsAName()
{
    QFETCH(const int, action);
    open(Action(action), u"P"_s);
    const auto* const save = window(Action(action))->findChild<QToolButton*>(u"SaveButton"_s);
    auto* const name = window(Action(action))->findChild<QLineEdit*>(u"RecordNameEdit"_s);
    QVERIFY(save->isEnabled());
    name->selectAll();
    QTest::keyClick(name, Qt::Key_Delete);
    QVERIFY(!save->isEnabled());
    QTest::keyClicks(name, u"x"_s);
    QVERIFY(save->isEnabled());
}

void DeviceDialogsTest::windowsAreIndependent()
{
    open(ZelkoServerGUIController::UserActionCopy, u"P"_s);
    open(ZelkoServerGUIController::UserActionBookmarks, u"Q"_s);
    const QDialog* const copy = window(ZelkoServerGUIController::UserActionCopy);
    const QDialog* const bookmarks = window(ZelkoServerGUIController::UserActionBookmarks);
    QVERIFY(copy->isVisible() && bookmarks->isVisible());
    QCOMPARE(shownRecord(*copy), u"Record: name of P"_s);
    QCOMPARE(shownRecord(*bookmarks), u"Record: name of Q"_s);
}

void DeviceDialogsTest::verifyEmpty(const QDialog& window)
{
    QCOMPARE(shownRecord(window).trimmed(), u"Record:"_s);
    if (const auto* const edit = qobject_cast<const EditRecordDialog*>(&window)) {
        QCOMPARE(edit->bookmarkModel()->getSynchState(), BookmarkModel::SynchNoRecord);
        QCOMPARE(edit->bookmarkModel()->entryCount(), 0);
    } else {
        QCOMPARE(CommentTable(dynamic_cast<const HistoryDialog&>(window)).lastRow(), -1);
    }
    const auto* const save = window.findChild<QToolButton*>(u"SaveButton"_s);
    QVERIFY(!save || !save->isEnabled());
}

void DeviceDialogsTest::aLostDeviceHidesItsWindows_data()
{
    using Loss = std::function<void(DeviceDialogsTest&)>;
    const auto change = [](const QString& next) {
        return Loss([next](DeviceDialogsTest& test) { test.m_controller->sl_activeDeviceChanged(next); });
    };
    QTest::addColumn<Loss>("lose");
    QTest::newRow("no device") << change(QString());
    QTest::newRow("another device") << change(u"D2"_s);
    QTest::newRow("the device is deleted")
        << Loss([](DeviceDialogsTest& test) { test.m_control->deleteDevice(u"D1"_s, u"north"_s); });
}

void DeviceDialogsTest::aLostDeviceHidesItsWindows()
{
    QFETCH(const std::function<void(DeviceDialogsTest&)>, lose);
    openAll(u"P"_s);
    moveBookmark(ZelkoServerGUIController::UserActionBookmarks);
    moveBookmark(ZelkoServerGUIController::UserActionEdit);
    const auto dialogs = m_parent->findChildren<QDialog*>();
    QCOMPARE(dialogs.size(), 4);
    const DialogAnswer answer([](QWidget*) {});
    lose(*this);
    QVERIFY(!answer.wasGiven());
    QCOMPARE(calls(), QStringList());
    for (const QDialog* const dialog : dialogs) {
        QVERIFY(!dialog->isVisible());
        verifyEmpty(*dialog);
    }
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    for (const QDialog* const dialog : dialogs) {
        verifyEmpty(*dialog); // though its record is there again
    }
    openAll(u"Q"_s);
    QCOMPARE(m_parent->findChildren<QDialog*>(), dialogs);
    for (const QDialog* const dialog : dialogs) {
        QVERIFY(dialog->isVisible());
        QCOMPARE(shownRecord(*dialog), u"Record: name of Q"_s);
    }
}

void DeviceDialogsTest::theBookmarksOfALostDeviceAreNotSent()
{
    open(ZelkoServerGUIController::UserActionBookmarks, u"P"_s);
    moveBookmark(ZelkoServerGUIController::UserActionBookmarks);
    QDialog* const dialog = window(ZelkoServerGUIController::UserActionBookmarks);
    const DialogAnswer answer([this](QWidget* question) {
        m_controller->sl_activeDeviceChanged(QString());
        answers::clickOn(question, QMessageBox::Yes);
    });
    dialog->accept();
    QVERIFY(answer.wasGiven());
    QCOMPARE(calls(), QStringList());
    QVERIFY(!dialog->isVisible());
    verifyEmpty(*dialog);
}

void DeviceDialogsTest::commentsGoToTheDevice()
{
    open(ZelkoServerGUIController::UserActionHistory, u"P"_s);
    auto* const dialog = qobject_cast<HistoryDialog*>(window(ZelkoServerGUIController::UserActionHistory));
    QVERIFY(dialog);
    const CommentTable table(*dialog);
    table.clickHeader(1);
    table.clickHeader(2);
    QVERIFY(table.editor());
    table.typeAndEnter(u"heard"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!table.editor(), patience);
    table.clickHeader(2);
    QCOMPARE(calls(), QStringList({u"removeHistoryEntry D1 P 1700000002000000"_s, u"addHistory D1 P heard"_s}));
}

void DeviceDialogsTest::bookmarksGoToTheDevice()
{
    open(ZelkoServerGUIController::UserActionBookmarks, u"P"_s);
    auto* const dialog = qobject_cast<EditRecordDialog*>(window(ZelkoServerGUIController::UserActionBookmarks));
    QVERIFY(dialog);
    QTRY_COMPARE_WITH_TIMEOUT(dialog->bookmarkModel()->getSynchState(), BookmarkModel::SynchInSync, patience);
    QVERIFY(dialog->bookmarkModel()->removeEntry(0));
    QTest::mouseClick(dialog->findChild<QToolButton*>(u"ApplyBookmarks"_s), Qt::LeftButton);
    QCOMPARE(calls(), QStringList{u"addBookmarks D1 P [1700000020000000:b]"_s});
}

void DeviceDialogsTest::copiesGoToTheDevice()
{
    for (const Action action : {ZelkoServerGUIController::UserActionCopy, ZelkoServerGUIController::UserActionEdit}) {
        open(action, u"P"_s);
        QVERIFY(window(action));
        m_service->peer.forgetCalls();
        QTest::mouseClick(window(action)->findChild<QToolButton*>(u"SaveButton"_s), Qt::LeftButton);
        QCOMPARE(calls(), QStringList{u"copyRecord D1 P [1000-901000] name of P_Copy"_s});
    }
}

void DeviceDialogsTest::windowsGoWithTheController_data()
{
    QTest::addColumn<bool>("hasParent");
    QTest::newRow("before their parent") << true;
    QTest::newRow("without a parent") << false;
}

void DeviceDialogsTest::windowsGoWithTheController()
{
    QFETCH(const bool, hasParent);
    m_controller->setDialogParent(hasParent ? m_parent.get() : nullptr);
    openAll(u"P"_s);
    QList<QPointer<QWidget>> windows;
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (qobject_cast<QDialog*>(top)) {
            windows << top;
        }
    }
    QCOMPARE(windows.size(), 4);
    QCOMPARE(m_parent->findChildren<QDialog*>().size(), hasParent ? 4 : 0);
    m_controller.reset();
    for (const QPointer<QWidget>& window : windows) {
        QVERIFY(!window);
    }
}

void DeviceDialogsTest::aWindowThatWentWithItsParentIsMadeAgain()
{
    QFETCH(const int, action);
    open(Action(action), u"P"_s);
    m_parent = std::make_unique<QWidget>();
    m_controller->setDialogParent(m_parent.get());
    m_controller->sl_activeDeviceChanged(QString());
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    open(Action(action), u"Q"_s);
    QVERIFY(window(Action(action)));
    QCOMPARE(shownRecord(*window(Action(action))), u"Record: name of Q"_s);
}

QTEST_MAIN(DeviceDialogsTest)
#include "tst_devicedialogs.moc"
