#pragma once

#include <zelkobase/maps/recordmapdata.h>
#include <zelkobase/maps/zelkobasemaps_export.h>

#include <zelkoguibase/valueitemmap/valueitemmap.h>

// Compiled once, in this room, so that a dynamic cast finds one and the same type everywhere.
extern template class ZELKOBASEMAPS_EXPORT
    ValueItemMapBase<zelko::recordmap::RecordMapData, zelko::recordmap::RecordMapData_ItemFormat,
                     zelko::recordmap::RecordMapData_TextAdapter>;
extern template class ZELKOBASEMAPS_EXPORT
    ValueItemMap<zelko::recordmap::RecordMapData, zelko::recordmap::RecordMapData_ItemFormat,
                 zelko::recordmap::RecordMapData_TextAdapter>;

namespace zelko::recordmap {

/// The recordings of a device by their ID, as the recorder publishes them.
class ZELKOBASEMAPS_EXPORT RecordItemMap final
    : public ValueItemMap<RecordMapData, RecordMapData_ItemFormat, RecordMapData_TextAdapter>
{
public:
    static constexpr int Type = 20;
    static constexpr const char* TypeName = "RecordItemMap";

    RecordItemMap();
    RecordItemMap(const QString& name, TValueState state);
    RecordItemMap(const RecordItemMap& other);
    RecordItemMap& operator=(const RecordItemMap& other);
    ~RecordItemMap() override;

    /// As `Contains`, without a copy of the ID.
    bool contains(const QString& recordID) const;

    QString SetAt(QString key, const RecordMapData& item, IObserver* origin) override;
    int GetType() const override { return Type; }
    const char* GetTypeName() const override { return TypeName; }
};

} // namespace zelko::recordmap
