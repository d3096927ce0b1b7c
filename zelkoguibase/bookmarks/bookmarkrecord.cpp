#include "bookmarkrecord_p.h"

#include <zelkobase/data/recordstate.h>
#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoGUI {

using ZELKO_XML::RecordExtent;

void BookmarkRecord::setIDs(const QString& recordID, const QString& deviceID)
{
    m_recordID = recordID;
    m_deviceID = deviceID;
}

bool BookmarkRecord::lookIn(List* list, QObject* follower)
{
    if (list == m_list) {
        return false;
    }
    if (m_list) {
        QObject::disconnect(m_list, nullptr, follower, nullptr);
    }
    m_list = list;
    return true;
}

std::shared_ptr<const BookmarkRecord::Data> BookmarkRecord::data() const
{
    return m_list ? m_list->getRecordData(m_recordID) : nullptr;
}

RecordExtent BookmarkRecord::extent(const Data* record)
{
    return record ? ZELKO_XML::recordExtent(*record) : RecordExtent{0, 0};
}

std::optional<RecordExtent> BookmarkRecord::limits(const Data* record)
{
    const bool hasEnd = record && ZELKO_XML::isFinished(*record) && !ZELKO_XML::isBeingRecorded(*record);
    return hasEnd ? std::optional(extent(record)) : std::nullopt;
}

} // namespace ZelkoGUI
