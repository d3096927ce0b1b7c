#include "faultproxy.h"
#include "linkclient.h"
#include "loadedrecorder.h"
#include "orbbehindproxy.h"

#include <zelkobase/maps/itemmaptypes.h>

#include <QtTest>

using namespace ZelkoCommon;

namespace {

constexpr int patience = 120000;
constexpr int someTimes = 5;

} // namespace

/// The real recorder behind lines that misbehave: the client calls it through one proxy, and it calls the client
/// through another.
class TestRecorderFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void endsEqualThrough_data();
    void endsEqualThrough();

private:
    void cutSomeTimes(const QList<FaultProxy*>& lines, const LinkClient& client, const QString& end);

    FaultProxy m_toRecorder;
    FaultProxy m_toClient;
    std::unique_ptr<Orb> m_orb;
};

void TestRecorderFaults::initTestCase()
{
    zelko::registerItemMapTypes();
    m_orb = std::make_unique<Orb>(optionsBehind(m_toClient));
    m_toClient.setTarget(m_orb->port());
}

void TestRecorderFaults::cleanup()
{
    for (FaultProxy* const line : {&m_toRecorder, &m_toClient}) {
        line->setDelay(0);
        line->setPieces(0);
        line->setDamage(0);
        line->cut();
    }
}

void TestRecorderFaults::endsEqualThrough_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<bool>("calls");
    QTest::addColumn<bool>("batches");
    for (const char* const fault : {"delay", "pieces", "damage", "cuts"}) {
        QTest::addRow("%s of the calls", fault) << QString(fault) << true << false;
        QTest::addRow("%s of the batches", fault) << QString(fault) << false << true;
        QTest::addRow("%s of both", fault) << QString(fault) << true << true;
    }
}

void TestRecorderFaults::endsEqualThrough()
{
    QFETCH(const QString, fault);
    QFETCH(const bool, calls);
    QFETCH(const bool, batches);
    QList<FaultProxy*> lines;
    if (calls) {
        lines << &m_toRecorder;
    }
    if (batches) {
        lines << &m_toClient;
    }
    for (FaultProxy* const line : lines) {
        line->setDelay(fault == "delay" ? 50 : 0);
        line->setPieces(fault == "pieces" ? 7 : 0);
        line->setDamage(fault != "damage" ? 0 : line == &m_toClient ? 20000 : 500);
    }
    LoadedRecorder recorder(QStringLiteral(ZELKO_RECORDER), {100, 250, 1000});
    m_toRecorder.setTarget(recorder.port());
    LinkOptions options = LinkClient::quickOptions();
    options.callTimeout = std::chrono::seconds(1);
    const qint64 batchBytes = m_toClient.bytes();
    const int damaged = lines.first()->damaged();
    LinkClient client(*m_orb, m_toRecorder.port(), options);
    if (fault == "damage") {
        QTRY_VERIFY_WITH_TIMEOUT(lines.first()->damaged() >= damaged + someTimes, patience);
        for (FaultProxy* const line : lines) {
            line->setDamage(0);
        }
    }
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
    if (fault == "cuts") {
        cutSomeTimes(lines, client, recorder.mapDigest());
        QVERIFY(!QTest::currentTestFailed());
    }
    QTRY_COMPARE_WITH_TIMEOUT(client.digest(LoadedRecorder::map()), recorder.mapDigest(), patience);
    const auto fresh = PeerProcess::client(recorder.port()); // on a line of its own
    QTRY_COMPARE_WITH_TIMEOUT(fresh->ask("digest"), client.digest(), patience);
    QVERIFY(m_toClient.bytes() - batchBytes > 30000); // the batches did come through the proxy
}

// Each time when something has come over the lines since the last one.
void TestRecorderFaults::cutSomeTimes(const QList<FaultProxy*>& lines, const LinkClient& client, const QString& end)
{
    const int first = lines.first()->connections();
    for (int i = 0; i < someTimes; ++i) {
        for (FaultProxy* const line : lines) {
            const qint64 bytes = line->bytes();
            const int connections = line->connections();
            line->cut();
            const auto goesOn = [&] {
                const bool taken = line->connections() > connections && line->bytes() > bytes;
                return taken || client.digest(LoadedRecorder::map()) == end; // nothing more to come
            };
            QTRY_VERIFY_WITH_TIMEOUT(goesOn(), patience);
            QTRY_VERIFY_WITH_TIMEOUT(client.isConnected(), patience);
        }
    }
    QVERIFY(lines.first()->connections() > first);
}

QTEST_GUILESS_MAIN(TestRecorderFaults)
#include "tst_recorderfaults.moc"
