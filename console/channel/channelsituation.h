#pragma once

#include <console/widgets/glyph.h>

#include <zelkobase/data/admin.h>
#include <zelkobase/state/channelavailablestate.h>

#include <QString>

namespace ZelkoConsole {

/// How the channel of a workstation stands, and what of it concerns whoever wants to use it.
struct ChannelSituation
{
    using Recording = ZELKO_XML::Admin::RecordReplayAllModes;
    using Replay = ZELKO_XML::Admin::RecordReplayMode;

    ZelkoGlobal::ChannelAvailableState state = ZelkoGlobal::ChannelNotSet;
    QString name;      ///< of the channel, for people
    QString subSystem; ///< in which it is looked for
    bool mayUse = false;
    bool canRecord = false;
    bool canReplay = false;
    int recording = -1; ///< a Recording, or what a newer recorder says; -1 is not known
    int replay = -1;    ///< a Replay, likewise
    QString error;      ///< as the recorder says it; empty: none

    bool operator==(const ChannelSituation&) const = default;

    /// Whether its values are there.
    bool isThere() const;

    /// Whether it has a recording, be that one that was asked for or one that is being closed.
    bool hasRecording() const;

    /// Whether it has a replay, be that one that was asked for, holds, or comes to its end.
    bool hasReplay() const;

    /// Whether the replay holds, or is about to.
    bool isReplayHeld() const;
};

/// What the channel does, or why nothing can be done with it, in one line. An error stands behind what it does, and is
/// the sign of a channel at rest only.
QString stateText(const ChannelSituation& situation);
Glyph stateGlyph(const ChannelSituation& situation);

/// @name Why something cannot be done: a sentence with a full stop; empty where it can be
/// @{
QString whyNoRecording(const ChannelSituation& situation);
QString whyNoStop(const ChannelSituation& situation);
/// Settings of the next recording.
QString whyNoSettings(const ChannelSituation& situation);
/// `selected` records are chosen. A replay that holds goes on whatever is chosen.
QString whyNoReplay(const ChannelSituation& situation, int selected);
QString whyNoPause(const ChannelSituation& situation);
QString whyNoReplayStop(const ChannelSituation& situation);
/// @}

} // namespace ZelkoConsole
