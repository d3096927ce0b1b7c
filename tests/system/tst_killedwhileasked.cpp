#include <actionsite.h>
#include <changedrecords.h>

#include <resources/zelkoicons.h>

#include <QRandomGenerator>

#include <atomic>
#include <thread>

using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;

// A recorder process that is killed again and again while a client has it change records. What the client was told is
// done is on disk, nothing is half written, and the client finds each new process.

namespace {

constexpr int rounds = 50;
constexpr int mostChanges = 100; // of a round

/// Asks a recorder through the handler, in the words of its DeviceService.
class AdminCalls
{
public:
    explicit AdminCalls(ActionSite& site)
        : m_site(site)
        , m_admin(site.admin())
    {}

    /// From the disk, where it is even if nobody answers any more.
    std::unique_ptr<ZELKO_RecordData> record(const QString& id) const
    {
        return std::make_unique<ZELKO_RecordData>(m_site.stored(id));
    }
    unsigned long setComment(const QString& id, const QString& text)
    {
        return m_admin.SetRecordComment(ActionSite::device(), id, text);
    }
    unsigned long setDeletable(const QString& id, bool deletable)
    {
        return m_admin.SetRecordDeletableFlag(ActionSite::device(), id, deletable);
    }
    unsigned long setBookmarks(const QString& id, const QVector<BookmarkEntry>& bookmarks)
    {
        return m_admin.addBookmarkEntries(ActionSite::device(), id, bookmarks);
    }
    unsigned long deleteBookmarks(const QString& id, const QVector<BookmarkEntry>& bookmarks)
    {
        return m_admin.deleteBookmarkEntries(ActionSite::device(), id, bookmarks);
    }
    unsigned long addHistory(const QString& id, const QString& text)
    {
        return m_admin.addHistory(ActionSite::device(), id, text);
    }
    unsigned long removeHistory(const QString& id, quint64 key)
    {
        return m_admin.removeHistoryEntry(ActionSite::device(), id, static_cast<qint64>(key));
    }
    unsigned long copy(const QString& id, const ZelkoRecorder::RecordRanges& ranges, ZelkoRecorder::RecordRange::Unit,
                       const QString& name, QString* newID)
    {
        return m_admin.copyRecord(ActionSite::device(), id, static_cast<qint64>(ranges.constFirst().start),
                                  static_cast<qint64>(ranges.constFirst().stop), name, newID);
    }

private:
    ActionSite& m_site;
    ZelkoGUI::GuiToServerAdminCorbaHandler& m_admin;
};

} // namespace

class TestKilledWhileAsked : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void losesNothingThatItAcknowledged();

private:
    using Acknowledged = ChangedRecords::Acknowledged;

    void runUntilKilled(quint32 seed, Acknowledged* acknowledged);

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<ActionSite> m_site;
    std::unique_ptr<ChangedRecords> m_records;
    QRandomGenerator m_random;
};

void TestKilledWhileAsked::initTestCase()
{
    registerZelkoIcons();
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_site = std::make_unique<ActionSite>(*m_orb, QStringLiteral(ZELKO_RECORDER));
    m_records = std::make_unique<ChangedRecords>(m_site->deviceFolder(), 1);
    m_records->fill();
    m_random.seed(ChangedRecords::seedOfTest());
    QVERIFY(m_site->start());
    m_site->connectAs(Role::Operator);
}

void TestKilledWhileAsked::cleanupTestCase()
{
    m_site.reset();
    m_orb.reset();
}

void TestKilledWhileAsked::losesNothingThatItAcknowledged()
{
    int acknowledgedInAll = 0;
    for (int round = 0; round < rounds; ++round) {
        QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), ActionSite::patience);
        const quint32 seed = m_random.generate();
        Acknowledged acknowledged(1);
        runUntilKilled(seed, &acknowledged);
        m_records->check(seed, acknowledged);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("round %1").arg(round)));
        acknowledgedInAll += acknowledged.count;
        QTRY_VERIFY_WITH_TIMEOUT(!m_site->isReady(), ActionSite::patience);
        QVERIFY2(m_site->start(), qPrintable(m_site->recorder().process().readAllStandardError()));
    }
    qInfo("%d changes were acknowledged, %d more were on disk", acknowledgedInAll, m_records->inFlight());
    QVERIFY(acknowledgedInAll >= 1000);
}

// Killed from another thread, for this one waits for the recorder.
void TestKilledWhileAsked::runUntilKilled(quint32 seed, Acknowledged* acknowledged)
{
    const int enough = m_random.bounded(1, mostChanges);
    const std::chrono::microseconds late(m_random.bounded(4000)); // not just when it has acknowledged something
    std::atomic<int> count = 0;
    std::thread killer([&, pid = static_cast<pid_t>(m_site->recorder().process().processId())] {
        for (int seen = count; seen < enough; seen = count) {
            count.wait(seen);
        }
        std::this_thread::sleep_for(late);
        ::kill(pid, SIGKILL);
    });
    AdminCalls calls(*m_site);
    RandomChanges changes = m_records->changes(0, seed);
    QString newID;
    const auto isDone = [&] {
        changes.next();
        newID.clear();
        return changes.ask(calls, &newID) == 0;
    };
    while (isDone()) {
        acknowledged->add(0, newID);
        ++count;
        count.notify_one();
    }
    const int done = count.exchange(mostChanges); // where something else went wrong the killer does not wait for ever
    count.notify_one();
    killer.join();
    m_site->recorder().kill();
    QVERIFY2(done >= enough, qPrintable(m_site->handler()->lastErrorText() + QLatin1Char('\n') +
                                        QString::fromUtf8(m_site->recorder().process().readAllStandardError())));
}

QTEST_MAIN(TestKilledWhileAsked)
#include "tst_killedwhileasked.moc"
