#include <actionsite.h>
#include <changedrecords.h>
#include <sparerecords.h>

#include <resources/zelkoicons.h>

#include <zelkobase/service/servicestatus.h>

#include <QDeadlineTimer>
#include <QRandomGenerator>

#include <atomic>
#include <thread>

using namespace ZelkoTest;
using ZELKO_XML::BookmarkEntry;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::Role;

// A recorder process that is killed again and again while a client has it change, put to rest and delete records. What
// the client was told is done is on disk, nothing is half written, and the client finds each new process.

namespace {

constexpr int rounds = 50;
constexpr int changesOfRound = 1000; // in the middle of which the recorder is killed
constexpr int changesOfCommand = 16; // of so many one is a command on the tree

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

/// Kills a process a moment after it has acknowledged so many changes: on a thread of its own, for the one that asks
/// waits for its answers.
class Killer
{
public:
    Killer(qint64 process, int changes, std::chrono::microseconds late)
        : m_changesLeft(changes)
        , m_thread([this, process, late] {
            for (int left = m_changesLeft; left > 0; left = m_changesLeft) {
                m_changesLeft.wait(left);
            }
            std::this_thread::sleep_for(late);
            ::kill(static_cast<pid_t>(process), SIGKILL);
        })
    {}
    /// Kills it if that is not done yet.
    ~Killer()
    {
        m_changesLeft = 0;
        m_changesLeft.notify_one();
        m_thread.join();
    }
    Killer(const Killer&) = delete;
    Killer& operator=(const Killer&) = delete;

    /// One more was acknowledged.
    void count()
    {
        --m_changesLeft;
        m_changesLeft.notify_one();
    }

private:
    std::atomic<int> m_changesLeft;
    std::thread m_thread;
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
    unsigned long change(quint32 seed, Killer& killer, Acknowledged* acknowledged);
    bool command();
    bool isCommandDone() const;
    void restart();
    void compareRows();

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<ActionSite> m_site;
    std::unique_ptr<ChangedRecords> m_records;
    std::unique_ptr<SpareRecords> m_spares;
    QRandomGenerator m_random;
};

void TestKilledWhileAsked::initTestCase()
{
    registerZelkoIcons();
    m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    m_site = std::make_unique<ActionSite>(*m_orb, QStringLiteral(ZELKO_RECORDER));
    m_records = std::make_unique<ChangedRecords>(m_site->deviceFolder(), 1);
    m_records->fill();
    m_spares = std::make_unique<SpareRecords>(m_site->deviceFolder());
    m_spares->fill();
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
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), ActionSite::patience);
    for (int round = 0; round < rounds; ++round) {
        const quint32 seed = m_random.generate();
        Acknowledged acknowledged(1);
        runUntilKilled(seed, &acknowledged);
        m_spares->check();
        m_records->check(seed, acknowledged);
        m_spares->fill();
        restart();
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("round %1").arg(round)));
        acknowledgedInAll += acknowledged.count;
    }
    const int commands = m_spares->doneInAll();
    qInfo("%d changes were acknowledged, %d of them commands; %d more were on disk", acknowledgedInAll, commands,
          m_records->inFlight());
    QVERIFY(acknowledgedInAll >= rounds * changesOfRound / 4); // about half of them, as kills fall anywhere
    QVERIFY(commands >= acknowledgedInAll / changesOfCommand / 4);
}

void TestKilledWhileAsked::runUntilKilled(quint32 seed, Acknowledged* acknowledged)
{
    const int enough = m_random.bounded(changesOfRound);
    const std::chrono::microseconds late(m_random.bounded(4000)); // not just when it has acknowledged something
    unsigned long lastStatus = 0;
    {
        Killer killer(m_site->recorder().process().processId(), enough, late);
        lastStatus = change(seed, killer, acknowledged);
    }
    m_site->recorder().kill();
    const QString why = m_site->handler()->lastErrorText() + QLatin1Char('\n') +
                        QString::fromUtf8(m_site->recorder().process().readAllStandardError());
    QVERIFY2(acknowledged->count >= enough, qPrintable(why));
    QVERIFY2(lastStatus == 0 || lastStatus >= ZelkoCommon::firstClientStatus, qPrintable(why)); // it refused nothing
}

// Until there is no answer any more. Gives the status of the last call.
unsigned long TestKilledWhileAsked::change(quint32 seed, Killer& killer, Acknowledged* acknowledged)
{
    AdminCalls calls(*m_site);
    RandomChanges changes = m_records->changes(0, seed);
    while (acknowledged->count < changesOfRound) {
        QString newID;
        if (!m_spares->isUsedUp() && m_random.bounded(changesOfCommand) == 0) {
            if (!command()) {
                return 0;
            }
            ++acknowledged->count;
        } else {
            changes.next();
            if (const unsigned long status = changes.ask(calls, &newID); status != 0) {
                return status;
            }
            acknowledged->add(0, newID);
        }
        killer.count();
    }
    return 0;
}

// What the actions of a controller write to the tree. The recorder has done it when the list shows so; false if that
// will not come any more.
bool TestKilledWhileAsked::command()
{
    const bool deletes = m_spares->step() == SpareRecords::Step::Delete;
    auto* const value = ActionSite::values().command<Value<QString>>(deletes ? "DeleteRecordingList" : "SetRecordIdle");
    if (!value) {
        return false;
    }
    m_spares->ask();
    value->SetValue(m_spares->id(), nullptr);
    const QDeadlineTimer deadline(ActionSite::patience);
    while (m_site->isReady() && !isCommandDone() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (!m_site->isReady()) { // the list is gone, and not the record alone
        return false;
    }
    if (!isCommandDone()) {
        QTest::qFail(qPrintable(m_spares->id() + QStringLiteral(" was not changed")), __FILE__, __LINE__);
        return false;
    }
    m_spares->acknowledge();
    return true;
}

bool TestKilledWhileAsked::isCommandDone() const
{
    const auto record = ActionSite::values().record(m_spares->id());
    return m_spares->step() == SpareRecords::Step::Delete
               ? !record
               : record && record->GetRecordStatus() == ZELKO_RecordData::RecordStatus::Finished;
}

void TestKilledWhileAsked::restart()
{
    QTRY_VERIFY_WITH_TIMEOUT(!m_site->isReady(), ActionSite::patience);
    QVERIFY2(m_site->start(), qPrintable(m_site->recorder().process().readAllStandardError()));
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), ActionSite::patience);
    compareRows();
}

// The new process serves what the old one left on disk.
void TestKilledWhileAsked::compareRows()
{
    const QStringList ids = m_site->storedIds();
    QTRY_COMPARE_WITH_TIMEOUT(m_site->rows(), ids, ActionSite::patience);
    for (const QString& id : ids) {
        QCOMPARE(m_site->row(id), m_site->stored(id));
    }
}

QTEST_MAIN(TestKilledWhileAsked)
#include "tst_killedwhileasked.moc"
