#include "benchpeer.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* serveArgument = "--serve";
constexpr std::chrono::milliseconds patience = std::chrono::minutes(1);

long lastProcessor()
{
    return sysconf(_SC_NPROCESSORS_ONLN) - 1;
}

bool isOtherEnd(int argc, const char* const* argv)
{
    return argc == 2 && std::strcmp(argv[1], serveArgument) == 0;
}

} // namespace

BenchPeer::BenchPeer() = default;

BenchPeer::~BenchPeer()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool BenchPeer::start()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral("taskset"),
                    {QStringLiteral("-c"), QString::number(lastProcessor()), QCoreApplication::applicationFilePath(),
                     QString::fromLatin1(serveArgument)});
    if (!m_process.waitForReadyRead(static_cast<int>(patience.count()))) {
        std::fprintf(stderr, "the other end did not come up\n");
        return false;
    }
    m_port = m_process.readLine().trimmed().toUShort();
    return true;
}

int BenchPeer::run(int argc, char** argv, const Program& program)
{
    QCoreApplication application(argc, argv);
    if (isOtherEnd(argc, argv)) {
        return program.serve(application);
    }
    BenchPeer peer;
    if (!peer.start()) {
        return EXIT_FAILURE;
    }
    program.begin(peer.m_port);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    program.end();
    return EXIT_SUCCESS;
}

void BenchPeer::announce(quint16 port)
{
    std::printf("%d\n", int(port));
    std::fflush(stdout);
}
