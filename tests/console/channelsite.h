#pragma once

#include "ownlocalvalues.h"
#include "patience.h"
#include "turns.h"

#include <console/channel/workchannel.h>
#include <console/demo/samplechannel.h>
#include <console/demo/samplesite.h>
#include <console/session/consoleuser.h>

/// A sub system that is connected, with an operator who works there and no channel so far; without windows.
struct ChannelSite : private OwnLocalValues
{
    ChannelSite()
    {
        become(ZelkoCommon::Role::Operator);
        site.addDevice(north, QStringLiteral("A1"));
        site.connectTo(north);
    }
    ~ChannelSite() { UserRights::Instance()->SetUser({}, {}); }

    static void become(ZelkoCommon::Role role)
    {
        UserRights::Instance()->SetUser(ZelkoCommon::roleName(role), ZelkoConsole::ConsoleUser::rightsOf(role));
    }

    ZelkoConsole::SampleChannel addChannel(const char* id, const char* name) const
    {
        return {north, QLatin1String(id), QLatin1String(name)};
    }

    const QString north = QStringLiteral("north");
    ZelkoConsole::SampleSite site{QStringList(north)};
};

/// The same with the channel "Antenna" of the ID C1, and what the workstation has of it.
struct WorkChannelSite : ChannelSite
{
    const ZelkoConsole::SampleChannel antenna = addChannel("C1", "Antenna");
    ZelkoConsole::WorkChannel channel{north, site.connectionData()};
};
