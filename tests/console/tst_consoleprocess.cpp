#include "peerprocess.h"
#include "programs.h"
#include "recorderprocess.h"

#include <recorder/store/storelock.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using ZelkoRecorder::StoreLock;
using ZelkoTest::RecorderProcess;

namespace {

constexpr int patience = 60'000;

// A user of his own: settings and recordings in a folder that goes with the test.
QProcessEnvironment userIn(const QTemporaryDir& home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
    environment.remove(QStringLiteral("QT_LOGGING_RULES")); // which silences traces while tests run
    return environment;
}

// A console as a user starts it; killed with this object.
class Console
{
public:
    explicit Console(const QTemporaryDir& home, const QStringList& arguments = {})
    {
        m_process.setProcessEnvironment(userIn(home));
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(programPath("zelko-console"), arguments);
    }

    ~Console()
    {
        m_process.kill();
        m_process.waitForFinished(patience);
    }

    bool says(const char* text)
    {
        m_output += m_process.readAll();
        return m_output.contains(text);
    }

    // Its recorder has a client: the whole console is up.
    bool isConnected() { return says("connected"); }

    void send(int signal) { ::kill(static_cast<pid_t>(m_process.processId()), signal); }

    // Asks it to end, and waits for that.
    int end()
    {
        send(SIGTERM);
        return exitCode();
    }

    // -1 for one that does not end by itself.
    int exitCode()
    {
        const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(patience);
        return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

bool isFree(const QString& store)
{
    QString error;
    return StoreLock().acquire(store, &error);
}

constexpr const char* missingValues = "not all elements are available for VT-Path: /SubSystems/north/ZELKO/Device/R1";

bool writeSite(const QString& path, quint16 port, const QString& listen = QStringLiteral("127.0.0.1"))
{
    const QJsonObject subSystem{{QStringLiteral("name"), QStringLiteral("north")},
                                {QStringLiteral("host"), QStringLiteral("127.0.0.1")},
                                {QStringLiteral("port"), port}};
    const QJsonObject site{{QStringLiteral("subSystems"), QJsonArray{subSystem}}, {QStringLiteral("listen"), listen}};
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(site).toJson()) > 0;
}

// An address of this machine that nobody else uses, and how the kernel's table of sockets writes it.
const QString ownAddress = QStringLiteral("127.0.77.5");
constexpr const char* ownAddressInTable = "054D007F:";

bool isListenedOnOwnAddress()
{
    QFile table(QStringLiteral("/proc/net/tcp"));
    const QByteArrayList words =
        table.open(QIODevice::ReadOnly) ? table.readAll().simplified().split(' ') : QByteArrayList();
    for (qsizetype at = 0; at + 2 < words.size(); ++at) {
        if (words.at(at).startsWith(ownAddressInTable) && words.at(at + 2) == "0A") {
            return true;
        }
    }
    return false;
}

} // namespace

class TestConsoleProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesItsPlacesWhenItIsAskedToEnd_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
    }

    void savesItsPlacesWhenItIsAskedToEnd()
    {
        QFETCH(int, number);
        const QTemporaryDir home;
        const QString store = home.filePath(QStringLiteral("store"));
        Console console(home, {QStringLiteral("--store"), store});
        QTRY_VERIFY_WITH_TIMEOUT(console.isConnected(), patience);
        QVERIFY(!isFree(store));
        console.send(number);
        QCOMPARE(console.exitCode(), 0);
        const QSettings settings(home.filePath(QStringLiteral("config/Zelko/zelko-console.conf")),
                                 QSettings::IniFormat);
        QVERIFY(!settings.value(QStringLiteral("window/geometry")).toByteArray().isEmpty());
        QVERIFY(settings.contains(QStringLiteral("recordTable/sortedColumn")));
        QVERIFY(QFile::exists(home.filePath(QStringLiteral("config/Zelko/zelko-console-library.ini"))));
        QVERIFY(isFree(store)); // its recorder has ended before it
    }

    void runsBesideAnotherOne()
    {
        const QTemporaryDir home;
        Console first(home);
        Console second(home);
        QTRY_VERIFY_WITH_TIMEOUT(first.isConnected(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(second.isConnected(), patience);
    }

    void listensWhereTheSiteSays()
    {
        const QTemporaryDir home;
        RecorderProcess recorder(programPath("zelko-recorder"));
        QVERIFY(recorder.start({QStringLiteral("--store"), home.filePath(QStringLiteral("store"))}));
        const QString site = home.filePath(QStringLiteral("site.json"));
        QVERIFY(writeSite(site, recorder.port(), ownAddress));
        Console console(home, {QStringLiteral("--site"), site});
        QByteArray log;
        QTRY_VERIFY_WITH_TIMEOUT((log += recorder.process().readAllStandardError()).contains("connected"), patience);
        QVERIFY(isListenedOnOwnAddress());
        QCOMPARE(console.end(), 0);
    }

    // The peer has a device on which much is missing, of which a console warns again and again. The one that was
    // connected first has had every chance to do so when the other one has.
    void tracesWarningsWithItsOptionAlone()
    {
        const QTemporaryDir home;
        PeerProcess peer;
        const QString site = home.filePath(QStringLiteral("site.json"));
        QVERIFY(writeSite(site, peer.port()));
        Console silent(home, {QStringLiteral("--site"), site});
        QTRY_COMPARE_WITH_TIMEOUT(peer.ask(QStringLiteral("sessions")), QStringLiteral("1"), patience);
        Console tracing(home, {QStringLiteral("--site"), site, QStringLiteral("--trace")});
        QTRY_VERIFY_WITH_TIMEOUT(tracing.says(missingValues), patience);
        QCOMPARE(tracing.end(), 0);
        QCOMPARE(silent.end(), 0);
        QVERIFY(!silent.says(missingValues));
    }

    void doesNotStartWithAnOptionThatIsWrong_data()
    {
        QTest::addColumn<QStringList>("option");
        QTest::newRow("traces with a value") << QStringList(QStringLiteral("--trace=64"));
        QTest::newRow("traces with a value behind a blank")
            << QStringList({QStringLiteral("--trace"), QStringLiteral("64")});
        QTest::newRow("half of the word for traces") << QStringList(QStringLiteral("--tra"));
    }

    void doesNotStartWithAnOptionThatIsWrong()
    {
        QFETCH(const QStringList, option);
        const QTemporaryDir home;
        Console console(home, option);
        QCOMPARE(console.exitCode(), 2);
        QVERIFY(console.says("zelko-console: "));
    }

    void opensASiteWithAnAddressOfAnotherMachineAndSaysSo()
    {
        const QTemporaryDir home;
        const QString site = home.filePath(QStringLiteral("site.json"));
        QVERIFY(writeSite(site, 8004, QStringLiteral("192.0.2.1")));
        Console console(home, {QStringLiteral("--site"), site});
        QTRY_VERIFY_WITH_TIMEOUT(console.says("192.0.2.1"), patience);
        QCOMPARE(console.end(), 0);
    }
};

QTEST_GUILESS_MAIN(TestConsoleProcess)
#include "tst_consoleprocess.moc"
