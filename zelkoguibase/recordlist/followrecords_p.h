#pragma once

#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoGUI {

/// Has slots of `follower` told what becomes of the records of a list, of all of them at once, and of the list itself.
template <typename Follower, typename RecordSlot, typename ListSlot>
void connectRecords(const ZelkoCommon::AbstractRecordListModel* list, Follower* follower, RecordSlot recordChanged,
                    RecordSlot recordDeleted, ListSlot allRecordsChanged, ListSlot listDeleted)
{
    using List = ZelkoCommon::AbstractRecordListModel;
    QObject::connect(list, &List::si_recordChanged, follower, recordChanged);
    QObject::connect(list, &List::si_recordDeleted, follower, recordDeleted);
    QObject::connect(list, &List::si_allRecordsChanged, follower, allRecordsChanged);
    QObject::connect(list, &QObject::destroyed, follower, listDeleted);
}

/// Puts another list in the place of the one that is followed, each of which may be null: nothing of `follower` hears
/// of the old one any more, and these slots of it hear of the new one, as connectRecords has them. Nothing happens
/// where it is the same one.
template <typename Followed, typename Follower, typename... Slots>
void followRecords(Followed& followed, ZelkoCommon::AbstractRecordListModel* list, Follower* follower,
                   Slots... slotsInOrder)
{
    if (list == followed) {
        return;
    }
    if (followed) {
        QObject::disconnect(followed, nullptr, follower, nullptr);
    }
    followed = list;
    if (list) {
        connectRecords(list, follower, slotsInOrder...);
    }
}

} // namespace ZelkoGUI
