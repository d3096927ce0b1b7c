#pragma once

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QStringList>

namespace ZelkoGUI {

/// Whether records can be made deletable, or not deletable, in one go.
enum class DeletableState : int {
    NotToggled = 0,    ///< no records, or records of both kinds, not at rest, or not known
    NoneDeletable = 1, ///< can be made deletable
    AllDeletable = 2   ///< can be made not deletable
};

DeletableState deletableState(const ZelkoCommon::AbstractRecordListModel& model, const QStringList& recordIDs);

/// Those of the records that the model knows and that are not deletable, in the order given.
QStringList notDeletable(const ZelkoCommon::AbstractRecordListModel& model, const QStringList& recordIDs);

} // namespace ZelkoGUI
