#include "consolewindowsetting.h"

#include <console/demo/shownrecords.h>
#include <console/devices/devicelistview.h>
#include <console/hands/operatorhands.h>
#include <console/records/devicerecords.h>
#include <console/records/recordactions.h>
#include <console/records/recordpane.h>
#include <console/records/recordtable.h>
#include <console/session/consoleuser.h>
#include <console/widgets/connectionbadge.h>
#include <console/window/consolewindow.h>
#include <console/window/usermenu.h>
#include <console/window/usermessages.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using namespace ZelkoConsole;
using Setting = ConsoleWindowSetting;

class TestConsoleWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheRecordsOfTheFirstDevice()
    {
        const Setting setting(3);
        QCOMPARE(setting.rows(), 3);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: connected"));
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("timeZone"))->text().left(22),
                 QStringLiteral("Times in Europe/Berlin"));
    }

    void showsTheRecordsOfTheDeviceThatIsClicked()
    {
        Setting setting(3);
        setting.site.addDevice(setting.north, QStringLiteral("A2"));
        setting.site.setRecord(setting.north, QStringLiteral("A2"), RecordListSetting::record(7));
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE_WITH_TIMEOUT(devices.model()->rowCount(devices.model()->index(0, 0)), 2, patience);
        const QModelIndex second = devices.model()->index(1, 0, devices.model()->index(0, 0));
        QTest::mouseClick(devices.viewport(), Qt::LeftButton, Qt::NoModifier, devices.visualRect(second).center());
        QTRY_COMPARE_WITH_TIMEOUT(setting.rows(), 1, patience);
        QTest::keyClick(&devices, Qt::Key_Up);
        QTRY_COMPARE_WITH_TIMEOUT(setting.rows(), 3, patience);
    }

    void givesTheRightsOnTheSubSystemWhoseDeviceIsChosen()
    {
        const QString names[] = {QStringLiteral("north"), QStringLiteral("south")};
        SampleSite site({names[0], names[1]});
        for (const QString& name : names) {
            site.addDevice(name, QStringLiteral("A1"));
            site.connectTo(name);
        }
        site.setRole(names[0], ZelkoCommon::Role::Operator);
        site.setRole(names[1], ZelkoCommon::Role::Viewer);
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        ConsoleUser user(site);
        ConsoleWindow window(&site, &user, &settings);
        window.show();
        const DeviceListView& devices = *window.devices();
        const auto choose = [&devices](int subSystem) {
            const QModelIndex device = devices.model()->index(0, 0, devices.model()->index(subSystem, 0));
            QTest::mouseClick(devices.viewport(), Qt::LeftButton, Qt::NoModifier, devices.visualRect(device).center());
        };
        choose(1);
        QCOMPARE(user.role(), ZelkoCommon::Role::Viewer);
        QVERIFY(!UserRights::DeleteRecordsAllowed());
        choose(0);
        QCOMPARE(user.role(), ZelkoCommon::Role::Operator);
        QVERIFY(UserRights::DeleteRecordsAllowed());
    }

    void showsARecordAppearGrowFinishAndGo()
    {
        Setting setting;
        auto& table = *setting.window->records()->table();
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1, 2));
        QCOMPARE(setting.rows(), 1);
        const auto status = [&table] {
            return table.model()->index(0, ZelkoCommon::AbstractRecordListModel::StatusColumn).data().toString();
        };
        QCOMPARE(status(), QStringLiteral("recording"));
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1, 5));
        QCOMPARE(status(), QStringLiteral("finished"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(1));
        QCOMPARE(setting.rows(), 0);
    }

    void showsALostRecorderAndBringsTheListBack()
    {
        Setting setting(3);
        setting.lose();
        QCOMPARE(setting.rows(), 0);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: not reachable"));
        QCOMPARE(setting.window->records()->recordTable()->emptyState().text,
                 QStringLiteral("Recorder north is not reachable: it was killed, trying again"));
        QCoreApplication::processEvents();
        setting.comeBack(3);
        QTRY_COMPARE_WITH_TIMEOUT(setting.rows(), 3, patience);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: connected"));
    }

    void goesFromTheDevicesToTheRecordsByTab()
    {
        const Setting setting(3);
        QVERIFY(setting.window->devices()->hasFocus());
        QTest::keyClick(setting.window->devices(), Qt::Key_Tab);
        QVERIFY(setting.window->records()->table()->hasFocus());
        QTest::keyClick(setting.window->records()->table(), Qt::Key_Tab);
        QVERIFY(setting.window->records()->table()->horizontalHeader()->hasFocus());
        const auto* const filter =
            setting.window->records()->list()->findChild<QWidget*>(QStringLiteral("ShowExtendedFilterButton"));
        bool isFilterReached = false;
        for (int steps = 0; !setting.window->devices()->hasFocus() && steps < 30; ++steps) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            isFilterReached |= filter->hasFocus();
        }
        QVERIFY(isFilterReached);
        QVERIFY(setting.window->devices()->hasFocus());
    }

    void goesToDevicesAndRecordsByShortcut()
    {
        const Setting setting(3);
        QTest::keyClick(setting.window.get(), Qt::Key_2, Qt::ControlModifier);
        QVERIFY(setting.window->records()->table()->hasFocus());
        QTest::keyClick(setting.window.get(), Qt::Key_1, Qt::ControlModifier);
        QVERIFY(setting.window->devices()->hasFocus());
    }

    void quitsByShortcut()
    {
        const Setting setting;
        QTest::keyClick(setting.window.get(), Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!setting.window->isVisible());
    }

    void keepsItsSizeWithLongNames()
    {
        const QString longName(200, QLatin1Char('n'));
        Setting setting(2);
        setting.window->resize(960, 400);
        setting.site.addDevice(setting.north, longName);
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE_WITH_TIMEOUT(devices.model()->rowCount(devices.model()->index(0, 0)), 2, patience);
        devices.setCurrentIndex(devices.model()->index(1, 0, devices.model()->index(0, 0)));
        QCoreApplication::processEvents();
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("deviceTitle"))->text(), longName);
        QCOMPARE(setting.window->size(), QSize(960, 400));
        QVERIFY(devices.width() > 200);
    }

    void showsNamesJustAsTheyAre()
    {
        Setting setting(2);
        setting.site.addDevice(setting.north, QStringLiteral("<i>A3<br>"));
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE_WITH_TIMEOUT(devices.model()->rowCount(devices.model()->index(0, 0)), 2, patience);
        devices.setCurrentIndex(devices.model()->index(1, 0, devices.model()->index(0, 0)));
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("deviceTitle"))->textFormat(), Qt::PlainText);
        QCOMPARE(devices.currentIndex().data(Qt::ToolTipRole).toString(),
                 QStringLiteral("<qt>Device &lt;i&gt;A3&lt;br&gt; of north: available</qt>"));
    }

    void tellsWhatItIs()
    {
        const Setting setting;
        QString text;
        QTimer::singleShot(0, setting.window.get(), [&text] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            text = box->text();
            QTest::keyClick(box, Qt::Key_Escape);
        });
        QTest::keyClick(setting.window.get(), Qt::Key_F1);
        QVERIFY(text.contains(QStringLiteral("Recorder Console")));
    }

    void offersTheStandardMenus()
    {
        const Setting setting;
        QStringList titles;
        for (const QAction* const action : setting.window->menuBar()->actions()) {
            titles.append(action->text());
        }
        QCOMPARE(titles, QStringList({QStringLiteral("&File"), QStringLiteral("&Record"), QStringLiteral("&View"),
                                      QStringLiteral("&User"), QStringLiteral("&Help")}));
    }

    void showsWhoWorksAndLetsHimChange()
    {
        const Setting setting;
        auto& button = *setting.window->findChild<QPushButton*>(QStringLiteral("userButton"));
        QCOMPARE(button.text(), QStringLiteral("operator"));
        QMenu& menu = *setting.window->userMenu();
        QTimer look; // the button waits for its menu
        QObject::connect(&look, &QTimer::timeout, &menu, [&] {
            if (menu.isVisible()) {
                look.stop();
                QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier,
                                  menu.actionGeometry(menu.actions().constLast()).center());
            }
        });
        look.start(5);
        QTest::mouseClick(&button, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(button.text(), QStringLiteral("administrator"), patience);
        QCOMPARE(button.accessibleName(), QStringLiteral("User: administrator"));
        QVERIFY(button.width() >= button.sizeHint().width());
        QCOMPARE(setting.site.actsFor().user, QStringLiteral("administrator"));
    }

    void saysInTheStatusBarWhyAnActionIsOff()
    {
        const Setting setting(1);
        const RecordPane& pane = *setting.window->records();
        QAction* const reset = pane.controller()->recordAction(ZelkoGUI::IZelkoGUIController::UserActionReset);
        QTRY_COMPARE_WITH_TIMEOUT(reset->statusTip(), QStringLiteral("No record is selected."), patience);
        QWidget* const button = pane.toolBar()->widgetForAction(reset);
        QVERIFY(button && !button->isEnabled());
        operatorhands::enter(*button);
        QCOMPARE(setting.window->statusBar()->currentMessage(), QStringLiteral("No record is selected."));
    }

    void showsWhatARecorderRefusedAndWhatToDo_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("advice");
        QTest::newRow("another user may")
            << QStringLiteral("operator") << QStringLiteral("Log in as a user who may do this.");
        QTest::newRow("no other user may more")
            << QStringLiteral("administrator")
            << QStringLiteral("What was changed is again as it was; try it once more.");
    }

    void showsWhatARecorderRefusedAndWhatToDo()
    {
        QFETCH(QString, user);
        QFETCH(QString, advice);
        Setting setting;
        setting.user->switchTo(user);
        Q_EMIT setting.site.writeRefused(setting.north, QStringLiteral("it is read only"));
        QVERIFY(setting.window->messages()->box());
        QCOMPARE(setting.window->messages()->box()->text(),
                 QStringLiteral("Recorder north has refused a change: it is read only. ") + advice);
        QTest::keyClick(setting.window->messages()->box(), Qt::Key_Escape);
    }

    // Whoever the user is: nobody else can do more.
    void showsWhatWasNotSentAndWhatToDo_data()
    {
        QTest::addColumn<QString>("user");
        QTest::newRow("a viewer") << QStringLiteral("viewer");
        QTest::newRow("an administrator") << QStringLiteral("administrator");
    }

    void showsWhatWasNotSentAndWhatToDo()
    {
        QFETCH(QString, user);
        Setting setting;
        setting.user->switchTo(user);
        Q_EMIT setting.site.writeNotSent(setting.north, QStringLiteral("a write to /A is not sent: it is too large"));
        QVERIFY(setting.window->messages()->box());
        QCOMPARE(setting.window->messages()->box()->text(),
                 QStringLiteral("A change did not go to recorder north: a write to /A is not sent: it is too large. "
                                "What was changed is again as it was; try it with less at once, or a little later."));
        QTest::keyClick(setting.window->messages()->box(), Qt::Key_Escape);
    }

    void showsThatAUserIsNotAdmitted()
    {
        Setting setting(1);
        setting.lose();
        setting.site.setStatus(setting.north, {LinkState::Denied, QStringLiteral("user or password are wrong")});
        const DeviceListView& devices = *setting.window->devices();
        QCOMPARE(devices.model()->index(0, 1).data().toString(), QStringLiteral("access denied"));
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: access denied"));
        QCOMPARE(setting.window->records()->recordTable()->emptyState().text,
                 QStringLiteral("No access to recorder north: user or password are wrong"));
    }

    void worksOnTheDeviceThatIsShown()
    {
        Setting setting(2);
        const auto& controller = *setting.window->records()->controller();
        QCOMPARE(controller.activeDevice(), setting.device);
        QCOMPARE(controller.activeSubsystem(), setting.north);
        operatorhands::clickRow(*setting.window->records()->table(), 0);
        QCOMPARE(controller.selectedRecords().size(), 1);
        DeviceListView& devices = *setting.window->devices();
        devices.setFocus();
        QTest::keyClick(&devices, Qt::Key_Up);
        QCOMPARE(controller.activeDevice(), QString());
        QCOMPARE(controller.selectedRecords(), QStringList());
        QTest::keyClick(&devices, Qt::Key_Down);
        QCOMPARE(controller.activeDevice(), setting.device);
        QTRY_VERIFY_WITH_TIMEOUT(controller.isConnected(), patience);
        QCOMPARE(setting.rows(), 2);
    }

    void keepsTheSelectionOfTheActionsWhenTheRecorderComesBack()
    {
        Setting setting(3);
        const auto& controller = *setting.window->records()->controller();
        operatorhands::clickRow(*setting.window->records()->table(), 1);
        const QStringList selected = controller.selectedRecords();
        QCOMPARE(selected.size(), 1);
        setting.lose();
        QTRY_VERIFY_WITH_TIMEOUT(!controller.isConnected(), patience);
        QCOMPARE(controller.selectedRecords(), selected);
        setting.comeBack(3);
        QTRY_VERIFY_WITH_TIMEOUT(controller.isConnected(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(shownrecords::selectedIds(*setting.window->records()->table()), selected, patience);
        QCOMPARE(controller.selectedRecords(), selected);
    }

    // The button of the user had made the bar higher than the menus, whose lines then stood in its middle.
    void hasItsMenusAsHighAsTheirBar()
    {
        const Setting setting;
        const QMenuBar& bar = *setting.window->menuBar();
        for (const QAction* const menu : bar.actions()) {
            QCOMPARE(bar.actionGeometry(const_cast<QAction*>(menu)).bottom(), bar.rect().bottom());
        }
    }

    void remembersSizeAndColumns()
    {
        Setting setting(1);
        setting.window->resize(900, 500);
        setting.window->records()->table()->setColumnWidth(0, 222);
        setting.window->close();
        setting.open();
        QCOMPARE(setting.window->size(), QSize(900, 500));
        QCOMPARE(setting.window->records()->table()->columnWidth(0), 222);
    }

    void remembersItsPlacesWhenItIsQuitWithABoxOpen()
    {
        const Setting setting;
        QTimer::singleShot(0, setting.window.get(), &ConsoleWindow::showAbout);
        QTimer::singleShot(0, setting.window.get(), &QCoreApplication::quit);
        QTimer::singleShot(patience, setting.window.get(), [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(setting.settings.contains(QStringLiteral("window/geometry")));
    }

    void givesEachPartANameForScreenReaders()
    {
        const Setting setting;
        QCOMPARE(setting.window->devices()->accessibleName(), QStringLiteral("Devices"));
        QCOMPARE(setting.window->records()->table()->accessibleName(), QStringLiteral("Records"));
        QCOMPARE(setting.window->badge()->accessibleDescription(), QStringLiteral("north: connected"));
    }
};

QTEST_MAIN(TestConsoleWindow)
#include "tst_consolewindow.moc"
