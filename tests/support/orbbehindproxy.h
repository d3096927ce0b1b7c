#pragma once

#include "faultproxy.h"

#include <zelkobase/orb/orb.h>

#include <QTcpServer>

/// Options of an ORB that names the proxy as its own address, so that calls to its objects come through there. The
/// proxy is to be told the ORB's port when it has one.
inline ZelkoCommon::OrbOptions optionsBehind(const FaultProxy& proxy)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    ZelkoCommon::OrbOptions options;
    options.port = probe.serverPort();
    options.publishedHost = "127.0.0.1";
    options.publishedPort = proxy.port();
    options.receiveTimeout = std::chrono::seconds(2);
    return options;
}
