#pragma once

#include <valuecore/valuetypes.h>

#include <QString>

class Tree;

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoRecorder {

using BoolValue = Value<bool>;
using IntValue = Value<int>;
using TextValue = Value<QString>;

/// What a device is, for those who see it on the tree.
struct DeviceIdentity
{
    QString id;
    /// Where it is reached.
    QString ipAddress;
    QString firmware;
};

/// The values of one device on the tree, put there in the order in which a client is to get them. The tree owns them.
struct ServedBranch
{
    /// The branch must not be there yet.
    ServedBranch(Tree& tree, const DeviceIdentity& device);

    BoolValue* available;
    IntValue* loadCount;
    zelko::recordmap::RecordItemMap* records;
    /// Stands behind the map: a client hears of it when it has the map's content.
    BoolValue* loadedCompletly;

    BoolValue* synchronize;
    TextValue* syncOneRecord;
    TextValue* deleteRecordingList;
    TextValue* setRecordIdle;
};

} // namespace ZelkoRecorder
