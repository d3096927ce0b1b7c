// The filtered and sorted record list beside a stock proxy with a regular expression over the same rows.

#include "benchrecordlist.h"

#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/recordlist/columnheaderview_p.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QRegularExpression>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

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
    void dress(QTableView& view) { view.setHorizontalHeader(new ZelkoGUI::ColumnHeaderView(&view)); }
    void follow(const QItemSelectionModel* selection) { m_proxy.followSelection(selection); }

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
    void dress(QTableView&) {}
    void follow(const QItemSelectionModel*) {}
    void search(const QString& text)
    {
        m_proxy.setFilterRegularExpression(
            QRegularExpression(QRegularExpression::escape(text), QRegularExpression::CaseInsensitiveOption));
    }

private:
    QSortFilterProxyModel m_proxy;
};

enum class Selected { Nothing, EveryTenthRow, AllRowsButOne, AllRows };

struct Setting
{
    int rows;
    bool sorted;
    bool viewed;
    Selected selected = Selected::Nothing;
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
            m_side.dress(*m_view);
            m_view->setModel(&proxy());
            m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
            m_view->show();
            m_view->setCurrentIndex(proxy().index(0, 0));
            m_side.follow(m_view->selectionModel());
            select(setting.selected);
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
    void select(Selected selected)
    {
        if (selected == Selected::AllRows || selected == Selected::AllRowsButOne) {
            m_view->selectAll();
        }
        if (selected == Selected::AllRowsButOne) {
            m_view->selectionModel()->select(proxy().index(1, 0),
                                             QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        }
        for (int row = 0; selected == Selected::EveryTenthRow && row < proxy().rowCount(); row += 10) {
            m_view->selectionModel()->select(proxy().index(row, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }

    Side m_side;
    std::unique_ptr<QTableView> m_view;
};

/// Made once for each length; their records are the same.
Source& sourceOf(int rows)
{
    static std::map<int, Source> sources;
    return sources.try_emplace(rows, rows).first->second;
}

// Measures the keystroke from one text to the next, in a new list each time: a stock proxy takes minutes for the way
// back in the longest list. A record has changed since the last keystroke, as they do.
template <typename Side>
void keystroke(benchmark::State& state, const Setting& setting, const QString& from, const QString& to)
{
    Source& source = sourceOf(setting.rows);
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<List<Side>>(source, setting, from);
        source.update(0, source.recordData(0)->GetSize());
        list->settle();
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

// Records spread over the list that grow, as when they are recorded: every second one is shown.
template <typename Side>
std::vector<int> growingRows(List<Side>& list, int rows)
{
    constexpr int pairs = 8;
    std::vector<int> growing;
    for (int i = 0; i < pairs; ++i) {
        const int shown = list.proxy().rowCount() / pairs * i;
        growing.push_back(list.proxy().mapToSource(list.proxy().index(shown, 0)).row());
        growing.push_back(rows / pairs * i);
    }
    return growing;
}

template <typename Side>
void update(benchmark::State& state, const Setting& setting)
{
    Source source(setting.rows);
    List<Side> list(source, setting, anEighth);
    const std::vector<int> growing = growingRows(list, setting.rows);
    const int updates = static_cast<int>(state.range(0));
    std::size_t turn = 0;
    for (auto _ : state) {
        for (int i = 0; i < updates; ++i) {
            ++turn;
            source.update(growing[turn % growing.size()], turn * 100'000);
            if (turn % growing.size() == 0) {
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
    constexpr std::array<const char*, 4> selections{"", "_tenth_selected", "_all_but_one_selected", "_all_selected"};
    const char* const selected = selections[static_cast<std::size_t>(setting.selected)];
    return operation + selected + (setting.sorted ? "_sorted" : "") + (setting.viewed ? "_viewed" : "") + "_" +
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
    const int rounds = updates == 1 ? 200 : 5;
    add(operation, setting, "ours", update<Ours>)->Arg(updates)->Iterations(rounds);
    add(operation, setting, "stock", update<Stock>)->Arg(updates)->Iterations(rounds);
}

void addKeystrokes(const Setting& setting)
{
    addBoth("narrow", setting, narrow<Ours>, narrow<Stock>);
    addBoth("widen", setting, widen<Ours>, widen<Stock>);
    addBoth("clear", setting, clearSearch<Ours>, clearSearch<Stock>);
}

void addAll(int rows)
{
    for (const bool viewed : {false, true}) {
        addKeystrokes({rows, false, viewed});
        addKeystrokes({rows, true, viewed});
        const Setting sorted{rows, true, viewed};
        addBoth("sort", {rows, false, viewed}, sortBySize<Ours>, sortBySize<Stock>);
        addUpdates("update", sorted, 1);
        addUpdates("updates_of_a_second", sorted, 1000);
    }
}

// With more rows a stock proxy takes minutes.
void addSelected(int rows)
{
    for (const auto selected : {Selected::EveryTenthRow, Selected::AllRowsButOne, Selected::AllRows}) {
        addBoth("narrow", {rows, true, true, selected}, narrow<Ours>, narrow<Stock>);
        addBoth("clear", {rows, true, true, selected}, clearSearch<Ours>, clearSearch<Stock>);
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
    addSelected(10'000);
    addBoth("firstload", {100'000, true, true}, firstLoad<Ours>, firstLoad<Stock>);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
