// The filtered and sorted record list beside a stock proxy with a regular expression over the same rows.

#include "benchrecordlist.h"

#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using Source = BenchRecordList;

const QString anEighth = QStringLiteral("nor");
const QString aQuarter = QStringLiteral("no");

class Ours
{
public:
    Ours()
    {
        m_condition->setRegExp(QString(), Qt::CaseInsensitive, QRegExp::FixedString);
        m_condition->setEnabled(true);
        m_proxy.addFilter(m_condition);
    }

    QSortFilterProxyModel& proxy() { return m_proxy; }
    void search(const QString& text) { m_condition->setPattern(text); }

private:
    using Condition = ZelkoGUI::Filter::StringFilterCondition;

    ZelkoGUI::Filter::MultiFilterSortProxyModel m_proxy{nullptr};
    Condition* const m_condition = new Condition(Source::NameColumn, Source::ValueRole, &m_proxy);
};

class Stock
{
public:
    Stock()
    {
        m_proxy.setFilterKeyColumn(Source::NameColumn);
        m_proxy.setFilterRole(Source::ValueRole);
        m_proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
    }

    QSortFilterProxyModel& proxy() { return m_proxy; }
    void search(const QString& text)
    {
        m_proxy.setFilterRegularExpression(
            QRegularExpression(QRegularExpression::escape(text), QRegularExpression::CaseInsensitiveOption));
    }

private:
    QSortFilterProxyModel m_proxy;
};

struct Setting
{
    int rows;
    bool sorted;
    bool viewed;
};

/// A list of one of the two kinds, under a view where that is asked for, with a search that stands from the beginning.
template <typename Side>
class List
{
public:
    List(Source& source, const Setting& setting, const QString& text = QString())
    {
        m_side.search(text);
        proxy().setSortRole(Source::SortRole);
        if (setting.sorted) {
            proxy().sort(Source::SizeColumn);
        }
        proxy().setSourceModel(&source);
        if (setting.viewed) {
            m_view = std::make_unique<QTableView>();
            m_view->resize(900, 600);
            m_view->setModel(&proxy());
            m_view->show();
            m_view->setCurrentIndex(proxy().index(0, 0));
        }
        settle();
    }

    QSortFilterProxyModel& proxy() { return m_side.proxy(); }

    /// As after a keystroke: what the view has put off is done as well.
    void search(const QString& text)
    {
        m_side.search(text);
        settle();
    }

    /// Lets the view do what it has put off. Without one somebody asks for the rows, or a stock proxy would not filter.
    void settle()
    {
        benchmark::DoNotOptimize(proxy().rowCount());
        if (m_view) {
            QCoreApplication::processEvents();
        }
    }

private:
    Side m_side;
    std::unique_ptr<QTableView> m_view;
};

/// Made once for each length; only one is kept, since the longest take much memory.
Source& sourceOf(int rows)
{
    static std::unique_ptr<Source> source;
    if (!source || source->recordCount() != rows) {
        source = std::make_unique<Source>(rows);
    }
    return *source;
}

// Measures the keystroke from one text to the next, in a new list each time: a stock proxy takes minutes for the way
// back in the longest list.
template <typename Side>
void keystroke(benchmark::State& state, const Setting& setting, const QString& from, const QString& to)
{
    Source& source = sourceOf(setting.rows);
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<List<Side>>(source, setting, from);
        state.ResumeTiming();
        list->search(to);
        state.PauseTiming();
        list.reset();
        state.ResumeTiming();
    }
}

template <typename Side>
void narrow(benchmark::State& state, const Setting& setting)
{
    keystroke<Side>(state, setting, QString(), anEighth);
}

template <typename Side>
void widen(benchmark::State& state, const Setting& setting)
{
    keystroke<Side>(state, setting, anEighth, aQuarter);
}

template <typename Side>
void clearSearch(benchmark::State& state, const Setting& setting)
{
    keystroke<Side>(state, setting, anEighth, QString());
}

template <typename Side>
void sortBySize(benchmark::State& state, const Setting& setting)
{
    List<Side> list(sourceOf(setting.rows), setting);
    for (auto _ : state) {
        list.proxy().sort(Source::SizeColumn);
        list.settle();
        state.PauseTiming();
        list.proxy().sort(-1);
        list.settle();
        state.ResumeTiming();
    }
}

// A handful of records grows, as when they are recorded: those that are shown and others, in a sorted list.
template <typename Side>
void update(benchmark::State& state, const Setting& setting)
{
    Source source(setting.rows);
    List<Side> list(source, setting, anEighth);
    constexpr int changing = 16;
    const int updates = static_cast<int>(state.range(0));
    int turn = 0;
    for (auto _ : state) {
        for (int i = 0; i < updates; ++i, ++turn) {
            source.update(turn % changing * (setting.rows / changing), static_cast<quint64>(turn) * 100'000);
            if (turn % changing == 0) {
                list.settle();
            }
        }
        list.settle();
    }
}

// Slices as the tree link delivers them, each in a turn of the event loop of its own.
template <typename Side>
void firstLoad(benchmark::State& state, const Setting& setting)
{
    constexpr int slice = 200;
    qint64 longestPause = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto source = std::make_unique<Source>(0);
        auto list = std::make_unique<List<Side>>(*source, setting);
        state.ResumeTiming();
        for (int rows = 0; rows < setting.rows; rows += slice) {
            QElapsedTimer timer;
            timer.start();
            source->append(slice);
            list->settle();
            longestPause = std::max(longestPause, timer.nsecsElapsed());
        }
        state.PauseTiming();
        list.reset();
        source.reset();
        state.ResumeTiming();
    }
    state.counters["longest_pause_ms"] = static_cast<double>(longestPause) / 1e6;
}

std::string nameOf(const std::string& operation, const Setting& setting, const char* side)
{
    return operation + (setting.sorted ? "_sorted" : "") + (setting.viewed ? "_viewed" : "") + "_" +
           std::to_string(setting.rows) + "/" + side;
}

using Measure = void (*)(benchmark::State&, const Setting&);

benchmark::internal::Benchmark* add(const std::string& operation, const Setting& setting, const char* side,
                                    Measure measure)
{
    auto* added = benchmark::RegisterBenchmark(nameOf(operation, setting, side).c_str(),
                                               [=](benchmark::State& state) { measure(state, setting); });
    return added->Unit(benchmark::kMillisecond)->Iterations(setting.rows > 10'000 ? 1 : 5);
}

void addBoth(const std::string& operation, const Setting& setting, Measure ours, Measure stock)
{
    add(operation, setting, "ours", ours);
    add(operation, setting, "stock", stock);
}

void addUpdates(const std::string& operation, const Setting& setting, int updates)
{
    add(operation, setting, "ours", update<Ours>)->Arg(updates);
    add(operation, setting, "stock", update<Stock>)->Arg(updates);
}

// Under a view only those that a stock proxy ends within seconds.
void addAll(int rows)
{
    for (const bool viewed : {false, true}) {
        if (viewed && rows > 100'000) {
            continue;
        }
        for (const bool sorted : {false, true}) {
            const Setting setting{rows, sorted, viewed};
            addBoth("narrow", setting, narrow<Ours>, narrow<Stock>);
            addBoth("widen", setting, widen<Ours>, widen<Stock>);
            addBoth("clear", setting, clearSearch<Ours>, clearSearch<Stock>);
        }
        const Setting sorted{rows, true, viewed};
        addBoth("sort", {rows, false, viewed}, sortBySize<Ours>, sortBySize<Stock>);
        addUpdates("update", sorted, 1);
        addUpdates("updates_of_a_second", sorted, 1000);
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    for (const int rows : {10'000, 100'000, 1'000'000}) {
        addAll(rows);
    }
    addBoth("firstload", {100'000, true, true}, firstLoad<Ours>, firstLoad<Stock>);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
