#pragma once

#include "channelbranch.h"
#include "channelsignallog.h"
#include "commatexts.h"
#include "statesite.h"

#include <zelkobase/state/localzelkovalues.h>

/// A client that is connected to north, and its model of the channel that the value "/Window/Channel" names.
struct ChannelSetting
{
    /// Has the model work on channel C1, which is there.
    void takeUpChannel()
    {
        channel.putAll();
        channelId->SetValue(QStringLiteral("C1"), nullptr);
        log.take();
    }

    const StateSite site{{QStringLiteral("north")}};
    const ChannelBranch channel{QStringLiteral("north"), QStringLiteral("C1")};
    Value<QString>* const channelId = StateSite::putText(QStringLiteral("Channel"));
    const ZelkoCommon::LocalZelkoValues local{QStringLiteral("north")};
    ZelkoGUI::ZelkoChannelModel model{local, QStringLiteral("/Window/Channel"), site.data};
    ChannelSignalLog log{model};
};
