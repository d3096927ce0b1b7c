#include <console/session/recorderusers.h>

#include <credentials/userentry.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::Role;
using ZelkoCommon::UserEntry;

class TestOwnRecorderUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAUserForEachRole();
    void hasPasswordsOfItsOwn();
    void writesTheirHashesForItsOwnerOnly();
    void givesTheSameFileAgain();
    void writesItAgainWhenItWasTakenAway();
    void takesItAwayInTheEnd();
    void leavesTheFileOfAnotherConsoleAlone();
    void removesTheFileOfAConsoleThatWasKilled();
    void saysWhenThereIsNoFolder();

private:
    static QStringList filesIn(const QTemporaryDir& folder)
    {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden);
    }
};

void TestOwnRecorderUsers::hasAUserForEachRole()
{
    const RecorderUsers users;
    QCOMPARE(users.users().size(), std::size_t{3});
    QCOMPARE(users.users()[0].role, Role::Viewer);
    QCOMPARE(users.users()[1].role, Role::Operator);
    QCOMPARE(users.users()[2].role, Role::Administrator);
    QCOMPARE(users.users()[1].credentials.user, "operator");
}

void TestOwnRecorderUsers::hasPasswordsOfItsOwn()
{
    QSet<QString> passwords;
    const RecorderUsers first;
    const RecorderUsers second;
    for (const RecorderUsers* const users : {&first, &second}) {
        for (const KnownUser& user : users->users()) {
            QVERIFY(user.credentials.password.size() >= 43);
            passwords.insert(user.credentials.password);
        }
    }
    QCOMPARE(passwords.size(), qsizetype{6});
}

void TestOwnRecorderUsers::writesTheirHashesForItsOwnerOnly()
{
    const QTemporaryDir folder;
    RecorderUsers users;
    QFile file(users.file(folder.path()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.permissions() & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(QFileInfo(file).path(), folder.path());
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    QCOMPARE(lines.size(), 3);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto entry = UserEntry::fromLine(lines[static_cast<qsizetype>(i)], nullptr);
        QVERIFY(entry);
        QCOMPARE(entry->name, users.users()[i].credentials.user);
        QCOMPARE(entry->role, users.users()[i].role);
        QVERIFY(entry->hash.matches(users.users()[i].credentials.password.toUtf8()));
    }
}

void TestOwnRecorderUsers::givesTheSameFileAgain()
{
    const QTemporaryDir folder;
    RecorderUsers users;
    const QString path = users.file(folder.path());
    QCOMPARE(users.file(folder.path()), path);
    QCOMPARE(filesIn(folder).size(), 1);
}

void TestOwnRecorderUsers::writesItAgainWhenItWasTakenAway()
{
    const QTemporaryDir folder;
    RecorderUsers users;
    QVERIFY(QFile::remove(users.file(folder.path())));
    QVERIFY(QFileInfo::exists(users.file(folder.path())));
}

void TestOwnRecorderUsers::takesItAwayInTheEnd()
{
    const QTemporaryDir folder;
    {
        RecorderUsers users;
        QVERIFY(!users.file(folder.path()).isEmpty());
    }
    QCOMPARE(filesIn(folder), QStringList());
}

void TestOwnRecorderUsers::leavesTheFileOfAnotherConsoleAlone()
{
    const QTemporaryDir folder;
    RecorderUsers first;
    const QString path = first.file(folder.path());
    {
        RecorderUsers second;
        QVERIFY(second.file(folder.path()) != path);
        QCOMPARE(filesIn(folder).size(), 2);
    }
    QVERIFY(QFileInfo::exists(path));
}

void TestOwnRecorderUsers::removesTheFileOfAConsoleThatWasKilled()
{
    QProcess ended;
    ended.start("/bin/true", QStringList());
    QVERIFY(ended.waitForStarted());
    const qint64 gone = ended.processId();
    QVERIFY(ended.waitForFinished());
    const QTemporaryDir folder;
    QFile leftOver(folder.filePath(QStringLiteral(".console-users-%1-abc").arg(gone)));
    QVERIFY(leftOver.open(QIODevice::WriteOnly));
    QFile other(folder.filePath(".console-users"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    RecorderUsers users;
    QVERIFY(!users.file(folder.path()).isEmpty());
    QVERIFY(!leftOver.exists());
    QVERIFY(other.exists());
}

void TestOwnRecorderUsers::saysWhenThereIsNoFolder()
{
    const QTemporaryDir folder;
    RecorderUsers users;
    QCOMPARE(users.file(folder.filePath("missing")), QString());
    QVERIFY(!users.file(folder.path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestOwnRecorderUsers)
#include "tst_ownrecorderusers.moc"
