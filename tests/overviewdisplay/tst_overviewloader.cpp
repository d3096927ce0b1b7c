#include <overviewdisplay/overviewloader.h>

#include "handtimer.h"
#include "overviewpeer.h"
#include "patience.h"
#include "turns.h"

#include <QSignalSpy>
#include <QtTest>

using SPECTRUM_OVERVIEW::OverviewLoader;
using SPECTRUM_OVERVIEW::OverviewWish;
using ZelkoDataTypes::eFFT_Window;
using ZelkoTest::OverviewPeer;
using State = OverviewLoader::State;

namespace {

constexpr std::chrono::milliseconds silence{5000};
constexpr std::chrono::milliseconds firstPause{2000};
const OverviewWish tenLines{1'700'000'000'000'000, 1'700'000'060'000'000, 10, 64, eFFT_Window::Hann};
const OverviewLoader::Recorder recorder{QStringLiteral("127.0.0.1"), 7, silence};

struct Ask
{
    OverviewWish wish;
    QString address;
    uint port = 0;
};

} // namespace

class OverviewLoaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void nothingIsAskedForAtFirst();
    void asksForTheWish();
    void linesComeAsTheyArrive();
    void aBusyWindowHearsOfManyLinesAtOnce();
    void fewerLinesThanWishedAreComplete();
    void whatIsMissingIsAskedForAgain();
    void theEndIsAskedForAfterASilence();
    void randomGapsAreAFewAsks();
    void slowLinesAreWaitedFor();
    void nobodyAnswers();
    void aStreamThatBreaksOffIsAskedForLaterAndLater();
    void whatComesInAPauseIsTaken();
    void aStreamThatGoesOnInAPauseIsWaitedFor();
    void gapsThatAreNeverFilledAreLeft();
    void asksAreBounded();
    void beginningAgainForgetsTheFirst();
    void endingKeepsWhatHasCome();
    void clearingForgetsIt();
    void anAskThatTakesTimeIsNoSilence();
    void slotsMayDeleteIt_data();
    void slotsMayDeleteIt();
    void slotsMayBeginAgain();
    void slotsMayClearIt();

private:
    OverviewLoader& loader() { return *m_loader; }
    void begin() { loader().begin(recorder, tenLines); }
    const Ask& lastAsk() const { return m_asks.back(); }
    void answer(const QSet<int>& lost = {}) { m_peer->answer(lastAsk().wish, lastAsk().port, lost); }
    void awaitLines(int count)
    {
        QTRY_COMPARE_WITH_TIMEOUT(loader().levels().completeLines(), count, patience);
        letTurnsPass();
    }

    HandTimer m_timer;
    std::unique_ptr<OverviewPeer> m_peer;
    std::vector<Ask> m_asks;
    std::unique_ptr<OverviewLoader> m_loader; // goes first
};

void OverviewLoaderTest::init()
{
    m_loader.reset();
    m_timer = {};
    m_asks.clear();
    m_peer = std::make_unique<OverviewPeer>();
    m_loader = std::make_unique<OverviewLoader>();
    loader().setSingleShot(m_timer.singleShot());
    connect(m_loader.get(), &OverviewLoader::si_ask, this,
            [this](const OverviewWish& wish, const QString& address, uint port) {
                m_asks.push_back({wish, address, port});
            });
}

void OverviewLoaderTest::nothingIsAskedForAtFirst()
{
    QCOMPARE(loader().state(), State::Idle);
    QVERIFY(!loader().isLoading());
    QCOMPARE(loader().levels().lineCount(), 0);
    loader().end();
    QCOMPARE(loader().state(), State::Idle);
}

void OverviewLoaderTest::asksForTheWish()
{
    QSignalSpy emptied(&loader(), &OverviewLoader::si_emptied);
    QSignalSpy changed(&loader(), &OverviewLoader::si_stateChanged);
    begin();
    QCOMPARE(m_asks.size(), 1u);
    QCOMPARE(lastAsk().wish, tenLines);
    QCOMPARE(lastAsk().address, QStringLiteral("127.0.0.1"));
    QVERIFY(lastAsk().port != 0);
    QCOMPARE(loader().state(), State::Waiting);
    QVERIFY(loader().isLoading());
    QCOMPARE(emptied.size(), 1);
    QCOMPARE(changed.size(), 1);
}

void OverviewLoaderTest::linesComeAsTheyArrive()
{
    QSignalSpy arrived(&loader(), &OverviewLoader::si_linesArrived);
    begin();
    m_peer->sendLine(tenLines, lastAsk().port, 3);
    awaitLines(1);
    QCOMPARE(arrived, (QList<QVariantList>{{3, 3}}));
    QCOMPARE(loader().state(), State::Arriving);
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
    QVERIFY(!loader().isLoading());
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), 1u);
    QCOMPARE(m_timer.pending(), 0u);
}

// What is sent before the window comes to it is one change of the picture.
void OverviewLoaderTest::aBusyWindowHearsOfManyLinesAtOnce()
{
    QSignalSpy arrived(&loader(), &OverviewLoader::si_linesArrived);
    begin();
    answer();
    QTRY_VERIFY_WITH_TIMEOUT(!arrived.isEmpty(), patience);
    awaitLines(10);
    QCOMPARE(arrived.first().first().toInt(), 0);
    QCOMPARE(arrived.last().last().toInt(), 9);
    int next = 0;
    for (const QVariantList& lines : std::as_const(arrived)) {
        QCOMPARE(lines.first().toInt(), next);
        next = lines.last().toInt() + 1;
    }
}

void OverviewLoaderTest::fewerLinesThanWishedAreComplete()
{
    begin();
    OverviewWish fewer = tenLines;
    fewer.lineCount = 4;
    m_peer->answer(fewer, lastAsk().port);
    awaitLines(4);
    QCOMPARE(loader().state(), State::Complete);
}

void OverviewLoaderTest::whatIsMissingIsAskedForAgain()
{
    begin();
    answer({4, 5});
    awaitLines(8);
    QCOMPARE(m_asks.size(), 1u);
    m_timer.advance(OverviewLoader::Stragglers);
    QCOMPARE(m_asks.size(), 2u);
    QCOMPARE(lastAsk().wish, loader().levels().partWish({3, 5}));
    QVERIFY(lastAsk().port != m_asks.front().port);
    QCOMPARE(loader().state(), State::Arriving);
    QSignalSpy arrived(&loader(), &OverviewLoader::si_linesArrived);
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
    QCOMPARE(arrived.first().first().toInt(), 4);
    QCOMPARE(arrived.last().last().toInt(), 5);
}

void OverviewLoaderTest::theEndIsAskedForAfterASilence()
{
    begin();
    answer({7, 8, 9});
    awaitLines(7);
    m_timer.advance(silence); // there was something since it was asked
    QCOMPARE(m_asks.size(), 1u);
    m_timer.advance(silence + firstPause);
    QCOMPARE(m_asks.size(), 2u);
    QCOMPARE(lastAsk().wish, loader().levels().partWish({6, 9}));
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
}

void OverviewLoaderTest::randomGapsAreAFewAsks()
{
    OverviewWish many = tenLines;
    many.lineCount = 60;
    loader().begin(recorder, many);
    QSet<int> lost;
    for (int line = 1; line < 59; line += 3) {
        lost.insert(line);
    }
    m_peer->answer(many, lastAsk().port, lost);
    awaitLines(60 - int(lost.size()));
    m_timer.advance(OverviewLoader::Stragglers);
    while (loader().isLoading()) {
        const std::size_t asks = m_asks.size();
        answer();
        const auto isAnswered = [&] { return m_asks.size() > asks || !loader().isLoading(); };
        QTRY_VERIFY_WITH_TIMEOUT(isAnswered(), patience);
    }
    QCOMPARE(loader().state(), State::Complete);
    QVERIFY(m_asks.size() <= 5u);
}

void OverviewLoaderTest::slowLinesAreWaitedFor()
{
    begin();
    for (int line = 0; line < 10; ++line) {
        m_peer->sendLine(tenLines, lastAsk().port, line);
        awaitLines(line + 1);
        m_timer.advance(silence);
    }
    QCOMPARE(m_asks.size(), 1u);
    QCOMPARE(loader().state(), State::Complete);
}

void OverviewLoaderTest::nobodyAnswers()
{
    begin();
    for (int ask = 1; ask <= OverviewLoader::MostFruitlessAsks; ++ask) {
        QCOMPARE(m_asks.size(), std::size_t(ask));
        QCOMPARE(lastAsk().wish, tenLines);
        QCOMPARE(loader().state(), State::Waiting);
        m_timer.advance(silence);
        if (ask < OverviewLoader::MostFruitlessAsks) {
            QCOMPARE(m_asks.size(), std::size_t(ask)); // it may be busy
            m_timer.advance(ask * firstPause);
        }
    }
    QCOMPARE(loader().state(), State::Silent);
    QCOMPARE(m_asks.size(), std::size_t(OverviewLoader::MostFruitlessAsks));
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), std::size_t(OverviewLoader::MostFruitlessAsks));
}

// A recorder that serves too many ends the oldest stream for a new one. If each of them were asked for again at once
// they would end one another for good.
void OverviewLoaderTest::aStreamThatBreaksOffIsAskedForLaterAndLater()
{
    begin();
    std::size_t asks = 0;
    for (const int seconds : {2, 4, 8, 16, 32, 32}) {
        ++asks;
        QCOMPARE(m_asks.size(), asks);
        m_peer->sendLine(lastAsk().wish, lastAsk().port, asks == 1 ? 0 : 1); // behind the one before what is missing
        awaitLines(int(asks));
        m_timer.advance(2 * silence + std::chrono::milliseconds(1000 * seconds - 1));
        QCOMPARE(m_asks.size(), asks);
        QVERIFY(loader().isLoading());
        m_timer.advance(std::chrono::milliseconds(1));
    }
    QCOMPARE(m_asks.size(), asks + 1);
    begin(); // another wish has its own pauses
    m_timer.advance(silence + firstPause);
    QCOMPARE(m_asks.size(), asks + 3);
}

void OverviewLoaderTest::whatComesInAPauseIsTaken()
{
    begin();
    m_timer.advance(silence);
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), 1u);
}

void OverviewLoaderTest::aStreamThatGoesOnInAPauseIsWaitedFor()
{
    begin();
    m_timer.advance(silence);
    m_peer->sendLine(tenLines, lastAsk().port, 0);
    awaitLines(1);
    m_timer.advance(firstPause + silence);
    QCOMPARE(m_asks.size(), 1u);
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
    QCOMPARE(m_asks.size(), 1u);
}

void OverviewLoaderTest::gapsThatAreNeverFilledAreLeft()
{
    begin();
    answer({4});
    awaitLines(9);
    m_timer.advance(OverviewLoader::Stragglers);
    for (int ask = 0; ask < OverviewLoader::MostFruitlessAsks; ++ask) {
        QVERIFY(loader().isLoading());
        QCOMPARE(m_asks.size(), std::size_t(2 + ask));
        m_timer.advance(silence);
        m_timer.advance((1 + ask) * firstPause);
    }
    QCOMPARE(loader().state(), State::Incomplete);
    QCOMPARE(loader().levels().completeLines(), 9);
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), std::size_t(1 + OverviewLoader::MostFruitlessAsks));
}

// Each answer brings its last line only.
void OverviewLoaderTest::asksAreBounded()
{
    OverviewWish many = tenLines;
    many.lineCount = 40;
    loader().begin(recorder, many);
    for (int ask = 1; ask <= OverviewLoader::MostAsks; ++ask) {
        QCOMPARE(m_asks.size(), std::size_t(ask));
        QVERIFY(loader().isLoading());
        const int before = loader().levels().completeLines();
        m_peer->sendLine(lastAsk().wish, lastAsk().port, int(lastAsk().wish.lineCount) - 1);
        awaitLines(before + 1);
        m_timer.advance(OverviewLoader::Stragglers);
    }
    QCOMPARE(loader().state(), State::Incomplete);
    QCOMPARE(m_asks.size(), std::size_t(OverviewLoader::MostAsks));
}

void OverviewLoaderTest::beginningAgainForgetsTheFirst()
{
    begin();
    m_peer->sendLine(tenLines, lastAsk().port, 3);
    awaitLines(1);
    const uint firstPort = lastAsk().port;
    OverviewWish other = tenLines;
    other.lineCount = 5;
    QSignalSpy emptied(&loader(), &OverviewLoader::si_emptied);
    loader().begin(recorder, other);
    QCOMPARE(emptied.size(), 1);
    QCOMPARE(loader().levels().lineCount(), 0);
    QCOMPARE(m_asks.size(), 2u);
    QVERIFY(lastAsk().port != firstPort);
    m_peer->answer(tenLines, firstPort);
    answer();
    awaitLines(5);
    QCOMPARE(loader().state(), State::Complete);
}

void OverviewLoaderTest::endingKeepsWhatHasCome()
{
    begin();
    m_peer->sendLine(tenLines, lastAsk().port, 3);
    awaitLines(1);
    loader().end();
    QCOMPARE(loader().state(), State::Incomplete);
    QCOMPARE(loader().levels().completeLines(), 1);
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), 1u);
    begin();
    loader().end();
    QCOMPARE(loader().state(), State::Silent);
}

void OverviewLoaderTest::clearingForgetsIt()
{
    begin();
    answer();
    awaitLines(10);
    loader().clear();
    QCOMPARE(loader().state(), State::Idle);
    QCOMPARE(loader().levels().lineCount(), 0);
    begin();
    loader().clear();
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), 2u);
    QCOMPARE(loader().state(), State::Idle);
}

// The recorder is asked by a call that waits for it, and until then nothing can come.
void OverviewLoaderTest::anAskThatTakesTimeIsNoSilence()
{
    connect(&loader(), &OverviewLoader::si_ask, this, [this] { m_timer.advance(2 * silence); });
    begin();
    QCOMPARE(m_asks.size(), 1u);
    QCOMPARE(loader().state(), State::Waiting);
    QCOMPARE(m_timer.pending(), 1u);
}

void OverviewLoaderTest::slotsMayDeleteIt_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("when it is emptied") << 0;
    QTest::newRow("when it asks") << 1;
    QTest::newRow("when its state changes") << 2;
    QTest::newRow("when a line arrives") << 3;
}

void OverviewLoaderTest::slotsMayDeleteIt()
{
    QFETCH(int, signal);
    const auto remove = [this] { m_loader.reset(); };
    switch (signal) {
    case 0:
        connect(m_loader.get(), &OverviewLoader::si_emptied, this, remove);
        break;
    case 1:
        connect(m_loader.get(), &OverviewLoader::si_ask, this, remove);
        break;
    case 2:
        connect(m_loader.get(), &OverviewLoader::si_stateChanged, this, remove);
        break;
    default:
        connect(m_loader.get(), &OverviewLoader::si_linesArrived, this, remove);
        break;
    }
    begin();
    if (m_loader) {
        answer();
    }
    QTRY_VERIFY_WITH_TIMEOUT(!m_loader, patience);
    m_timer.advance(10 * silence);
}

void OverviewLoaderTest::slotsMayBeginAgain()
{
    begin();
    int arrivals = 0;
    connect(&loader(), &OverviewLoader::si_linesArrived, this, [this, &arrivals] {
        if (++arrivals == 1) {
            begin();
        }
    });
    answer();
    QTRY_COMPARE_WITH_TIMEOUT(m_asks.size(), 2u, patience);
    QCOMPARE(loader().state(), State::Waiting);
    QCOMPARE(loader().levels().completeLines(), 0);
    answer();
    awaitLines(10);
    QCOMPARE(loader().state(), State::Complete);
}

void OverviewLoaderTest::slotsMayClearIt()
{
    connect(&loader(), &OverviewLoader::si_linesArrived, &loader(), &OverviewLoader::clear);
    begin();
    answer();
    QTRY_COMPARE_WITH_TIMEOUT(loader().state(), State::Idle, patience);
    letTurnsPass();
    QCOMPARE(loader().levels().lineCount(), 0);
    m_timer.advance(10 * silence);
    QCOMPARE(m_asks.size(), 1u);
}

QTEST_GUILESS_MAIN(OverviewLoaderTest)

#include "tst_overviewloader.moc"
