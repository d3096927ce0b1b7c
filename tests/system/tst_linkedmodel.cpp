#include "faultproxy.h"
#include "linkclient.h"
#include "peerprocess.h"

#include <zelkobase/maps/itemmaptypes.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QAbstractItemModelTester>
#include <QTimer>
#include <QtTest>

#include <ctime>

using namespace std::chrono_literals;
using namespace ZelkoCommon;
using zelko::recordmap::RecordItemMap;

namespace {

const QString mapPath = QStringLiteral("/ZELKO/Device/R1/Records/Map");
constexpr int patience = 60000;

// The longest turn of the event loop in milliseconds, on the clock and in processor time of this thread, which other
// processes do not lengthen, and the most rows that one turn brought.
class PauseMeter
{
public:
    explicit PauseMeter(const QAbstractItemModel& model)
        : m_model(model)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_mostRows = std::max(m_mostRows, m_model.rowCount() - m_rows);
            m_longest = std::max(m_longest, now(CLOCK_MONOTONIC) - m_begin);
            m_longestWork = std::max(m_longestWork, now(CLOCK_THREAD_CPUTIME_ID) - m_beginOfWork);
            restart();
        });
        restart();
        m_timer.start(0);
    }
    double longest() const { return m_longest; }
    double longestWork() const { return m_longestWork; }
    int mostRows() const { return m_mostRows; }

private:
    static double now(clockid_t clock)
    {
        timespec time{};
        clock_gettime(clock, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }
    void restart()
    {
        m_rows = m_model.rowCount();
        m_begin = now(CLOCK_MONOTONIC);
        m_beginOfWork = now(CLOCK_THREAD_CPUTIME_ID);
    }

    const QAbstractItemModel& m_model;
    QTimer m_timer;
    int m_rows = 0;
    int m_mostRows = 0;
    double m_begin = 0;
    double m_beginOfWork = 0;
    double m_longest = 0;
    double m_longestWork = 0;
};

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
        QCoreApplication::processEvents();
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
    QTRY_VERIFY_WITH_TIMEOUT(m.model.connected(), patience);
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
    LinkOptions options = LinkClient::quickOptions();
    options.sliceBudget = 200us; // so short that the bound on the rows below holds on the quickest machine
    ModelClient m(m_orb, server.port(), options);
    PauseMeter pauses(m.model);
    QElapsedTimer whole;
    whole.start();
    QTRY_COMPARE_WITH_TIMEOUT(m.model.recordCount(), count, patience);
    qInfo("%d records in %lld ms; longest turn of the event loop %.1f ms, %.1f ms of it work; at most %d rows a turn",
          count, static_cast<long long>(whole.elapsed()), pauses.longest(), pauses.longestWork(), pauses.mostRows());
    QVERIFY(pauses.mostRows() < count / 20);
    QCOMPARE(m.difference(), QString());
    server.kill();
    QTRY_COMPARE_WITH_TIMEOUT(m.client.log.size(), 2, patience);
    QCOMPARE(m.model.recordCount(), 0);
    qInfo("with its end %.1f ms, %.1f ms of it work", pauses.longest(), pauses.longestWork());
}

QTEST_GUILESS_MAIN(TestLinkedModel)
#include "tst_linkedmodel.moc"
