// 10,000 records deleted in one action: from the click that confirms it to the moment in which the last row is gone,
// beside what the recorder says that it took itself. Each deletion is of a recorder process of its own.
#include "actionsite.h"
#include "dialoganswers.h"

#include <resources/zelkoicons.h>

#include <QApplication>
#include <QElapsedTimer>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

using ZelkoTest::ActionSite;

namespace {

constexpr int records = 10'000;

std::unique_ptr<ZelkoCommon::Orb> orb;

bool waitFor(const std::function<bool()>& condition)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < 120'000) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

// In seconds; nothing when not all of them went.
std::optional<double> deleteAll(ActionSite& site)
{
    const QStringList all = site.rows();
    QElapsedTimer clock;
    const ModalAnswer yes([&](QWidget* box) {
        clock.start();
        answers::click(QMessageBox::Yes)(box);
    });
    const auto* const model = site.controller().recordListModel();
    const bool gone = all.size() == records && site.click(ActionSite::Controller::UserActionDelete, all) &&
                      waitFor([&] { return model->rowCount() == 0; });
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

void deletion(benchmark::State& state)
{
    for (auto _ : state) {
        ActionSite site(*orb, QStringLiteral(ZELKO_RECORDER));
        const QStringList prepared{QStringLiteral("--populate"), QString::number(records)};
        if (!site.start(prepared)) {
            state.SkipWithError("the recorder did not come up");
            break;
        }
        site.connectAs(ActionSite::Role::Operator);
        waitFor([&] { return site.isReady() && site.rows().size() == records; });
        const auto client = deleteAll(site);
        const auto recorder = recordersOwnTime(site);
        if (!client || !recorder) {
            state.SkipWithError("not all records went");
            break;
        }
        state.SetIterationTime(*client);
        state.counters["recorder_s"] = *recorder;
        state.counters["client_beside_recorder"] = *client / *recorder;
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
