#include "faultproxy.h"
#include "linkclient.h"
#include "peerprocess.h"

#include <zelkobase/connection/ivtclient.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <valuecore/valuetypes.h>

#include <QDir>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

using namespace ZelkoCommon;
using zelko::recordmap::RecordItemMap;

namespace {

const QString device = QStringLiteral("/ZELKO/Device/Recorder1");
const QString mapPath = device + QStringLiteral("/Records/Map");
const QString commands = QStringLiteral("/ZELKO/Command/Recorder1/");
constexpr int patience = 60000;

// A recorder on a store of its own, with a client and a model.
struct Fixture
{
    Fixture(Orb& usedOrb, const QStringList& options)
        : orb(usedOrb)
        , arguments(QStringList{"--store", store.path()} + options)
        , recorder(start(0))
        , client(orb, recorder->port(), LinkClient::quickOptions(), Tree::Instance())
    {
        QObject::connect(&client.connection, &AbstractServerConnectionData::si_allTicsConnected, &model,
                         [this] { model.connect(client.root + mapPath); });
    }

    std::unique_ptr<PeerProcess> start(quint16 port) const
    {
        return std::make_unique<PeerProcess>(arguments, port, QStringLiteral(ZELKO_RECORDER));
    }

    quint64 size() const
    {
        const auto* const map = client.find<RecordItemMap>(mapPath);
        return map ? map->Size() : 0;
    }
    bool loaded() const
    {
        const auto* const complete = client.find<Value<bool>>(device + "/Records/LoadedCompletly");
        return complete && complete->GetValue();
    }
    QSet<QString> ids() const
    {
        QSet<QString> result;
        for (int row = 0; row < model.recordCount(); ++row) {
            result << model.recordID(row);
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

    QTemporaryDir store;
    Orb& orb;
    const QStringList arguments;
    std::unique_ptr<PeerProcess> recorder;
    LinkClient client;
    ZelkoGUI::RecordItemMapModel model{nullptr};
};

} // namespace

class TestRecorderLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { zelko::registerItemMapTypes(); }

    void loadsAllRecords();
    void showsARecordingGrowAndFinish();
    void erasesWhatAClientDeletes();
    void bringsTheListBackAfterTheRecorderWasKilled();
    void staysBoundedUnderAStoppedClient();
    void endsEqualThroughAMisbehavingNetwork();
    void endsProperlyWithAClientAttached();

private:
    Orb m_orb{{}};
};

void TestRecorderLink::loadsAllRecords()
{
    Fixture f(m_orb, {"--populate", "10000"});
    QVERIFY(f.recorder->port() != 0);
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QCOMPARE(f.size(), 10000u);
    QCOMPARE(f.model.recordCount(), 10000);
    QCOMPARE(f.client.find<Value<int>>(device + "/Records/LoadCount")->GetValue(), 10000);
    QCOMPARE(f.client.log, QStringList{"connected"});
}

void TestRecorderLink::showsARecordingGrowAndFinish()
{
    Fixture f(m_orb, {"--source", "generator:carrier,seconds=3"});
    QList<quint64> sizes;
    QList<int> statuses;
    QObject::connect(&f.model, &ZelkoGUI::RecordItemMapModel::si_recordChanged, &f.model, [&] {
        const auto record = f.model.recordData(0);
        sizes << (record ? record->GetSize() : 0);
        statuses << (record ? static_cast<int>(record->GetRecordStatus()) : -1);
    });
    QTRY_VERIFY_WITH_TIMEOUT(!statuses.isEmpty() && statuses.last() == 5, patience);
    QCOMPARE(statuses.first(), 2);
    QVERIFY(sizes.size() >= 3);
    QVERIFY(std::is_sorted(sizes.begin(), sizes.end()));
    QVERIFY(sizes.last() > sizes.first());
}

void TestRecorderLink::erasesWhatAClientDeletes()
{
    Fixture f(m_orb, {"--source", "generator:carrier,seconds=0.2", "--source", "generator:carrier,seconds=0.2"});
    QTRY_VERIFY_WITH_TIMEOUT(
        f.model.recordCount() == 2 &&
            f.model.recordData(0)->GetRecordStatus() == ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished &&
            f.model.recordData(1)->GetRecordStatus() == ZELKO_XML::ZELKO_RecordData::RecordStatus::Finished,
        patience);
    const QString kept = f.model.recordID(1);
    const auto folders = [&] {
        int count = 0;
        QDirIterator files(f.store.path(), {"RecordData.xml"}, QDir::Files, QDirIterator::Subdirectories);
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
    Fixture f(m_orb, {"--populate", "500"});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    const QSet<QString> before = f.ids();
    QCOMPARE(before.size(), 500);
    const quint16 port = f.recorder->port();
    f.recorder->kill();
    QTRY_COMPARE(f.client.log, (QStringList{"connected", "disconnected"}));
    QCOMPARE(f.model.recordCount(), 0);
    f.recorder = f.start(port);
    QCOMPARE(f.recorder->port(), port);
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QCOMPARE(f.client.log, (QStringList{"connected", "disconnected", "connected"}));
    QCOMPARE(f.ids(), before);
}

void TestRecorderLink::staysBoundedUnderAStoppedClient()
{
    Fixture f(m_orb, {"--populate", "10000", "--churn", "10000"});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    const auto stopped = PeerProcess::client(f.recorder->port());
    QTRY_COMPARE_WITH_TIMEOUT(stopped->ask("log"), "connected", patience);
    QTest::qWait(1000);
    const qint64 before = residentBytes(f.recorder->pid());
    qint64 most = 0;
    stopped->stop();
    for (int i = 0; i < 80; ++i) {
        QTest::qWait(100);
        most = std::max(most, residentBytes(f.recorder->pid()));
    }
    stopped->continueIt();
    qInfo("the recorder grew by %.1f MB in the meantime", double(most - before) / 1e6);
    QVERIFY(most - before < 48 * 1024 * 1024);
    const QString digest = stopped->ask("digest");
    QTRY_VERIFY_WITH_TIMEOUT(stopped->ask("digest") != digest, patience); // it goes on
    QCOMPARE(f.client.log, QStringList{"connected"});                     // the other one never noticed
}

void TestRecorderLink::endsEqualThroughAMisbehavingNetwork()
{
    Fixture f(m_orb, {"--populate", "2000"});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    FaultProxy proxy(f.recorder->port());
    LinkClient other(m_orb, proxy.port(), LinkClient::quickOptions());
    proxy.setDelay(20);
    QTRY_COMPARE_WITH_TIMEOUT(other.digest(), f.client.digest(), patience);
    proxy.setPieces(5);
    proxy.cut();
    QTRY_COMPARE_WITH_TIMEOUT(other.log, (QStringList{"connected", "disconnected", "connected"}), patience);
    proxy.setDamage(200);
    QTRY_VERIFY_WITH_TIMEOUT(proxy.damaged() > 10, patience);
    proxy.setDamage(0);
    QTRY_COMPARE_WITH_TIMEOUT(other.digest(), f.client.digest(), patience);
}

void TestRecorderLink::endsProperlyWithAClientAttached()
{
    Fixture f(m_orb, {"--populate", "100"});
    QTRY_VERIFY_WITH_TIMEOUT(f.loaded(), patience);
    QVERIFY(f.recorder->terminate());
    QTRY_COMPARE(f.client.log, (QStringList{"connected", "disconnected"}));
}

QTEST_GUILESS_MAIN(TestRecorderLink)
#include "tst_recorderlink.moc"
