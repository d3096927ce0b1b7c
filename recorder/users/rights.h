#pragma once

#include <credentials/role.h>

#include <QLatin1String>

namespace ZelkoRecorder {

using ZelkoCommon::Role;

/// What a client may ask of the recorder, as far as rights tell it apart.
enum class Action {
    Look,                ///< read the tree, ask the service for devices, records, channels and times
    Synchronize,         ///< write "Synchronize" in the tree
    SyncOneRecord,       ///< write "SyncOneRecord" in the tree
    DeleteRecordingList, ///< write "DeleteRecordingList" in the tree
    SetRecordIdle,       ///< write "SetRecordIdle" in the tree
    EditHistory,         ///< add and remove history entries
    EditComment,         ///< change the comment, which is the name of a record
    SetDeletable,        ///< change whether a record may be deleted
    EditBookmarks,       ///< add and delete bookmarks
    CopyRecord,          ///< make a new record of parts of one
    StreamOverview,      ///< have spectra sent to the address that the client calls from
    Replay,              ///< start, pause, continue and stop
    Export,              ///< begin and cancel
    UseChannels,         ///< register channels, and everything that one does
    SetDeviceTime        ///< set the clock of a device
};

/// Every action, in the order above.
inline constexpr Action allActions[] = {
    Action::Look,          Action::Synchronize, Action::SyncOneRecord,  Action::DeleteRecordingList,
    Action::SetRecordIdle, Action::EditHistory, Action::EditComment,    Action::SetDeletable,
    Action::EditBookmarks, Action::CopyRecord,  Action::StreamOverview, Action::Replay,
    Action::Export,        Action::UseChannels, Action::SetDeviceTime,
};

/// The one table of rights: whether who has the role may do it.
bool mayDo(Role role, Action action);

/// What an action is, for a log line: "delete records".
QLatin1String actionText(Action action);

} // namespace ZelkoRecorder
