#include <recorder/served/writepolicy.h>

#include <valuecore/valuebase.h>
#include <zelkobase/names/valuenames.h>

#include <algorithm>
#include <array>

namespace ZelkoRecorder {

namespace {

struct Command
{
    QLatin1String name;
    Action action;
};

// The values beside the commands tell what is the case, which is not for clients to say.
constexpr std::array commands{
    Command{zelko::names::synchronize, Action::Synchronize},
    Command{zelko::names::syncOneRecord, Action::SyncOneRecord},
    Command{zelko::names::deleteRecordingList, Action::DeleteRecordingList},
    Command{zelko::names::setRecordIdle, Action::SetRecordIdle},
};

} // namespace

std::optional<Action> actionOfWrite(const ValueBase& value)
{
    static const QString branch = QString(zelko::names::zelkoCommand) + QLatin1Char('/');
    const auto command = std::find_if(commands.begin(), commands.end(),
                                      [&](const Command& known) { return value.GetName() == known.name; });
    const bool isCommand = command != commands.end() && value.GetPathName().startsWith(branch);
    return isCommand ? std::optional(command->action) : std::nullopt;
}

TreeLinkServer::MayWrite writePolicy()
{
    return [](const LinkUser& user, const ValueBase& value) {
        const auto action = actionOfWrite(value);
        return action && mayDo(user.role, *action);
    };
}

} // namespace ZelkoRecorder
