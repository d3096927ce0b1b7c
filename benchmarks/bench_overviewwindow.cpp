// The whole window of an overview, with its thread, its levels and its texts: each turn of the event loop while lines
// arrive from the network.

#include "longestturn.h"
#include "overviewwindow.h"

#include <QApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using ZelkoTest::OverviewWindow;

constexpr int lines = 10'000;
constexpr int batch = 20; // which the system keeps for the window's thread even where it gives little room
constexpr quint64 rate = 2'400'000;

/// A record of a minute and a half with so many samples that all lines are of spectra of their own.
std::shared_ptr<ZELKO_XML::ZELKO_RecordData> makeDense()
{
    constexpr quint64 size = (OverviewWindow::stop - OverviewWindow::start) / OverviewWindow::second * rate * 4;
    auto record = OverviewWindow::makeIndexed();
    record->SetStopPosition(size);
    record->SetIndexEntry({OverviewWindow::indexEntry(OverviewWindow::start, 0, rate),
                           OverviewWindow::indexEntry(OverviewWindow::stop, size, rate)});
    return record;
}

/// A window as large as a screen that has asked for its lines, and the longest turn that it took since.
class WatchedWindow
{
public:
    WatchedWindow()
    {
        m_site.widget().resize(1920, 1080);
        m_site.box("LineCountBox").setCurrentText(QString::number(lines));
        m_site.showRecord(makeDense());
        m_turns.settle();
        m_turns.restart();
    }

    double longest() const { return m_turns.ms(); }
    void settle() { m_turns.settle(); }
    bool hasAsked() const { return !m_site.asks.empty() && m_site.lastAsk().wish.lineCount == lines; }

    /// The line and those behind it. False if they do not come within reason.
    bool take(int first)
    {
        for (int line = first; line < first + batch; ++line) {
            m_site.peer.sendLine(m_site.lastAsk().wish, m_site.lastAsk().port, line);
        }
        QElapsedTimer clock;
        clock.start();
        while (m_site.progress().value() < first + batch && !clock.hasExpired(patience)) {
            m_turns.turn();
        }
        return m_site.progress().value() >= first + batch;
    }

private:
    OverviewWindow m_site;
    LongestTurn m_turns;
};

bool arriveAll(WatchedWindow& window)
{
    bool hasCome = window.hasAsked();
    for (int first = 0; hasCome && first < lines; first += batch) {
        hasCome = window.take(first);
    }
    window.settle();
    return hasCome;
}

void arrive(benchmark::State& state)
{
    double longest = 0;
    for (auto _ : state) {
        WatchedWindow window;
        if (!arriveAll(window)) {
            state.SkipWithError("not all lines have come");
            break;
        }
        longest = std::max(longest, window.longest());
    }
    state.counters["longest_turn_ms"] = longest;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::RegisterBenchmark("arrival_of_10000_lines_of_1024_in_a_window", arrive)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
