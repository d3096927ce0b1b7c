#include <recorderclient.h>
#include <recorderprocess.h>
#include <storedrecord.h>

#include <zelkobase/maps/recorditemmap.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoTest;
using ZelkoCommon::LinkCredentials;
using ZelkoCommon::Role;

// What the real recorder does for whom.
class TestRecorderUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void doesForAUserWhatHeMay_data();
    void doesForAUserWhatHeMay();
    void takesAClientWithoutCredentialsForAViewer();
    void takesEverybodyForAViewerWithoutAUsersFile();
    void deniesAccessWithAWrongPassword_data();
    void deniesAccessWithAWrongPassword();
    void admitsWhoSaysTheRightPasswordThen();
    void tellsNothingOfADenialOfTheUserBefore();
    void forgetsADenialWithTheUser();
    void letsAnotherUserTakeOver();
    void sendsWhatTheFormerUserWroteBefore();
    void knowsItsUsersAgainWhenItIsStartedAgain();
    void tellsWhomItRefused();
    void doesNotServeWithAUsersFileThatCannotBeUsed();
    void makesAUserWhomItAdmits();

private:
    static constexpr int patience = 30'000;

    void prepare()
    {
        m_recorder = nullptr; // so that the store is free
        m_recorder = std::make_unique<RecorderProcess>(QStringLiteral(ZELKO_RECORDER));
    }
    QStringList store() const { return {QStringLiteral("--store"), m_folder->path()}; }
    bool start()
    {
        prepare();
        return m_recorder->start(store());
    }
    void connectAs(const LinkCredentials& who)
    {
        m_client = nullptr;
        m_client = std::make_unique<RecorderClient>(*m_orb, m_recorder->port(), who);
        m_failed = std::make_unique<QSignalSpy>(&m_client->link(), &ZelkoCommon::TreeLink::connectFailed);
        m_refused = std::make_unique<QSignalSpy>(&m_client->link(), &ZelkoCommon::TreeLink::writeRefused);
    }
    bool isLoaded() const { return m_client->isConnected() && m_client->values().isLoaded(); }
    void deleteRecord(const QString& id)
    {
        m_client->write(m_client->values().command<Value<QString>>("DeleteRecordingList"), id);
    }
    QStringList shown() const { return isLoaded() ? m_client->values().ids() : QStringList{QStringLiteral("nothing")}; }
    QStringList onDisk() const { return QDir(device()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name); }
    QString device() const { return m_folder->filePath(QStringLiteral("Recorder1")); }
    QString log() const
    {
        m_recorder->process().setReadChannel(QProcess::StandardError);
        m_log += QString::fromUtf8(m_recorder->process().readAllStandardError());
        return m_log;
    }

    mutable QString m_log;
    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<RecorderClient> m_client;
    std::unique_ptr<QSignalSpy> m_failed;
    std::unique_ptr<QSignalSpy> m_refused;
};

namespace {

const QString first = QStringLiteral("R1");
const QString second = QStringLiteral("R2");
const QStringList both{first, second};
const LinkCredentials nobody;
const QString denied = QStringLiteral("the recorder server refused: access is denied: user or password are wrong");

} // namespace

void TestRecorderUsers::initTestCase()
{
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
}

void TestRecorderUsers::cleanupTestCase()
{
    m_orb.reset();
}

void TestRecorderUsers::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(storeRecord(device(), finishedRecord(first), 4000));
    QVERIFY(storeRecord(device(), finishedRecord(second), 4000));
}

void TestRecorderUsers::cleanup()
{
    m_failed.reset();
    m_refused.reset();
    m_client.reset();
    m_recorder.reset();
    m_log.clear();
}

void TestRecorderUsers::doesForAUserWhatHeMay_data()
{
    QTest::addColumn<Role>("role");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("a viewer") << Role::Viewer << both
                              << "user \"viewer\" may not write /ZELKO/Command/Recorder1/DeleteRecordingList";
    QTest::newRow("an operator") << Role::Operator << QStringList{second} << QString();
    QTest::newRow("an administrator") << Role::Administrator << QStringList{second} << QString();
}

void TestRecorderUsers::doesForAUserWhatHeMay()
{
    QFETCH(const Role, role);
    QFETCH(const QStringList, left);
    QFETCH(const QString, refusal);
    QVERIFY(start());
    connectAs(TestUsers::credentials(role));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_client->link().role(), role);
    deleteRecord(first);
    if (!refusal.isEmpty()) {
        QTRY_COMPARE_WITH_TIMEOUT(m_refused->count(), 1, patience);
        QCOMPARE(m_refused->constFirst().constFirst().toString(), refusal);
        QTRY_COMPARE_WITH_TIMEOUT(m_client->values().command<Value<QString>>("DeleteRecordingList")->GetValue(),
                                  QString(), patience);
    }
    QTRY_COMPARE_WITH_TIMEOUT(shown(), left, patience);
    QTRY_COMPARE_WITH_TIMEOUT(onDisk(), left, patience);
}

void TestRecorderUsers::takesAClientWithoutCredentialsForAViewer()
{
    QVERIFY(start());
    connectAs(nobody);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_client->link().role(), Role::Viewer);
    deleteRecord(first);
    QTRY_COMPARE_WITH_TIMEOUT(m_refused->count(), 1, patience);
    QCOMPARE(onDisk(), both);
}

void TestRecorderUsers::takesEverybodyForAViewerWithoutAUsersFile()
{
    prepare();
    QVERIFY(m_recorder->startWithUsers({}, store()));
    connectAs(nobody);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    deleteRecord(first);
    QTRY_COMPARE_WITH_TIMEOUT(m_refused->count(), 1, patience);
    QCOMPARE(onDisk(), both);
    connectAs(TestUsers::credentials(Role::Administrator));
    QTRY_VERIFY_WITH_TIMEOUT(!m_failed->isEmpty(), patience);
    QCOMPARE(m_client->link().lastError(), denied);
}

void TestRecorderUsers::deniesAccessWithAWrongPassword_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    const QString right = TestUsers::credentials(Role::Operator).password;
    QTest::newRow("of a user") << "operator" << right + QLatin1Char('x');
    QTest::newRow("of somebody who is not there") << "anna" << right;
    QTest::newRow("of another user") << "administrator" << right;
    QTest::newRow("an empty one") << "operator" << QString();
    QTest::newRow("of no name") << QString() << right;
    QTest::newRow("longer than any") << "operator" << QString(5000, QLatin1Char('x'));
    QTest::newRow("of a name that is no line of a file") << "operator:viewer\n" << right;
}

void TestRecorderUsers::deniesAccessWithAWrongPassword()
{
    QFETCH(const QString, user);
    QFETCH(const QString, password);
    QVERIFY(start());
    connectAs({user, password});
    QTRY_VERIFY_WITH_TIMEOUT(!m_failed->isEmpty(), patience);
    QCOMPARE(m_client->link().lastError(), denied);
    QVERIFY(!m_client->isConnected());
    QTRY_VERIFY_WITH_TIMEOUT(log().contains(QStringLiteral("access denied to user")), patience);
}

void TestRecorderUsers::admitsWhoSaysTheRightPasswordThen()
{
    QVERIFY(start());
    connectAs({QStringLiteral("operator"), QStringLiteral("wrong")});
    QTRY_VERIFY_WITH_TIMEOUT(!m_failed->isEmpty(), patience);
    m_client->link().setCredentials(TestUsers::credentials(Role::Operator));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_client->link().role(), Role::Operator);
    QCOMPARE(m_failed->count(), 1); // it did not try the wrong one again and again
}

// The answer to the former attempt stood in the queue, or was on its way, when another user came.
void TestRecorderUsers::tellsNothingOfADenialOfTheUserBefore()
{
    QVERIFY(start());
    connectAs({QStringLiteral("operator"), QStringLiteral("wrong")});
    while (!log().contains(QStringLiteral("access denied to user"))) { // this thread hears of nothing else meanwhile
        QVERIFY(m_recorder->process().waitForReadyRead(patience));
    }
    m_client->link().setCredentials(TestUsers::credentials(Role::Operator));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_failed->count(), 0);
    QVERIFY(!m_client->link().isDenied());
}

void TestRecorderUsers::forgetsADenialWithTheUser()
{
    QVERIFY(start());
    connectAs({QStringLiteral("operator"), QStringLiteral("wrong")});
    QTRY_VERIFY_WITH_TIMEOUT(m_client->link().isDenied(), patience);
    m_client->link().setCredentials({QStringLiteral("operator"), QStringLiteral("wrong")});
    QVERIFY(m_client->link().isDenied()); // nobody else has come
    m_client->link().setCredentials({QStringLiteral("operator"), QStringLiteral("wrong too")});
    QVERIFY(!m_client->link().isDenied());
    QCOMPARE(m_client->link().lastError(), QString());
    QTRY_VERIFY_WITH_TIMEOUT(m_client->link().isDenied(), patience);
}

void TestRecorderUsers::letsAnotherUserTakeOver()
{
    QVERIFY(start());
    connectAs(TestUsers::credentials(Role::Viewer));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QSignalSpy disconnected(&m_client->link(), &ZelkoCommon::TreeLink::disconnected);
    QSignalSpy connected(&m_client->link(), &ZelkoCommon::TreeLink::connected);
    m_client->link().setCredentials(TestUsers::credentials(Role::Operator));
    QTRY_COMPARE_WITH_TIMEOUT(connected.count(), 1, patience);
    QCOMPARE(disconnected.count(), 1);
    QCOMPARE(m_client->link().role(), Role::Operator);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    deleteRecord(first);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringList{second}, patience);
    m_client->link().setCredentials(nobody);
    QTRY_COMPARE_WITH_TIMEOUT(connected.count(), 2, patience);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringList{second}, patience);
    deleteRecord(second);
    QTRY_COMPARE_WITH_TIMEOUT(m_refused->count(), 1, patience);
    QCOMPARE(onDisk(), QStringList{second});
}

void TestRecorderUsers::sendsWhatTheFormerUserWroteBefore()
{
    QVERIFY(start());
    connectAs(TestUsers::credentials(Role::Operator));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    deleteRecord(first);
    m_client->link().setCredentials(TestUsers::credentials(Role::Viewer));
    deleteRecord(second); // is nobody's: the one has left, the other is not there yet
    QTRY_COMPARE_WITH_TIMEOUT(m_client->link().role(), Role::Viewer, patience);
    QTRY_COMPARE_WITH_TIMEOUT(onDisk(), QStringList{second}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), QStringList{second}, patience);
}

void TestRecorderUsers::knowsItsUsersAgainWhenItIsStartedAgain()
{
    QVERIFY(start());
    connectAs(TestUsers::credentials(Role::Operator));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    const QString port = QString::number(m_recorder->port());
    m_recorder->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!m_client->isConnected(), patience);
    prepare();
    QVERIFY(m_recorder->start(store() + QStringList{QStringLiteral("--port"), port}));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_client->link().role(), Role::Operator);
    deleteRecord(first);
    QTRY_COMPARE_WITH_TIMEOUT(onDisk(), QStringList{second}, patience);
}

void TestRecorderUsers::tellsWhomItRefused()
{
    QVERIFY(start());
    connectAs(TestUsers::credentials(Role::Viewer));
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    deleteRecord(first);
    QTRY_VERIFY_WITH_TIMEOUT(log().contains(QStringLiteral("refused: user \"viewer\" may not write "
                                                           "/ZELKO/Command/Recorder1/DeleteRecordingList")),
                             patience);
}

void TestRecorderUsers::doesNotServeWithAUsersFileThatCannotBeUsed()
{
    const QString users = m_folder->filePath(QStringLiteral("users"));
    QVERIFY(writeBytes(users, "operator:operator:secret\n"));
    prepare();
    QVERIFY(!m_recorder->startWithUsers(users, store()));
    QCOMPARE(m_recorder->exitCode(), 1);
    QVERIFY2(log().contains(QStringLiteral("line 1: the hash is none")), qPrintable(log()));
}

void TestRecorderUsers::makesAUserWhomItAdmits()
{
    QProcess maker;
    maker.start(QStringLiteral(ZELKO_RECORDER),
                {QStringLiteral("--make-user"), QStringLiteral("J\u00fcrgen"), QStringLiteral("operator")});
    maker.write("s\xc3\xa9same, ouvre-toi\nnot a part of it\n");
    maker.closeWriteChannel();
    QVERIFY(maker.waitForFinished(patience));
    QCOMPARE(maker.exitCode(), 0);
    const QString users = m_folder->filePath(QStringLiteral("users"));
    QVERIFY(writeBytes(users, maker.readAllStandardOutput()));
    prepare();
    QVERIFY(m_recorder->startWithUsers(users, store()));
    connectAs({QStringLiteral("J\u00fcrgen"), QStringLiteral("s\u00e9same, ouvre-toi")});
    QTRY_COMPARE_WITH_TIMEOUT(shown(), both, patience);
    QCOMPARE(m_client->link().role(), Role::Operator);
}

QTEST_GUILESS_MAIN(TestRecorderUsers)
#include "tst_recorderusers.moc"
