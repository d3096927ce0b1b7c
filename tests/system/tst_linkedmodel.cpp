#include "faultproxy.h"
#include "linkclient.h"
#include "peerprocess.h"

#include <zelkobase/maps/itemmaptypes.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace ZelkoCommon;
using zelko::recordmap::RecordItemMap;

namespace {

const QString mapPath = QStringLiteral("/ZELKO/Device/R1/Records/Map");
constexpr int patience = 60000;

// Connects the model whenever the link does.
struct ModelClient
{
    ModelClient(Orb& orb, quint16 port, const LinkOptions& options = LinkClient::quickOptions())
        : client(orb, port, options, Tree::Instance())
        , model(nullptr)
    {
        QObject::connect(&client.connection, &AbstractServerConnectionData::si_allTicsConnected, &model,
                         [this] { model.connect(client.root + mapPath); });
    }

    // Row by row what the map has; empty when they are equal.
    QString difference() const
    {
        const auto* const map = client.find<RecordItemMap>(mapPath);
        if (!map || !model.connected()) {
            return QStringLiteral("not connected");
        }
        if (static_cast<quint64>(model.recordCount()) != map->Size()) {
            return QStringLiteral("%1 rows for %2 records").arg(model.recordCount()).arg(map->Size());
        }
        for (int row = 0; row < model.recordCount(); ++row) {
            const QString id = model.recordID(row);
            if (!map->contains(id) || map->At(id).GetRecordData() != model.recordData(row)) {
                return QStringLiteral("row %1").arg(row);
            }
        }
        return {};
    }

    LinkClient client;
    ZelkoGUI::RecordItemMapModel model;
};

} // namespace

class TestLinkedModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void endsEqualThroughSetsErasesClearsOverrunsAndReconnects();
    void readsChangesAndIsNotDrivenIntoReloads();
    void loadsAHundredThousandRecordsWithoutALongPause();

private:
    Orb m_orb{{}};
};

void TestLinkedModel::endsEqualThroughSetsErasesClearsOverrunsAndReconnects()
{
    constexpr int steps = 100000;
    constexpr int stepsAtOnce = 500;
    PeerProcess server({"--backlog", "60000"});
    FaultProxy proxy(server.port());
    LinkOptions options = LinkClient::quickOptions();
    options.maxPendingBytes = 30000;
    ModelClient m(m_orb, proxy.port(), options);
    const QAbstractItemModelTester tester(&m.model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int done = 0; done < steps; done += stepsAtOnce) {
        server.ask(QStringLiteral("random %1").arg(stepsAtOnce));
        if (done % 20000 == 10000) {
            proxy.cut();
        }
        if (done % 10000 == 5000) {
            QTRY_COMPARE_WITH_TIMEOUT(m.client.digest(), server.ask("digest"), patience);
            QCOMPARE(m.difference(), QString());
        }
        QTest::qWait(1);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m.client.digest(), server.ask("digest"), patience);
    QCOMPARE(m.difference(), QString());
    QVERIFY(server.ask("restarts").toInt() > 0);
    QVERIFY(m.client.log.count("disconnected") >= 3);
}

void TestLinkedModel::readsChangesAndIsNotDrivenIntoReloads()
{
    PeerProcess server;
    ModelClient m(m_orb, server.port());
    QTRY_VERIFY(m.model.connected());
    QSignalSpy resets(&m.model, &QAbstractItemModel::modelReset);
    QSignalSpy insertions(&m.model, &QAbstractItemModel::rowsInserted);
    server.ask("populate 20000");
    QTRY_COMPARE_WITH_TIMEOUT(m.model.recordCount(), 20000, patience);
    QCOMPARE(resets.size(), 0);
    QVERIFY2(insertions.size() >= 20000 / 250 && insertions.size() < 2000,
             qPrintable(QString::number(insertions.size())));
    QCOMPARE(m.difference(), QString());
}

void TestLinkedModel::loadsAHundredThousandRecordsWithoutALongPause()
{
    constexpr int count = 100000;
    PeerProcess server;
    server.ask(QStringLiteral("populate %1").arg(count));
    ModelClient m(m_orb, server.port());
    QElapsedTimer sinceLastTurn;
    qint64 longest = 0;
    QTimer turn;
    connect(&turn, &QTimer::timeout, this, [&] {
        longest = std::max(longest, sinceLastTurn.nsecsElapsed());
        sinceLastTurn.start();
    });
    QElapsedTimer whole;
    whole.start();
    sinceLastTurn.start();
    turn.start(0);
    QTRY_COMPARE_WITH_TIMEOUT(m.model.recordCount(), count, patience);
    const auto loadMilliseconds = whole.elapsed();
    turn.stop();
    qInfo("%d records in %lld ms, longest pause %.1f ms", count, static_cast<long long>(loadMilliseconds),
          double(longest) / 1e6);
    QCOMPARE(m.difference(), QString());
    server.kill();
    whole.start();
    QTRY_COMPARE(m.client.log.size(), 2);
    QCOMPARE(m.model.recordCount(), 0);
}

QTEST_GUILESS_MAIN(TestLinkedModel)
#include "tst_linkedmodel.moc"
