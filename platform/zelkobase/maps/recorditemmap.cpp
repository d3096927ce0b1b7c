#include <zelkobase/maps/recorditemmap.h>

template class ValueItemMapBase<zelko::recordmap::RecordMapData, zelko::recordmap::RecordMapData_ItemFormat,
                                zelko::recordmap::RecordMapData_TextAdapter>;
template class ValueItemMap<zelko::recordmap::RecordMapData, zelko::recordmap::RecordMapData_ItemFormat,
                            zelko::recordmap::RecordMapData_TextAdapter>;

namespace zelko::recordmap {

RecordItemMap::RecordItemMap() = default;
RecordItemMap::RecordItemMap(const QString& name, TValueState state)
    : ValueItemMap(name, state)
{}
RecordItemMap::RecordItemMap(const RecordItemMap& other) = default;
RecordItemMap& RecordItemMap::operator=(const RecordItemMap& other) = default;
RecordItemMap::~RecordItemMap() = default;

bool RecordItemMap::contains(const QString& recordID) const
{
    return data().find(recordID) != data().end();
}

// A caller may hold key and ID as two strings. Of equal ones only the record's is kept: by the map, its log and all
// that read from them. What comes from a stream has one already.
QString RecordItemMap::SetAt(QString key, const RecordMapData& item, IObserver* origin)
{
    if (const auto& record = item.GetRecordData()) {
        const QString& id = record->GetRecordID();
        if (id.constData() != key.constData() && id == key) {
            key = id;
        }
    }
    return ValueItemMap::SetAt(std::move(key), item, origin);
}

} // namespace zelko::recordmap
