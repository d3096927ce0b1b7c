#pragma once

/// What several rooms of a client say of channels.
namespace ZelkoGlobal {

/// How far the channel that a workstation works on can be used.
enum ChannelAvailableState : int {
    ChannelReady = 0,         ///< its values are on the tree, and it may record
    ChannelRecordFlagOff = 1, ///< its values are on the tree, and it may not record
    ChannelNotSet = 2,        ///< there is no channel to work on
    ChannelValuesMissing = 3, ///< its values are not on the tree
    ChannelDisconnected = 4   ///< there is no connection to the server
};

} // namespace ZelkoGlobal
