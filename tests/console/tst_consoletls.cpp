#include "patience.h"
#include "programs.h"
#include "recorderprocess.h"
#include "storedrecord.h"
#include "testauthority.h"

#include <console/demo/shownrecords.h>
#include <console/hands/dialoganswer.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/records/recordtable.h>
#include <console/session/session.h>
#include <console/widgets/connectionbadge.h>
#include <console/window/consolewindow.h>
#include <console/window/runningconsole.h>
#include <console/window/usermessages.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoCommon::Role;
using ZelkoCommon::TlsOptions;
using ZelkoTest::RecorderProcess;
using ZelkoTest::TestUsers;
using Controller = ZelkoGUI::IZelkoGUIController;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

const QString north = QStringLiteral("north");
const QString recordId = QStringLiteral("R1");

const TestAuthority::Wish expired{QStringLiteral("IP:127.0.0.1"), -7200, -3600};
const TestAuthority::Wish ofAnotherHost{QStringLiteral("IP:127.0.0.9,DNS:elsewhere")};
const TestAuthority::Wish encrypted{QStringLiteral("IP:127.0.0.1"), -3600, 3600, QStringLiteral("open sesame")};

QStringList recorderArguments(const TlsOptions& tls)
{
    return {QStringLiteral("--tls-authority"), tls.authorityFile, QStringLiteral("--tls-key"), tls.keyFile};
}

QJsonObject siteTls(const TlsOptions& tls)
{
    QJsonObject object{{QStringLiteral("authority"), tls.authorityFile}, {QStringLiteral("key"), tls.keyFile}};
    if (!tls.keyPassword.isEmpty()) {
        object.insert(QStringLiteral("keyPassword"), tls.keyPassword);
    }
    return object;
}

} // namespace

// A console whose site file switches TLS on, and the real recorder.
class TestConsoleTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void worksOnARecorder_data();
    void worksOnARecorder();
    void saysWhyARecorderIsNotReached_data();
    void saysWhyARecorderIsNotReached();
    void connectsWhenTheRecorderHasTheRightKey();
    void opensAndSaysWhatIsWrongWithItsKeys_data();
    void opensAndSaysWhatIsWrongWithItsKeys();

private:
    bool start(const std::optional<TlsOptions>& tls, quint16 port = 0)
    {
        m_recorder.reset(); // so that the store is free
        m_recorder = std::make_unique<RecorderProcess>(programPath("zelko-recorder"));
        QStringList arguments{QStringLiteral("--store"), m_folder->filePath(QStringLiteral("store"))};
        if (port != 0) {
            arguments += QStringList{QStringLiteral("--port"), QString::number(port)};
        }
        return m_recorder->start(arguments + (tls ? recorderArguments(*tls) : QStringList()));
    }
    void open(const std::optional<TlsOptions>& tls, quint16 port)
    {
        const auto who = TestUsers::credentials(Role::Operator);
        const QJsonObject subSystem{{QStringLiteral("name"), north},
                                    {QStringLiteral("host"), QStringLiteral("127.0.0.1")},
                                    {QStringLiteral("port"), port},
                                    {QStringLiteral("user"), who.user},
                                    {QStringLiteral("password"), who.password}};
        QJsonObject site{{QStringLiteral("subSystems"), QJsonArray{subSystem}}};
        if (tls) {
            site.insert(QStringLiteral("tls"), siteTls(*tls));
        }
        ConsoleOptions options;
        options.siteFile = m_folder->filePath(QStringLiteral("site.json"));
        QVERIFY(ZelkoTest::writeBytes(options.siteFile, QJsonDocument(site).toJson()));
        QString error;
        m_console = RunningConsole::open(options, &error);
        QVERIFY2(m_console, qPrintable(error));
        m_console->show();
    }
    QTableView& table() const { return *m_console->window().records()->table(); }
    const EmptyState& emptyState() const { return m_console->window().records()->recordTable()->emptyState(); }
    QString status() const { return longText(north, m_console->session().status(north)); }
    bool showsTheRecord() const
    {
        return shownrecords::ids(*table().model()) == QStringList{recordId} &&
               m_console->window().records()->controller()->isConnected();
    }

    // The operator looks what the console is, and goes on.
    bool isAlive() const
    {
        QString title;
        const DialogAnswer answer([&title](QWidget* box) {
            title = box->windowTitle();
            QTest::keyClick(box, Qt::Key_Escape);
        });
        m_console->window().showAbout();
        return title == QLatin1String("About Recorder Console") && m_console->window().isVisible();
    }

    TestAuthority m_site;
    TestAuthority m_stranger;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<RunningConsole> m_console;
};

void TestConsoleTls::initTestCase()
{
    prepareApplication();
}

void TestConsoleTls::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    QVERIFY(ZelkoTest::storeRecord(m_folder->filePath(QStringLiteral("store/Recorder1")),
                                   ZelkoTest::finishedRecord(recordId), 4000));
}

void TestConsoleTls::cleanup()
{
    m_console.reset();
    m_recorder.reset();
}

void TestConsoleTls::worksOnARecorder_data()
{
    QTest::addColumn<TlsOptions>("console");
    QTest::newRow("with a key of the site") << m_site.options();
    QTest::newRow("with a key that is encrypted") << m_site.options(encrypted);
}

// The list comes by calls of the recorder, a new name goes by the recorder's service.
void TestConsoleTls::worksOnARecorder()
{
    QFETCH(const TlsOptions, console);
    QVERIFY(start(m_site.options()));
    open(console, m_recorder->port());
    QTRY_VERIFY_WITH_TIMEOUT(showsTheRecord(), patience);
    QCOMPARE(m_console->window().badge()->text(), QStringLiteral("north: connected"));
    operatorhands::clickRow(table(), 0);
    const QAction* const rename =
        m_console->window().records()->controller()->recordAction(Controller::UserActionRename);
    QTRY_VERIFY_WITH_TIMEOUT(rename->isEnabled(), patience);
    const DialogAnswer answer([](QWidget* dialog) {
        auto* const field = dialog->findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("by TLS"));
        QTest::keyClick(field, Qt::Key_Return);
    });
    QTest::keyClick(&table(), Qt::Key_R, Qt::ControlModifier);
    QVERIFY(answer.wasGiven());
    const auto name = [this] { return table().model()->index(0, Model::NameColumn).data().toString(); };
    QTRY_COMPARE_WITH_TIMEOUT(name(), QStringLiteral("by TLS"), patience);
    QVERIFY(!m_console->window().messages()->box());
}

void TestConsoleTls::saysWhyARecorderIsNotReached_data()
{
    QTest::addColumn<std::optional<TlsOptions>>("recorder");
    QTest::addColumn<std::optional<TlsOptions>>("console");
    QTest::addColumn<QString>("reason");
    const std::optional good = m_site.options();
    const std::optional<TlsOptions> none;
    const std::optional strange = TlsOptions{m_site.file(), m_stranger.makeKey(TestAuthority::Wish())};
    const QString refused = QStringLiteral("its certificate is refused: ");
    const QString refuses = QStringLiteral("it refused the TLS connection of this machine: ");
    QTest::newRow("its certificate has expired")
        << std::optional(m_site.options(expired)) << good << refused + "certificate has expired";
    QTest::newRow("its certificate is that of another host")
        << std::optional(m_site.options(ofAnotherHost)) << good << refused + "hostname mismatch";
    QTest::newRow("its certificate is of another authority") << strange << good << refused;
    QTest::newRow("that of the console has expired") << good << std::optional(m_site.options(expired)) << refuses;
    QTest::newRow("that of the console is of another authority") << good << strange << refuses;
    QTest::newRow("it has no TLS") << none << good << "it does not talk through TLS as is needed: ";
    QTest::newRow("the console has no TLS") << good << none << QString();
}

void TestConsoleTls::saysWhyARecorderIsNotReached()
{
    QFETCH(const std::optional<TlsOptions>, recorder);
    QFETCH(const std::optional<TlsOptions>, console);
    QFETCH(const QString, reason);
    QVERIFY(start(recorder));
    open(console, m_recorder->port());
    const QString begin = QStringLiteral("Recorder north is not reachable: ") + reason;
    QTRY_VERIFY2_WITH_TIMEOUT(status().startsWith(begin), qPrintable(status()), patience);
    QTRY_VERIFY_WITH_TIMEOUT(emptyState().text.startsWith(begin), patience);
    QCOMPARE(m_console->window().badge()->text(), QStringLiteral("north: not reachable"));
    QVERIFY(isAlive());
}

void TestConsoleTls::connectsWhenTheRecorderHasTheRightKey()
{
    QVERIFY(start(m_site.options(expired)));
    const quint16 port = m_recorder->port();
    open(m_site.options(), port);
    QTRY_VERIFY_WITH_TIMEOUT(status().contains(QStringLiteral("certificate has expired")), patience);
    QVERIFY(start(m_site.options(), port));
    QTRY_VERIFY_WITH_TIMEOUT(showsTheRecord(), patience);
    QCOMPARE(m_console->window().badge()->text(), QStringLiteral("north: connected"));
}

void TestConsoleTls::opensAndSaysWhatIsWrongWithItsKeys_data()
{
    QTest::addColumn<TlsOptions>("tls");
    QTest::addColumn<QString>("reason");
    const auto good = m_site.options();
    const QString nowhere = QStringLiteral("/no/such");
    auto locked = m_site.options(encrypted);
    locked.keyPassword = QStringLiteral("open barley");
    QTest::newRow("the authority is not there")
        << TlsOptions{nowhere, good.keyFile} << "/no/such gives no certificate of an authority";
    QTest::newRow("the key is not there") << TlsOptions{good.authorityFile, nowhere} << "/no/such gives no certificate";
    QTest::newRow("a certificate without its key")
        << TlsOptions{good.authorityFile, good.authorityFile} << "gives no private key";
    QTest::newRow("a key with the wrong password") << locked << "gives no private key";
}

void TestConsoleTls::opensAndSaysWhatIsWrongWithItsKeys()
{
    QFETCH(const TlsOptions, tls);
    QFETCH(const QString, reason);
    open(tls, 8004);
    QMessageBox* const box = m_console->window().messages()->box();
    QVERIFY(box && box->isVisible());
    QVERIFY2(box->text().startsWith(QStringLiteral("Nothing can be connected: TLS cannot be used: ")) &&
                 box->text().contains(reason),
             qPrintable(box->text()));
    QTest::keyClick(box, Qt::Key_Return);
    QVERIFY(!m_console->window().messages()->box());
    const QString text = emptyState().text;
    QVERIFY2(text.startsWith(QStringLiteral("This console cannot connect to recorder north: ")) &&
                 text.contains(reason),
             qPrintable(text));
    QCOMPARE(m_console->window().badge()->text(), QStringLiteral("north: no connection"));
    QVERIFY(isAlive());
}

QTEST_MAIN(TestConsoleTls)
#include "tst_consoletls.moc"
