#include <callerthread.h>
#include <orbbehindproxy.h>
#include <recorderclient.h>
#include <recorderprocess.h>
#include <storedrecord.h>
#include <testauthority.h>

#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/service/recorderservice.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace ZelkoTest;
using ZelkoCommon::Orb;
using ZelkoCommon::OrbOptions;
using ZelkoCommon::RecorderService;
using ZelkoCommon::Role;
using ZelkoCommon::TlsOptions;

namespace {

using Contract = QD_ZLK::IF_ZLK_c_ZLK;

constexpr int patience = 30'000;
const QString recordId = QStringLiteral("MostSecretRecord");

const TestAuthority::Wish expired{QStringLiteral("IP:127.0.0.1"), -7200, -3600};
const TestAuthority::Wish notYetValid{QStringLiteral("IP:127.0.0.1"), 3600, 7200};
const TestAuthority::Wish ofAnotherHost{QStringLiteral("IP:127.0.0.9,DNS:elsewhere")};
const TestAuthority::Wish encrypted{QStringLiteral("IP:127.0.0.1"), -3600, 3600, QStringLiteral("open sesame")};

// What the recorder says to a call that takes an operator.
int codeOfExport(RecorderService& service)
{
    std::atomic<int> code = -1;
    service.ask([&code](Contract::_ptr_type entry) -> unsigned long {
        try {
            const CORBA::String_var id = entry->exportRecording("Recorder1", "none", "/nowhere");
        } catch (const Contract::exZLK& refused) {
            code = refused.code;
        }
        return 0;
    });
    return code;
}

} // namespace

// What the real recorder and a client of it say to each other through TLS, and whom they do not talk to.
class TestRecorderTls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsItsRecordsAndHidesThemOnTheLine_data();
    void showsItsRecordsAndHidesThemOnTheLine();
    void knowsWhoCallsItsService();
    void takesAKeyThatIsEncrypted();
    void refusesAClient_data();
    void refusesAClient();
    void isRefusedByAClient_data();
    void isRefusedByAClient();
    void tellsWhomItRefused();
    void comesBackAfterDamageOnTheLine();
    void doesNotServeWithFilesThatCannotBeUsed_data();
    void doesNotServeWithFilesThatCannotBeUsed();

private:
    QStringList store() const { return {QStringLiteral("--store"), m_folder->path()}; }
    static QStringList arguments(const TlsOptions& tls)
    {
        return {QStringLiteral("--tls-authority"), tls.authorityFile, QStringLiteral("--tls-key"), tls.keyFile};
    }
    bool start(const std::optional<TlsOptions>& tls, const QStringList& more = {})
    {
        return m_recorder->start(store() + more + (tls ? arguments(*tls) : QStringList()));
    }
    void connectTo(quint16 port, const OrbOptions& options)
    {
        m_client.reset();
        m_orb.reset(); // there is one at a time
        m_orb = std::make_unique<Orb>(options);
        m_client = std::make_unique<RecorderClient>(*m_orb, port, Role::Operator);
        m_failed = std::make_unique<QSignalSpy>(&m_client->link(), &ZelkoCommon::TreeLink::connectFailed);
    }
    void connectTo(quint16 port, const std::optional<TlsOptions>& tls)
    {
        OrbOptions options;
        options.tls = tls;
        connectTo(port, options);
    }
    bool showsRecords() const
    {
        return m_client->isConnected() && m_client->values().isLoaded() &&
               m_client->values().ids() == QStringList{recordId};
    }
    QString log()
    {
        m_recorder->process().setReadChannel(QProcess::StandardError);
        return m_log += QString::fromUtf8(m_recorder->process().readAllStandardError());
    }

    TestAuthority m_site;
    TestAuthority m_stranger;
    QString m_log;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<Orb> m_orb;
    std::unique_ptr<RecorderClient> m_client;
    std::unique_ptr<QSignalSpy> m_failed;
};

void TestRecorderTls::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(storeRecord(m_folder->filePath(QStringLiteral("Recorder1")), finishedRecord(recordId), 4000));
    m_recorder = std::make_unique<RecorderProcess>(QStringLiteral(ZELKO_RECORDER));
    m_log.clear();
}

void TestRecorderTls::cleanup()
{
    m_failed.reset();
    m_client.reset();
    m_orb.reset();
    m_recorder.reset();
}

void TestRecorderTls::showsItsRecordsAndHidesThemOnTheLine_data()
{
    QTest::addColumn<bool>("usesTls");
    QTest::newRow("in the clear without TLS") << false;
    QTest::newRow("hidden with TLS") << true;
}

// Both ways: calls to the recorder, and those by which it sends what changes.
void TestRecorderTls::showsItsRecordsAndHidesThemOnTheLine()
{
    QFETCH(const bool, usesTls);
    QVERIFY(start(usesTls ? std::optional(m_site.options()) : std::nullopt));
    FaultProxy there(m_recorder->port());
    FaultProxy back;
    there.setKeeping(true);
    back.setKeeping(true);
    OrbOptions options = optionsBehind(back);
    options.tls = usesTls ? std::optional(m_site.options()) : std::nullopt;
    connectTo(there.port(), options);
    back.setTarget(m_orb->port());
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
    QCOMPARE(m_client->link().role(), Role::Operator);
    QVERIFY(there.bytes() > 0 && back.bytes() > 0);
    const auto who = TestUsers::credentials(Role::Operator);
    QCOMPARE(there.hasRelayed(who.password), !usesTls);
    QCOMPARE(there.hasRelayed(QStringLiteral("ZelkoTreeLink")), !usesTls);
    QCOMPARE(back.hasRelayed(recordId), !usesTls);
    QVERIFY(!there.hasRelayed(recordId) || !usesTls);
}

void TestRecorderTls::knowsWhoCallsItsService()
{
    QVERIFY(start(m_site.options()));
    connectTo(m_recorder->port(), m_site.options());
    RecorderService service([this] {
        return ZelkoCommon::ServiceAddress{{}, QStringLiteral("127.0.0.1"), m_recorder->port()};
    });
    service.setLimit(std::chrono::milliseconds(patience));
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
    const int asOperator = codeOfExport(service);
    QVERIFY(asOperator != -1);
    QVERIFY(asOperator != Contract::ZLK_NOT_PERMITTED);
    m_client.reset();
    QCOMPARE(codeOfExport(service), int{Contract::ZLK_NOT_PERMITTED}); // nobody in particular any more
}

void TestRecorderTls::takesAKeyThatIsEncrypted()
{
    QFile password(m_folder->filePath(QStringLiteral("password")));
    QVERIFY(password.open(QIODevice::WriteOnly));
    password.write(encrypted.password.toUtf8() + '\n');
    password.close();
    QVERIFY(start(m_site.options(encrypted), {QStringLiteral("--tls-key-password"), password.fileName()}));
    connectTo(m_recorder->port(), m_site.options(encrypted));
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
}

void TestRecorderTls::refusesAClient_data()
{
    QTest::addColumn<std::optional<TlsOptions>>("tls");
    QTest::newRow("without TLS") << std::optional<TlsOptions>();
    QTest::newRow("of another authority")
        << std::optional(TlsOptions{m_site.file(), m_stranger.makeKey(TestAuthority::Wish())});
    QTest::newRow("whose certificate has expired") << std::optional(m_site.options(expired));
    QTest::newRow("whose certificate is not valid yet") << std::optional(m_site.options(notYetValid));
}

void TestRecorderTls::refusesAClient()
{
    QFETCH(const std::optional<TlsOptions>, tls);
    QVERIFY(start(m_site.options()));
    connectTo(m_recorder->port(), tls);
    QTRY_VERIFY_WITH_TIMEOUT(m_failed->count() >= 2, patience);
    QVERIFY(!m_client->isConnected());
    QVERIFY2(!log().contains(QStringLiteral("connected")), qPrintable(log()));
    connectTo(m_recorder->port(), m_site.options());
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(log().contains(QStringLiteral("connected")), patience);
}

void TestRecorderTls::isRefusedByAClient_data()
{
    QTest::addColumn<std::optional<TlsOptions>>("tls");
    QTest::newRow("without TLS") << std::optional<TlsOptions>();
    QTest::newRow("with a key of another authority")
        << std::optional(TlsOptions{m_site.file(), m_stranger.makeKey(TestAuthority::Wish())});
    QTest::newRow("with a certificate that has expired") << std::optional(m_site.options(expired));
    QTest::newRow("with a certificate that is not valid yet") << std::optional(m_site.options(notYetValid));
    QTest::newRow("with a certificate of another host") << std::optional(m_site.options(ofAnotherHost));
}

void TestRecorderTls::isRefusedByAClient()
{
    QFETCH(const std::optional<TlsOptions>, tls);
    QVERIFY(start(tls));
    FaultProxy line(m_recorder->port());
    line.setKeeping(true);
    connectTo(line.port(), m_site.options());
    QTRY_VERIFY_WITH_TIMEOUT(m_failed->count() >= 2, patience);
    QVERIFY(!m_client->isConnected());
    QVERIFY(line.bytes() > 0);
    QVERIFY(!line.hasRelayed(TestUsers::credentials(Role::Operator).password));
    QVERIFY2(!log().contains(QStringLiteral("connected")), qPrintable(log()));
}

void TestRecorderTls::tellsWhomItRefused()
{
    QVERIFY(start(m_site.options()));
    connectTo(m_recorder->port(), m_site.options(expired));
    QTRY_VERIFY_WITH_TIMEOUT(log().contains(QStringLiteral("127.0.0.1 is refused: certificate has expired")), patience);
}

void TestRecorderTls::comesBackAfterDamageOnTheLine()
{
    QVERIFY(start(m_site.options()));
    FaultProxy line(m_recorder->port());
    connectTo(line.port(), m_site.options());
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
    QSignalSpy lost(&m_client->link(), &ZelkoCommon::TreeLink::disconnected);
    line.setDamage(1);
    QTRY_VERIFY_WITH_TIMEOUT(!lost.isEmpty(), patience);
    line.setDamage(0);
    QTRY_VERIFY_WITH_TIMEOUT(showsRecords(), patience);
}

void TestRecorderTls::doesNotServeWithFilesThatCannotBeUsed_data()
{
    QTest::addColumn<TlsOptions>("tls");
    QTest::addColumn<QString>("reason");
    const auto good = m_site.options();
    QTest::newRow("an authority that is not there")
        << TlsOptions{QStringLiteral("/no/such"), good.keyFile} << "/no/such gives no certificate of an authority";
    QTest::newRow("a key that is not there")
        << TlsOptions{good.authorityFile, QStringLiteral("/no/such")} << "/no/such gives no certificate";
    QTest::newRow("a certificate without its key")
        << TlsOptions{good.authorityFile, good.authorityFile} << "gives no private key";
    QTest::newRow("a key that is encrypted, without its password")
        << m_site.options(encrypted) << "gives no private key";
}

void TestRecorderTls::doesNotServeWithFilesThatCannotBeUsed()
{
    QFETCH(const TlsOptions, tls);
    QFETCH(const QString, reason);
    m_recorder->launch(store() + arguments(tls));
    QCOMPARE(m_recorder->exitCode(), 1);
    QVERIFY2(log().contains(reason), qPrintable(log()));
}

QTEST_GUILESS_MAIN(TestRecorderTls)

#include "tst_recordertls.moc"
