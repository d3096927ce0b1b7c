#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QVariant>

namespace ZelkoCommon {

/// What one column of a record list shows: everything about it but its number.
struct RecordColumn
{
    using Record = ZELKO_XML::ZELKO_RecordData;

    const char* header;                     ///< to be translated in the context of AbstractRecordListModel
    bool number;                            ///< a quantity, which stands to the right
    QString (*text)(const Record& record);  ///< for people
    QVariant (*sort)(const Record& record); ///< a number or a text that exists already
    QVariant (*value)(const Record& record);
};

/// The column of that number, which is one of AbstractRecordListModel::Column.
const RecordColumn& recordColumn(int column);

} // namespace ZelkoCommon
