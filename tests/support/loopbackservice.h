#pragma once

#include "faultproxy.h"
#include "servicepeer.h"

/// A recorder's service in this process that is called over the loopback interface.
struct LoopbackService
{
    LoopbackService() { proxy.setTarget(orb.port()); }

    FaultProxy proxy;
    ZelkoCommon::Orb orb{ZelkoCommon::OrbOptions()};
    ServicePeer peer{orb, proxy.port()};
};
