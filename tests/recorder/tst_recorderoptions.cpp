#include <recorder/process/recorderoptions.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;

class TestRecorderOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasDefaults();
    void readsEveryOption();
    void readsWhomToMakeALineFor();
    void readsHowToTalkThroughTls();
    void givesSourcesToDevices_data();
    void givesSourcesToDevices();
    void givesChannelsTheirSources_data();
    void givesChannelsTheirSources();
    void takesSeveralChannels();
    void makesExportFoldersAbsolute();
    void refusesBadOptions_data();
    void refusesBadOptions();
    void answersHelpAndVersion_data();
    void answersHelpAndVersion();

private:
    static std::optional<RecorderOptions> parse(const QStringList& arguments, RecorderOptions::Ending* ending)
    {
        return RecorderOptions::parse(QStringList{QStringLiteral("zelko-recorder")} + arguments, ending);
    }
    RecorderOptions::Ending m_ending;
};

void TestRecorderOptions::hasDefaults()
{
    const auto options = parse({QStringLiteral("--store"), QStringLiteral("/s")}, &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->store, QStringLiteral("/s"));
    QCOMPARE(options->subSystem, QStringLiteral("local"));
    QCOMPARE(options->devices, QStringList{QStringLiteral("Recorder1")});
    QCOMPARE(options->listenAddress, QStringLiteral("127.0.0.1"));
    QCOMPARE(options->port, quint16{8004});
    QVERIFY(options->sources.isEmpty());
    QVERIFY(options->channels.isEmpty());
    QCOMPARE(options->dataPatience, std::chrono::milliseconds(60'000));
    QCOMPARE(options->preparedRecords, 0);
    QCOMPARE(options->churn.perSecond, 0.0);
    QCOMPARE(options->churn.changes, qint64{0});
    QCOMPARE(options->pace.speed, 1.0);
    QCOMPARE(options->pace.indexInterval, std::chrono::microseconds(1'000'000));
    QVERIFY(!options->exitWithParent);
    QCOMPARE(options->usersFile, QString());
    QCOMPARE(options->repeat, RecordingThread::Repeat::Everything);
}

void TestRecorderOptions::readsEveryOption()
{
    const QString line = QStringLiteral(
        "--store /s --sub-system north --device A --device B-2 --listen ::1 --port 0 --populate 100000 --churn 2.5 "
        "--churn-changes 70000 --speed 0 --index-interval 0.25 --data-patience 2.5 --exit-with-parent --once --users "
        "/u --source "
        "B-2=sigmf:/x=y");
    const auto options = parse(line.split(QLatin1Char(' ')), &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->subSystem, QStringLiteral("north"));
    QCOMPARE(options->devices, (QStringList{QStringLiteral("A"), QStringLiteral("B-2")}));
    QCOMPARE(options->listenAddress, QStringLiteral("::1"));
    QCOMPARE(options->port, quint16{0});
    QCOMPARE(options->preparedRecords, 100'000);
    QCOMPARE(options->churn.perSecond, 2.5);
    QCOMPARE(options->churn.changes, qint64{70'000});
    QCOMPARE(options->pace.speed, 0.0);
    QCOMPARE(options->pace.indexInterval, std::chrono::microseconds(250'000));
    QCOMPARE(options->dataPatience, std::chrono::milliseconds(2500));
    QVERIFY(options->exitWithParent);
    QCOMPARE(options->usersFile, QStringLiteral("/u"));
    QVERIFY(!options->newUser);
    QVERIFY(!options->tls);
    QCOMPARE(options->repeat, RecordingThread::Repeat::Unfinished);
    QCOMPARE(options->sources.value(QStringLiteral("B-2")), QStringList{QStringLiteral("sigmf:/x=y")});
}

void TestRecorderOptions::readsWhomToMakeALineFor()
{
    const auto options =
        parse({QStringLiteral("--make-user"), QStringLiteral("anna"), QStringLiteral("operator")}, &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->newUser, (RecorderOptions::NewUser{QStringLiteral("anna"), ZelkoCommon::Role::Operator}));
}

void TestRecorderOptions::readsHowToTalkThroughTls()
{
    const QTemporaryDir folder;
    QFile password(folder.filePath(QStringLiteral("password")));
    QVERIFY(password.open(QIODevice::WriteOnly));
    password.write("open sesame\nand nothing else\n");
    password.close();
    const auto options =
        parse({QStringLiteral("--store=/s"), QStringLiteral("--tls-authority=/ca"), QStringLiteral("--tls-key=/key"),
               QStringLiteral("--tls-key-password"), password.fileName()},
              &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    const ZelkoCommon::TlsOptions expected{QStringLiteral("/ca"), QStringLiteral("/key"), QStringLiteral("open sesame"),
                                           false};
    QVERIFY(options->tls == expected);
}

void TestRecorderOptions::givesSourcesToDevices_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("description");
    QTest::newRow("without a device") << QStringLiteral("generator:fm") << QStringLiteral("A")
                                      << QStringLiteral("generator:fm");
    QTest::newRow("with one") << QStringLiteral("B=generator:fm") << QStringLiteral("B")
                              << QStringLiteral("generator:fm");
    QTest::newRow("an equals sign of its own") << QStringLiteral("generator:fm,rate=48000") << QStringLiteral("A")
                                               << QStringLiteral("generator:fm,rate=48000");
    QTest::newRow("both") << QStringLiteral("B=generator:fm,rate=48000") << QStringLiteral("B")
                          << QStringLiteral("generator:fm,rate=48000");
    QTest::newRow("no such device") << QStringLiteral("C=x") << QStringLiteral("A") << QStringLiteral("C=x");
}

void TestRecorderOptions::givesSourcesToDevices()
{
    QFETCH(const QString, source);
    QFETCH(const QString, device);
    QFETCH(const QString, description);
    const auto options = parse({QStringLiteral("--store=/s"), QStringLiteral("--device=A"),
                                QStringLiteral("--device=B"), QStringLiteral("--source"), source},
                               &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->sources.size(), 1);
    QCOMPARE(options->sources.value(device), QStringList{description});
}

void TestRecorderOptions::givesChannelsTheirSources_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("source");
    QTest::newRow("without a source") << "Channel 1"
                                      << "Channel 1"
                                      << "generator:fm";
    QTest::newRow("with one") << "Channel 1=generator:noise"
                              << "Channel 1"
                              << "generator:noise";
    QTest::newRow("an equals sign of its own") << "A=generator:fm,rate=48000"
                                               << "A"
                                               << "generator:fm,rate=48000";
    QTest::newRow("a capture") << "A=sigmf:/x=y"
                               << "A"
                               << "sigmf:/x=y";
    QTest::newRow("no name") << "=generator:fm"
                             << ""
                             << "generator:fm";
}

void TestRecorderOptions::givesChannelsTheirSources()
{
    QFETCH(const QString, channel);
    QFETCH(const QString, name);
    QFETCH(const QString, source);
    const auto options = parse({QStringLiteral("--store=/s"), QStringLiteral("--channel"), channel}, &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->channels, QList<OwnChannels::Plan>({{name, source}}));
}

void TestRecorderOptions::takesSeveralChannels()
{
    const auto options = parse(
        {QStringLiteral("--store=/s"), QStringLiteral("--channel=B"), QStringLiteral("--channel=A=generator:noise")},
        &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->channels, QList<OwnChannels::Plan>({{QStringLiteral("B"), QStringLiteral("generator:fm")},
                                                          {QStringLiteral("A"), QStringLiteral("generator:noise")}}));
}

void TestRecorderOptions::makesExportFoldersAbsolute()
{
    const QTemporaryDir folder;
    const QString relative = QDir::current().relativeFilePath(folder.path());
    const auto options = parse({QStringLiteral("--store=/s"), QStringLiteral("--export-folder"), relative,
                                QStringLiteral("--export-folder=/")},
                               &m_ending);
    QVERIFY2(options, qPrintable(m_ending.text));
    QCOMPARE(options->exportFolders, (QStringList{folder.path(), QStringLiteral("/")}));
}

void TestRecorderOptions::refusesBadOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentions");
    const auto row = [](const char* name, const QString& more, const QString& mentions) {
        QTest::newRow(name) << (QStringList{QStringLiteral("--store=/s")} + more.split(QLatin1Char(' '))) << mentions;
    };
    QTest::newRow("a user without a role") << QStringList{"--make-user", "anna"} << "a name and a role";
    QTest::newRow("a user with more than that") << QStringList{"--make-user", "anna", "viewer", "x"} << "a name and a";
    QTest::newRow("a user with another role") << QStringList{"--make-user", "anna", "root"} << "\"root\" is no role";
    QTest::newRow("a user who can be none") << QStringList{"--make-user", "an:na", "viewer"} << "\"an:na\" cannot be";
    QTest::newRow("no store") << QStringList() << QStringLiteral("--store");
    row("an unknown option", QStringLiteral("--colour red"), QStringLiteral("colour"));
    row("an option without its value", QStringLiteral("--port"), QStringLiteral("port"));
    row("something without an option", QStringLiteral("generator:fm"), QStringLiteral("generator:fm"));
    row("a port that is no number", QStringLiteral("--port http"), QStringLiteral("http"));
    row("a port too high", QStringLiteral("--port 65536"), QStringLiteral("65536"));
    row("a fraction of a port", QStringLiteral("--port 1.5"), QStringLiteral("1.5"));
    row("a negative number of records", QStringLiteral("--populate -1"), QStringLiteral("-1"));
    row("a speed below zero", QStringLiteral("--speed -1"), QStringLiteral("--speed"));
    row("a speed without an end", QStringLiteral("--speed inf"), QStringLiteral("inf"));
    row("a churn that is no number", QStringLiteral("--churn nan"), QStringLiteral("nan"));
    row("half a change", QStringLiteral("--churn-changes 0.5"), QStringLiteral("0.5"));
    row("no time at all between index entries", QStringLiteral("--index-interval 0"),
        QStringLiteral("--index-interval"));
    row("no patience with data at all", QStringLiteral("--data-patience 0"), QStringLiteral("--data-patience"));
    row("less patience than none", QStringLiteral("--data-patience -60"), QStringLiteral("-60"));
    row("patience for ever", QStringLiteral("--data-patience inf"), QStringLiteral("inf"));
    row("patience for more than a day", QStringLiteral("--data-patience 86401"), QStringLiteral("86401"));
    row("patience that is no number", QStringLiteral("--data-patience 1min"), QStringLiteral("1min"));
    row("patience of which nothing is said", QStringLiteral("--data-patience"), QStringLiteral("data-patience"));
    row("a device that is a path", QStringLiteral("--device a/b"), QStringLiteral("a/b"));
    row("a device twice", QStringLiteral("--device A --device A"), QStringLiteral("twice"));
    row("a folder for exports that is not there", QStringLiteral("--export-folder /no/such"),
        QStringLiteral("/no/such"));
    row("an authority for TLS without a key", QStringLiteral("--tls-authority /ca"), QStringLiteral("--tls-key"));
    row("a key for TLS without an authority", QStringLiteral("--tls-key /k"), QStringLiteral("--tls-authority"));
    row("a password of no key", QStringLiteral("--tls-key-password /p"), QStringLiteral("--tls-key"));
    row("a password of a key that is not there",
        QStringLiteral("--tls-authority /ca --tls-key /k --tls-key-password /no/such"), QStringLiteral("/no/such"));
    row("a sub system that is a path", QStringLiteral("--sub-system a/b"), QStringLiteral("a/b"));
}

void TestRecorderOptions::refusesBadOptions()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, mentions);
    QVERIFY(!parse(arguments, &m_ending));
    QCOMPARE(m_ending.exitCode, 2);
    QVERIFY2(m_ending.text.contains(mentions), qPrintable(m_ending.text));
}

void TestRecorderOptions::answersHelpAndVersion_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("mentions");
    QTest::newRow("help") << QStringLiteral("--help") << QStringLiteral("--populate");
    QTest::newRow("help with patience") << QStringLiteral("--help") << QStringLiteral("--data-patience <seconds>");
    QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("zelko-recorder");
}

void TestRecorderOptions::answersHelpAndVersion()
{
    QFETCH(const QString, option);
    QFETCH(const QString, mentions);
    QVERIFY(!parse({option}, &m_ending));
    QCOMPARE(m_ending.exitCode, 0);
    QVERIFY2(m_ending.text.contains(mentions), qPrintable(m_ending.text));
}

QTEST_GUILESS_MAIN(TestRecorderOptions)
#include "tst_recorderoptions.moc"
