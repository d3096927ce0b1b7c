#include "menuanswer.h"
#include "patience.h"
#include "recordpanesetting.h"

#include <console/hands/dialoganswer.h>
#include <console/treeobserver.h>

#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/names/valuenames.h>

#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolBar>
#include <QWindow>

using namespace ZelkoConsole;
using Controller = ZelkoGUI::IZelkoGUIController;
using ZelkoCommon::Role;
namespace names = zelko::names;

Q_DECLARE_METATYPE(ZelkoGUI::IZelkoGUIController::enUserAction)

namespace {

struct Setting : RecordPaneSetting
{
    using RecordPaneSetting::RecordPaneSetting;

    RecordActions& actions() const { return *pane.actions(); }
    QMenu& menu() const { return *pane.actions()->menu(); }
    QString command(QLatin1String name) const { return site.command(north, device, name); }

    void clickToolButton(Controller::enUserAction flag) const
    {
        QTest::mouseClick(pane.toolBar()->widgetForAction(&action(flag)), Qt::LeftButton);
    }

    // Opens the menu as an operator does: with the event coming from the window system.
    void rightClick(int number) const
    {
        const QPoint inViewport = table.visualRect(table.model()->index(rowOf(number), 1)).center();
        const QPoint inWindow = table.viewport()->mapTo(pane.window(), inViewport);
        QTest::mouseClick(pane.window()->windowHandle(), Qt::RightButton, Qt::NoModifier, inWindow);
    }

    void choose(QAction* chosen) const
    {
        menu().popup(pane.mapToGlobal(QPoint(20, 20)));
        QTest::mouseClick(&menu(), Qt::LeftButton, Qt::NoModifier, menu().actionGeometry(chosen).center());
    }
};

void answer(QWidget* box, QMessageBox::StandardButton button)
{
    auto* const question = qobject_cast<QMessageBox*>(box);
    QVERIFY(question);
    QTest::mouseClick(question->button(button), Qt::LeftButton);
}

SampleSite::RecordPtr recordInWork(int number)
{
    auto record = RecordListSetting::record(number, 2);
    record->SetFinished(false);
    return record;
}

SampleSite::RecordPtr keptRecord(int number)
{
    auto record = RecordListSetting::record(number);
    record->SetDeletable(false);
    return record;
}

} // namespace

class TestRecordActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersTheActionsOfTheControllerInItsOrder()
    {
        const Setting setting;
        const QList<QAction*> expected = setting.pane.controller()->recordActions();
        QCOMPARE(expected.size(), 9);
        QCOMPARE(setting.pane.toolBar()->actions(), expected);
        QCOMPARE(setting.menu().actions().mid(0, expected.size()), expected);
        QCOMPARE(setting.menu().actions().mid(expected.size() + 1),
                 QList<QAction*>({setting.actions().synchronizeRecord(), setting.actions().synchronizeList()}));
    }

    void offersAllThatADeviceCanDo_data()
    {
        QTest::addColumn<Controller::enUserAction>("flag");
        QTest::addColumn<bool>("isOffered");
        QTest::newRow("copy") << Controller::UserActionCopy << true;
        QTest::newRow("delete") << Controller::UserActionDelete << true;
        QTest::newRow("download, which goes into an archive") << Controller::UserActionDownload << false;
        QTest::newRow("edit") << Controller::UserActionEdit << true;
        QTest::newRow("reset") << Controller::UserActionReset << true;
        QTest::newRow("rename") << Controller::UserActionRename << true;
        QTest::newRow("bookmarks") << Controller::UserActionBookmarks << true;
        QTest::newRow("deletable flag") << Controller::UserActionDeletable << true;
        QTest::newRow("history") << Controller::UserActionHistory << true;
        QTest::newRow("spectrum overview") << Controller::UserActionOverview << true;
    }

    void offersAllThatADeviceCanDo()
    {
        QFETCH(Controller::enUserAction, flag);
        QFETCH(bool, isOffered);
        const Setting setting;
        QCOMPARE(setting.pane.controller()->recordAction(flag) != nullptr, isOffered);
    }

    void opensTheMenuByARightClickOnWhatItSelects()
    {
        Setting setting(3);
        const MenuAnswer answer([&](QMenu& menu) {
            const QList<QAction*> actions = setting.pane.controller()->recordActions();
            QCOMPARE(menu.actions().mid(0, actions.size()), actions);
            QCOMPARE(setting.pane.controller()->selectedRecords(), QStringList(RecordListSetting::id(1)));
            QVERIFY(setting.action(Controller::UserActionDelete).isEnabled());
        });
        setting.rightClick(1);
        QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
    }

    void keepsTheSelectionThatIsRightClicked()
    {
        Setting setting(3);
        setting.click(2);
        setting.click(1, Qt::ShiftModifier);
        const MenuAnswer answer([](QMenu&) {});
        setting.rightClick(1);
        QTRY_VERIFY_WITH_TIMEOUT(answer.wasGiven(), patience);
        QCOMPARE(setting.pane.controller()->selectedRecords().size(), 2);
    }

    void opensTheMenuByItsKey()
    {
        Setting setting(3);
        setting.click(1);
        const MenuAnswer answer([](QMenu&) {});
        operatorhands::pressMenuKey();
        QVERIFY(answer.wasGiven());
    }

    void deletesWhatIsSelectedAfterAQuestion()
    {
        Setting setting(3);
        setting.click(1);
        const DialogAnswer yes([](QWidget* box) {
            QCOMPARE(qobject_cast<QMessageBox*>(box)->text(), QStringLiteral("Really delete record with ID\n'r01'?"));
            answer(box, QMessageBox::Yes);
        });
        setting.clickToolButton(Controller::UserActionDelete);
        QVERIFY(yes.wasGiven());
        QCOMPARE(setting.command(names::deleteRecordingList), RecordListSetting::id(1));
    }

    void deletesNothingWhenTheAnswerIsNo()
    {
        Setting setting(3);
        setting.click(1);
        const DialogAnswer no([](QWidget* box) { answer(box, QMessageBox::No); });
        setting.clickToolButton(Controller::UserActionDelete);
        QVERIFY(no.wasGiven());
        QCOMPARE(setting.command(names::deleteRecordingList), QString());
    }

    void deletesByItsKeysAllButWhatIsKept()
    {
        Setting setting(2);
        setting.site.setRecord(setting.north, setting.device, keptRecord(2));
        setting.click(2);
        setting.click(0, Qt::ShiftModifier);
        const DialogAnswer yes([](QWidget* box) { answer(box, QMessageBox::Yes); });
        QTest::keyClick(&setting.table, Qt::Key_X, Qt::ControlModifier);
        QVERIFY(yes.wasGiven());
        QCOMPARE(setting.command(names::deleteRecordingList), QStringLiteral("r01@r00"));
    }

    void resetsTheSelectedRecord()
    {
        Setting setting(3);
        setting.click(2);
        setting.choose(&setting.action(Controller::UserActionReset));
        QCOMPARE(setting.command(names::setRecordIdle), RecordListSetting::id(2));
    }

    void asksForTheNewName()
    {
        Setting setting(1);
        setting.click(0);
        const DialogAnswer cancel([](QWidget* dialog) {
            QCOMPARE(dialog->findChild<QLineEdit*>()->text(), QStringLiteral("name 0"));
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QTest::keyClick(&setting.table, Qt::Key_R, Qt::ControlModifier);
        QVERIFY(cancel.wasGiven());
    }

    void synchronizesTheSelectedRecord()
    {
        Setting setting(3);
        setting.click(1);
        QTRY_VERIFY_WITH_TIMEOUT(setting.actions().synchronizeRecord()->isEnabled(), patience);
        setting.choose(setting.actions().synchronizeRecord());
        QCOMPARE(setting.command(names::syncOneRecord), RecordListSetting::id(1));
    }

    void synchronizesTheList()
    {
        const Setting setting;
        int asked = 0;
        TreeObserver observer([&asked](TChangeCode) { ++asked; });
        ValueObservingPtr<Value<bool>> command(&observer);
        command.GetFromTree(setting.site.connectionData()->GetBasePath(setting.device) + names::synchronize);
        QVERIFY(command);
        QTRY_VERIFY_WITH_TIMEOUT(setting.actions().synchronizeList()->isEnabled(), patience);
        setting.choose(setting.actions().synchronizeList());
        QCOMPARE(asked, 1);
    }

    void saysWhatAnActionDoesOrWhyNot_data()
    {
        QTest::addColumn<QList<int>>("selected");
        QTest::addColumn<Role>("role");
        QTest::addColumn<Controller::enUserAction>("flag");
        QTest::addColumn<QString>("tip");
        const QString none = QStringLiteral("No record is selected.");
        const QString several = QStringLiteral("More than one record is selected.");
        QTest::newRow("nothing selected, delete")
            << QList<int>() << Role::Operator << Controller::UserActionDelete << none;
        QTest::newRow("nothing selected, rename")
            << QList<int>() << Role::Operator << Controller::UserActionRename << none;
        QTest::newRow("two selected, reset")
            << QList<int>{0, 1} << Role::Operator << Controller::UserActionReset << several;
        QTest::newRow("two selected, delete")
            << QList<int>{0, 1} << Role::Operator << Controller::UserActionDelete
            << QStringLiteral("Deletes those of the selected records that are deletable, after a question.");
        QTest::newRow("a viewer deletes") << QList<int>{0} << Role::Viewer << Controller::UserActionDelete
                                          << QStringLiteral("User viewer may not do this.");
        QTest::newRow("a viewer resets") << QList<int>{0} << Role::Viewer << Controller::UserActionReset
                                         << QStringLiteral("User viewer may not do this.");
        QTest::newRow("a kept one is deleted") << QList<int>{2} << Role::Operator << Controller::UserActionDelete
                                               << QStringLiteral("This record is not deletable.");
        QTest::newRow("one in work is renamed") << QList<int>{3} << Role::Operator << Controller::UserActionRename
                                                << QStringLiteral("This record is being recorded.");
        QTest::newRow("one in work becomes deletable")
            << QList<int>{3} << Role::Operator << Controller::UserActionDeletable
            << QStringLiteral("This record is being recorded.");
        QTest::newRow("a viewer renames") << QList<int>{0} << Role::Viewer << Controller::UserActionRename
                                          << QStringLiteral("User viewer may not do this.");
        QTest::newRow("nothing selected, history")
            << QList<int>() << Role::Operator << Controller::UserActionHistory << none;
        QTest::newRow("two selected, bookmarks")
            << QList<int>{0, 1} << Role::Operator << Controller::UserActionBookmarks << several;
        QTest::newRow("a viewer copies") << QList<int>{0} << Role::Viewer << Controller::UserActionCopy
                                         << QStringLiteral("User viewer may not do this.");
        QTest::newRow("a viewer looks at spectra") << QList<int>{0} << Role::Viewer << Controller::UserActionOverview
                                                   << QStringLiteral("User viewer may not do this.");
        QTest::newRow("the spectra of one in work") << QList<int>{3} << Role::Operator << Controller::UserActionOverview
                                                    << QStringLiteral("This record is being recorded.");
        QTest::newRow("the comments on one")
            << QList<int>{0} << Role::Operator << Controller::UserActionHistory
            << QStringLiteral("Shows the comments on the record, adds and deletes them.");
        QTest::newRow("one is renamed") << QList<int>{0} << Role::Operator << Controller::UserActionRename
                                        << QStringLiteral("Gives the record another name.");
    }

    void saysWhatAnActionDoesOrWhyNot()
    {
        QFETCH(QList<int>, selected);
        QFETCH(Role, role);
        QFETCH(Controller::enUserAction, flag);
        QFETCH(QString, tip);
        Setting setting(2);
        setting.site.setRecord(setting.north, setting.device, keptRecord(2));
        setting.site.setRecord(setting.north, setting.device, recordInWork(3));
        for (const int number : selected) {
            setting.click(number, Qt::ControlModifier);
        }
        Setting::become(role);
        QTRY_COMPARE_WITH_TIMEOUT(setting.action(flag).statusTip(), tip, patience);
    }

    void letsNobodyRenameWhoMayChangeNothing()
    {
        Setting setting(1);
        setting.click(0);
        const QAction& rename = setting.action(Controller::UserActionRename);
        QTRY_VERIFY_WITH_TIMEOUT(rename.isEnabled(), patience);
        Setting::become(Role::Viewer);
        QTRY_VERIFY_WITH_TIMEOUT(!rename.isEnabled(), patience);
        Setting::become(Role::Operator);
        QTRY_VERIFY_WITH_TIMEOUT(rename.isEnabled(), patience);
    }

    void saysThatTheDeviceIsGoneAndTakesItBack()
    {
        Setting setting(2);
        setting.click(0);
        const QAction& rename = setting.action(Controller::UserActionRename);
        QTRY_COMPARE_WITH_TIMEOUT(rename.statusTip(), QStringLiteral("Gives the record another name."), patience);
        setting.lose();
        QTRY_COMPARE_WITH_TIMEOUT(rename.statusTip(), QStringLiteral("There is no connection to the device."),
                                  patience);
        QVERIFY(!rename.isEnabled());
        QVERIFY(!setting.actions().synchronizeList()->isEnabled());
        setting.comeBack(2);
        QTRY_VERIFY_WITH_TIMEOUT(rename.isEnabled(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(setting.actions().synchronizeList()->isEnabled(), patience);
    }

    void saysThatNoDeviceIsChosen()
    {
        Setting setting(1);
        setting.click(0);
        setting.pane.setDevice(setting.north, QString());
        const QString none = QStringLiteral("No device is chosen.");
        QTRY_COMPARE_WITH_TIMEOUT(setting.action(Controller::UserActionReset).statusTip(), none, patience);
        QCOMPARE(setting.actions().synchronizeList()->statusTip(), none);
        QVERIFY(!setting.actions().synchronizeList()->isEnabled());
    }

    void saysThatTheDeviceDoesNotTakeNames()
    {
        Setting setting(1);
        setting.click(0);
        const QAction& rename = setting.action(Controller::UserActionRename);
        QTRY_VERIFY_WITH_TIMEOUT(rename.isEnabled(), patience);
        ValueObservingPtr<Value<bool>> extended(nullptr);
        extended.GetFromTree(setting.site.connectionData()->GetBasePath(setting.device) + names::extended);
        QVERIFY(extended);
        extended->SetValue(false, nullptr);
        QVERIFY(!rename.isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(rename.statusTip(), QStringLiteral("The device does not take new names of records."),
                                  patience);
    }

    void saysAnotherReasonWhenTheRecordChanges()
    {
        Setting setting(1);
        setting.site.setRecord(setting.north, setting.device, recordInWork(1));
        setting.click(1);
        const QAction& toggle = setting.action(Controller::UserActionDeletable);
        QTRY_COMPARE_WITH_TIMEOUT(toggle.statusTip(), QStringLiteral("This record is being recorded."), patience);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1));
        QTRY_COMPARE_WITH_TIMEOUT(toggle.statusTip(),
                                  QStringLiteral("Makes the selected records deletable, or not deletable."), patience);
    }

    void leavesToAViewerOnlyToLook_data()
    {
        QTest::addColumn<Controller::enUserAction>("flag");
        QTest::newRow("history") << Controller::UserActionHistory;
        QTest::newRow("rename") << Controller::UserActionRename;
        QTest::newRow("bookmarks") << Controller::UserActionBookmarks;
        QTest::newRow("copy") << Controller::UserActionCopy;
        QTest::newRow("edit") << Controller::UserActionEdit;
        QTest::newRow("spectrum overview") << Controller::UserActionOverview;
        QTest::newRow("delete") << Controller::UserActionDelete;
        QTest::newRow("deletable flag") << Controller::UserActionDeletable;
        QTest::newRow("reset") << Controller::UserActionReset;
    }

    // The action is off at once, and again on for who may use it.
    void leavesToAViewerOnlyToLook()
    {
        QFETCH(Controller::enUserAction, flag);
        Setting setting(1);
        setting.click(0);
        const QAction& action = setting.action(flag);
        QTRY_VERIFY_WITH_TIMEOUT(action.isEnabled(), patience);
        Setting::become(Role::Viewer);
        QVERIFY(!action.isEnabled());
        Setting::become(Role::Operator);
        QVERIFY(action.isEnabled());
    }

    void saysThatARawStreamIsNotCopied()
    {
        Setting setting;
        const auto stream = RecordListSetting::record(0);
        stream->SetDataRate(SampleSite::Record::DataRate::RawStream);
        setting.site.setRecord(setting.north, setting.device, stream);
        setting.click(0);
        for (const auto flag : {Controller::UserActionCopy, Controller::UserActionEdit}) {
            QTRY_COMPARE_WITH_TIMEOUT(setting.action(flag).statusTip(),
                                      QStringLiteral("No part of a raw stream can be copied."), patience);
            QVERIFY(!setting.action(flag).isEnabled());
        }
        QVERIFY(setting.action(Controller::UserActionBookmarks).isEnabled());
    }

    void saysThatARecordHasNoSpectrum()
    {
        Setting setting;
        const auto bits = RecordListSetting::record(0);
        bits->SetDataFormat(SampleSite::Record::DataFormat::Bearings);
        setting.site.setRecord(setting.north, setting.device, bits);
        setting.click(0);
        const QAction& overview = setting.action(Controller::UserActionOverview);
        QTRY_COMPARE_WITH_TIMEOUT(overview.statusTip(),
                                  QStringLiteral("This record has no samples of which spectra can be made."), patience);
        QVERIFY(!overview.isEnabled());
    }

    void synchronizesNothingForAViewer()
    {
        Setting setting(1);
        setting.click(0);
        Setting::become(Role::Viewer);
        const QAction& list = *setting.actions().synchronizeList();
        QTRY_COMPARE_WITH_TIMEOUT(list.statusTip(), QStringLiteral("User viewer may not do this."), patience);
        QVERIFY(!list.isEnabled());
        QVERIFY(!setting.actions().synchronizeRecord()->isEnabled());
    }

    void comesToRestWhenNothingChangesAnyMore()
    {
        Setting setting(1);
        setting.click(0);
        QTRY_VERIFY_WITH_TIMEOUT(setting.actions().synchronizeRecord()->isEnabled(), patience);
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
        const QSignalSpy changes(&setting.action(Controller::UserActionDelete), &QAction::changed);
        for (int turn = 0; turn < 20; ++turn) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(changes.count(), 0);
    }
};

QTEST_MAIN(TestRecordActions)
#include "tst_recordactions.moc"
