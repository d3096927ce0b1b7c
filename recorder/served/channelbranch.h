#pragma once

#include <recorder/served/servedbranch.h>

#include <zelkobase/maps/bookmarkitemmap.h>

#include <QString>

class Tree;
class ValueSelection;

namespace ZelkoRecorder {

/// The values of one channel on the tree, below "/ZELKO/Channel/" and its ID. The tree owns them. Times are
/// microseconds since the epoch, sizes and positions bytes; texts of formats, classes and states are the names of
/// enumerators.
struct ChannelBranch
{
    /// A channel at rest without a record. The branch must not be there yet.
    ChannelBranch(Tree& tree, const QString& channelId);

    /// Where the branch of a channel stands.
    static QString pathOf(const QString& channelId);

    ValueSelection* recordingState; ///< an Admin::RecordReplayAllModes
    ValueSelection* replayState;    ///< an Admin::RecordReplayMode
    ValueSelection* guiReplayState; ///< the same, for windows, and never written by them
    TextValue* errorCode;           ///< what went wrong last, for people; empty: nothing since the last start
    TextValue* channelName;
    BoolValue* recordFlag; ///< whether the channel may record
    BoolValue* replayFlag; ///< whether it may replay
    TextValue* dataRateClass;

    /// @name What clients ask for
    /// @{
    TextValue* deviceId;     ///< that records and replays; empty: any
    TextValue* recordName;   ///< of the next recording; empty: the channel's
    IntValue* recordTimeout; ///< seconds from its first data after which a recording ends by itself; 0: it does not.
                             ///< One without any data ends with an error after these seconds, but never before the
                             ///< patience of the recorder is over; with 0 it waits for them until it is stopped
    IntValue* fileSizeInKB;  ///< units of 1024 bytes; a recording ends before it is larger. 0: it does not
    Value<double>* position; ///< the moment that is being replayed, or where the next replay begins
    /// @}

    /// @name The record that is recorded or replayed, or is to be replayed
    /// @{
    Value<qint64>* fileSize;
    Value<qint64>* startTime;
    Value<qint64>* stopTime;
    Value<qint64>* startPosition;
    Value<qint64>* stopPosition;
    Value<qint64>* loopSize;
    TextValue* recordStatus;
    TextValue* replayDataRateClass;
    TextValue* dataFormat;
    BoolValue* isDeletable;
    TextValue* recordId; ///< the last that is told of a record; empty: there is none
    /// @}

    /// The bookmarks that the client shows who works on the channel. Clients write them for each other; none of them
    /// goes into a record by itself.
    zelko::bookmarkmap::BookmarkItemMap* bookmarks;
};

} // namespace ZelkoRecorder
