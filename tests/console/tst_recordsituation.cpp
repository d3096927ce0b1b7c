#include <console/records/recordsituation.h>

#include "fixedrecordmodel.h"
#include "scriptedcontroller.h"
#include "testrecords.h"

#include <console/session/consoleuser.h>

#include <QTest>

using namespace ZelkoConsole;
using Controller = ZelkoGUI::IZelkoGUIController;
using ZelkoCommon::Role;

Q_DECLARE_METATYPE(ZelkoGUI::IZelkoGUIController::enUserAction)
Q_DECLARE_METATYPE(ZelkoConsole::RecordSituation)

class TestRecordSituation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { UserRights::Instance()->SetUser({}, {}); }

    void tellsTheFirstReasonThatHolds_data()
    {
        QTest::addColumn<Role>("role");
        QTest::addColumn<RecordSituation>("situation");
        QTest::addColumn<Controller::enUserAction>("action");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char* name, Role role, const RecordSituation& situation,
                            Controller::enUserAction action, const char* reason) {
            QTest::newRow(name) << role << situation << action << QString::fromLatin1(reason);
        };
        row("no connection counts most", Role::Viewer, {false, 0, 0, 0, 0}, Controller::UserActionDelete,
            "There is no connection to the device.");
        row("a right counts more than a selection", Role::Viewer, {true, 0, 0, 0, 0}, Controller::UserActionDelete,
            "User viewer may not do this.");
        row("nobody needs a right to rename here", Role::Viewer, {true, 0, 0, 0, 0}, Controller::UserActionRename,
            "No recording is selected.");
        row("several are too many to rename", Role::Operator, {true, 2, 2, 2, 0}, Controller::UserActionRename,
            "More than one recording is selected.");
        row("several can be flagged", Role::Operator, {true, 2, 1, 2, 0}, Controller::UserActionDeletable,
            "Some of the selected recordings are deletable and others are not.");
        row("several are not all finished", Role::Operator, {true, 2, 2, 1, 1}, Controller::UserActionDeletable,
            "Not all of the selected recordings are finished.");
        row("one is not finished", Role::Operator, {true, 1, 1, 0, 1}, Controller::UserActionDeletable,
            "This recording is not finished.");
        row("several of the same kind", Role::Operator, {true, 2, 2, 2, 0}, Controller::UserActionDeletable,
            "This is not available for the selected recordings.");
        row("none of several is deletable", Role::Operator, {true, 2, 0, 2, 0}, Controller::UserActionDelete,
            "None of the selected recordings is deletable.");
        row("one is not deletable", Role::Operator, {true, 1, 0, 1, 0}, Controller::UserActionDelete,
            "This recording is not deletable.");
        row("one is being recorded", Role::Operator, {true, 1, 1, 0, 1}, Controller::UserActionRename,
            "This recording is being recorded.");
        row("nothing is known against it", Role::Operator, {true, 1, 1, 1, 0}, Controller::UserActionReset,
            "This is not available for this recording.");
    }

    void tellsTheFirstReasonThatHolds()
    {
        QFETCH(Role, role);
        QFETCH(RecordSituation, situation);
        QFETCH(Controller::enUserAction, action);
        UserRights::Instance()->SetUser(ZelkoCommon::roleName(role), ConsoleUser::rightsOf(role));
        QTEST(whyUnavailable(action, situation), "reason");
    }

    void asksNobodyInParticularToLogIn()
    {
        QCOMPARE(whyUnavailable(Controller::UserActionReset, {true, 1, 1, 1, 0}), QStringLiteral("Log in to do this."));
    }

    void countsWhatIsSelected()
    {
        const auto kept = makeRecord(QStringLiteral("kept"));
        kept->SetDeletable(false);
        const auto growing = makeRecord(QStringLiteral("growing"), 2);
        growing->SetDeletable(true);
        growing->SetFinished(false);
        const auto other = makeRecord(QStringLiteral("other"));
        other->SetDeletable(true);
        FixedRecordModel model(
            {{QStringLiteral("kept"), kept}, {QStringLiteral("growing"), growing}, {QStringLiteral("other"), other}});
        ScriptedController controller(&model);
        QCOMPARE(situationOf(controller, false), RecordSituation());
        controller.sl_selectedRecordsChanged(
            {QStringLiteral("kept"), QStringLiteral("growing"), QStringLiteral("nobody knows it")});
        QCOMPARE(situationOf(controller, true), (RecordSituation{true, 3, 1, 1, 1}));
    }

    void saysWhatEachOfferedActionDoes()
    {
        for (const auto action : {Controller::UserActionReset, Controller::UserActionRename,
                                  Controller::UserActionDelete, Controller::UserActionDeletable}) {
            QVERIFY(whatItDoes(action).endsWith(QLatin1Char('.')));
        }
    }
};

QTEST_MAIN(TestRecordSituation)
#include "tst_recordsituation.moc"
