#include <zelkoguibase/controller/izelkoguicontroller.h>

#include "fixedrecordmodel.h"
#include "iconpicture.h"
#include "scriptedcontroller.h"
#include "testrecords.h"
#include "userlogin.h"

#include <resources/zelkoicons.h>

#include <QAction>
#include <QtTest>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

/// When an action that is available is enabled.
struct Rule
{
    const char* name;
    Controller::enUserAction action;
    bool forSeveral;
    UserRights::Rights needed;
};

const Rule rules[] = {{"copy", Controller::UserActionCopy, false, {}},
                      {"delete", Controller::UserActionDelete, true, UserRights::DeleteRecords},
                      {"download", Controller::UserActionDownload, true, UserRights::Archiving},
                      {"edit", Controller::UserActionEdit, false, {}},
                      {"reset", Controller::UserActionReset, false, UserRights::ResetRecord},
                      {"rename", Controller::UserActionRename, false, {}},
                      {"bookmarks", Controller::UserActionBookmarks, false, {}},
                      {"deletable flag", Controller::UserActionDeletable, true, UserRights::DeleteRecords},
                      {"history", Controller::UserActionHistory, false, UserRights::HistoryComment},
                      {"spectrum overview", Controller::UserActionOverview, false, {}}};

} // namespace

class RecordActionAvailabilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void anActionIsEnabledByAvailabilitySelectionAndRight_data();
    void anActionIsEnabledByAvailabilitySelectionAndRight();

    void resetCanBeAllowedToEverybody_data();
    void resetCanBeAllowedToEverybody();

    void oneRecordActionsAreAskedForTheFirstRecordOnly();
    void deleteIsAskedForTheDeletableRecords_data();
    void deleteIsAskedForTheDeletableRecords();

    void theIconOfTheDeletableFlagTellsWhatItWillDo_data();
    void theIconOfTheDeletableFlagTellsWhatItWillDo();
    void theIconsOfTheDeletableFlagAreBuiltOnce();

private:
    // "P" is write protected, "D" and "E" can be deleted, of "N" no data is known, and "X" is not there.
    FixedRecordModel m_model{{{u"P"_s, makeDeletable(u"P"_s, false)},
                              {u"D"_s, makeDeletable(u"D"_s, true)},
                              {u"E"_s, makeDeletable(u"E"_s, true)},
                              {u"N"_s, nullptr}}};
};

void RecordActionAvailabilityTest::anActionIsEnabledByAvailabilitySelectionAndRight_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<bool>("available");
    QTest::addColumn<int>("rights");
    QTest::addColumn<bool>("enabled");
    const QStringList selections[] = {{}, {u"D"_s}, {u"D"_s, u"E"_s}, {u"D"_s, u"E"_s, u"P"_s}};
    for (const Rule& rule : rules) {
        for (const QStringList& selection : selections) {
            for (const bool available : {false, true}) {
                for (int rights = 0; rights < 16; ++rights) {
                    const bool rightSize = rule.forSeveral ? !selection.isEmpty() : selection.size() == 1;
                    const bool allowed = (UserRights::Rights(QFlag(rights)) & rule.needed) == rule.needed;
                    QTest::addRow("%s of %d records, %s, rights %d", rule.name, int(selection.size()),
                                  available ? "available" : "not available", rights)
                        << int(rule.action) << selection << available << rights << (rightSize && available && allowed);
                }
            }
        }
    }
}

void RecordActionAvailabilityTest::anActionIsEnabledByAvailabilitySelectionAndRight()
{
    QFETCH(const int, action);
    QFETCH(const QStringList, selection);
    QFETCH(const bool, available);
    QFETCH(const int, rights);
    const auto flag = static_cast<Controller::enUserAction>(action);
    const UserLogin login{UserRights::Rights(QFlag(rights))};
    ScriptedController controller(&m_model);
    controller.available.setFlag(flag, available);
    controller.sl_selectedRecordsChanged(selection);
    QTEST(controller.recordAction(flag)->isEnabled(), "enabled");
}

void RecordActionAvailabilityTest::resetCanBeAllowedToEverybody_data()
{
    QTest::addColumn<bool>("skipped");
    QTest::addColumn<bool>("available");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("rights count") << false << true << false;
    QTest::newRow("rights are skipped") << true << true << true;
    QTest::newRow("rights are skipped, but it is not available") << true << false << false;
}

void RecordActionAvailabilityTest::resetCanBeAllowedToEverybody()
{
    QFETCH(const bool, skipped);
    QFETCH(const bool, available);
    const UserLogin nobody{UserRights::Rights()};
    ScriptedController controller(&m_model);
    controller.skipsRights = skipped;
    controller.available.setFlag(Controller::UserActionReset, available);
    controller.sl_selectedRecordsChanged({u"D"_s});
    QTEST(controller.recordAction(Controller::UserActionReset)->isEnabled(), "enabled");
}

void RecordActionAvailabilityTest::oneRecordActionsAreAskedForTheFirstRecordOnly()
{
    const UserLogin login;
    ScriptedController controller(&m_model);
    QMap<int, QStringList> asked;
    controller.whenAsked = [&](Controller::enUserAction action, const QStringList& ids) { asked[action] = ids; };
    controller.sl_selectedRecordsChanged({u"X"_s});
    QCOMPARE(asked.size(), 10);
    QCOMPARE(asked.value(Controller::UserActionRename), QStringList{u"X"_s});
    asked.clear();
    controller.sl_selectedRecordsChanged({u"D"_s, u"X"_s});
    QCOMPARE(asked, (QMap<int, QStringList>{{Controller::UserActionDelete, {u"D"_s}},
                                            {Controller::UserActionDownload, {u"D"_s, u"X"_s}},
                                            {Controller::UserActionDeletable, {u"D"_s, u"X"_s}}}));
}

void RecordActionAvailabilityTest::deleteIsAskedForTheDeletableRecords_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QStringList>("asked");
    QTest::newRow("one that is protected") << QStringList{u"P"_s} << QStringList{};
    QTest::newRow("one that is deletable") << QStringList{u"D"_s} << QStringList{u"D"_s};
    QTest::newRow("one of three, and order kept") << QStringList{u"E"_s, u"P"_s, u"D"_s} << QStringList{u"E"_s, u"D"_s};
    QTest::newRow("one that is not in the list") << QStringList{u"X"_s, u"D"_s} << QStringList{u"D"_s};
    QTest::newRow("one without data") << QStringList{u"N"_s} << QStringList{};
}

void RecordActionAvailabilityTest::deleteIsAskedForTheDeletableRecords()
{
    QFETCH(const QStringList, selection);
    const UserLogin login;
    ScriptedController controller(&m_model, Controller::UserActionDelete);
    QList<QStringList> asked;
    controller.whenAsked = [&](Controller::enUserAction, const QStringList& ids) { asked << ids; };
    controller.sl_selectedRecordsChanged(selection);
    QCOMPARE(asked.size(), 1);
    QTEST(asked.first(), "asked");
}

void RecordActionAvailabilityTest::theIconOfTheDeletableFlagTellsWhatItWillDo_data()
{
    QTest::addColumn<QStringList>("selection");
    QTest::addColumn<QString>("icon");
    QTest::newRow("one protected record") << QStringList{u"P"_s} << u"SetDeletable"_s;
    QTest::newRow("one deletable record") << QStringList{u"D"_s} << u"ResetDeletable"_s;
    QTest::newRow("records of both kinds") << QStringList{u"D"_s, u"P"_s} << u"SetDeletable"_s;
    QTest::newRow("deletable records only") << QStringList{u"D"_s, u"E"_s} << u"ResetDeletable"_s;
    QTest::newRow("a record that is not known") << QStringList{u"X"_s} << u"ResetDeletable"_s;
    QTest::newRow("a record without data") << QStringList{u"N"_s} << u"ResetDeletable"_s;
}

void RecordActionAvailabilityTest::theIconOfTheDeletableFlagTellsWhatItWillDo()
{
    QFETCH(const QStringList, selection);
    QFETCH(const QString, icon);
    ScriptedController controller(&m_model);
    controller.available = {};
    controller.sl_selectedRecordsChanged(selection);
    const QString path = u":/Zelko/RecordList/%1.svg"_s.arg(icon);
    QVERIFY(QFile::exists(path));
    QCOMPARE(picture(controller.recordAction(Controller::UserActionDeletable)->icon()), picture(QIcon(path)));
    QVERIFY(picture(QIcon(u":/Zelko/RecordList/SetDeletable.svg"_s)) !=
            picture(QIcon(u":/Zelko/RecordList/ResetDeletable.svg"_s)));
}

void RecordActionAvailabilityTest::theIconsOfTheDeletableFlagAreBuiltOnce()
{
    const auto keyOfIcon = [this](const QString& id) {
        ScriptedController controller(&m_model);
        controller.sl_selectedRecordsChanged({id});
        return controller.recordAction(Controller::UserActionDeletable)->icon().cacheKey();
    };
    QCOMPARE(keyOfIcon(u"P"_s), keyOfIcon(u"P"_s));
    QCOMPARE(keyOfIcon(u"D"_s), keyOfIcon(u"D"_s));
    QVERIFY(keyOfIcon(u"D"_s) != keyOfIcon(u"P"_s));
}

QTEST_MAIN(RecordActionAvailabilityTest)
#include "tst_recordactionavailability.moc"
