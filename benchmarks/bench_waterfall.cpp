// The waterfall of an overview in a large window: each turn of the event loop while lines arrive, and while a user
// changes what is shown of all of them.

#include "longestturn.h"

#include <overviewdisplay/overviewlevels.h>
#include <overviewdisplay/waterfallview.h>

#include <QApplication>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using SPECTRUM_OVERVIEW::OverviewLevels;
using SPECTRUM_OVERVIEW::WaterfallView;
using ZelkoCommon::OverviewLine;

constexpr quint64 begin = 1'700'000'000'000'000;
constexpr quint64 lineTime = 36'000; // microseconds
constexpr int lines = 10'000;
constexpr int batch = 100;

/// The lines of an overview, which come when they are asked for.
class Answer
{
public:
    explicit Answer(quint32 bins)
    {
        m_levels.begin({begin, begin + lines * lineTime, lines, bins, ZelkoDataTypes::eFFT_Window::Hann});
        m_piece.lineCount = lines;
        m_piece.binCount = bins;
        m_piece.centreFrequency = 118'700'000;
        m_piece.span = 2'400'000;
    }

    const OverviewLevels& levels() const { return m_levels; }

    void take(int first, int last)
    {
        for (int line = first; line <= last; ++line) {
            m_piece.line = static_cast<quint32>(line);
            m_piece.time = begin + m_piece.line * lineTime;
            for (m_piece.firstBin = 0; m_piece.firstBin < m_piece.binCount; m_piece.firstBin += mostBins) {
                m_piece.levels.fill(static_cast<qint16>(-100 * ((line + m_piece.firstBin) % 110)),
                                    std::min(mostBins, m_piece.binCount - m_piece.firstBin));
                m_levels.take(m_piece);
            }
        }
    }

private:
    static constexpr quint32 mostBins = OverviewLine::mostBins;

    OverviewLevels m_levels;
    ZelkoCommon::OverviewPiece m_piece;
};

/// A view as large as a screen, and the longest turn that it took.
class WatchedView
{
public:
    explicit WatchedView(const Answer& answer)
    {
        m_view.resize(1920, 1080);
        m_view.setLevels(&answer.levels());
        m_view.show();
        m_turns.settle();
        m_turns.restart();
    }

    WaterfallView& view() { return m_view; }
    LongestTurn& turns() { return m_turns; }

    /// Whether what has been painted by and by is the whole picture.
    bool isComplete()
    {
        const QRect picture = m_view.pictureArea().toRect();
        const QImage painted = m_view.grab().toImage();
        return painted.copy(picture) == m_view.image().copy(picture);
    }

    void move(int y, Qt::MouseButtons buttons) { send(QEvent::MouseMove, y, Qt::NoButton, buttons); }
    void press(int y) { send(QEvent::MouseButtonPress, y, Qt::LeftButton, Qt::LeftButton); }
    void release(int y) { send(QEvent::MouseButtonRelease, y, Qt::LeftButton, Qt::NoButton); }

private:
    void send(QEvent::Type type, int y, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        const QPoint place(y, y);
        QMouseEvent event(type, place, m_view.mapToGlobal(place), button, buttons, {});
        QCoreApplication::sendEvent(&m_view, &event);
    }

    WaterfallView m_view;
    LongestTurn m_turns;
};

void arrive(benchmark::State& state, quint32 bins)
{
    double longest = 0;
    for (auto _ : state) {
        Answer answer(bins);
        WatchedView watched(answer);
        for (int first = 0; first < lines; first += batch) {
            answer.take(first, first + batch - 1);
            watched.turns().turn([&] { watched.view().linesArrived(first, first + batch - 1); });
        }
        watched.turns().settle();
        if (!watched.isComplete()) {
            state.SkipWithError("not all lines were painted");
            break;
        }
        longest = std::max(longest, watched.turns().ms());
    }
    state.counters["longest_turn_ms"] = longest;
}

/// What a user does in one turn; `number` counts them.
using Deed = void (*)(WatchedView& watched, int number);

void change(benchmark::State& state, Deed deed)
{
    static Answer answer = [] {
        Answer all(4096);
        all.take(0, lines - 1);
        return all;
    }();
    WatchedView watched(answer);
    int number = 0;
    for (auto _ : state) {
        watched.turns().turn([&] { deed(watched, number); });
        ++number;
    }
    watched.turns().settle();
    state.counters["longest_turn_ms"] = watched.turns().ms();
}

void resize(WatchedView& watched, int number)
{
    watched.view().resize(1920 - number % 300, 1080 - number % 200);
}

void changeLevels(WatchedView& watched, int number)
{
    watched.view().setLevelRange(-120 + number % 40, -10);
}

void changeTimes(WatchedView& watched, int number)
{
    const quint64 part = static_cast<quint64>(number % 8 + 1) * lines / 16 * lineTime;
    watched.view().setTimeRange(begin + part / 2, begin + part + lines / 2 * lineTime);
}

void moveCursor(WatchedView& watched, int number)
{
    watched.move(100 + number % 900, Qt::NoButton);
}

void select(WatchedView& watched, int number)
{
    if (number % 400 == 0) {
        watched.press(200);
    }
    watched.move(210 + number % 400 * 2, Qt::LeftButton);
    if (number % 400 == 399) {
        watched.release(1000);
    }
}

constexpr std::pair<const char*, Deed> deeds[]{{"resize_10000_lines", resize},
                                               {"change_the_levels_of_10000_lines", changeLevels},
                                               {"change_the_times_of_10000_lines", changeTimes},
                                               {"move_the_cursor_over_10000_lines", moveCursor},
                                               {"select_of_10000_lines", select}};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (const quint32 bins : {1024U, 4096U}) {
        const std::string name = "arrival_of_10000_lines_of_" + std::to_string(bins);
        benchmark::RegisterBenchmark(name.c_str(), arrive, bins)->Unit(benchmark::kMillisecond);
    }
    for (const auto& [name, deed] : deeds) {
        benchmark::RegisterBenchmark(name, change, deed)->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
