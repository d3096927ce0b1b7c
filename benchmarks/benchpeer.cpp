#include "benchpeer.h"

#include <QCoreApplication>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char* serveArgument = "--serve";
constexpr std::chrono::milliseconds patience = std::chrono::minutes(1);

long lastProcessor()
{
    return sysconf(_SC_NPROCESSORS_ONLN) - 1;
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

bool BenchPeer::isMe(int argc, const char* const* argv)
{
    return argc == 2 && std::strcmp(argv[1], serveArgument) == 0;
}

void BenchPeer::announce(quint16 port)
{
    std::printf("%d\n", int(port));
    std::fflush(stdout);
}
