#include <patience.h>
#include <peerprocess.h>
#include <recorderclient.h>
#include <recorderprocess.h>
#include <storedbytes.h>
#include <storedrecord.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoTest;
using ZelkoCommon::Role;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

namespace {

const QString device = QStringLiteral("Recorder1");
const QString channelName = QStringLiteral("Antenna1");
const QString done = QStringLiteral("done");
const QString older = QStringLiteral("--older");
constexpr quint64 frameBytes = 400;
constexpr int longPatience = 2 * patience; // until a recorder has asked twice for a sign of life

} // namespace

// Channel managers that are processes of their own against a real recorder, and what a client sees of their records.
class TestChannelManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions()); }
    void cleanupTestCase() { m_orb.reset(); }
    void init();
    void cleanup();
    void recordsWhatAManagerSends_data();
    void recordsWhatAManagerSends();
    void livesOnWhenAManagerIsKilled_data();
    void livesOnWhenAManagerIsKilled();
    void refusesANilManager();
    void refusesANameThatIsUsed();

private:
    using Record = std::shared_ptr<ZELKO_XML::ZELKO_RecordData>;

    std::unique_ptr<PeerProcess> startManager(const QStringList& options = {}) const
    {
        const QStringList where{QStringLiteral("--recorder"), QString::number(m_recorder->port())};
        return std::make_unique<PeerProcess>(where + options, 0, QStringLiteral(ZELKO_CHANNEL_MANAGER));
    }
    static QStringList beginningOf(const QStringList& options);
    static QStringList callsOf(PeerProcess& manager) { return manager.ask("calls").split('|'); }
    QString enterAndBegin(PeerProcess& manager, const QStringList& options);
    void send(PeerProcess& manager, std::initializer_list<int> frames);
    Record onlyRecord() const
    {
        const QStringList ids = m_client->values().ids();
        return ids.size() == 1 ? m_client->values().record(ids.first()) : nullptr;
    }
    bool shows(Status status) const
    {
        const Record record = onlyRecord();
        return record && record->GetRecordStatus() == status;
    }
    void verifyClosed(quint64 bytes) const;

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<QTemporaryDir> m_store;
    std::unique_ptr<RecorderProcess> m_recorder;
    std::unique_ptr<RecorderClient> m_client;
};

void TestChannelManager::init()
{
    m_store = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<RecorderProcess>(QStringLiteral(ZELKO_RECORDER));
    QVERIFY(m_recorder->start({QStringLiteral("--store"), m_store->path()}));
    m_client = std::make_unique<RecorderClient>(*m_orb, m_recorder->port(), Role::Viewer);
    QTRY_VERIFY_WITH_TIMEOUT(m_client->isConnected() && m_client->values().isLoaded(), patience);
    QCOMPARE(m_client->values().ids(), QStringList());
}

void TestChannelManager::cleanup()
{
    m_client.reset();
    m_recorder.reset();
}

// What a recorder calls until data flow.
QStringList TestChannelManager::beginningOf(const QStringList& options)
{
    const QString available = "available " + device;
    return options.contains(older) ? QStringList{available, "connect of old", "start of old"}
                                   : QStringList{available, "connect", "start"};
}

// Gives the ID of the channel.
QString TestChannelManager::enterAndBegin(PeerProcess& manager, const QStringList& options)
{
    const QString id = manager.ask("register " + channelName);
    [&] {
        QVERIFY(manager.port() != 0);
        QCOMPARE(manager.ask("find " + id), id);
        QCOMPARE(manager.ask("begin Morning"), done);
        QTRY_COMPARE_WITH_TIMEOUT(callsOf(manager), beginningOf(options), patience);
    }();
    return id;
}

void TestChannelManager::send(PeerProcess& manager, std::initializer_list<int> frames)
{
    for (const int number : frames) {
        const auto sends = [&] { return manager.ask(QStringLiteral("send %1").arg(number)) == done; };
        QVERIFY(sendUntilStored(m_store->path(), sends));
    }
}

// The client and the disk tell the same, and the record ends where its index and its samples do.
void TestChannelManager::verifyClosed(quint64 bytes) const
{
    const Record shown = onlyRecord();
    QVERIFY(shown);
    ZELKO_XML::ZELKO_RecordData stored;
    const QDir folder(m_store->filePath(device) + '/' + shown->GetRecordID());
    QVERIFY(stored.LoadXml(folder.filePath(ZELKO_XML::metaDataFileName)));
    QCOMPARE(stored, *shown);
    QVERIFY(stored.GetFinished());
    QCOMPARE(quint64(stored.GetSize()), bytes);
    QCOMPARE(quint64(storedBytes(m_store->path())), bytes);
    QCOMPARE(quint64(stored.GetIndexEntry().constLast().GetRecordOffset()), bytes);
    QCOMPARE(stored.GetStopTime(), stored.GetIndexEntry().constLast().GetTimestamp());
}

void TestChannelManager::recordsWhatAManagerSends_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("as datagrams") << QStringList();
    QTest::newRow("as a stream") << QStringList{"--stream"};
    QTest::newRow("as datagrams to a port of its own choice") << QStringList{older};
    QTest::newRow("as a stream to a port of its own choice") << QStringList{older, "--stream"};
}

void TestChannelManager::recordsWhatAManagerSends()
{
    QFETCH(const QStringList, options);
    const auto manager = startManager(options);
    const QString channel = enterAndBegin(*manager, options);
    send(*manager, {0, 1, 2});
    QTRY_VERIFY_WITH_TIMEOUT(shows(Status::Recording), patience);
    const QString record = onlyRecord()->GetRecordID();
    QCOMPARE(manager->ask("end Evening"), done);
    const QString finished = QStringLiteral("finished %1 %2").arg(device, record);
    QTRY_COMPARE_WITH_TIMEOUT(callsOf(*manager).last(), finished, patience);
    QTRY_VERIFY_WITH_TIMEOUT(shows(Status::Finished), patience);
    QCOMPARE(onlyRecord()->GetRecordName(), QStringLiteral("Evening"));
    verifyClosed(3 * frameBytes);
    QCOMPARE(callsOf(*manager).count("started"), 1);
    QCOMPARE(manager->ask("remove"), done);
    QTRY_COMPARE_WITH_TIMEOUT(manager->ask("find " + channel), QStringLiteral("nothing"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(callsOf(*manager).last(), QStringLiteral("removed"), patience);
}

void TestChannelManager::livesOnWhenAManagerIsKilled_data()
{
    recordsWhatAManagerSends_data();
}

void TestChannelManager::livesOnWhenAManagerIsKilled()
{
    QFETCH(const QStringList, options);
    QSignalSpy disconnected(&m_client->link(), &ZelkoCommon::TreeLink::disconnected);
    const auto manager = startManager(options);
    const auto next = startManager(options);
    const QString channel = enterAndBegin(*manager, options);
    send(*manager, {0, 1});
    QTRY_VERIFY_WITH_TIMEOUT(shows(Status::Recording), patience);
    manager->kill();
    QTRY_VERIFY_WITH_TIMEOUT(shows(Status::Finished), longPatience);
    verifyClosed(2 * frameBytes);
    QTRY_COMPARE_WITH_TIMEOUT(next->ask("find " + channel), QStringLiteral("nothing"), longPatience);
    QVERIFY(enterAndBegin(*next, options) != channel);
    QCOMPARE(m_recorder->process().state(), QProcess::Running);
    QCOMPARE(disconnected.size(), 0);
}

void TestChannelManager::refusesANilManager()
{
    const auto manager = startManager();
    QCOMPARE(manager->ask("register-nobody " + channelName), QStringLiteral("exGen 1")); // a bad parameter
    QVERIFY(!manager->ask("register " + channelName).startsWith("ex"));
}

void TestChannelManager::refusesANameThatIsUsed()
{
    const auto manager = startManager();
    const QString channel = manager->ask("register " + channelName);
    const auto other = startManager();
    QCOMPARE(other->ask("register " + channelName), QStringLiteral("exGen 4")); // the name is in use
    QCOMPARE(other->ask("find " + channel), channel);
}

QTEST_GUILESS_MAIN(TestChannelManager)
#include "tst_channelmanager.moc"
