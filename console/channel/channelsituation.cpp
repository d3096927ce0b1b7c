#include <console/channel/channelsituation.h>

#include <console/records/recordsituation.h>
#include <console/translation.h>

namespace ZelkoConsole {

using Recording = ChannelSituation::Recording;
using Replay = ChannelSituation::Replay;

namespace {

QString unknownText()
{
    return tr("In a state that this console does not know");
}

QString recordingText(int recording)
{
    switch (static_cast<Recording>(recording)) {
    case Recording::StartRequested:
        return tr("Recording starts");
    case Recording::NormalRecording:
        return tr("Recording");
    case Recording::ContinuousRecording:
        return tr("Recording in a loop");
    case Recording::Stopping:
        return tr("Recording stops");
    case Recording::Stopped:
        return tr("Stopped");
    }
    return unknownText();
}

QString replayText(int replay)
{
    switch (static_cast<Replay>(replay)) {
    case Replay::Stopped:
        return tr("Stopped");
    case Replay::Started:
        return tr("Replay starts");
    case Replay::Paused:
        return tr("Replay paused");
    case Replay::Pausing:
        return tr("Replay pauses");
    case Replay::Running:
        return tr("Replaying");
    case Replay::Stopping:
        return tr("Replay stops");
    }
    return unknownText();
}

QString missingText(const ChannelSituation& situation)
{
    switch (situation.state) {
    case ZelkoGlobal::ChannelDisconnected:
        return tr("No connection to %1").arg(situation.subSystem);
    case ZelkoGlobal::ChannelNotSet:
        return tr("No channel chosen");
    default:
        return tr("Channel %1 is not there at the moment").arg(situation.name);
    }
}

QString doingText(const ChannelSituation& situation)
{
    const bool isReplaying = situation.hasReplay() && !situation.hasRecording();
    const QString doing = isReplaying ? replayText(situation.replay) : recordingText(situation.recording);
    const bool isOff = !situation.canRecord && !isReplaying && !situation.hasRecording();
    return isOff ? tr("%1, does not record").arg(doing) : doing;
}

QString sentence(const QString& text)
{
    return tr("%1.").arg(text);
}

// What stands in the way of any use of the channel.
QString whyNoUse(const ChannelSituation& situation)
{
    if (!situation.isThere()) {
        return sentence(missingText(situation));
    }
    return situation.mayUse ? QString() : forbiddenText();
}

Glyph doingGlyph(const ChannelSituation& situation)
{
    if (situation.recording == static_cast<int>(Recording::NormalRecording) ||
        situation.recording == static_cast<int>(Recording::ContinuousRecording)) {
        return Glyph::Recording;
    }
    if (situation.hasRecording()) {
        return Glyph::Busy;
    }
    if (situation.replay == static_cast<int>(Replay::Running)) {
        return Glyph::Play;
    }
    if (situation.isReplayHeld()) {
        return Glyph::Pause;
    }
    return situation.hasReplay() ? Glyph::Busy : Glyph::Idle;
}

} // namespace

bool ChannelSituation::isThere() const
{
    return state == ZelkoGlobal::ChannelReady || state == ZelkoGlobal::ChannelRecordFlagOff;
}

bool ChannelSituation::hasRecording() const
{
    return isThere() && recording != -1 && recording != static_cast<int>(Recording::Stopped);
}

bool ChannelSituation::hasReplay() const
{
    return isThere() && replay != -1 && replay != static_cast<int>(Replay::Stopped);
}

bool ChannelSituation::isReplayHeld() const
{
    return isThere() && (replay == static_cast<int>(Replay::Paused) || replay == static_cast<int>(Replay::Pausing));
}

QString stateText(const ChannelSituation& situation)
{
    if (!situation.isThere()) {
        return missingText(situation);
    }
    const QString doing = doingText(situation);
    return situation.error.isEmpty() ? doing : tr("%1: %2").arg(doing, situation.error);
}

// An error that comes while the channel works is as a rule a wish that was refused: the work goes on.
Glyph stateGlyph(const ChannelSituation& situation)
{
    if (!situation.isThere()) {
        return situation.state == ZelkoGlobal::ChannelNotSet ? Glyph::Idle : Glyph::Bad;
    }
    const bool isBusy = situation.hasRecording() || situation.hasReplay();
    return isBusy || situation.error.isEmpty() ? doingGlyph(situation) : Glyph::Bad;
}

QString whyNoRecording(const ChannelSituation& situation)
{
    if (QString why = whyNoUse(situation); !why.isEmpty()) {
        return why;
    }
    if (!situation.canRecord) {
        return tr("This channel does not record.");
    }
    return situation.hasRecording() || situation.hasReplay() ? tr("The channel is busy.") : QString();
}

QString whyNoStop(const ChannelSituation& situation)
{
    if (QString why = whyNoUse(situation); !why.isEmpty()) {
        return why;
    }
    return situation.hasRecording() ? QString() : tr("Nothing is being recorded.");
}

QString whyNoSettings(const ChannelSituation& situation)
{
    const QString why = whyNoUse(situation);
    return why.isEmpty() && !situation.canRecord ? tr("This channel does not record.") : why;
}

QString whyNoReplay(const ChannelSituation& situation, int selected)
{
    if (QString why = whyNoUse(situation); !why.isEmpty()) {
        return why;
    }
    if (situation.isReplayHeld()) {
        return {};
    }
    if (!situation.canReplay) {
        return tr("This channel does not replay.");
    }
    if (situation.hasRecording() || situation.hasReplay()) {
        return tr("The channel is busy.");
    }
    return selected == 1 ? QString() : notOneText(selected);
}

QString whyNoPause(const ChannelSituation& situation)
{
    if (QString why = whyNoUse(situation); !why.isEmpty()) {
        return why;
    }
    const bool isRunning =
        situation.replay == static_cast<int>(Replay::Started) || situation.replay == static_cast<int>(Replay::Running);
    return isRunning ? QString() : tr("Nothing is being replayed.");
}

QString whyNoReplayStop(const ChannelSituation& situation)
{
    if (QString why = whyNoUse(situation); !why.isEmpty()) {
        return why;
    }
    return situation.hasReplay() ? QString() : tr("Nothing is being replayed.");
}

} // namespace ZelkoConsole
