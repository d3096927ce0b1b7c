#pragma once

#include "listedrecords.h"

/// A record list that tells of its changes as that of a device does.
class ToldRecords : public ListedRecords
{
public:
    using ListedRecords::ListedRecords;

    /// Adds a record, or changes the one of that ID.
    void store(const RecordDataPtr& record)
    {
        const QString id = record->GetRecordID();
        if (hasRecord(id)) {
            change(record);
        } else {
            add(record);
        }
        Q_EMIT si_recordChanged(id);
    }
    void drop(const QString& id)
    {
        remove(id);
        Q_EMIT si_recordDeleted(id);
    }
    void replaceAll(const QStringList& ids)
    {
        replace(ids);
        Q_EMIT si_allRecordsChanged();
    }
};
