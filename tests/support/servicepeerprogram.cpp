// A recorder's service in a process of its own, for tests that stop or kill it. Each line of its standard input is
// answered by one line: "calls" by what was called, "forget" forgets that.

#include "servicepeer.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <iostream>
#include <string>

namespace {

std::string answer(ServicePeer& peer, const std::string& line)
{
    if (line == "calls") {
        return peer.calls().join(QLatin1Char('|')).toStdString();
    }
    if (line == "forget") {
        peer.forgetCalls();
        return "ok";
    }
    return "unknown";
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOption({"port", "Port to listen on", "N", "0"});
    parser.process(application);
    try {
        ZelkoCommon::OrbOptions options;
        options.port = parser.value("port").toUShort();
        ZelkoCommon::Orb orb(options);
        ServicePeer peer(orb, orb.port());
        std::cout << "READY port=" << orb.port() << std::endl;
        for (std::string line; std::getline(std::cin, line);) {
            std::cout << answer(peer, line) << std::endl;
        }
        return 0;
    } catch (const ZelkoCommon::OrbError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
