#include <faultproxy.h>
#include <testauthority.h>

#include <zelkobase/orb/callingpeer.h>
#include <zelkobase/orb/callingsession.h>
#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/orb.h>

#include <zelkoidl/treelink.hh>

#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTest>

using namespace ZelkoCommon;

namespace {

// Keeps who called last, and for which session.
class Servant final : public POA_ZelkoTreeLink::TreeServer, public PortableServer::RefCountServantBase
{
public:
    ZelkoTreeLink::SessionId attach(CORBA::ULong, const ZelkoTreeLink::Credentials&,
                                    ZelkoTreeLink::Subscriber_ptr) override
    {
        return 0;
    }
    ZelkoTreeLink::UserRole roleOf(ZelkoTreeLink::SessionId) override { return ZelkoTreeLink::ROLE_VIEWER; }
    void write(ZelkoTreeLink::SessionId, const ZelkoTreeLink::Batch& batch, ZelkoTreeLink::Checksum) override
    {
        bytes = batch.length();
    }
    void detach(ZelkoTreeLink::SessionId) override
    {
        peer = callingPeer();
        called = calledAddress();
        session = CallingSession::current();
    }

    std::string peer;
    std::string called;
    std::uint64_t session = 0;
    CORBA::ULong bytes = 0;
};

OrbOptions through(const TlsOptions& tls)
{
    OrbOptions options;
    options.tls = tls;
    return options;
}

QSslConfiguration configurationOf(const TlsOptions& tls)
{
    QFile file(tls.keyFile);
    file.open(QIODevice::ReadOnly);
    const QByteArray pem = file.readAll();
    QSslConfiguration configuration;
    configuration.setCaCertificates(QSslCertificate::fromPath(tls.authorityFile));
    configuration.setLocalCertificateChain(QSslCertificate::fromData(pem));
    configuration.setPrivateKey(QSslKey(pem, QSsl::Ec));
    return configuration;
}

// A client that is no ORB; null where the ORB does not shake hands.
std::unique_ptr<QSslSocket> connectTo(const Orb& orb, const QSslConfiguration& configuration)
{
    auto socket = std::make_unique<QSslSocket>();
    socket->setSslConfiguration(configuration);
    socket->connectToHostEncrypted("127.0.0.1", orb.port());
    return socket->waitForEncrypted() ? std::move(socket) : nullptr;
}

// Asks where an object is that is nowhere; false without an answer.
bool isAnswered(QTcpSocket& socket)
{
    socket.write(QByteArray("GIOP\x01\x00\x01\x03\x0c\0\0\0\x01\0\0\0\x04\0\0\0none", 24));
    QByteArray answer;
    while (answer.size() < 20 && (socket.bytesAvailable() > 0 || socket.waitForReadyRead())) {
        answer += socket.readAll();
    }
    return answer.startsWith("GIOP");
}

bool runOpenSsl(const QTemporaryDir& folder, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.start("openssl", arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool append(const QString& from, const QString& to)
{
    QFile source(from);
    QFile target(to);
    return source.open(QIODevice::ReadOnly) && target.open(QIODevice::Append) && target.write(source.readAll()) > 0;
}

bool isConnected(QTcpSocket& socket)
{
    socket.waitForReadyRead(0);
    return socket.state() == QAbstractSocket::ConnectedState;
}

} // namespace

// What the ORB does with TLS, seen from within its process and by clients that are no ORB.
class TestTlsTransport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void carriesCalls();
    void takesKeysThatTheCommandOfOpenSslMakes();
    void carriesALargeCallInPieces();
    void knowsPeerAndSessionOfACall();
    void callsByNameOnlyWhoseCertificateHasTheName_data();
    void callsByNameOnlyWhoseCertificateHasTheName();
    void answersWhoHasACertificate_data();
    void answersWhoHasACertificate();
    void answersNobodyWithoutTls();
    void shakesHandsFromVersion12On_data();
    void shakesHandsFromVersion12On();
    void putsANewConnectionInThePlaceOfOneThatShookNoHands_data();
    void putsANewConnectionInThePlaceOfOneThatShookNoHands();
    void keepsConnectionsThatItHasAnswered();
    void knowsTheHostBeforeHandsAreShaken();
    void endsWhileHandsAreBeingShaken();
    void listensWithoutTlsWhereItIsNotAskedFor();
    void callsNobodyByAReferenceWithoutTls();

private:
    // A call that leaves the process and comes back.
    ZelkoTreeLink::TreeServer_ptr remote(const Orb& orb, const FaultProxy& proxy, const QString& host = "127.0.0.1")
    {
        const CORBA::Object_var object = orb.remoteObject(host, proxy.port(), "Test");
        return ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
    }
    QString failureOf(ZelkoTreeLink::TreeServer_ptr server)
    {
        try {
            server->detach(0);
        } catch (const CORBA::Exception& exception) {
            return QString::fromLatin1(exception._name());
        }
        return QStringLiteral("none");
    }

    TestAuthority m_site;
    TestAuthority m_stranger;
};

void TestTlsTransport::carriesCalls()
{
    Orb orb(through(m_site.options()));
    QVERIFY(orb.usesTls());
    QVERIFY(orb.port() != 0);
    const PortableServer::Servant_var<Servant> servant(new Servant);
    orb.publish("Test", servant);
    const FaultProxy proxy(orb.port());
    const ZelkoTreeLink::TreeServer_var server = remote(orb, proxy);
    QCOMPARE(server->roleOf(0), ZelkoTreeLink::ROLE_VIEWER);
    QVERIFY(proxy.bytes() > 0);
}

void TestTlsTransport::takesKeysThatTheCommandOfOpenSslMakes()
{
    const QTemporaryDir folder;
    const QStringList newKey{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-noenc", "-subj", "/CN=x"};
    QVERIFY(runOpenSsl(folder, QStringList{"req", "-x509", "-keyout", "ca-key.pem", "-out", "ca.pem"} + newKey));
    QVERIFY(runOpenSsl(folder, QStringList{"req", "-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1", "-keyout",
                                           "key.pem", "-out", "csr"} +
                                   newKey));
    QVERIFY(runOpenSsl(folder, {"x509", "-req", "-in", "csr", "-copy_extensions", "copy", "-CA", "ca.pem", "-CAkey",
                                "ca-key.pem", "-days", "365", "-out", "cert.pem"}));
    QVERIFY(append(folder.filePath("key.pem"), folder.filePath("cert.pem")));
    Orb orb(through({folder.filePath("ca.pem"), folder.filePath("cert.pem")}));
    const PortableServer::Servant_var<Servant> servant(new Servant);
    orb.publish("Test", servant);
    const FaultProxy proxy(orb.port());
    const ZelkoTreeLink::TreeServer_var byAddress = remote(orb, proxy);
    const ZelkoTreeLink::TreeServer_var byName = remote(orb, proxy, "localhost");
    QCOMPARE(failureOf(byAddress), "none");
    QCOMPARE(failureOf(byName), "none");
}

void TestTlsTransport::carriesALargeCallInPieces()
{
    Orb orb(through(m_site.options()));
    const PortableServer::Servant_var<Servant> servant(new Servant);
    orb.publish("Test", servant);
    FaultProxy proxy(orb.port());
    proxy.setPieces(1000);
    const ZelkoTreeLink::TreeServer_var server = remote(orb, proxy);
    setCallTimeout(server, std::chrono::seconds(60));
    ZelkoTreeLink::Batch batch;
    batch.length(1'000'000);
    server->write(0, batch, 0);
    QCOMPARE(servant->bytes, batch.length());
    QVERIFY(proxy.bytes() > 1'000'000);
}

void TestTlsTransport::knowsPeerAndSessionOfACall()
{
    Orb orb(through(m_site.options()));
    const PortableServer::Servant_var<Servant> servant(new Servant);
    orb.publish("Test", servant);
    FaultProxy proxy(orb.port());
    proxy.setHost(2);
    const ZelkoTreeLink::TreeServer_var server = remote(orb, proxy);
    server->detach(0);
    QCOMPARE(servant->peer, "127.0.0.2");
    QCOMPARE(servant->called, "127.0.0.1");
    QCOMPARE(servant->session, 0U);
    const CallingSession::Pass pass(4711, CallingSession::lastCalledAddress());
    server->detach(0);
    QCOMPARE(servant->session, 4711U);
}

void TestTlsTransport::callsByNameOnlyWhoseCertificateHasTheName_data()
{
    QTest::addColumn<QString>("hosts");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("checksHosts");
    QTest::addColumn<QString>("failure");
    QTest::newRow("the name that it has") << "DNS:localhost"
                                          << "localhost" << true << "none";
    QTest::newRow("another name") << "DNS:elsewhere"
                                  << "localhost" << true << "TRANSIENT";
    QTest::newRow("an address that it has") << "IP:127.0.0.1"
                                            << "127.0.0.1" << true << "none";
    QTest::newRow("another address") << "IP:127.0.0.2"
                                     << "127.0.0.1" << true << "TRANSIENT";
    QTest::newRow("an address, with a name only") << "DNS:localhost"
                                                  << "127.0.0.1" << true << "TRANSIENT";
    QTest::newRow("a name, with its address only") << "IP:127.0.0.1"
                                                   << "localhost" << true << "TRANSIENT";
    QTest::newRow("another name where nobody asks") << "DNS:elsewhere"
                                                    << "localhost" << false << "none";
}

void TestTlsTransport::callsByNameOnlyWhoseCertificateHasTheName()
{
    QFETCH(const QString, hosts);
    QFETCH(const QString, host);
    QFETCH(const bool, checksHosts);
    TlsOptions tls = m_site.options({hosts});
    tls.checksHosts = checksHosts;
    Orb orb(through(tls));
    const PortableServer::Servant_var<Servant> servant(new Servant);
    orb.publish("Test", servant);
    const FaultProxy proxy(orb.port());
    const ZelkoTreeLink::TreeServer_var server = remote(orb, proxy, host);
    QTEST(failureOf(server), "failure");
}

void TestTlsTransport::answersWhoHasACertificate_data()
{
    QTest::addColumn<QString>("keyFile");
    QTest::addColumn<bool>("answers");
    QTest::newRow("of the site's authority") << m_site.makeKey(TestAuthority::Wish()) << true;
    QTest::newRow("of another authority") << m_stranger.makeKey(TestAuthority::Wish()) << false;
    QTest::newRow("that has expired") << m_site.makeKey({"IP:127.0.0.1", -7200, -3600}) << false;
    QTest::newRow("that is not valid yet") << m_site.makeKey({"IP:127.0.0.1", 3600, 7200}) << false;
}

// A client of version 1.3 learns only afterwards that it is refused.
void TestTlsTransport::answersWhoHasACertificate()
{
    QFETCH(const QString, keyFile);
    QFETCH(const bool, answers);
    const Orb orb(through(m_site.options()));
    const auto socket = connectTo(orb, configurationOf({m_site.file(), keyFile}));
    QCOMPARE(socket && isAnswered(*socket), answers);
    const auto right = connectTo(orb, configurationOf(m_site.options()));
    QVERIFY(right && isAnswered(*right));
}

void TestTlsTransport::answersNobodyWithoutTls()
{
    const Orb orb(through(m_site.options()));
    QTcpSocket plain;
    plain.connectToHost("127.0.0.1", orb.port());
    QVERIFY(plain.waitForConnected());
    QVERIFY(!isAnswered(plain));
    QSslConfiguration withoutKey = configurationOf(m_site.options());
    withoutKey.setLocalCertificateChain({});
    withoutKey.setPrivateKey(QSslKey());
    const auto nobody = connectTo(orb, withoutKey);
    QVERIFY(!nobody || !isAnswered(*nobody));
}

void TestTlsTransport::shakesHandsFromVersion12On_data()
{
    QTest::addColumn<int>("protocol");
    QTest::addColumn<bool>("answers");
    QTest::newRow("1.3") << int{QSsl::TlsV1_3} << true;
    QTest::newRow("1.2") << int{QSsl::TlsV1_2} << true;
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QTest::newRow("1.1") << int{QSsl::TlsV1_1} << false;
    QTest::newRow("1.0") << int{QSsl::TlsV1_0} << false;
    QT_WARNING_POP
}

void TestTlsTransport::shakesHandsFromVersion12On()
{
    QFETCH(const int, protocol);
    const Orb orb(through(m_site.options()));
    QSslConfiguration configuration = configurationOf(m_site.options());
    configuration.setProtocol(static_cast<QSsl::SslProtocol>(protocol));
    const auto socket = connectTo(orb, configuration);
    QTEST(socket && isAnswered(*socket), "answers");
}

void TestTlsTransport::putsANewConnectionInThePlaceOfOneThatShookNoHands_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("that says nothing") << QByteArray();
    QTest::newRow("that stops in the middle of its greeting") << QByteArray("\x16\x03\x01\x02\x00\x01", 6);
}

void TestTlsTransport::putsANewConnectionInThePlaceOfOneThatShookNoHands()
{
    QFETCH(const QByteArray, bytes);
    OrbOptions options = through(m_site.options());
    options.receiveTimeout = std::chrono::minutes(5); // would end it as well
    options.maxConnections = 2;
    const Orb orb(options);
    const auto configuration = configurationOf(m_site.options());
    const auto answered = connectTo(orb, configuration);
    QVERIFY(answered && isAnswered(*answered));
    QTcpSocket silent;
    silent.connectToHost("127.0.0.1", orb.port());
    QVERIFY(silent.waitForConnected());
    silent.write(bytes);
    silent.flush();
    const auto late = connectTo(orb, configuration);
    QVERIFY(late && isAnswered(*late));
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(silent), 30'000);
    QVERIFY(isAnswered(*answered));
}

void TestTlsTransport::keepsConnectionsThatItHasAnswered()
{
    OrbOptions options = through(m_site.options());
    options.maxConnections = 2;
    const Orb orb(options);
    const auto configuration = configurationOf(m_site.options());
    const auto first = connectTo(orb, configuration);
    QVERIFY(first && isAnswered(*first));
    const auto second = connectTo(orb, configuration);
    QVERIFY(second && isAnswered(*second));
    QVERIFY(!connectTo(orb, configuration));
    QVERIFY(isAnswered(*first) && isAnswered(*second));
}

void TestTlsTransport::knowsTheHostBeforeHandsAreShaken()
{
    OrbOptions options = through(m_site.options());
    options.receiveTimeout = std::chrono::minutes(5); // would end them as well
    options.maxConnectionsPerHost = 1;
    const Orb orb(options);
    QTcpSocket elsewhere;
    QVERIFY(elsewhere.bind(QHostAddress("127.0.0.2")));
    QTcpSocket here;
    for (QTcpSocket* const silent : {&elsewhere, &here}) {
        silent->connectToHost("127.0.0.1", orb.port());
        QVERIFY(silent->waitForConnected());
    }
    const auto late = connectTo(orb, configurationOf(m_site.options()));
    QVERIFY(late && isAnswered(*late));
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(here), 30'000);
    QVERIFY(isConnected(elsewhere));
}

void TestTlsTransport::endsWhileHandsAreBeingShaken()
{
    OrbOptions options = through(m_site.options());
    options.receiveTimeout = std::chrono::hours(1);
    for (int i = 0; i < 10; ++i) {
        std::vector<std::unique_ptr<QTcpSocket>> strangers;
        const Orb orb(options);
        for (const QByteArray& begun : {QByteArray(), QByteArray("\x16\x03\x01\x02\x00\x01", 6)}) {
            strangers.push_back(std::make_unique<QTcpSocket>());
            strangers.back()->connectToHost("127.0.0.1", orb.port());
            QVERIFY(strangers.back()->waitForConnected());
            strangers.back()->write(begun);
            strangers.back()->flush();
        }
        const auto answered = connectTo(orb, configurationOf(m_site.options()));
        QVERIFY(answered && isAnswered(*answered));
    }
}

void TestTlsTransport::listensWithoutTlsWhereItIsNotAskedFor()
{
    {
        const Orb orb(through(m_site.options()));
    }
    const Orb orb({});
    QVERIFY(!orb.usesTls());
    QTcpSocket plain;
    plain.connectToHost("127.0.0.1", orb.port());
    QVERIFY(plain.waitForConnected() && isAnswered(plain));
    const auto socket = connectTo(orb, configurationOf(m_site.options()));
    QVERIFY(!socket);
}

void TestTlsTransport::callsNobodyByAReferenceWithoutTls()
{
    const Orb orb(through(m_site.options()));
    const FaultProxy proxy(orb.port());
    const CORBA::Object_var unsafe = orb.reference(QStringLiteral("corbaloc::1.2@127.0.0.1:%1/Test").arg(proxy.port()));
    const ZelkoTreeLink::TreeServer_var server = ZelkoTreeLink::TreeServer::_unchecked_narrow(unsafe);
    QCOMPARE(failureOf(server), "TRANSIENT");
    QCOMPARE(proxy.connections(), 0); // it is not even tried
}

QTEST_GUILESS_MAIN(TestTlsTransport)

#include "tst_tlstransport.moc"
