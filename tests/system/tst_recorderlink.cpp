#include "linkclient.h"
#include "loadedrecorder.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <valuecore/valuetypes.h>

#include <QDirIterator>
#include <QSet>
#include <QtTest>

using namespace ZelkoCommon;
using zelko::recordmap::RecordItemMap;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

const QString device = LoadedRecorder::device();
const QString mapPath = LoadedRecorder::map();
const QString commands = QStringLiteral("/ZELKO/Command/Recorder1/");
constexpr int patience = 120000;

// What a recorder may grow by while a client is stopped: its limit of 8 MiB for each client and what handling that
// takes. The thread sanitizer keeps several bytes of its own for each byte.
#ifdef __SANITIZE_THREAD__
constexpr qint64 mayGrowBy = 120 * 1024 * 1024;
#else
constexpr qint64 mayGrowBy = 20 * 1024 * 1024;
#endif

// A recorder with a client and a model.
struct Fixture
{
    Fixture(Orb& orb, const LoadedRecorder::Load& load, const QStringList& more = {})
        : recorder(QStringLiteral(ZELKO_RECORDER), load, more)
        , client(orb, recorder.port(), options(), Tree::Instance())
    {
        QObject::connect(&client.connection, &AbstractServerConnectionData::si_allTicsConnected, &model,
                         [this] { model.connect(client.root + mapPath); });
    }

    static ZelkoCommon::LinkOptions options()
    {
        auto result = LinkClient::quickOptions();
        result.credentials = ZelkoTest::TestUsers::credentials(ZelkoCommon::Role::Operator);
        return result;
    }
    bool loaded() const
    {
        const auto* const complete = client.find<Value<bool>>(device + "/Records/LoadedCompletly");
        return complete && complete->GetValue();
    }
    qint64 changes() const { return recorder.changesIn(*client.find<RecordItemMap>(mapPath)); }
    QSet<QString> ids() const
    {
        QSet<QString> result;
        for (int row = 0; row < model.recordCount(); ++row) {
            result << model.recordID(row);
        }
        return result;
    }
    QList<Status> statuses() const
    {
        QList<Status> result;
        for (int row = 0; row < model.recordCount(); ++row) {
            result << model.recordData(row)->GetRecordStatus();
        }
        return result;
    }
    template <typename T>
    void command(const QString& name, const T& content)
    {
        auto* const value = client.find<Value<T>>(commands + name);
        client.writer()->AddValue(value, 0);
        value->SetValue(content, nullptr);
    }

    LoadedRecorder recorder;
    LinkClient client;
    ZelkoGUI::RecordItemMapModel model{nullptr};
};

} // namespace

/// A client and other client processes at the real recorder.
class TestRecorderLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void loadsAllRecords();
    void showsARecordingGrowAndFinish();
    void erasesWhatAClientDeletes();
    void bringsTheListBackAfterTheRecorderWasKilled();
    void endsEqualWhenTheRecorderIsKilledUnderLoad();
    void aStoppedClientEndsEqualAndTheRecorderStaysBounded();
    void forgetsAClientThatIsKilled();
    void endsProperlyWithAClientAttached();

private:
    Orb m_orb{{}};
};

void TestRecorderLink::loadsAllRecords()
{
    Fixture f(m_orb, {3000});
    QVERIFY(f.recorder.port() != 0);
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QCOMPARE(f.client.digest(mapPath), f.recorder.mapDigest());
    QCOMPARE(f.model.recordCount(), 3000);
    QCOMPARE(f.client.find<Value<int>>(device + "/Records/LoadCount")->GetValue(), 3000);
    QCOMPARE(f.client.log, QStringList{"connected"});
}

void TestRecorderLink::showsARecordingGrowAndFinish()
{
    Fixture f(m_orb, {}, {"--source", "generator:carrier,seconds=3"});
    QList<quint64> sizes;
    QList<Status> statuses;
    QObject::connect(&f.model, &ZelkoGUI::RecordItemMapModel::si_recordChanged, &f.model, [&] {
        const auto record = f.model.recordData(0);
        sizes << record->GetSize();
        statuses << record->GetRecordStatus();
    });
    QTRY_VERIFY_WITH_TIMEOUT(!statuses.isEmpty() && statuses.last() == Status::Finished, patience);
    QCOMPARE(statuses.first(), Status::Recording);
    QVERIFY(sizes.size() >= 3);
    QVERIFY(std::is_sorted(sizes.begin(), sizes.end()));
    QVERIFY(sizes.last() > sizes.first());
}

void TestRecorderLink::erasesWhatAClientDeletes()
{
    Fixture f(m_orb, {}, {"--source", "generator:carrier,seconds=0.2", "--source", "generator:carrier,seconds=0.2"});
    QTRY_COMPARE_WITH_TIMEOUT(f.statuses(), (QList<Status>{Status::Finished, Status::Finished}), patience);
    const QString kept = f.model.recordID(1);
    const auto folders = [&] {
        int count = 0;
        QDirIterator files(f.recorder.store(), {"RecordData.xml"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            files.next();
            ++count;
        }
        return count;
    };
    QCOMPARE(folders(), 2);
    f.command<QString>("DeleteRecordingList", f.model.recordID(0));
    QTRY_COMPARE_WITH_TIMEOUT(f.ids(), QSet<QString>{kept}, patience);
    QCOMPARE(folders(), 1);
}

void TestRecorderLink::bringsTheListBackAfterTheRecorderWasKilled()
{
    Fixture f(m_orb, {500});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QCOMPARE(f.client.digest(mapPath), f.recorder.mapDigest());
    const quint16 port = f.recorder.port();
    f.recorder.process().kill();
    QTRY_COMPARE_WITH_TIMEOUT(f.client.log, (QStringList{"connected", "disconnected"}), patience);
    QCOMPARE(f.model.recordCount(), 0);
    f.recorder.start();
    QCOMPARE(f.recorder.port(), port);
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QCOMPARE(f.client.log, (QStringList{"connected", "disconnected", "connected"}));
    QCOMPARE(f.client.digest(mapPath), f.recorder.mapDigest());
    QCOMPARE(f.model.recordCount(), 500);
}

// Changes of a load test are on the tree only: they begin anew.
void TestRecorderLink::endsEqualWhenTheRecorderIsKilledUnderLoad()
{
    Fixture f(m_orb, {1000, 2000, 6000});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded() && f.changes() > 500, patience);
    f.recorder.process().kill();
    QTRY_COMPARE_WITH_TIMEOUT(f.client.log.size(), 2, patience);
    f.recorder.start();
    QTRY_COMPARE_WITH_TIMEOUT(f.client.digest(mapPath), f.recorder.mapDigest(), patience);
    QCOMPARE(f.client.log, (QStringList{"connected", "disconnected", "connected"}));
    QCOMPARE(f.model.recordCount(), 1000);
}

void TestRecorderLink::aStoppedClientEndsEqualAndTheRecorderStaysBounded()
{
    constexpr qint64 missed = 70000; // of some 400 bytes each
    Fixture f(m_orb, {2000, 10000, 100000});
    const auto stopped = PeerProcess::client(f.recorder.port());
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded() && f.changes() > 0, patience);
    const QString complete = device + "/Records/LoadedCompletly";
    QTRY_COMPARE_WITH_TIMEOUT(stopped->ask("digest " + complete), f.client.digest(complete), patience);
    const qint64 before = peakResidentBytes(f.recorder.pid());
    const qint64 seen = f.changes();
    stopped->stop();
    QTRY_VERIFY_WITH_TIMEOUT(f.changes() >= seen + missed, patience);
    stopped->continueIt();
    QTRY_COMPARE_WITH_TIMEOUT(f.client.digest(mapPath), f.recorder.mapDigest(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(stopped->ask("digest " + mapPath), f.recorder.mapDigest(), patience);
    const qint64 grown = peakResidentBytes(f.recorder.pid()) - before;
    qInfo("the recorder grew by %.1f MB in the meantime", double(grown) / 1e6);
    QVERIFY(grown < mayGrowBy);
    const auto fresh = PeerProcess::client(f.recorder.port());
    QTRY_COMPARE_WITH_TIMEOUT(fresh->ask("digest"), f.client.digest(), patience);
    QCOMPARE(stopped->ask("digest"), f.client.digest());
    QCOMPARE(f.client.log, QStringList{"connected"}); // it never noticed
}

void TestRecorderLink::forgetsAClientThatIsKilled()
{
    Fixture f(m_orb, {1000, 2000, 10000});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded() && f.changes() > 0, patience);
    const int threads = threadCount(f.recorder.pid());
    const int files = openFileCount(f.recorder.pid());
    std::vector<std::unique_ptr<PeerProcess>> others;
    for (int i = 0; i < 3; ++i) {
        others.push_back(PeerProcess::client(f.recorder.port()));
        QTRY_COMPARE_WITH_TIMEOUT(others.back()->ask("log"), "connected", patience);
    }
    QVERIFY(threadCount(f.recorder.pid()) >= threads + 3);
    QVERIFY(openFileCount(f.recorder.pid()) >= files + 3);
    others.clear(); // kills them
    QTRY_COMPARE_WITH_TIMEOUT(openFileCount(f.recorder.pid()), files, patience);
    QTRY_VERIFY_WITH_TIMEOUT(threadCount(f.recorder.pid()) <= threads, patience);
    QTRY_COMPARE_WITH_TIMEOUT(f.client.digest(mapPath), f.recorder.mapDigest(), patience);
    QCOMPARE(f.client.log, QStringList{"connected"});
    const auto fresh = PeerProcess::client(f.recorder.port());
    QTRY_COMPARE_WITH_TIMEOUT(fresh->ask("digest"), f.client.digest(), patience);
}

void TestRecorderLink::endsProperlyWithAClientAttached()
{
    Fixture f(m_orb, {100});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QVERIFY(f.recorder.process().terminate());
    QTRY_COMPARE_WITH_TIMEOUT(f.client.log, (QStringList{"connected", "disconnected"}), patience);
}

QTEST_GUILESS_MAIN(TestRecorderLink)
#include "tst_recorderlink.moc"
