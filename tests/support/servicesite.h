#pragma once

#include "fakeconnectiondata.h"
#include "faultproxy.h"
#include "servicepeer.h"

#include <zelkobase/service/zelkoguitoservercorbahandler.h>

/// A site with one recorder, "north", whose service is a peer in this process that is called over the loopback
/// interface, and a client of it.
struct ServiceSite
{
    ServiceSite()
    {
        proxy.setTarget(orb.port());
        handler->setLimit(std::chrono::seconds(60)); // a loaded machine is no failure
    }

    static ZelkoCommon::ZelkoConfiguration configuration(quint16 port)
    {
        ZelkoCommon::ZelkoConfiguration site;
        site.AddSubSystem({"north", "127.0.0.1", port});
        return site;
    }

    FaultProxy proxy;
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    ServicePeer peer{orb, proxy.port()};
    std::shared_ptr<FakeConnectionData> data = std::make_shared<FakeConnectionData>(configuration(proxy.port()));
    std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> handler =
        std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(data);
};
