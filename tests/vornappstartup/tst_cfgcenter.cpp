#include "filesizelimit.h"
#include "patience.h"
#include "readonlyfolder.h"

#include <observerbase/errorhandler.h>
#include <vornappstartup/cfgcenter.h>

#include <QDir>
#include <QLockFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <thread>

namespace {

/// What the user is told for as long as it exists.
class UserMessages
{
public:
    UserMessages()
        : m_before(ErrorHandler::Instance()->SetMessageSink([this](const QString& text) { m_texts << text; }))
    {}
    ~UserMessages() { ErrorHandler::Instance()->SetMessageSink(m_before); }
    UserMessages(const UserMessages&) = delete;
    UserMessages& operator=(const UserMessages&) = delete;

    const QStringList& texts() const { return m_texts; }

private:
    QStringList m_texts;
    const ErrorHandler::MessageSink m_before;
};

const QByteArray& damaged()
{
    static const QByteArray bytes("[General\nKey=value\nwithout a sign\n");
    return bytes;
}

/// Another process at work on a damaged file: it holds the lock, waits until somebody has read the damage, puts a good
/// file in its place, and lets go.
class MendingProcess
{
public:
    explicit MendingProcess(const QString& file)
        : m_file(QFile::encodeName(file))
        , m_lock(file + QStringLiteral(".lock"))
        , m_watch(::inotify_init1(IN_CLOEXEC))
    {
        m_lock.lock();
        ::inotify_add_watch(m_watch, m_file.constData(), IN_CLOSE_NOWRITE);
        m_thread = std::thread([this] { work(); });
    }
    ~MendingProcess()
    {
        m_thread.join();
        ::close(m_watch);
    }
    MendingProcess(const MendingProcess&) = delete;
    MendingProcess& operator=(const MendingProcess&) = delete;

private:
    void work()
    {
        pollfd read{m_watch, POLLIN, 0};
        ::poll(&read, 1, patience);
        QFile good(QFile::decodeName(m_file + ".new"));
        if (good.open(QIODevice::WriteOnly)) {
            good.write("[General]\nKey=good\n");
            good.close();
            ::rename((m_file + ".new").constData(), m_file.constData());
        }
        m_lock.unlock();
    }

    const QByteArray m_file;
    QLockFile m_lock;
    const int m_watch;
    std::thread m_thread;
};

} // namespace

class CfgCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void givesOneConfigurationForEachView();
    void keepsTheViewsInTheFolderOfTheApplication();
    void givesTheDefaultOfWhatIsMissing();
    void readsWhatWasWritten();
    void stringsSurviveTheDisk_data();
    void stringsSurviveTheDisk();
    void givesTheDefaultOfWhatIsNoValue_data();
    void givesTheDefaultOfWhatIsNoValue();
    void groupsHaveKeysOfTheirOwn();
    void namesSurviveTheDisk_data();
    void namesSurviveTheDisk();
    void opensOnlyGroupsThatAreThereForReading();
    void opensNoGroupForWritingWhereNothingCanBeWritten();
    void flushingFailsWhereNothingCanBeWritten();
    void flushingSucceedsAgainWhenTheFileCanBeWritten();
    void aTextWithCommasThatSomebodyWroteIsOneText();
    void aFileThatIsChangedKeepsWhatWasWritten();
    void writesTheWholeFileOrNothing();
    void severalProcessesKeepEachOthersChanges();
    void setsAsideWhatCannotBeRead_data();
    void setsAsideWhatCannotBeRead();
    void setsAsideWhatIsNoFile_data();
    void setsAsideWhatIsNoFile();
    void setsAsideAFileBeyondAllBounds();
    void keepsAllThatWasSetAside();
    void setsAsideWhatWasDamagedMeanwhile_data();
    void setsAsideWhatWasDamagedMeanwhile();
    void takesTheGoodFileThatAnotherProcessWroteMeanwhile();
    void leavesWhatCannotBeReadAloneWhileAnotherProcessHasTheLock();
    void otherProcessesHaveTheLockWhileTheUserIsTold();
    void leavesAFileInPeaceThatCanBeRead();
    void writesNothingOverWhatCannotBeSetAside();

private:
    QString file() const { return m_folder->filePath(QStringLiteral("user.ini")); }
    static ICfg& user() { return *CfgCenter::GetAppCfg(ICfg::UserView); }

    /// From the disk, not from memory.
    void reread() const { CfgCenter::SetFile(ICfg::UserView, file()); }

    void writeFile(const QByteArray& bytes) const
    {
        QFile ini(file());
        QVERIFY(ini.open(QIODevice::WriteOnly) && ini.write(bytes) == bytes.size());
    }

    QByteArray contentOf(const QString& name) const
    {
        QFile found(m_folder->filePath(name));
        return found.open(QIODevice::ReadOnly) ? found.readAll() : QByteArray();
    }

    QString messageOfSettingAside(const QString& newName) const
    {
        return QStringLiteral("The settings in %1 cannot be read. They were set aside as %2.")
            .arg(file(), m_folder->filePath(newName));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void CfgCenterTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setApplicationName(QStringLiteral("tst_cfgcenter"));
}

void CfgCenterTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    CfgCenter::SetFile(ICfg::UserView, file());
    CfgCenter::SetFile(ICfg::ApplicationView, m_folder->filePath(QStringLiteral("application.ini")));
}

void CfgCenterTest::cleanup()
{
    CfgCenter::SetFile(ICfg::UserView, QString());
    CfgCenter::SetFile(ICfg::ApplicationView, QString());
}

void CfgCenterTest::givesOneConfigurationForEachView()
{
    ICfg* const application = CfgCenter::GetAppCfg(ICfg::ApplicationView);
    QVERIFY(application != nullptr && application != &user());
    QCOMPARE(CfgCenter::GetAppCfg(ICfg::UserView), &user());
    QCOMPARE(CfgCenter::GetAppCfg(static_cast<ICfg::View>(3)), nullptr);
    user().SetBool(QStringLiteral("UseNativeDialogs"), false);
    QVERIFY(application->GetBool(QStringLiteral("UseNativeDialogs"), true));
}

void CfgCenterTest::keepsTheViewsInTheFolderOfTheApplication()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    for (const auto& [view, name] :
         {std::pair{ICfg::UserView, "/user.ini"}, {ICfg::ApplicationView, "/application.ini"}}) {
        const QString path = folder + QLatin1String(name);
        QFile::remove(path);
        CfgCenter::SetFile(view, QString());
        CfgCenter::GetAppCfg(view)->SetString(QStringLiteral("Key"), QStringLiteral("value"));
        QVERIFY(CfgCenter::GetAppCfg(view)->Flush());
        QVERIFY2(QFile::remove(path), qPrintable(path));
    }
}

void CfgCenterTest::givesTheDefaultOfWhatIsMissing()
{
    QCOMPARE(user().GetString(QStringLiteral("Missing"), QStringLiteral("default")), QStringLiteral("default"));
    QCOMPARE(user().GetInteger(QStringLiteral("Missing"), -7), -7);
    QCOMPARE(user().GetBool(QStringLiteral("Missing"), true), true);
    QCOMPARE(user().GetBool(QStringLiteral("Missing"), false), false);
}

void CfgCenterTest::readsWhatWasWritten()
{
    user().SetString(QStringLiteral("Text"), QStringLiteral("text"));
    user().SetInteger(QStringLiteral("Version"), -2147483647);
    user().SetBool(QStringLiteral("On"), true);
    user().SetBool(QStringLiteral("Off"), false);
    for (int round = 0; round < 2; ++round) {
        QCOMPARE(user().GetString(QStringLiteral("Text"), QString()), QStringLiteral("text"));
        QCOMPARE(user().GetInteger(QStringLiteral("Version"), 0), -2147483647);
        QCOMPARE(user().GetBool(QStringLiteral("On"), false), true);
        QCOMPARE(user().GetBool(QStringLiteral("Off"), true), false);
        QVERIFY(user().Flush());
        reread();
    }
}

void CfgCenterTest::stringsSurviveTheDisk_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("a path with blanks and commas") << QStringLiteral("/home/op/my filters, new");
    QTest::newRow("umlauts") << QString::fromUtf8("\xC3\xA4\xF0\x9F\x98\x80");
    QTest::newRow("quotes and backslashes") << QStringLiteral("\\\"\\n\"");
    QTest::newRow("what looks like a remark") << QStringLiteral("; no remark");
    QTest::newRow("signs that cannot be seen") << QStringLiteral("\t\r\n\u0001\u001f");
    QTest::newRow("base64") << QStringLiteral("AdnQywADAAA+/=");
    QTest::newRow("what means something in the file") << QStringLiteral(" [a]=\"b\";%c\\@Variant(\n) ");
    QTest::newRow("what the file format marks values with") << QStringLiteral("@Invalid()");
}

void CfgCenterTest::stringsSurviveTheDisk()
{
    QFETCH(QString, text);
    user().SetString(QStringLiteral("Text"), text);
    QVERIFY(user().Flush());
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Text"), QStringLiteral("default")), text);
}

void CfgCenterTest::givesTheDefaultOfWhatIsNoValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("a word") << QStringLiteral("yes");
    QTest::newRow("a fraction") << QStringLiteral("1.5");
    QTest::newRow("nothing") << QStringLiteral("");
    QTest::newRow("a number that is too large") << QStringLiteral("2147483648");
    QTest::newRow("capitals") << QStringLiteral("TRUE");
}

void CfgCenterTest::givesTheDefaultOfWhatIsNoValue()
{
    QFETCH(QString, text);
    user().SetString(QStringLiteral("Key"), text);
    QCOMPARE(user().GetInteger(QStringLiteral("Key"), 42), 42);
    QCOMPARE(user().GetBool(QStringLiteral("Key"), true), true);
    QCOMPARE(user().GetBool(QStringLiteral("Key"), false), false);
}

void CfgCenterTest::namesSurviveTheDisk_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a word") << QStringLiteral("Dialog");
    QTest::newRow("blanks") << QStringLiteral(" two words ");
    QTest::newRow("signs of the file") << QStringLiteral("a=b;#[c]\"\\%41");
    QTest::newRow("a remark") << QStringLiteral(";a");
    QTest::newRow("umlauts") << QString::fromUtf8("\xC3\xA4\xF0\x9F\x98\x80");
    QTest::newRow("that of the keys without a group") << QStringLiteral("General");
}

void CfgCenterTest::namesSurviveTheDisk()
{
    QFETCH(QString, name);
    user().SetInteger(name, 1);
    user().OpenGroup(name, ICfg::Access::Write)->SetInteger(name, 2);
    QVERIFY(user().Flush());
    reread();
    QCOMPARE(user().GetInteger(name, 0), 1);
    const auto group = user().OpenGroup(name, ICfg::Access::Read);
    QVERIFY(group);
    QCOMPARE(group->GetInteger(name, 0), 2);
}

void CfgCenterTest::groupsHaveKeysOfTheirOwn()
{
    const auto outer = user().OpenGroup(QStringLiteral("Dialog"), ICfg::Access::Write);
    QVERIFY(outer);
    const auto inner = outer->OpenGroup(QStringLiteral("Header"), ICfg::Access::Write);
    QVERIFY(inner);
    user().SetInteger(QStringLiteral("Version"), 1);
    outer->SetInteger(QStringLiteral("Version"), 2);
    inner->SetInteger(QStringLiteral("Version"), 3);
    QVERIFY(inner->Flush());
    reread();
    QCOMPARE(user().GetInteger(QStringLiteral("Version"), 0), 1);
    const auto again = user().OpenGroup(QStringLiteral("Dialog"), ICfg::Access::Read);
    QVERIFY(again);
    QCOMPARE(again->GetInteger(QStringLiteral("Version"), 0), 2);
    QCOMPARE(again->OpenGroup(QStringLiteral("Header"), ICfg::Access::Read)->GetInteger(QStringLiteral("Version"), 0),
             3);
}

void CfgCenterTest::opensOnlyGroupsThatAreThereForReading()
{
    QVERIFY(!user().OpenGroup(QStringLiteral("Dialog"), ICfg::Access::Read));
    user().OpenGroup(QStringLiteral("Dialogs"), ICfg::Access::Write)->SetInteger(QStringLiteral("Version"), 2);
    QVERIFY(!user().OpenGroup(QStringLiteral("Dialog"), ICfg::Access::Read));
    QVERIFY(user().OpenGroup(QStringLiteral("Dialogs"), ICfg::Access::Read));
    QVERIFY(!user().OpenGroup(QString(), ICfg::Access::Read));
    QVERIFY(!user().OpenGroup(QString(), ICfg::Access::Write));
}

void CfgCenterTest::opensNoGroupForWritingWhereNothingCanBeWritten()
{
    CfgCenter::SetFile(ICfg::UserView, QStringLiteral("/proc/user.ini"));
    QVERIFY(!user().OpenGroup(QStringLiteral("Dialog"), ICfg::Access::Write));
}

void CfgCenterTest::flushingFailsWhereNothingCanBeWritten()
{
    CfgCenter::SetFile(ICfg::UserView, QStringLiteral("/proc/user.ini"));
    user().SetInteger(QStringLiteral("Version"), 2);
    QVERIFY(!user().Flush());
}

void CfgCenterTest::flushingSucceedsAgainWhenTheFileCanBeWritten()
{
    const QString folder = m_folder->filePath(QStringLiteral("later"));
    QFile inTheWay(folder);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    CfgCenter::SetFile(ICfg::UserView, folder + QStringLiteral("/user.ini"));
    user().SetInteger(QStringLiteral("Version"), 2);
    QVERIFY(!user().Flush());
    QVERIFY(inTheWay.remove());
    QVERIFY(user().Flush());
    CfgCenter::SetFile(ICfg::UserView, folder + QStringLiteral("/user.ini"));
    QCOMPARE(user().GetInteger(QStringLiteral("Version"), 0), 2);
}

void CfgCenterTest::aTextWithCommasThatSomebodyWroteIsOneText()
{
    writeFile("[General]\nFolder=/data/a, b\n");
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Folder"), QString()), QStringLiteral("/data/a, b"));
}

void CfgCenterTest::aFileThatIsChangedKeepsWhatWasWritten()
{
    user().SetString(QStringLiteral("Key"), QStringLiteral("value"));
    CfgCenter::SetFile(ICfg::UserView, m_folder->filePath(QStringLiteral("other.ini")));
    QCOMPARE(user().GetString(QStringLiteral("Key"), QString()), QString());
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Key"), QString()), QStringLiteral("value"));
}

void CfgCenterTest::writesTheWholeFileOrNothing()
{
    user().SetString(QStringLiteral("Key"), QStringLiteral("value"));
    QVERIFY(user().Flush());
    const QByteArray before = contentOf(QStringLiteral("user.ini"));
    user().SetString(QStringLiteral("Long"), QString(1000, u'x'));
    {
        const ZelkoTest::FileSizeLimit limit(400); // as much as the lock needs
        QVERIFY(!user().Flush());
        QCOMPARE(contentOf(QStringLiteral("user.ini")), before);
    }
    QVERIFY(user().Flush());
    QVERIFY(contentOf(QStringLiteral("user.ini")).size() > 1000);
}

// The other process is played by another configuration of the same file.
void CfgCenterTest::severalProcessesKeepEachOthersChanges()
{
    CfgCenter::SetFile(ICfg::ApplicationView, file());
    ICfg& other = *CfgCenter::GetAppCfg(ICfg::ApplicationView);
    user().SetString(QStringLiteral("Mine"), QStringLiteral("1"));
    user().SetString(QStringLiteral("Both"), QStringLiteral("1"));
    QVERIFY(user().Flush());
    other.SetString(QStringLiteral("Theirs"), QStringLiteral("2"));
    other.SetString(QStringLiteral("Both"), QStringLiteral("2"));
    QVERIFY(other.Flush());
    user().SetString(QStringLiteral("Mine"), QStringLiteral("3"));
    QVERIFY(user().Flush());
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Mine"), QString()), QStringLiteral("3"));
    QCOMPARE(user().GetString(QStringLiteral("Theirs"), QString()), QStringLiteral("2"));
    QCOMPARE(user().GetString(QStringLiteral("Both"), QString()), QStringLiteral("2"));
}

void CfgCenterTest::setsAsideWhatCannotBeRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a group without an end") << QByteArray("[General\nKey=value\n");
    QTest::newRow("a line without a value") << QByteArray("[General]\nKey=value\nword\n");
    QTest::newRow("another kind of file") << QByteArray("<?xml version='1.0'?>\n<a/>\n");
    QTest::newRow("a value without its last quote") << QByteArray("[General]\nKey=\"val\n");
    QTest::newRow("a value with an escape that means nothing") << QByteArray("Key=\"a\\q\"\n");
    QTest::newRow("a value with half an escape") << QByteArray("Key=\"\\u00\"\n");
    QTest::newRow("a quote within a value") << QByteArray("Key=\"a\"b\"\n");
    QTest::newRow("a group without a name") << QByteArray("[]\nKey=value\n");
    QTest::newRow("a value without a key") << QByteArray("=value\n");
    QTest::newRow("no text at all") << QByteArray("Key=\xc3\n");
    QTest::newRow("noise") << QByteArray("\x00\xff\x13\n\x80\x07", 6);
}

void CfgCenterTest::setsAsideWhatCannotBeRead()
{
    QFETCH(QByteArray, bytes);
    const UserMessages messages;
    writeFile(bytes);
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Key"), QStringLiteral("default")), QStringLiteral("default"));
    QCOMPARE(messages.texts(), QStringList(messageOfSettingAside(QStringLiteral("user.ini.unreadable"))));
    user().SetString(QStringLiteral("Key"), QStringLiteral("new"));
    QVERIFY(user().Flush());
    QCOMPARE(contentOf(QStringLiteral("user.ini.unreadable")), bytes);
    QVERIFY(contentOf(QStringLiteral("user.ini")).contains("Key=new"));
    QCOMPARE(messages.texts().size(), 1);
}

void CfgCenterTest::setsAsideWhatIsNoFile_data()
{
    QTest::addColumn<bool>("isPipe");
    QTest::newRow("a folder") << false;
    QTest::newRow("a pipe, which would keep a reader waiting") << true;
}

void CfgCenterTest::setsAsideWhatIsNoFile()
{
    QFETCH(bool, isPipe);
    const UserMessages messages;
    QVERIFY(isPipe ? ::mkfifo(QFile::encodeName(file()).constData(), 0600) == 0 : QDir().mkdir(file()));
    reread();
    user().SetString(QStringLiteral("Key"), QStringLiteral("new"));
    QVERIFY(user().Flush());
    QVERIFY(QFileInfo::exists(file() + QStringLiteral(".unreadable")));
    QVERIFY(QFileInfo(file()).isFile());
    QCOMPARE(messages.texts().size(), 1);
}

void CfgCenterTest::setsAsideAFileBeyondAllBounds()
{
    const UserMessages messages;
    writeFile("[General]\nKey=value\n");
    QVERIFY(QFile::resize(file(), 16 * 1024 * 1024 + 1));
    reread();
    QCOMPARE(user().GetString(QStringLiteral("Key"), QStringLiteral("default")), QStringLiteral("default"));
    QCOMPARE(messages.texts().size(), 1);
}

void CfgCenterTest::keepsAllThatWasSetAside()
{
    const UserMessages messages;
    for (const char* const name : {"user.ini.unreadable", "user.ini.unreadable-2", "user.ini.unreadable-3"}) {
        writeFile(damaged() + name);
        reread();
        user();
        QCOMPARE(contentOf(QLatin1String(name)), damaged() + name);
        QCOMPARE(messages.texts().constLast(), messageOfSettingAside(QLatin1String(name)));
    }
    QCOMPARE(contentOf(QStringLiteral("user.ini.unreadable")), damaged() + "user.ini.unreadable");
}

void CfgCenterTest::setsAsideWhatWasDamagedMeanwhile_data()
{
    QTest::addColumn<bool>("isFlushed");
    QTest::newRow("when it is flushed") << true;
    QTest::newRow("when the configuration goes") << false;
}

void CfgCenterTest::setsAsideWhatWasDamagedMeanwhile()
{
    QFETCH(bool, isFlushed);
    user().SetString(QStringLiteral("Old"), QStringLiteral("value"));
    QVERIFY(user().Flush());
    const UserMessages messages;
    writeFile(damaged());
    user().SetString(QStringLiteral("New"), QStringLiteral("value"));
    if (isFlushed) {
        QVERIFY(user().Flush());
    } else {
        CfgCenter::SetFile(ICfg::UserView, QString());
    }
    QVERIFY(contentOf(QStringLiteral("user.ini")).contains("New=value"));
    QVERIFY(contentOf(QStringLiteral("user.ini")).contains("Old=value"));
    QCOMPARE(contentOf(QStringLiteral("user.ini.unreadable")), damaged());
    QCOMPARE(messages.texts(), QStringList(messageOfSettingAside(QStringLiteral("user.ini.unreadable"))));
}

// A machine that stands still for the patience of the reader lets him give up: then another one looks.
void CfgCenterTest::takesTheGoodFileThatAnotherProcessWroteMeanwhile()
{
    const UserMessages messages;
    QString seen;
    for (int attempt = 0; attempt < 10 && seen.isEmpty(); ++attempt) {
        CfgCenter::SetFile(ICfg::UserView, QString());
        writeFile(damaged());
        const MendingProcess other(file());
        reread();
        seen = user().GetString(QStringLiteral("Key"), QString());
    }
    QCOMPARE(seen, QStringLiteral("good"));
    QCOMPARE(contentOf(QStringLiteral("user.ini")), QByteArray("[General]\nKey=good\n"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(QStringLiteral("user.ini")));
    QCOMPARE(messages.texts(), QStringList());
}

void CfgCenterTest::leavesWhatCannotBeReadAloneWhileAnotherProcessHasTheLock()
{
    const UserMessages messages;
    writeFile(damaged());
    {
        QLockFile ofAnother(file() + QStringLiteral(".lock"));
        QVERIFY(ofAnother.lock());
        reread();
        user().SetString(QStringLiteral("Key"), QStringLiteral("new"));
        QCOMPARE(contentOf(QStringLiteral("user.ini")), damaged());
        QCOMPARE(messages.texts(), QStringList());
    }
    QVERIFY(user().Flush());
    QCOMPARE(contentOf(QStringLiteral("user.ini.unreadable")), damaged());
    QCOMPARE(messages.texts(), QStringList(messageOfSettingAside(QStringLiteral("user.ini.unreadable"))));
}

void CfgCenterTest::otherProcessesHaveTheLockWhileTheUserIsTold()
{
    QList<bool> isFree;
    const auto before = ErrorHandler::Instance()->SetMessageSink(
        [&](const QString&) { isFree << QLockFile(file() + QStringLiteral(".lock")).tryLock(0); });
    writeFile(damaged());
    reread();
    user().SetString(QStringLiteral("Key"), QStringLiteral("new"));
    writeFile(damaged());
    QVERIFY(user().Flush());
    ErrorHandler::Instance()->SetMessageSink(before);
    QCOMPARE(isFree, QList<bool>({true, true}));
}

void CfgCenterTest::leavesAFileInPeaceThatCanBeRead()
{
    const UserMessages messages;
    writeFile("; a remark\n\n[General]\nKey=\"a\\nb\"\nEmpty=\n[Group]\nKey=1\n");
    reread();
    user().SetInteger(QStringLiteral("Version"), 1);
    QVERIFY(user().Flush());
    QCOMPARE(user().GetString(QStringLiteral("Key"), QString()), QStringLiteral("a\nb"));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList(QStringLiteral("user.ini")));
    QCOMPARE(messages.texts(), QStringList());
}

void CfgCenterTest::writesNothingOverWhatCannotBeSetAside()
{
    const QString folder = m_folder->filePath(QStringLiteral("laid down"));
    QVERIFY(QDir().mkdir(folder));
    const UserMessages messages;
    {
        QFile ini(folder + QStringLiteral("/user.ini"));
        QVERIFY(ini.open(QIODevice::WriteOnly) && ini.write(damaged()) == damaged().size());
        QVERIFY(ini.setPermissions(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    }
    const ZelkoTest::ReadOnlyFolder readOnly(folder);
    CfgCenter::SetFile(ICfg::UserView, folder + QStringLiteral("/user.ini"));
    user().SetString(QStringLiteral("Key"), QStringLiteral("new"));
    for (int attempt = 0; attempt < 2; ++attempt) {
        QVERIFY(!user().Flush());
    }
    QCOMPARE(messages.texts(), QStringList(QStringLiteral("The settings in %1/user.ini cannot be read, nor set aside. "
                                                          "Changes are not kept.")
                                               .arg(folder)));
    CfgCenter::SetFile(ICfg::UserView, QString());
    QCOMPARE(contentOf(QStringLiteral("laid down/user.ini")), damaged());
}

QTEST_GUILESS_MAIN(CfgCenterTest)
#include "tst_cfgcenter.moc"
