// 10,000 records deleted in one action: from the click that confirms it to the moment in which the last row is gone,
// beside what the recorder says that it took itself. The recorder is a process of its own.
#include "actionsite.h"
#include "dialoganswers.h"

#include <resources/zelkoicons.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

using ZelkoConsole::DialogAnswer;
using ZelkoTest::ActionSite;

namespace {

constexpr int records = 10'000;
constexpr int prepared = 14'000; // of these so many may be deleted, and more

std::unique_ptr<ZelkoCommon::Orb> orb;

bool waitFor(const std::function<bool()>& condition)
{
    QElapsedTimer clock;
    clock.start();
    QTimer wake; // for a condition that comes without an event
    wake.start(50);
    while (!condition() && clock.elapsed() < 120'000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

QStringList deletableOnes(const ActionSite& site)
{
    QStringList ids;
    for (const QString& id : site.rows()) {
        if (ids.size() < records && site.controller().recordListModel()->getRecordData(id)->GetDeletable()) {
            ids.append(id);
        }
    }
    return ids;
}

// In seconds; nothing when not all of them went.
std::optional<double> deleteThem(ActionSite& site)
{
    const QStringList ids = deletableOnes(site);
    QElapsedTimer clock;
    const DialogAnswer yes([&](QWidget* box) {
        clock.start();
        answers::click(QMessageBox::Yes)(box);
    });
    const auto* const model = site.controller().recordListModel();
    const bool gone = ids.size() == records && site.click(ActionSite::Controller::UserActionDelete, ids) &&
                      waitFor([&] { return model->rowCount() == prepared - records; });
    return gone ? std::optional(static_cast<double>(clock.nsecsElapsed()) / 1e9) : std::nullopt;
}

// What the recorder says, in seconds; nothing when it does not.
std::optional<double> recordersOwnTime(ActionSite& site)
{
    static const QRegularExpression line(QStringLiteral("deleted %1 records from \\S+ in (\\d+) ms").arg(records));
    QString log;
    QRegularExpressionMatch match;
    const bool said = waitFor([&] {
        log += QString::fromUtf8(site.recorder().process().readAllStandardError());
        match = line.match(log);
        return match.hasMatch();
    });
    return said ? std::optional(match.captured(1).toDouble() / 1000) : std::nullopt;
}

struct Times
{
    double client = 0; // seconds
    double recorder = 0;
};

std::optional<Times> measure()
{
    ActionSite site(*orb, QStringLiteral(ZELKO_RECORDER));
    if (!site.start({QStringLiteral("--populate"), QString::number(prepared)})) {
        return std::nullopt;
    }
    site.connectAs(ActionSite::Role::Operator);
    waitFor([&] { return site.isReady() && site.controller().recordListModel()->rowCount() == prepared; });
    const auto client = deleteThem(site);
    const auto recorder = client ? recordersOwnTime(site) : std::nullopt;
    return recorder ? std::optional(Times{*client, *recorder}) : std::nullopt;
}

// To make the records takes longer than to delete them, so there is one deletion in a process, of which every
// repetition tells.
void deletion(benchmark::State& state)
{
    static const std::optional<Times> times = measure();
    for (auto _ : state) {
        if (!times) {
            state.SkipWithError("not all records went");
            break;
        }
        state.SetIterationTime(times->client);
        state.counters["client_beside_recorder"] = times->client / times->recorder;
    }
}

BENCHMARK(deletion)->Name("deletion/10000")->Unit(benchmark::kMillisecond)->Iterations(1)->UseManualTime();

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    registerZelkoIcons();
    orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    orb.reset();
    return EXIT_SUCCESS;
}
