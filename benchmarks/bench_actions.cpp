// What the client's handler costs beside the bare proxy: the same call with the same texts to the same servant of
// another process. The other end is this program with another argument.
#include "servicepeer.h"

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/guitoserveradmincorbahandler.h>
#include <zelkobase/service/serviceaddress.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>

#include <QCoreApplication>
#include <QProcess>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

constexpr const char* device = "device-1";
constexpr const char* record = "REC-20240101-000001";
constexpr const char* recordName = "Recording number 1";

quint16 serverPort = 0;
std::unique_ptr<ZelkoCommon::Orb> clientOrb;

int serve(QCoreApplication& application)
{
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    const ServicePeer peer(orb, orb.port());
    std::printf("%d\n", int(orb.port()));
    std::fflush(stdout);
    return application.exec();
}

// As a controller calls it. Without a tree link, which would make calls of its own meanwhile.
void byTheHandler(benchmark::State& state)
{
    const QString service = ZelkoCommon::serviceReference({QStringLiteral("127.0.0.1")}, serverPort);
    ZelkoGUI::GuiToServerAdminCorbaHandler handler(
        std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(QStringLiteral("bench"), nullptr, service));
    const QString deviceId = QString::fromLatin1(device);
    const QString recordId = QString::fromLatin1(record);
    const QString name = QString::fromLatin1(recordName);
    for (auto _ : state) {
        if (handler.SetRecordComment(deviceId, recordId, name) != 0) {
            state.SkipWithError("the call failed");
            break;
        }
    }
}

void byTheBareProxy(benchmark::State& state)
{
    const CORBA::Object_var object =
        clientOrb->remoteObject(QStringLiteral("127.0.0.1"), serverPort, ZelkoCommon::recorderServiceKey);
    const QD_ZLK::IF_ZLK_c_ZLK_var root = QD_ZLK::IF_ZLK_c_ZLK::_narrow(object);
    const QD_ZLK::IF_ZELKO_Admin_var admin = root->getZelkoAdminInterface();
    const CORBA::WString_var name = ZelkoCommon::toWideCorba(QString::fromLatin1(recordName));
    for (auto _ : state) {
        if (admin->setRecordComment(device, record, name) != 0) {
            state.SkipWithError("the call failed");
            break;
        }
    }
}

BENCHMARK(byTheHandler)->Name("call/handler")->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(byTheBareProxy)->Name("call/proxy")->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 2 && std::string(argv[1]) == "--serve") {
        return serve(application);
    }
    QProcess server;
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--serve")});
    if (!server.waitForReadyRead(60'000)) {
        std::fprintf(stderr, "the server did not come up\n");
        return EXIT_FAILURE;
    }
    serverPort = server.readLine().trimmed().toUShort();
    clientOrb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    clientOrb.reset();
    server.kill();
    server.waitForFinished();
    return EXIT_SUCCESS;
}
