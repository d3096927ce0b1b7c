#include <actiontest.h>
#include <barprocess.h>
#include <bookmarkedrecord.h>

#include <thread>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;

namespace {

const QString record = u"R1"_s;
const QString lengthy = u"Long"_s;
const QString begun = textsOfTwo.join(QLatin1Char(','));
const QString resets = u"reset bookmarks from ZELKO"_s;
const QString reloads = u"bookmarks changed by an external application - reload from ZELKO"_s;

} // namespace

/// Two operators, each in a process of his own with a replay bar that he works with the mouse, and one recorder.
class TestTwoBarClients : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void aDraggedBookmarkArrivesInTheStoreAndOnTheOtherBar_data();
    void aDraggedBookmarkArrivesInTheStoreAndOnTheOtherBar();
    void aBarThatOnlyShowsFollowsByItself();
    void bothEditAtOnce();
    void bothSendAtOnce();
    void theRecorderIsKilledBetweenSendingAndTheAnswer_data();
    void theRecorderIsKilledBetweenSendingAndTheAnswer();
    void theRecorderIsKilledAtAnyMomentOfSending();
    void aReplayMovesThePositionOnBothBars();

private:
    void open(std::unique_ptr<BarProcess>& client, const QStringList& more = {});
    void openBoth();
    void show(BarProcess& client);
    void openBothBesideAChannel();
    void killDuringApply(std::chrono::microseconds late);
    bool bothShow(const QString& bookmarks) { return m_left->shows(bookmarks) && m_right->shows(bookmarks); }
    bool bothAre(const QString& state) { return m_left->state() == state && m_right->state() == state; }
    bool bothReplay(const QString& state)
    {
        return m_left->tell("replay") == state && m_right->tell("replay") == state;
    }
    bool bothAreBehind(qint64 position) { return m_left->position() > position && m_right->position() > position; }
    QString stored() const
    {
        const auto data = m_site->stored(record);
        return bookmarkTexts(std::as_const(data).GetBookmarkEntry()).join(QLatin1Char(','));
    }

    std::unique_ptr<BarProcess> m_left;
    std::unique_ptr<BarProcess> m_right;
    std::unique_ptr<PeerProcess> m_manager; // of the channel
};

void TestTwoBarClients::init()
{
    makeSite();
    QVERIFY(storeRecord(m_site->deviceFolder(), recordWithBookmarks(record, 90), 4000));
    QVERIFY(storeRecord(m_site->deviceFolder(), recordWithBookmarks(lengthy, 3600), 4000));
    QVERIFY(m_site->start());
}

void TestTwoBarClients::cleanup()
{
    m_left.reset();
    m_right.reset();
    m_manager.reset();
    leaveSite();
}

void TestTwoBarClients::open(std::unique_ptr<BarProcess>& client, const QStringList& more)
{
    client = std::make_unique<BarProcess>(m_site->port(), more);
    QTRY_VERIFY_WITH_TIMEOUT(client->is("ready"), patience);
}

void TestTwoBarClients::openBoth()
{
    open(m_left);
    open(m_right);
    show(*m_left);
    show(*m_right);
}

void TestTwoBarClients::show(BarProcess& client)
{
    QVERIFY(client.act("show " + record));
    QVERIFY(client.shows(stored()));
    QCOMPARE(client.state(), "SynchInSync");
}

void TestTwoBarClients::aDraggedBookmarkArrivesInTheStoreAndOnTheOtherBar_data()
{
    QTest::addColumn<QString>("deed");
    QTest::addColumn<QString>("edited");
    QTest::addColumn<QString>("sorted");
    QTest::newRow("one that was there is dragged past another") << "drag 10 40"
                                                                << "40000000 a,20000000 b"
                                                                << "20000000 b,40000000 a";
    QTest::newRow("one that was there is dragged onto another") << "drag 10 20"
                                                                << "20000000 a,20000000 b"
                                                                << "20000000 a b";
    QTest::newRow("a new one is set by a double click") << "double-click 15"
                                                        << "10000000 a,20000000 b,15000000 Bookmark 3"
                                                        << "10000000 a,15000000 Bookmark 3,20000000 b";
}

void TestTwoBarClients::aDraggedBookmarkArrivesInTheStoreAndOnTheOtherBar()
{
    QFETCH(const QString, deed);
    QFETCH(const QString, edited);
    QFETCH(const QString, sorted);
    openBoth();
    QVERIFY(m_left->act(deed));
    QVERIFY(m_left->shows(edited));
    QCOMPARE(m_left->state(), "SynchLocalChange");
    QCOMPARE(m_left->tell("buttons"), "apply reset: " + resets);
    QCOMPARE(stored(), begun);
    QVERIFY(m_left->apply());
    QCOMPARE(stored(), sorted);
    QTRY_VERIFY_WITH_TIMEOUT(m_left->shows(sorted), patience);
    QCOMPARE(m_left->state(), "SynchPending");

    QTRY_COMPARE_WITH_TIMEOUT(m_right->state(), "SynchExternalChange", patience);
    QCOMPARE(m_right->tell("buttons"), "reset: " + reloads);
    QVERIFY(m_right->shows(begun));
    QVERIFY(m_right->act("reset"));
    QVERIFY(m_right->shows(sorted));
    QCOMPARE(m_right->state(), "SynchInSync");
    QCOMPARE(m_right->tell("buttons"), ": " + resets);
    QVERIFY(m_left->act("unlock"));
    QCOMPARE(m_left->state(), "SynchInSync");
}

void TestTwoBarClients::aBarThatOnlyShowsFollowsByItself()
{
    open(m_left);
    open(m_right, {u"--read-only"_s});
    show(*m_left);
    QVERIFY(m_right->act("show " + record));
    QCOMPARE(m_right->state(), "SynchPending");
    QVERIFY(m_right->act("drag 10 50")); // which does nothing
    QVERIFY(m_right->shows(begun));
    QVERIFY(m_left->act("drag 20 60"));
    QVERIFY(m_left->apply());
    QTRY_VERIFY_WITH_TIMEOUT(m_right->shows("10000000 a,60000000 b"), patience);
    QCOMPARE(m_right->state(), "SynchPending");
}

// What one has changed stands until he sends it or takes it back; who sends last is the one whose list is stored.
void TestTwoBarClients::bothEditAtOnce()
{
    const QString ofLeft = u"20000000 b,40000000 a"_s;
    const QString ofRight = u"10000000 a,70000000 b"_s;
    openBoth();
    QVERIFY(m_left->act("drag 10 40"));
    QVERIFY(m_right->act("drag 20 70"));
    QCOMPARE(m_left->state(), "SynchLocalChange");
    QCOMPARE(m_right->state(), "SynchLocalChange");
    QVERIFY(m_left->apply());
    QCOMPARE(m_left->state(), "SynchPending");
    QTRY_VERIFY_WITH_TIMEOUT(m_left->shows(ofLeft), patience);
    QVERIFY(m_left->act("drag 20 80")); // which does nothing: it is locked
    QVERIFY(m_left->shows(ofLeft));
    QTRY_COMPARE_WITH_TIMEOUT(m_right->tell("row " + record), ofLeft, patience);
    QCOMPARE(m_right->state(), "SynchLocalChange");
    QVERIFY(m_right->shows(ofRight));

    QVERIFY(m_left->act("unlock"));
    QCOMPARE(m_left->state(), "SynchInSync");
    QVERIFY(m_right->apply());
    QCOMPARE(stored(), ofRight);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->state(), "SynchExternalChange", patience);
    QVERIFY(m_left->shows(ofLeft));
    QTRY_COMPARE_WITH_TIMEOUT(m_right->tell("row " + record), ofRight, patience);
    QVERIFY(m_right->act("unlock"));
    QCOMPARE(m_right->state(), "SynchInSync");
    QVERIFY(m_right->shows(ofRight));
    QVERIFY(m_left->act("reset"));
    QVERIFY(m_left->shows(ofRight));
    QCOMPARE(m_left->state(), "SynchInSync");
}

// One is the last, and both show what he has sent, since both are locked and follow the recorder.
void TestTwoBarClients::bothSendAtOnce()
{
    openBoth();
    QVERIFY(m_left->act("drag 10 40"));
    QVERIFY(m_right->act("drag 20 70"));
    QVERIFY(m_left->beginToApply());
    QVERIFY(m_right->beginToApply());
    QVERIFY(m_left->hasApplied());
    QVERIFY(m_right->hasApplied());
    QVERIFY(bothAre(u"SynchPending"_s));
    const QString last = stored();
    QVERIFY2(last == "20000000 b,40000000 a" || last == "10000000 a,70000000 b", qPrintable(last));
    QTRY_VERIFY_WITH_TIMEOUT(bothShow(last), patience);
    QVERIFY(m_left->act("unlock"));
    QVERIFY(m_right->act("unlock"));
    QVERIFY(bothAre(u"SynchInSync"_s));
    QVERIFY(bothShow(last));
}

void TestTwoBarClients::theRecorderIsKilledBetweenSendingAndTheAnswer_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("before it has the list") << false;
    QTest::newRow("when it has the list on disk") << true;
}

// What was sent is stored whole or not at all. Without a recorder there is no record; with the next one both have what
// is stored, locked until the record is shown anew.
void TestTwoBarClients::theRecorderIsKilledBetweenSendingAndTheAnswer()
{
    QFETCH(const bool, isTaken);
    const QString sent = u"20000000 b,40000000 a"_s;
    const QString whole = isTaken ? sent : begun;
    openBoth();
    const QStringList files = contentOf(m_site->deviceFolder()).keys();
    QVERIFY(m_left->act("drag 10 40"));
    QVERIFY(isTaken || m_site->recorder().stop());
    QVERIFY(m_left->beginToApply());
    QTRY_COMPARE_WITH_TIMEOUT(stored(), whole, patience);
    m_site->recorder().kill();
    QVERIFY(m_left->hasApplied());
    QCOMPARE(stored(), whole);
    QCOMPARE(m_left->tell("messages"), QString()); // that the model stays locked says enough

    QTRY_VERIFY_WITH_TIMEOUT(bothAre(u"SynchNoRecord"_s), patience);
    QVERIFY(bothShow(QString()));
    QVERIFY(m_left->act("unlock"));
    QCOMPARE(m_left->state(), "SynchNoRecord");
    QVERIFY(m_site->start());
    QTRY_VERIFY_WITH_TIMEOUT(bothAre(u"SynchPending"_s), patience);
    QVERIFY(bothShow(whole));
    show(*m_left);
    show(*m_right);
    QCOMPARE(stored(), whole);
    QCOMPARE(contentOf(m_site->deviceFolder()).keys(), files);
}

void TestTwoBarClients::killDuringApply(std::chrono::microseconds late)
{
    const QString before = stored();
    const bool isAtTen = before == begun;
    const QString after = isAtTen ? u"15000000 a,20000000 b"_s : begun;
    QVERIFY(m_left->act(isAtTen ? u"drag 10 15"_s : u"drag 15 10"_s));
    QVERIFY(m_left->beginToApply());
    std::this_thread::sleep_for(late);
    m_site->recorder().kill();
    QVERIFY(m_left->hasApplied());
    const QString whole = stored();
    QVERIFY2(whole == before || whole == after, qPrintable(whole));
    QTRY_VERIFY_WITH_TIMEOUT(bothAre(u"SynchNoRecord"_s), patience);
    QVERIFY(m_site->start());
    QTRY_VERIFY_WITH_TIMEOUT(bothAre(u"SynchPending"_s) && bothShow(whole), patience);
    QCOMPARE(stored(), whole);
}

void TestTwoBarClients::theRecorderIsKilledAtAnyMomentOfSending()
{
    openBoth();
    const QStringList files = contentOf(m_site->deviceFolder()).keys();
    for (int round = 0; round < 8; ++round) {
        killDuringApply(round * std::chrono::microseconds(400));
        show(*m_left);
        QCOMPARE(contentOf(m_site->deviceFolder()).keys(), files);
        QVERIFY(!QTest::currentTestFailed());
    }
}

void TestTwoBarClients::openBothBesideAChannel()
{
    m_manager = std::make_unique<PeerProcess>(QStringList{u"--recorder"_s, QString::number(m_site->port())}, 0,
                                              QStringLiteral(ZELKO_CHANNEL_MANAGER));
    QVERIFY(m_manager->port() != 0);
    const QString channel = m_manager->ask("register Antenna1");
    open(m_left);
    open(m_right);
    for (const auto& client : {m_left.get(), m_right.get()}) {
        QTRY_VERIFY_WITH_TIMEOUT(client->is("sees-channel " + channel), patience);
        QVERIFY(client->act("channel " + channel));
    }
    QVERIFY(m_left->act("show " + lengthy)); // which sets the position of the channel to its begin
    QTRY_COMPARE_WITH_TIMEOUT(m_right->position(), 0, patience);
    QVERIFY(m_right->act("show " + lengthy));
}

// Each of them starts, holds and ends it in turn.
void TestTwoBarClients::aReplayMovesThePositionOnBothBars()
{
    constexpr qint64 dragged = 900'000'000;
    openBothBesideAChannel();
    QVERIFY(m_left->act("drag-position 0 900"));
    QCOMPARE(m_left->position(), dragged);
    QTRY_COMPARE_WITH_TIMEOUT(m_right->position(), dragged, patience);
    QVERIFY(m_left->act("choose " + lengthy));
    QVERIFY(m_left->act("run"));
    QTRY_COMPARE_WITH_TIMEOUT(m_manager->ask("receive"), "done", patience);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"running"_s), patience);
    QTRY_VERIFY_WITH_TIMEOUT(bothAreBehind(dragged), patience);

    QVERIFY(m_right->act("pause"));
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"paused"_s), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->position(), m_right->position(), patience);
    const qint64 held = m_left->position();
    QVERIFY(m_left->act("run"));
    QTRY_VERIFY_WITH_TIMEOUT(bothAreBehind(held), patience);
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"running"_s), patience);

    QVERIFY(m_right->act("stop"));
    QTRY_VERIFY_WITH_TIMEOUT(bothReplay(u"stopped"_s), patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->position(), m_right->position(), patience);
    const qint64 ended = m_left->position();
    QVERIFY(ended > held);
    QVERIFY(m_right->act(QStringLiteral("drag-position %1 1800").arg(ended / 1'000'000)));
    QVERIFY(m_right->position() > ended);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->position(), m_right->position(), patience);
}

QTEST_MAIN(TestTwoBarClients)
#include "tst_twobarclients.moc"
