#include <recorder/served/writepolicy.h>

#include <valuecore/valuebase.h>
#include <zelkobase/names/valuenames.h>

#include <algorithm>
#include <array>

namespace ZelkoRecorder {

namespace {

struct Writable
{
    QLatin1String name;
    Action action;
};

// The values beside the commands tell what is the case, which is not for clients to say.
constexpr std::array commands{
    Writable{zelko::names::synchronize, Action::Synchronize},
    Writable{zelko::names::syncOneRecord, Action::SyncOneRecord},
    Writable{zelko::names::deleteRecordingList, Action::DeleteRecordingList},
    Writable{zelko::names::setRecordIdle, Action::SetRecordIdle},
};

// What a client asks a channel for, which record it is to replay, and the bookmarks that it shows. Flags, name and
// error are for the recorder to tell.
constexpr std::array channelValues{
    Writable{zelko::names::allRecordReplayModes, Action::UseChannels},
    Writable{zelko::names::deviceId, Action::UseChannels},
    Writable{zelko::names::recordName, Action::UseChannels},
    Writable{zelko::names::recordTimeout, Action::UseChannels},
    Writable{zelko::names::fileSizeInKB, Action::UseChannels},
    Writable{zelko::names::replayMode, Action::Replay},
    Writable{zelko::names::currentReplayPosition, Action::Replay},
    Writable{zelko::names::fileSize, Action::Replay},
    Writable{zelko::names::startTime, Action::Replay},
    Writable{zelko::names::stopTime, Action::Replay},
    Writable{zelko::names::startPosition, Action::Replay},
    Writable{zelko::names::stopPosition, Action::Replay},
    Writable{zelko::names::loopSize, Action::Replay},
    Writable{zelko::names::recordStatus, Action::Replay},
    Writable{zelko::names::replayDataRateClass, Action::Replay},
    Writable{zelko::names::dataFormat, Action::Replay},
    Writable{zelko::names::isDeletable, Action::Replay},
    Writable{zelko::names::recordId, Action::Replay},
    Writable{zelko::names::bookmarks, Action::EditBookmarks},
};

template <std::size_t Size>
std::optional<Action> actionOf(const QString& name, const std::array<Writable, Size>& values)
{
    const auto found = std::find_if(values.begin(), values.end(), [&](const Writable& v) { return name == v.name; });
    return found == values.end() ? std::nullopt : std::optional(found->action);
}

} // namespace

std::optional<Action> actionOfWrite(const ValueBase& value)
{
    static const QString commandBranch = QString(zelko::names::zelkoCommand) + QLatin1Char('/');
    const QString path = value.GetPathName();
    if (path.startsWith(commandBranch)) {
        return actionOf(value.GetName(), commands);
    }
    return path.startsWith(zelko::names::zelkoChannelPrefix) ? actionOf(value.GetName(), channelValues) : std::nullopt;
}

TreeLinkServer::MayWrite writePolicy()
{
    return [](const LinkUser& user, const ValueBase& value) {
        const auto action = actionOfWrite(value);
        return action && mayDo(user.role, *action);
    };
}

} // namespace ZelkoRecorder
