#include <zelkobase/connection/zelkoconfiguration.h>

#include <QTemporaryDir>
#include <QtTest>

using ZelkoCommon::LinkCredentials;
using ZelkoCommon::ZelkoConfiguration;
using SubSystem = ZelkoConfiguration::SubSystem;

class TestZelkoConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsASiteFile();
    void fillsInWhatIsLeftOut();
    void readsHowLongAQuestionMayTake_data();
    void readsHowLongAQuestionMayTake();
    void readsWhereTheServiceIs_data();
    void readsWhereTheServiceIs();
    void readsForWhomToAct();
    void readsHowToTalkThroughTls();
    void refusesWhatIsNoSiteFile_data();
    void refusesWhatIsNoSiteFile();
    void namesTheFileThatCannotBeUsed();
    void readsAFileFromDisk();
    void refusesAHugeFile();
    void takesSubSystemsGivenInCode();
    void refusesSubSystemsThatCannotBe_data();
    void refusesSubSystemsThatCannotBe();
    void makesThePathsOfTheTree();
};

void TestZelkoConfiguration::readsASiteFile()
{
    QString error;
    const auto site = ZelkoConfiguration::fromJson(
        R"({"currentSubSystem": "south", "subSystems": [{"name": "north", "host": "recorder-north", "port": 9000},
            {"name": "south", "host": "::1"}], "listen": "192.0.2.20"})",
        &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->SubSystems(), (std::vector<SubSystem>{{"north", "recorder-north", 9000}, {"south", "::1", 8004}}));
    QCOMPARE(site->GetCurrentSubSystem(), "south");
    QCOMPARE(site->ListenAddress(), "192.0.2.20");
    QCOMPARE(site->Find("north")->port, 9000);
    QVERIFY(!site->Find("east"));
}

void TestZelkoConfiguration::fillsInWhatIsLeftOut()
{
    const auto site = ZelkoConfiguration::fromJson(R"({"subSystems": [{"name": "a", "host": "h"}]})", nullptr);
    QVERIFY(site);
    QCOMPARE(site->GetCurrentSubSystem(), "a");
    QCOMPARE(site->Find("a")->port, 8004);
    QCOMPARE(site->ListenAddress(), QString());
    QCOMPARE(site->AnswerLimit().count(), 5000);
}

void TestZelkoConfiguration::readsHowLongAQuestionMayTake_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<qint64>("limit"); // -1: refused
    QTest::newRow("the shortest") << QByteArray("1") << qint64(1);
    QTest::newRow("another one") << QByteArray("2500") << qint64(2500);
    QTest::newRow("the longest") << QByteArray("600000") << qint64(600000);
    QTest::newRow("none") << QByteArray("0") << qint64(-1);
    QTest::newRow("a longer one") << QByteArray("600001") << qint64(-1);
    QTest::newRow("a huge one") << QByteArray("1e300") << qint64(-1);
    QTest::newRow("half a millisecond") << QByteArray("1.5") << qint64(-1);
    QTest::newRow("a text") << QByteArray("\"2500\"") << qint64(-1);
    QTest::newRow("null") << QByteArray("null") << qint64(-1);
}

void TestZelkoConfiguration::readsHowLongAQuestionMayTake()
{
    QFETCH(const QByteArray, value);
    QFETCH(const qint64, limit);
    QString error;
    const auto site = ZelkoConfiguration::fromJson(
        R"({"subSystems": [{"name": "a", "host": "h"}], "answerLimitMs": )" + value + "}", &error);
    QCOMPARE(site ? qint64(site->AnswerLimit().count()) : -1, limit);
    QCOMPARE(error.contains("answer limit"), limit < 0);
}

void TestZelkoConfiguration::readsWhereTheServiceIs_data()
{
    QTest::addColumn<QByteArray>("service");
    QTest::newRow("a corbaloc") << QByteArray("corbaloc::1.2@192.0.2.7:8004/RecorderService");
    QTest::newRow("a corbaname") << QByteArray("corbaname::192.0.2.1:2809#south/recorder");
    QTest::newRow("an IOR") << QByteArray("IOR:") + QByteArray(4092, '0');
}

void TestZelkoConfiguration::readsWhereTheServiceIs()
{
    QFETCH(QByteArray, service);
    QString error;
    const auto site = ZelkoConfiguration::fromJson(R"({"subSystems": [{"name": "a", "host": "h", "service": ")" +
                                                       service + R"("}, {"name": "b", "host": "h"}]})",
                                                   &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->Find("a")->service, QString::fromLatin1(service));
    QCOMPARE(site->Find("b")->service, QString());
}

void TestZelkoConfiguration::readsForWhomToAct()
{
    QString error;
    const auto site = ZelkoConfiguration::fromJson(
        R"({"subSystems": [{"name": "a", "host": "h"}, {"name": "b", "host": "h", "user": "anna"},
            {"name": "c", "host": "h", "user": "anna", "password": "secret"}]})",
        &error);
    QVERIFY2(site, qPrintable(error));
    QCOMPARE(site->Find("a")->credentials, LinkCredentials());
    QVERIFY(!site->Find("a")->hasCredentials());
    QCOMPARE(site->Find("b")->credentials.user, "anna");
    QVERIFY(!site->Find("b")->hasCredentials());
    QCOMPARE(site->Find("c")->credentials, (LinkCredentials{"anna", "secret"}));
    QVERIFY(site->Find("c")->hasCredentials());
}

void TestZelkoConfiguration::readsHowToTalkThroughTls()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("site.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"subSystems": [{"name": "a", "host": "h"}],
                   "tls": {"authority": "ca.pem", "key": "/etc/key.pem", "keyPassword": "sesame"}})");
    file.close();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(file.fileName(), &error);
    QVERIFY2(site, qPrintable(error));
    QVERIFY(site->Tls());
    const ZelkoCommon::TlsOptions expected{folder.filePath("ca.pem"), "/etc/key.pem", "sesame"};
    QCOMPARE(*site->Tls(), expected);
    const auto plain = ZelkoConfiguration::fromJson(R"({"subSystems": [{"name": "a", "host": "h"}]})", nullptr);
    QVERIFY(plain && !plain->Tls());
}

void TestZelkoConfiguration::refusesWhatIsNoSiteFile_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("reason");
    const auto port = [](const char* value) {
        return QByteArray(R"({"subSystems": [{"name": "a", "host": "h", "port": )") + value + "}]}";
    };
    QTest::newRow("nothing") << QByteArray() << "illegal value";
    QTest::newRow("an array") << QByteArray("[]") << "it is not a JSON object";
    QTest::newRow("an empty object") << QByteArray("{}") << "it lists no sub systems";
    QTest::newRow("sub systems that are no array") << QByteArray(R"({"subSystems": 3})") << "it lists no sub systems";
    QTest::newRow("a sub system that is no object") << QByteArray(R"({"subSystems": [3]})") << "needs a name";
    QTest::newRow("a sub system without a name") << QByteArray(R"({"subSystems": [{"host": "h"}]})") << "needs a name";
    QTest::newRow("a sub system without a host") << QByteArray(R"({"subSystems": [{"name": "a"}]})") << "and a host";
    QTest::newRow("a sub system listed twice")
        << QByteArray(R"({"subSystems": [{"name": "a", "host": "h"}, {"name": "a", "host": "i"}]})")
        << "\"a\" is listed twice";
    const auto listen = [](const char* value) {
        return QByteArray(R"({"subSystems": [{"name": "a", "host": "h"}], "listen": )") + value + "}";
    };
    QTest::newRow("an empty address to listen on") << listen("\"\"") << "no address to listen on";
    QTest::newRow("a number to listen on") << listen("8004") << "no address to listen on";
    QTest::newRow("two addresses to listen on") << listen("\"192.0.2.1,192.0.2.2\"") << "no address to listen on";
    QTest::newRow("an address to listen on with a port and a path") << listen("\"h:1/x\"") << "no address to listen on";
    const auto tls = [](const char* value) {
        return QByteArray(R"({"subSystems": [{"name": "a", "host": "h"}], "tls": )") + value + "}";
    };
    QTest::newRow("TLS that is just said") << tls("true") << "needs the names of two files";
    QTest::newRow("TLS without a key") << tls(R"({"authority": "a"})") << "needs the names of two files";
    QTest::newRow("TLS without an authority") << tls(R"({"key": "k"})") << "needs the names of two files";
    QTest::newRow("TLS with a number for a password")
        << tls(R"({"authority": "a", "key": "k", "keyPassword": 3})") << "needs the names of two files";
    const auto user = [](const char* values) {
        return QByteArray(R"({"subSystems": [{"name": "a", "host": "h", )") + values + "}]}";
    };
    QTest::newRow("a number for a user") << user("\"user\": 3") << "the user of sub system \"a\"";
    QTest::newRow("an empty user") << user("\"user\": \"\"") << "the user of sub system \"a\"";
    QTest::newRow("a number for a password")
        << user("\"user\": \"anna\", \"password\": 3") << "the user of sub system \"a\"";
    QTest::newRow("a password of nobody") << user("\"password\": \"x\"") << "the user of sub system \"a\"";
    QTest::newRow("port 0") << port("0") << "the port of sub system \"a\"";
    QTest::newRow("a port below") << port("-1") << "the port of sub system \"a\"";
    QTest::newRow("a port beyond") << port("65536") << "the port of sub system \"a\"";
    QTest::newRow("half a port") << port("80.5") << "the port of sub system \"a\"";
    QTest::newRow("a port as text") << port("\"80\"") << "the port of sub system \"a\"";
    const auto service = [](const QByteArray& value) {
        return QByteArray(R"({"subSystems": [{"name": "a", "host": "h", "service": )") + value + "}]}";
    };
    QTest::newRow("an empty service") << service("\"\"") << "the service of sub system \"a\"";
    QTest::newRow("a service as number") << service("3") << "the service of sub system \"a\"";
    QTest::newRow("a service of another kind") << service("\"http://h/\"") << "the service of sub system \"a\"";
    QTest::newRow("a service of a kind and nothing else")
        << service("\"corbaloc:\"") << "the service of sub system \"a\"";
    QTest::newRow("a service with a blank") << service("\"corbaloc::h /x\"") << "the service of sub system \"a\"";
    QTest::newRow("a service in other letters")
        << service("\"corbaloc::h\u00fc/x\"") << "the service of sub system \"a\"";
    QTest::newRow("a huge service") << service('"' + QByteArray("IOR:") + QByteArray(4093, '0') + '"')
                                    << "the service of sub system \"a\"";
    QTest::newRow("a current sub system that is not listed")
        << QByteArray(R"({"currentSubSystem": "b", "subSystems": [{"name": "a", "host": "h"}]})")
        << "\"b\" is not listed";
}

void TestZelkoConfiguration::refusesWhatIsNoSiteFile()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, reason);
    QString error;
    QVERIFY(!ZelkoConfiguration::fromJson(json, &error));
    QVERIFY2(error.contains(reason), qPrintable(error));
    QVERIFY(!ZelkoConfiguration::fromJson(json, nullptr));
}

void TestZelkoConfiguration::namesTheFileThatCannotBeUsed()
{
    QString error;
    QVERIFY(!ZelkoConfiguration::fromFile("/nonexistent/site.json", &error));
    QVERIFY2(error.contains("/nonexistent/site.json"), qPrintable(error));
}

void TestZelkoConfiguration::readsAFileFromDisk()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("site.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"subSystems": [{"name": "a", "host": "h"}]})");
    file.close();
    QString error;
    QVERIFY2(ZelkoConfiguration::fromFile(file.fileName(), &error), qPrintable(error));
}

void TestZelkoConfiguration::refusesAHugeFile()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("site.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(2 * 1024 * 1024));
    QString error;
    QVERIFY(!ZelkoConfiguration::fromFile(file.fileName(), &error));
    QVERIFY2(error.contains("too large"), qPrintable(error));
}

void TestZelkoConfiguration::takesSubSystemsGivenInCode()
{
    ZelkoConfiguration site;
    QCOMPARE(site.GetCurrentSubSystem(), QString());
    QVERIFY(!site.SetCurrentSubSystem("a"));
    QVERIFY(site.AddSubSystem({"a", "127.0.0.1", 1}));
    QVERIFY(site.AddSubSystem({"b", "127.0.0.1", 2}));
    QVERIFY(site.AddSubSystem({"a", "127.0.0.1", 3}));
    QCOMPARE(site.SubSystems().size(), std::size_t{2});
    QCOMPARE(site.Find("a")->port, 3);
    QCOMPARE(site.GetCurrentSubSystem(), "a");
    QVERIFY(site.SetCurrentSubSystem("b"));
    QVERIFY(!site.SetCurrentSubSystem("c"));
    QCOMPARE(site.GetCurrentSubSystem(), "b");
}

void TestZelkoConfiguration::refusesSubSystemsThatCannotBe_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("host");
    QTest::addColumn<int>("port");
    QTest::newRow("no name") << ""
                             << "h" << 1;
    QTest::newRow("a name of two levels") << "a/b"
                                          << "h" << 1;
    QTest::newRow("no host") << "a"
                             << "" << 1;
    QTest::newRow("a host with a blank") << "a"
                                         << "h h" << 1;
    QTest::newRow("a host with a path") << "a"
                                        << "h/key" << 1;
    QTest::newRow("a host with a version") << "a"
                                           << "1.2@h" << 1;
    QTest::newRow("a host that is two") << "a"
                                        << "h,:i" << 1;
    QTest::newRow("a host with an escape") << "a"
                                           << "h%2f" << 1;
    QTest::newRow("no port") << "a"
                             << "h" << 0;
}

void TestZelkoConfiguration::refusesSubSystemsThatCannotBe()
{
    QFETCH(QString, name);
    QFETCH(QString, host);
    QFETCH(int, port);
    ZelkoConfiguration site;
    QVERIFY(!site.AddSubSystem({name, host, static_cast<quint16>(port)}));
    QVERIFY(site.SubSystems().empty());
}

void TestZelkoConfiguration::makesThePathsOfTheTree()
{
    QCOMPARE(ZelkoConfiguration::MakeRootPath("north"), "/SubSystems/north");
    QCOMPARE(ZelkoConfiguration().cfgPath(), "ZelkoGUI");
}

QTEST_APPLESS_MAIN(TestZelkoConfiguration)
#include "tst_zelkoconfiguration.moc"
