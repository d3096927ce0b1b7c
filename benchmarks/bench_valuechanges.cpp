// A thousand observed values of a tree that change, beside as many objects that tell the same by a bare signal: how
// fast that goes, and what ten thousand changes a second leave of the thread whose event loop they happen in.

#include "countedlistener.h"
#include "countedvalues.h"
#include "steadychanges.h"
#include "threadwork.h"

#include <valuecore/tree.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QObject>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

using Heard = CountedListener::Heard;

class ObservedValues
{
public:
    ObservedValues()
    {
        for (int i = 0; i < CountedValues::Count; ++i) {
            m_listeners.push_back(std::make_unique<CountedListener>(&m_tree, CountedValues::path(i), m_heard));
        }
    }
    void changeNext() { m_values.changeNext(); }
    const Heard& heard() const { return m_heard; }

private:
    Tree m_tree;
    CountedValues m_values{m_tree};
    Heard m_heard;
    std::vector<std::unique_ptr<CountedListener>> m_listeners;
};

/// A number as any Qt class would hold it.
class SignalledNumber final : public QObject
{
    Q_OBJECT

public:
    void set(double value)
    {
        if (value != m_value) {
            m_value = value;
            Q_EMIT changed(value);
        }
    }

Q_SIGNALS:
    void changed(double value);

private:
    double m_value = 0;
};

class SlotListener final : public QObject
{
    Q_OBJECT

public:
    SlotListener(const SignalledNumber& number, Heard& heard)
        : m_heard(heard)
    {
        connect(&number, &SignalledNumber::changed, this, &SlotListener::hear);
    }

private:
    void hear(double value)
    {
        ++m_heard.changes;
        m_heard.last = value;
    }

    Heard& m_heard;
};

class SignalledValues
{
public:
    SignalledValues()
    {
        for (int i = 0; i < CountedValues::Count; ++i) {
            m_numbers.push_back(std::make_unique<SignalledNumber>());
            m_listeners.push_back(std::make_unique<SlotListener>(*m_numbers.back(), m_heard));
        }
    }
    void changeNext()
    {
        const std::size_t i = m_changes++ % m_numbers.size();
        m_numbers[i]->set(static_cast<double>(m_changes));
    }
    const Heard& heard() const { return m_heard; }

private:
    std::vector<std::unique_ptr<SignalledNumber>> m_numbers;
    std::size_t m_changes = 0;
    Heard m_heard;
    std::vector<std::unique_ptr<SlotListener>> m_listeners;
};

/// So many changes, one after the other, by the time that the thread works for them.
template <typename Values>
void atFullTilt(benchmark::State& state)
{
    Values values;
    for (auto _ : state) {
        const double start = threadWorkMs();
        for (int i = 0; i < CountedValues::ChangesPerSecond; ++i) {
            values.changeNext();
        }
        state.SetIterationTime((threadWorkMs() - start) / 1e3);
    }
    if (values.heard().changes != state.iterations() * CountedValues::ChangesPerSecond) {
        state.SkipWithError("changes were not heard of");
    }
    state.counters["changes_per_second"] = benchmark::Counter(
        static_cast<double>(state.iterations() * CountedValues::ChangesPerSecond), benchmark::Counter::kIsRate);
}

/// A second's changes from the event loop. The second is that of the changes: what the machine does to the clock is
/// none of theirs.
template <typename Values>
void atTheRate(benchmark::State& state)
{
    Values values;
    double worked = 0;
    for (auto _ : state) {
        QEventLoop loop;
        const double end = values.heard().last + CountedValues::ChangesPerSecond;
        SteadyChanges changes([&] {
            values.changeNext();
            if (values.heard().last >= end) {
                loop.quit();
            }
        });
        const double start = threadWorkMs();
        loop.exec();
        const double seconds = (threadWorkMs() - start) / 1e3;
        state.SetIterationTime(seconds);
        worked += seconds;
    }
    state.counters["idle_share"] = 1 - worked / static_cast<double>(state.iterations());
}

BENCHMARK(atFullTilt<ObservedValues>)->Name("changes/ours")->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(atFullTilt<SignalledValues>)->Name("changes/signals")->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(atTheRate<ObservedValues>)
    ->Name("work_of_a_second/ours")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK(atTheRate<SignalledValues>)
    ->Name("work_of_a_second/signals")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1);

} // namespace

#include "bench_valuechanges.moc"

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
