#include "linkclient.h"
#include "peerprocess.h"
#include "tracetexts.h"
#include "watch.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/connection/linkframe.h>
#include <zelkobase/maps/itemmaptypes.h>

#include <valuecore/valuetypes.h>

#include <QtTest>

using namespace ZelkoCommon;
using namespace std::chrono_literals;
using zelko::recordmap::RecordItemMap;

namespace {

const QString device = QStringLiteral("/ZELKO/Device/R1");
const QString map = device + QStringLiteral("/Records/Map");
constexpr int patience = 30000;

} // namespace

// What becomes of the writes of a client, the recorder's end of the link in a process of its own.
class TestTreeLinkWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }
    void sendsWritesOfAddedValuesAndNoOthers();
    void neverEchoesAChangeOfTheServer();
    void losesAWriteThatMayNotBeToTheServersValue();
    void sendsAListOf50000RecordsInOneCommand();
    void refusesAWriteThatIsTooLargeAndTakesTheServersValue();
    void losesNoWriteToAServerThatIsBusy();
    void refusesWhatIsTooMuchForAServerThatIsBusy();
    void leavesAServerThatIsBusy();
    void writesOfAnOldConnectionGoNowhere();

private:
    Orb m_orb{{}};
};

void TestTreeLinkWrites::sendsWritesOfAddedValuesAndNoOthers()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const number = client.find<Value<int>>(device + "/Number");
    auto* const text = client.find<Value<QString>>(device + "/Text");
    client.writer()->AddValue(number, 0);
    text->SetValue("stays here", nullptr);
    number->SetValue(1, nullptr);
    number->SetValue(2, nullptr);
    number->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("writes"), "3", patience);
    client.writer()->RemoveValue(number);
    number->SetValue(3, nullptr);
    client.writer()->AddValue(text, 0);
    text->SetValue("goes there", nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("writes"), "4", patience);
    QVERIFY(client.digest() != server.ask("digest"));
    client.writer()->AddValue(number, 0);
    number->HasChanged(TChangeCode::ValueChanged, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(server.ask("writes"), "5");
}

void TestTreeLinkWrites::neverEchoesAChangeOfTheServer()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const number = client.find<Value<int>>(device + "/Number");
    client.writer()->AddValue(number, 0);
    int updates = 0;
    Watch counter([&] { ++updates; });
    counter.on(number);
    for (int i = 1; i <= 100; ++i) {
        server.ask(QStringLiteral("number %1").arg(i));
    }
    QTRY_COMPARE_WITH_TIMEOUT(number->GetValue(), 100, patience);
    QCOMPARE(updates, 100);
    number->SetValue(7, nullptr); // behind any echo
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(server.ask("writes"), "1");
    QCOMPARE(updates, 101); // and the write did not come back either
}

void TestTreeLinkWrites::losesAWriteThatMayNotBeToTheServersValue()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const readOnly = client.find<Value<int>>(device + "/ReadOnly");
    auto* const number = client.find<Value<int>>(device + "/Number");
    client.writer()->AddValue(readOnly, 0);
    client.writer()->AddValue(number, 0);
    readOnly->SetValue(5, nullptr);
    number->SetValue(6, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(readOnly->GetValue(), 0, patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(number->GetValue(), 6);
    QCOMPARE(server.ask("writes"), "1");
    QCOMPARE(client.log, QStringList{"connected"});
    QCOMPARE(client.refusals, QStringList{"user \"\" may not write " + device + "/ReadOnly"});
    QCOMPARE(client.notSent, QStringList());
}

// More bytes than a call carries, and more than a batch.
void TestTreeLinkWrites::sendsAListOf50000RecordsInOneCommand()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    LinkClient other(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected() && other.isConnected(), patience);
    QStringList ids;
    for (int i = 0; i < 50000; ++i) {
        ids << QStringLiteral("20240101-120000-%1-R1").arg(i, 12, 10, QLatin1Char('0'));
    }
    auto* const command = client.find<Value<QString>>("/ZELKO/Command/R1/DeleteRecordingList");
    client.writer()->AddValue(command, 0);
    command->SetValue(ids.join('@'), nullptr);
    auto* const number = client.find<Value<int>>(device + "/Number");
    client.writer()->AddValue(number, 0);
    number->SetValue(1, nullptr); // behind it
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("writes"), "2", patience);
    QCOMPARE(server.ask("ids"), "50000");
    QTRY_COMPARE_WITH_TIMEOUT(other.digest(), server.ask("digest"), patience);
    QCOMPARE(client.digest(), server.ask("digest"));
    QCOMPARE(client.log, QStringList{"connected"});
    QCOMPARE(client.refusals, QStringList());
}

void TestTreeLinkWrites::refusesAWriteThatIsTooLargeAndTakesTheServersValue()
{
    PeerProcess server;
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const text = client.find<Value<QString>>(device + "/Text");
    client.writer()->AddValue(text, 0);
    text->SetValue("small", nullptr);
    text->SetValue(QString(qsizetype(link::maxWritePayload), 'x'), nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(text->GetValue(), "small", patience);
    QCOMPARE(client.notSent, QStringList{"a write to " + client.root + device + "/Text is not sent: it is too large"});
    QCOMPARE(client.refusals, QStringList());
    text->SetValue("small again", nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(server.ask("writes"), "2");
    QCOMPARE(client.log, QStringList{"connected"});
}

void TestTreeLinkWrites::losesNoWriteToAServerThatIsBusy()
{
    PeerProcess server({"--write-timeout", "50", "--waiting-writes", "100000"});
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const text = client.find<Value<QString>>(device + "/Text");
    client.writer()->AddValue(text, 0);
    const TraceTexts traces;
    QCOMPARE(server.ask("hold"), "ok");
    for (int i = 0; i < 100; ++i) {
        text->SetValue(QString(20000, QChar(u'a' + i)), nullptr);
    }
    QTRY_VERIFY_WITH_TIMEOUT(traces.contain("north is busy"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("writes"), "100", patience);
    QCOMPARE(client.digest(), server.ask("digest"));
    QCOMPARE(client.log, QStringList{"connected"});
    QCOMPARE(client.refusals, QStringList());
    QCOMPARE(client.notSent, QStringList());
}

void TestTreeLinkWrites::refusesWhatIsTooMuchForAServerThatIsBusy()
{
    PeerProcess server({"--write-timeout", "50", "--waiting-writes", "100000"});
    LinkClient client(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    auto* const text = client.find<Value<QString>>(device + "/Text");
    client.writer()->AddValue(text, 0);
    QCOMPARE(server.ask("hold"), "ok");
    for (int i = 0; i < 100; ++i) {
        text->SetValue(QString(200000, QChar(u'a' + i)), nullptr);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!client.notSent.isEmpty(), patience);
    const int refused = int(client.notSent.size());
    QVERIFY(refused < 100);
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("writes"), QString::number(100 - refused), patience);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), server.ask("digest"), patience);
    QCOMPARE(client.log, QStringList{"connected"});
}

void TestTreeLinkWrites::leavesAServerThatIsBusy()
{
    PeerProcess server({"--write-timeout", "50", "--waiting-writes", "100000"});
    auto client = std::make_unique<LinkClient>(m_orb, server.port());
    QTRY_VERIFY_WITH_TIMEOUT(client->isConnected(), patience);
    auto* const text = client->find<Value<QString>>(device + "/Text");
    client->writer()->AddValue(text, 0);
    const TraceTexts traces;
    QCOMPARE(server.ask("hold"), "ok");
    for (int i = 0; i < 100; ++i) {
        text->SetValue(QString(20000, QChar(u'a' + i)), nullptr);
    }
    QTRY_VERIFY_WITH_TIMEOUT(traces.contain("north is busy"), patience);
    client.reset(); // the server still stands still
    QTRY_COMPARE_WITH_TIMEOUT(server.ask("sessions"), "0", patience);
}

void TestTreeLinkWrites::writesOfAnOldConnectionGoNowhere()
{
    PeerProcess first;
    LinkClient client(m_orb, first.port());
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    const auto old = client.writer();
    first.kill();
    QTRY_COMPARE_WITH_TIMEOUT(client.log.size(), 2, patience);
    PeerProcess second({}, first.port());
    QTRY_COMPARE_WITH_TIMEOUT(client.log.size(), 3, patience);
    auto* const number = client.find<Value<int>>(device + "/Number");
    old->AddValue(number, 0);
    number->SetValue(5, nullptr);
    client.writer()->AddValue(number, 0);
    number->SetValue(6, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(), second.ask("digest"), patience);
    QCOMPARE(second.ask("writes"), "1");
}

QTEST_GUILESS_MAIN(TestTreeLinkWrites)
#include "tst_treelinkwrites.moc"
