#include <recorder/users/caller.h>
#include <recorder/users/rights.h>

#include <QSet>
#include <QTest>

using namespace ZelkoRecorder;

class TestRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areWhatTheTableSays_data();
    void areWhatTheTableSays();
    void growWithTheRole();
    void haveATextForEachAction();
    void areThoseOfACallersRole();
};

void TestRights::areWhatTheTableSays_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<bool>("viewer");
    QTest::addColumn<bool>("operates");
    QTest::newRow("looking") << Action::Look << true << true;
    QTest::newRow("synchronising the list") << Action::Synchronize << false << true;
    QTest::newRow("synchronising a record") << Action::SyncOneRecord << false << true;
    QTest::newRow("deleting") << Action::DeleteRecordingList << false << true;
    QTest::newRow("putting to rest") << Action::SetRecordIdle << false << true;
    QTest::newRow("history") << Action::EditHistory << false << true;
    QTest::newRow("comments") << Action::EditComment << false << true;
    QTest::newRow("the deletable flag") << Action::SetDeletable << false << true;
    QTest::newRow("bookmarks") << Action::EditBookmarks << false << true;
    QTest::newRow("copies") << Action::CopyRecord << false << true;
    QTest::newRow("spectra that are sent to anybody") << Action::StreamOverview << false << true;
    QTest::newRow("replay") << Action::Replay << false << true;
    QTest::newRow("export") << Action::Export << false << true;
    QTest::newRow("channels") << Action::UseChannels << false << true;
    QTest::newRow("the clock of a device") << Action::SetDeviceTime << false << false;
}

void TestRights::areWhatTheTableSays()
{
    QFETCH(const Action, action);
    QTEST(mayDo(Role::Viewer, action), "viewer");
    QTEST(mayDo(Role::Operator, action), "operates");
    QVERIFY(mayDo(Role::Administrator, action));
}

void TestRights::growWithTheRole()
{
    for (const Action action : allActions) {
        QVERIFY(mayDo(Role::Operator, action) || !mayDo(Role::Viewer, action));
        QVERIFY(mayDo(Role::Administrator, action) || !mayDo(Role::Operator, action));
    }
}

void TestRights::haveATextForEachAction()
{
    QSet<QString> texts;
    for (const Action action : allActions) {
        texts.insert(actionText(action));
    }
    QCOMPARE(texts.size(), qsizetype{std::size(allActions)});
    QVERIFY(!texts.contains(QString()));
}

void TestRights::areThoseOfACallersRole()
{
    const Caller nobody;
    QVERIFY(nobody.may(Action::Look));
    QVERIFY(!nobody.may(Action::DeleteRecordingList));
    QCOMPARE(nobody.text(), "a client without a name (viewer)");
    const Caller anna{"anna", Role::Operator};
    QVERIFY(anna.may(Action::DeleteRecordingList));
    QVERIFY(!anna.may(Action::SetDeviceTime));
    QCOMPARE(anna.text(), "user \"anna\" (operator)");
}

QTEST_APPLESS_MAIN(TestRights)
#include "tst_rights.moc"
