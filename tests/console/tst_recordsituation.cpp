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

namespace {

constexpr RecordSituation oneFinished{
    .isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1};

} // namespace

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
        row("no connection counts most", Role::Viewer, {.isDeviceChosen = true}, Controller::UserActionDelete,
            "There is no connection to the device.");
        row("a right counts more than a selection", Role::Viewer, {.isDeviceChosen = true, .isConnected = true},
            Controller::UserActionDelete, "User viewer may not do this.");
        row("no device counts more than no connection", Role::Operator, {}, Controller::UserActionRename,
            "No device is chosen.");
        row("who may change nothing renames nothing", Role::Viewer, {.isDeviceChosen = true, .isConnected = true},
            Controller::UserActionRename, "User viewer may not do this.");
        row("none is selected", Role::Operator, {.isDeviceChosen = true, .isConnected = true},
            Controller::UserActionRename, "No record is selected.");
        row("several are too many to rename", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 2, .deletable = 2, .finished = 2},
            Controller::UserActionRename, "More than one record is selected.");
        row("several can be flagged", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 2, .deletable = 1, .finished = 2},
            Controller::UserActionDeletable, "Some of the selected records are deletable and others are not.");
        row("several are not all finished", Role::Operator,
            {.isDeviceChosen = true,
             .isConnected = true,
             .selected = 2,
             .known = 2,
             .deletable = 2,
             .finished = 1,
             .inWork = 1},
            Controller::UserActionDeletable, "Some of the selected records are damaged, in use, or not finished.");
        row("one is not finished", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .deletable = 1, .inWork = 1},
            Controller::UserActionDeletable, "This record is not finished.");
        row("several of the same kind", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 2, .deletable = 2, .finished = 2},
            Controller::UserActionDeletable, "This is not available for the selected records.");
        row("none of several is deletable", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 2, .finished = 2},
            Controller::UserActionDelete, "None of the selected records is deletable.");
        row("one is not deletable", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionDelete, "This record is not deletable.");
        row("one is being recorded", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .inWork = 1, .recording = 1},
            Controller::UserActionRename, "This record is being recorded.");
        row("one is not finished whatever its status", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1, .inWork = 1},
            Controller::UserActionRename, "This record is not finished.");
        row("only the device can be against a name", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionRename, "The device does not take new names of records.");
        row("one is gone that is selected still", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionRename,
            "This record is not in the list at the moment.");
        row("one that is gone is not said to be kept", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionDelete,
            "This record is not in the list at the moment.");
        row("one that is gone is not said to be unfinished", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionDeletable,
            "This record is not in the list at the moment.");
        row("some that are gone are not said to be kept", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 1, .finished = 1},
            Controller::UserActionDelete, "Some of the selected records are not in the list at the moment.");
        row("some that are gone are not said to be unfinished", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 1, .finished = 1},
            Controller::UserActionDeletable, "Some of the selected records are not in the list at the moment.");
        row("deletable ones that are not deleted", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 2, .known = 2, .deletable = 2, .finished = 2},
            Controller::UserActionDelete, "This is not available for the selected records.");
        row("one that is gone cannot be reset", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionReset,
            "This record is not in the list at the moment.");
        row("no part of a raw stream is copied", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1, .rawStream = 1},
            Controller::UserActionCopy, "No part of a raw stream can be copied.");
        row("nor edited", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1, .rawStream = 1},
            Controller::UserActionEdit, "No part of a raw stream can be copied.");
        row("nothing is known against a copy", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionCopy, "This is not available for this record.");
        row("one that is gone is not said to be a raw stream", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionCopy,
            "This record is not in the list at the moment.");
        row("one that is gone has no spectrum to speak of", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1}, Controller::UserActionOverview,
            "This record is not in the list at the moment.");
        row("one that grows has no spectrum yet", Role::Operator,
            {.isDeviceChosen = true,
             .isConnected = true,
             .selected = 1,
             .known = 1,
             .inWork = 1,
             .recording = 1,
             .withSpectrum = 1},
            Controller::UserActionOverview, "This record is being recorded.");
        row("one that says it grows, and that it is finished", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .recording = 1, .withSpectrum = 1},
            Controller::UserActionOverview, "This record is being recorded.");
        row("one without samples has no spectrum", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionOverview, "This record has no samples of which spectra can be made.");
        row("only the device can be against a spectrum", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1, .withSpectrum = 1},
            Controller::UserActionOverview, "The device does not send spectra.");
        row("who may change nothing has no comments opened", Role::Viewer,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionHistory, "User viewer may not do this.");
        row("who may change nothing has no bookmarks opened", Role::Viewer,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .finished = 1},
            Controller::UserActionBookmarks, "User viewer may not do this.");
        row("nothing is known against it", Role::Operator,
            {.isDeviceChosen = true, .isConnected = true, .selected = 1, .known = 1, .deletable = 1, .finished = 1},
            Controller::UserActionReset, "This is not available for this record.");
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
        QCOMPARE(whyUnavailable(Controller::UserActionReset, {.isDeviceChosen = true,
                                                              .isConnected = true,
                                                              .selected = 1,
                                                              .known = 1,
                                                              .deletable = 1,
                                                              .finished = 1}),
                 QStringLiteral("Log in to do this."));
    }

    void countsWhatIsSelected()
    {
        const auto kept = makeRecord(QStringLiteral("kept"));
        kept->SetDeletable(false);
        const auto growing = makeRecord(QStringLiteral("growing"), 2);
        growing->SetDeletable(true);
        growing->SetFinished(false);
        growing->SetDataRate(ZELKO_XML::ZELKO_RecordData::DataRate::RawStream);
        kept->SetDataFormat(ZELKO_XML::ZELKO_RecordData::DataFormat::IQ32);
        const auto other = makeRecord(QStringLiteral("other"));
        other->SetDeletable(true);
        FixedRecordModel model(
            {{QStringLiteral("kept"), kept}, {QStringLiteral("growing"), growing}, {QStringLiteral("other"), other}});
        ScriptedController controller(&model);
        QCOMPARE(situationOf(controller, false), RecordSituation{.isDeviceChosen = true});
        controller.sl_selectedRecordsChanged(
            {QStringLiteral("kept"), QStringLiteral("growing"), QStringLiteral("nobody knows it")});
        QCOMPARE(situationOf(controller, true), (RecordSituation{.isDeviceChosen = true,
                                                                 .isConnected = true,
                                                                 .selected = 3,
                                                                 .known = 2,
                                                                 .deletable = 1,
                                                                 .finished = 1,
                                                                 .inWork = 1,
                                                                 .recording = 1,
                                                                 .rawStream = 1,
                                                                 .withSpectrum = 1}));
    }

    void tellsWhyTheFlagOfARecordIsNotTurned_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown") << 0 << QStringLiteral("This record is not finished.");
        QTest::newRow("prepared") << 1 << QStringLiteral("This record is not finished.");
        QTest::newRow("recording") << 2 << QStringLiteral("This record is being recorded.");
        QTest::newRow("recording in a loop") << 3 << QStringLiteral("This record is being recorded.");
        QTest::newRow("stopping") << 4 << QStringLiteral("This record is not finished.");
        QTest::newRow("replaying") << 6 << QStringLiteral("This record is being replayed.");
        QTest::newRow("transferring") << 7 << QStringLiteral("This record is being transferred.");
        QTest::newRow("damaged") << 8 << QStringLiteral("This record is damaged.");
    }

    void tellsWhyTheFlagOfARecordIsNotTurned()
    {
        QFETCH(int, status);
        FixedRecordModel model({{QStringLiteral("R"), makeRecord(QStringLiteral("R"), status)}});
        ScriptedController controller(&model);
        controller.sl_selectedRecordsChanged({QStringLiteral("R")});
        UserRights::Instance()->SetUser(QStringLiteral("anna"), ConsoleUser::rightsOf(Role::Operator));
        QTEST(whyUnavailable(Controller::UserActionDeletable, situationOf(controller, true)), "reason");
    }

    void saysWhatEachOfferedActionDoes_data()
    {
        QTest::addColumn<Controller::enUserAction>("action");
        QTest::addColumn<QString>("tip");
        const auto row = [](const char* name, Controller::enUserAction action, const char* tip) {
            QTest::newRow(name) << action << QString::fromLatin1(tip);
        };
        row("reset", Controller::UserActionReset, "Puts a record to rest that hangs in another state.");
        row("rename", Controller::UserActionRename, "Gives the record another name.");
        row("delete", Controller::UserActionDelete,
            "Deletes those of the selected records that are deletable, after a question.");
        row("deletable flag", Controller::UserActionDeletable,
            "Makes the selected records deletable, or not deletable.");
        row("history", Controller::UserActionHistory, "Shows the comments on the record, adds and deletes them.");
        row("bookmarks", Controller::UserActionBookmarks,
            "Shows the bookmarks of the record on an axis and in a table, and changes them.");
        row("copy", Controller::UserActionCopy, "Makes a new record of a part of this one.");
        row("edit", Controller::UserActionEdit,
            "Changes the bookmarks of the record, and makes a new one of a part of it.");
        row("spectrum overview", Controller::UserActionOverview,
            "Shows the spectrum of the record over its whole time.");
        row("one that is not offered", Controller::UserActionDownload, "");
    }

    void saysWhatEachOfferedActionDoes()
    {
        QFETCH(Controller::enUserAction, action);
        UserRights::Instance()->SetUser(QStringLiteral("anna"), ConsoleUser::rightsOf(Role::Operator));
        QTEST(tipOf(action, true, oneFinished), "tip");
    }

    void saysThatTheRecorderWillRefuseWhatIsEnabled()
    {
        UserRights::Instance()->SetUser(QStringLiteral("anna"), ConsoleUser::rightsOf(Role::Viewer));
        QCOMPARE(tipOf(Controller::UserActionRename, true, oneFinished),
                 QStringLiteral("User anna may not do this: the recorder will refuse it."));
        UserRights::Instance()->SetUser({}, {});
        QCOMPARE(tipOf(Controller::UserActionRename, true, oneFinished),
                 QStringLiteral("The recorder will refuse this: log in to do it."));
    }

    void saysWhyNotOfWhatIsNotEnabled()
    {
        UserRights::Instance()->SetUser(QStringLiteral("anna"), ConsoleUser::rightsOf(Role::Operator));
        QCOMPARE(tipOf(Controller::UserActionDelete, false, oneFinished),
                 QStringLiteral("This record is not deletable."));
    }
};

QTEST_MAIN(TestRecordSituation)
#include "tst_recordsituation.moc"
