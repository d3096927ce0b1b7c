// Values that a recorder changes ten thousand times a second: what is left of the GUI thread of a client that observes
// them over the tree link. The other end is a process of its own, this program with another argument.

#include "benchpeer.h"
#include "countedlistener.h"
#include "countedvalues.h"
#include "steadychanges.h"
#include "threadwork.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <zelkobase/connection/treelink.h>
#include <zelkobase/orb/orb.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

int serve(QCoreApplication& application)
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    Tree tree;
    CountedValues values(tree);
    const ZelkoRecorder::TreeLinkServer server(orb, tree);
    const SteadyChanges changes([&values] { values.changeNext(); });
    BenchPeer::announce(orb.port());
    return application.exec();
}

quint16 serverPort = 0;
std::unique_ptr<ZelkoCommon::Orb> clientOrb;

/// A client with an observer on each value.
class ObservingClient
{
public:
    /// Connects, and waits until changes come.
    ObservingClient()
    {
        QEventLoop loop;
        QObject::connect(&m_link, &ZelkoCommon::TreeLink::connected, &loop, &QEventLoop::quit);
        loop.exec();
        for (int i = 0; i < CountedValues::Count; ++i) {
            const QString path = CountedValues::path(i, QStringLiteral("/SubSystems/bench"));
            m_listeners.push_back(std::make_unique<CountedListener>(&m_tree, path, m_heard));
        }
        runUntil(1);
    }

    /// Runs the event loop until the other end is known to have made `count` changes in its life.
    void runUntil(double count)
    {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (m_heard.last >= count) {
                loop.quit();
            }
        });
        look.start(10);
        loop.exec();
    }

    const CountedListener::Heard& heard() const { return m_heard; }

private:
    Tree m_tree;
    CountedListener::Heard m_heard;
    std::vector<std::unique_ptr<CountedListener>> m_listeners;
    ZelkoCommon::TreeLink m_link{*clientOrb,
                                 &m_tree,
                                 {QStringLiteral("bench"), QStringLiteral("127.0.0.1"), serverPort},
                                 ZelkoCommon::LinkOptions()};
};

/// A second is that of the changes, whatever the clock says: they carry their number.
void overTheLink(benchmark::State& state)
{
    ObservingClient client;
    const CountedListener::Heard before = client.heard();
    double worked = 0;
    QElapsedTimer clock;
    clock.start();
    for (auto _ : state) {
        const double start = threadWorkMs();
        client.runUntil(client.heard().last + CountedValues::ChangesPerSecond);
        const double seconds = (threadWorkMs() - start) / 1e3;
        state.SetIterationTime(seconds);
        worked += seconds;
    }
    const double made = client.heard().last - before.last;
    state.counters["idle_share"] = 1 - worked * CountedValues::ChangesPerSecond / made;
    state.counters["heard_share"] = (client.heard().changes - before.changes) / made;
    state.counters["changes_per_second_by_the_clock"] = made * 1e3 / static_cast<double>(clock.elapsed());
}

BENCHMARK(overTheLink)->Name("work_of_a_second/link")->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    const auto begin = [](quint16 port) {
        serverPort = port;
        clientOrb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    };
    return BenchPeer::run(argc, argv, {serve, begin, [] { clientOrb.reset(); }});
}
