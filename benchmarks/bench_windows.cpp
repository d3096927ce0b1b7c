// The overview of a record of 1 GiB, sent to a socket of this machine, beside a bare loop over the same file that does
// no more than it must: read, convert, look through the window, transform, and keep the strongest power of each bin.

#include "largerecord.h"

#include <recorder/service/overviewjob.h>

#include <QUdpSocket>

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <vector>

using namespace ZelkoRecorder;

namespace {

constexpr int length = 4096;
constexpr qint64 lines = 1000;

const LargeRecord& record()
{
    static const LargeRecord made;
    return made;
}

void overviewOurs(benchmark::State& state)
{
    QUdpSocket target; // which nobody reads
    QUdpSocket sender;
    if (!target.bind(QHostAddress::LocalHost)) {
        std::abort();
    }
    OverviewWish wish;
    wish.device = QStringLiteral("bench");
    wish.record = record().metadata().GetRecordID();
    wish.fftLength = length;
    wish.lineCount = lines;
    wish.window = SpectrumWindow::Hann;
    for ([[maybe_unused]] const auto turn : state) {
        OverviewJob job(record().store(), record().metadata(), wish);
        const bool isDone = job.run([&](const QByteArray& datagram) {
            sender.writeDatagram(datagram, QHostAddress::LocalHost, target.localPort());
            return true;
        });
        if (!isDone || job.lineCount() != lines) {
            std::abort();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(LargeRecord::frames));
}
BENCHMARK(overviewOurs)->Name("overview/ours")->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

std::vector<float> hannWindow()
{
    std::vector<float> window(length);
    for (int i = 0; i < length; ++i) {
        window[static_cast<std::size_t>(i)] =
            static_cast<float>((1 - std::cos(2 * std::numbers::pi * i / length)) / length / 32768);
    }
    return window;
}

void transformBare(const qint16* samples, const std::vector<float>& window, fftwf_complex* in, const fftwf_complex* out,
                   fftwf_plan plan, std::vector<float>& strongest)
{
    for (std::size_t i = 0; i < length; ++i) {
        in[i][0] = window[i] * static_cast<float>(samples[2 * i]);
        in[i][1] = window[i] * static_cast<float>(samples[2 * i + 1]);
    }
    fftwf_execute(plan);
    for (std::size_t i = 0; i < length; ++i) {
        strongest[i] = std::max(strongest[i], out[i][0] * out[i][0] + out[i][1] * out[i][1]);
    }
}

void overviewBare(benchmark::State& state)
{
    const std::vector<float> window = hannWindow();
    std::vector<qint16> block(std::size_t{2} * length * 16); // 256 KiB, which stay in the cache
    const auto blockBytes = static_cast<qint64>(block.size() * sizeof(qint16));
    fftwf_complex* const in = fftwf_alloc_complex(length);
    fftwf_complex* const out = fftwf_alloc_complex(length);
    fftwf_plan plan = fftwf_plan_dft_1d(length, in, out, FFTW_FORWARD, FFTW_ESTIMATE);
    for ([[maybe_unused]] const auto turn : state) {
        QFile file(record().samples());
        std::vector<float> strongest(length);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            std::abort();
        }
        while (file.read(reinterpret_cast<char*>(block.data()), blockBytes) == blockBytes) {
            for (std::size_t first = 0; first < block.size(); first += std::size_t{2} * length) {
                transformBare(block.data() + first, window, in, out, plan, strongest);
            }
        }
        benchmark::DoNotOptimize(strongest.data());
    }
    fftwf_destroy_plan(plan);
    fftwf_free(out);
    fftwf_free(in);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(LargeRecord::frames));
}
BENCHMARK(overviewBare)->Name("overview/bare")->Iterations(1)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
