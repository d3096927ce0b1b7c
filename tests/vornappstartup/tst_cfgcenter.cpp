#include <vornappstartup/cfgcenter.h>

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

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
    void opensOnlyGroupsThatAreThereForReading();
    void opensNoGroupForWritingWhereNothingCanBeWritten();
    void flushingFailsWhereNothingCanBeWritten();
    void flushingSucceedsAgainWhenTheFileCanBeWritten();
    void aTextWithCommasThatSomebodyWroteIsOneText();
    void aFileThatIsChangedKeepsWhatWasWritten();

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

QTEST_GUILESS_MAIN(CfgCenterTest)
#include "tst_cfgcenter.moc"
