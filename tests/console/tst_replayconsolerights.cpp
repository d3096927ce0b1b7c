#include "programs.h"
#include "recordconsole.h"
#include "recorderprocess.h"

#include <console/session/consolesession.h>
#include <console/window/usermessages.h>

#include <zelkobase/orb/orb.h>

#include <QMessageBox>
#include <QToolButton>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using ZelkoCommon::Role;
using ZelkoGUI::BookmarkModel;
using ZelkoTest::RecorderProcess;
using ZelkoTest::TestUsers;

namespace {

/// A recorder on a store with a record of an hour, where the user "operator" is what the last start has made him.
struct Recorder : HourLongStore
{
    /// Starts it at a port of its own, and again at the same one; false where that is not free yet.
    bool start(Role role)
    {
        process.reset(); // so that the store is free
        process = std::make_unique<RecorderProcess>(programPath("zelko-recorder"));
        const QString users = folder.filePath(u"users"_s);
        QFile file(users);
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        const auto hash = ZelkoCommon::PasswordHash::make(who.password.toUtf8(), ZelkoCommon::HashCost::least());
        file.write(ZelkoCommon::UserEntry{who.user, role, *hash}.toLine() + '\n');
        file.close();
        const bool serves = process->startWithUsers(
            users, {u"--store"_s, folder.filePath(u"store"_s), u"--port"_s, QString::number(port)});
        port = serves ? process->port() : port;
        return serves;
    }

    ZelkoCommon::ZelkoConfiguration site() const
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({u"north"_s, u"127.0.0.1"_s, port, {}, who});
        return site;
    }

    const ZelkoCommon::LinkCredentials who = TestUsers::credentials(Role::Operator);
    std::unique_ptr<RecorderProcess> process;
    quint16 port = 0; // of the first start
};

ZelkoCommon::LinkOptions quickLink()
{
    ZelkoCommon::LinkOptions options;
    options.firstRetry = options.lastRetry = std::chrono::milliseconds(50);
    return options;
}

} // namespace

// Bookmarks that were not sent, and a recorder as it is built that takes the right to send them from their user.
class TestReplayConsoleRights : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsBookmarksUntilTheRightIsBack();
};

void TestReplayConsoleRights::keepsBookmarksUntilTheRightIsBack()
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    Recorder recorder;
    QVERIFY(recorder.start(Role::Operator));
    ConsoleSession session(orb, recorder.site(), quickLink());
    const RecordConsole console(session, recorder.folder);
    QTRY_VERIFY_WITH_TIMEOUT(console.rowOf(recorder.lengthy) >= 0 && console.user.role() == Role::Operator, patience);
    QVERIFY(console.choose());
    console.bookmark();

    QTRY_VERIFY_WITH_TIMEOUT(recorder.start(Role::Viewer), patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.window.messages()->box(), patience);
    QVERIFY(console.window.messages()->box()->text().startsWith(u"User operator may not do this."_s));
    QVERIFY(console.isUnsent());
    QVERIFY(!console.bar().isEnabled());

    QTRY_VERIFY_WITH_TIMEOUT(recorder.start(Role::Operator), patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.isUnsent() && console.bar().isEnabled(), patience);
    console.window.messages()->box()->close();
    QTest::mouseClick(console.deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(console.storedBookmarks(), 1, patience);
}

QTEST_MAIN(TestReplayConsoleRights)
#include "tst_replayconsolerights.moc"
