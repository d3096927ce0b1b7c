#include "deletablestate_p.h"

#include <algorithm>
#include <iterator>

namespace ZelkoGUI {

DeletableState deletableState(const ZelkoCommon::AbstractRecordListModel& model, const QStringList& recordIDs)
{
    using Record = ZELKO_XML::ZELKO_RecordData;
    DeletableState state = DeletableState::NotToggled;
    for (const QString& id : recordIDs) {
        const auto record = model.getRecordData(id);
        if (!record || record->GetRecordStatus() != Record::RecordStatus::Finished) {
            return DeletableState::NotToggled;
        }
        const DeletableState own =
            record->GetDeletable() ? DeletableState::AllDeletable : DeletableState::NoneDeletable;
        if (state != DeletableState::NotToggled && state != own) {
            return DeletableState::NotToggled;
        }
        state = own;
    }
    return state;
}

QStringList notDeletable(const ZelkoCommon::AbstractRecordListModel& model, const QStringList& recordIDs)
{
    QStringList result;
    std::copy_if(recordIDs.begin(), recordIDs.end(), std::back_inserter(result), [&model](const QString& id) {
        const auto record = model.getRecordData(id);
        return record && !record->GetDeletable();
    });
    return result;
}

} // namespace ZelkoGUI
