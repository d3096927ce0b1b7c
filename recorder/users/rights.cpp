#include <recorder/users/rights.h>

#include <algorithm>
#include <iterator>

namespace ZelkoRecorder {

namespace {

struct Rule
{
    Action action;
    Role least;
    QLatin1String text;
};

// Spectra take time of disk and processor for as long as they are sent: that is not for everybody who looks.
constexpr Rule rules[] = {
    {Action::Look, Role::Viewer, QLatin1String("look")},
    {Action::Synchronize, Role::Operator, QLatin1String("synchronise the list of records")},
    {Action::SyncOneRecord, Role::Operator, QLatin1String("synchronise a record")},
    {Action::DeleteRecordingList, Role::Operator, QLatin1String("delete records")},
    {Action::SetRecordIdle, Role::Operator, QLatin1String("put a record to rest")},
    {Action::EditHistory, Role::Operator, QLatin1String("edit the history of a record")},
    {Action::EditComment, Role::Operator, QLatin1String("rename a record")},
    {Action::SetDeletable, Role::Operator, QLatin1String("change whether a record may be deleted")},
    {Action::EditBookmarks, Role::Operator, QLatin1String("edit bookmarks")},
    {Action::CopyRecord, Role::Operator, QLatin1String("copy a record")},
    {Action::StreamOverview, Role::Operator, QLatin1String("have spectra sent")},
    {Action::Replay, Role::Operator, QLatin1String("replay a record")},
    {Action::Export, Role::Operator, QLatin1String("export a record")},
    {Action::UseChannels, Role::Operator, QLatin1String("use channels")},
    {Action::SetDeviceTime, Role::Administrator, QLatin1String("set the clock of a device")},
};
static_assert(std::size(rules) == std::size(allActions));

const Rule& ruleOf(Action action)
{
    return *std::find_if(std::begin(rules), std::end(rules), [&](const Rule& rule) { return rule.action == action; });
}

} // namespace

bool mayDo(Role role, Action action)
{
    return role >= ruleOf(action).least;
}

QLatin1String actionText(Action action)
{
    return ruleOf(action).text;
}

} // namespace ZelkoRecorder
