#include "patience.h"
#include "recorderprocess.h"
#include "recorderstart.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/devicerecords.h>
#include <console/records/recordpane.h>
#include <console/session/consolesession.h>
#include <console/session/consoleuser.h>
#include <console/window/consolewindow.h>
#include <console/window/usermessages.h>

#include <valuecore/tree.h>
#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkobase/orb/orb.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QMessageBox>
#include <QSettings>
#include <QTest>

#include <csignal>

using namespace ZelkoConsole;
using ZelkoCommon::Role;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

const QString local = QStringLiteral("local");

const QStringList sources{QStringLiteral("generator:fm,name=Short,seconds=1"),
                          QStringLiteral("generator:carrier,name=Long,rate=8000,seconds=600")};

// A window over a session, and what stands in its table.
struct Shown
{
    explicit Shown(Session& session)
        : settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat)
        , user(session)
        , window(&session, &user, &settings)
        , table(*window.records()->table())
    {
        window.show();
    }

    QString text(int row, int column) const { return table.model()->index(row, column).data().toString(); }
    int rows() const { return table.model()->rowCount(); }

    int rowOf(const QString& name, const QString& status) const
    {
        for (int row = 0; row < rows(); ++row) {
            if (text(row, Model::NameColumn) == name && text(row, Model::StatusColumn) == status) {
                return row;
            }
        }
        return -1;
    }

    int count(const QString& name) const
    {
        const QModelIndex first = table.model()->index(0, Model::NameColumn);
        return static_cast<int>(table.model()->match(first, Qt::DisplayRole, name, -1, Qt::MatchExactly).size());
    }

    QStringList selected() const { return shownrecords::selectedIds(table); }

    QTemporaryDir folder;
    QSettings settings;
    ConsoleUser user;
    ConsoleWindow window;
    QTableView& table;
};

} // namespace

class TestConsoleSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions()); }
    void cleanupTestCase() { m_orb.reset(); }

    void showsRecordsAppearGrowAndFinish()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store, sources));
        QCOMPARE(session.status(local).state, LinkState::Starting);
        const Shown shown(session);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("recording")) >= 0, patience);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")) >= 0, patience);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Long"), QStringLiteral("recording")) >= 0, patience);
        const auto size = [&shown] {
            const int row = shown.rowOf(QStringLiteral("Long"), QStringLiteral("recording"));
            return shown.table.model()->index(row, Model::SizeColumn).data(Model::SortRole).toULongLong();
        };
        const quint64 before = size();
        QTRY_VERIFY_WITH_TIMEOUT(size() > before, patience);
    }

    void bringsTheListBackWithItsSelectionWhenTheRecorderWasKilled()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store, sources));
        Shown shown(session);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")) >= 0, patience);
        operatorhands::clickRow(shown.table, shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")));
        const QStringList selected = shown.selected();
        QCOMPARE(selected.size(), 1);

        ::kill(static_cast<pid_t>(session.recorder()->processId()), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(session.status(local).state, LinkState::Unreachable, patience);
        QCOMPARE(session.status(local).reason, QStringLiteral("it was killed"));
        QCOMPARE(shown.rows(), 0);

        QTRY_COMPARE_WITH_TIMEOUT(shown.selected(), selected, patience);
        QVERIFY(session.status(local).isConnected());
    }

    void recordsOnlyWhatIsMissingWhenTheRecorderWasKilled()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store, sources));
        const Shown shown(session);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Long"), QStringLiteral("recording")) >= 0, patience);
        ::kill(static_cast<pid_t>(session.recorder()->processId()), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(shown.rows(), 0, patience);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Long"), QStringLiteral("recording")) >= 0, patience);
        QTRY_COMPARE_WITH_TIMEOUT(shown.count(QStringLiteral("Long")), 2, patience);
        QCOMPARE(shown.count(QStringLiteral("Short")), 1);
    }

    void leavesNothingOnTheTree()
    {
        const QTemporaryDir store;
        {
            ConsoleSession session(*m_orb, recorderStart(store));
            QTRY_VERIFY_WITH_TIMEOUT(session.status(local).isConnected(), patience);
            QVERIFY(Tree::Instance()->GetItem(QStringLiteral("/SubSystems/local/ZELKO")));
        }
        QVERIFY(!Tree::Instance()->GetItem(QStringLiteral("/SubSystems/local/ZELKO")));
    }

    void followsTheRecorderOfASiteThroughAKill()
    {
        const QTemporaryDir store;
        ZelkoTest::RecorderProcess recorder(programPath("zelko-recorder"));
        const QStringList arguments{QStringLiteral("--store"),  store.path(),
                                    QStringLiteral("--source"), sources.constFirst(),
                                    QStringLiteral("--source"), sources.constLast()};
        QVERIFY(recorder.start(arguments));
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({local, QStringLiteral("127.0.0.1"), recorder.port()});
        ConsoleSession session(*m_orb, site);
        QCOMPARE(session.recorder(), nullptr);
        const Shown shown(session);
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")) >= 0, patience);

        bool wasLost = false;
        connect(&session, &Session::statusChanged, &session,
                [&] { wasLost = wasLost || !session.status(local).isConnected(); });
        recorder.kill();
        QTRY_VERIFY_WITH_TIMEOUT(wasLost, patience);
        QCOMPARE(shown.rows(), 0);
        const QString port = QString::number(recorder.port());
        QVERIFY(recorder.start(arguments + QStringList{QStringLiteral("--port"), port}));
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")) >= 0, patience);
        QVERIFY(session.status(local).isConnected());
    }

    void tellsThatARecorderOfTheSiteIsNotThere()
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({QStringLiteral("north"), QStringLiteral("127.0.0.1"), 1});
        const ConsoleSession session(*m_orb, site);
        QCOMPARE(session.subSystems(), QStringList(QStringLiteral("north")));
        QTRY_COMPARE_WITH_TIMEOUT(session.status(QStringLiteral("north")).state, LinkState::Unreachable, patience);
        QVERIFY(!session.status(QStringLiteral("north")).reason.isEmpty());
        QCOMPARE(session.status(QStringLiteral("west")), SubSystemStatus());
    }

    void actsForTheUsersOfItsOwnRecorder()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store));
        QCOMPARE(session.knownUsers().size(), std::size_t{3});
        QVERIFY(!session.role(local));
        ConsoleUser user(session);
        QTRY_COMPARE_WITH_TIMEOUT(session.role(local), Role::Operator, patience);
        for (const Role role : ZelkoCommon::allRoles) {
            QVERIFY(user.switchTo(ZelkoCommon::roleName(role)));
            QTRY_COMPARE_WITH_TIMEOUT(session.role(local), role, patience);
            QTRY_VERIFY_WITH_TIMEOUT(session.status(local).isConnected(), patience);
        }
        ::kill(static_cast<pid_t>(session.recorder()->processId()), SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(!session.role(local), patience);
        QTRY_COMPARE_WITH_TIMEOUT(session.role(local), Role::Administrator, patience);
        user.logOut();
        QTRY_COMPARE_WITH_TIMEOUT(session.role(local), Role::Viewer, patience);
    }

    void actsForTheUserOfASite()
    {
        const QTemporaryDir store;
        ZelkoTest::RecorderProcess recorder(programPath("zelko-recorder"));
        QVERIFY(recorder.start({QStringLiteral("--store"), store.path()}));
        const auto who = ZelkoTest::TestUsers::credentials(Role::Operator);
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({local, QStringLiteral("127.0.0.1"), recorder.port(), {}, who});
        ConsoleSession session(*m_orb, site);
        QCOMPARE(session.configuredUser(), who.user);
        QVERIFY(session.knownUsers().empty());
        QTRY_COMPARE_WITH_TIMEOUT(session.role(local), Role::Operator, patience);
        session.actFor({who.user, QStringLiteral("wrong")});
        QTRY_COMPARE_WITH_TIMEOUT(session.status(local).state, LinkState::Denied, patience);
        QCOMPARE(session.status(local).reason, QStringLiteral("user or password are wrong"));
        QVERIFY(!session.role(local));
    }

    void saysWhatTheRecorderRefusesAViewer()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store, sources));
        Shown shown(session);
        shown.user.switchTo(ZelkoCommon::roleName(Role::Viewer));
        QTRY_VERIFY_WITH_TIMEOUT(shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")) >= 0, patience);
        auto& controller = *shown.window.records()->controller();
        QTRY_VERIFY_WITH_TIMEOUT(session.role(local) == Role::Viewer && controller.isConnected(), patience);
        controller.sl_resyncRecordList(); // as something that asks for no rights would
        const auto& messages = *shown.window.messages();
        QTRY_VERIFY_WITH_TIMEOUT(messages.box(), patience);
        const QString text = messages.box()->text();
        QVERIFY2(text.startsWith(QStringLiteral("Recorder local has refused a change: user \"viewer\" may not write")),
                 qPrintable(text));
        QTest::keyClick(messages.box(), Qt::Key_Return);
        QVERIFY(!messages.box());
    }

    void offersAViewerNoRename()
    {
        const QTemporaryDir store;
        ConsoleSession session(*m_orb, recorderStart(store, sources));
        Shown shown(session);
        const auto chooseRecord = [&shown] {
            const auto row = [&shown] { return shown.rowOf(QStringLiteral("Short"), QStringLiteral("finished")); };
            const bool isThere = QTest::qWaitFor([&row] { return row() >= 0; }, patience);
            operatorhands::clickRow(shown.table, row());
            return isThere;
        };
        const auto offersRename = [&shown] {
            using Controller = ZelkoGUI::IZelkoGUIController;
            return shown.window.records()->controller()->recordAction(Controller::UserActionRename)->isEnabled();
        };
        QVERIFY(chooseRecord());
        QTRY_VERIFY_WITH_TIMEOUT(offersRename(), patience);
        shown.user.switchTo(ZelkoCommon::roleName(Role::Viewer));
        QTRY_COMPARE_WITH_TIMEOUT(session.role(local), Role::Viewer, patience);
        QVERIFY(chooseRecord());
        QTRY_VERIFY_WITH_TIMEOUT(!offersRename(), patience);
        QTest::keyClick(&shown.table, Qt::Key_R, Qt::ControlModifier);
        QVERIFY(!QApplication::activeModalWidget());
    }

private:
    std::unique_ptr<ZelkoCommon::Orb> m_orb;
};

QTEST_MAIN(TestConsoleSession)
#include "tst_consolesession.moc"
