#pragma once

#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/maps/zelkobasemaps_export.h>

#include <QString>

#include <memory>
#include <string>

namespace zelko::recordmap {

/// One item of the record map: a record, shared with whoever reads it from the map. Nobody changes a record that is in
/// a map; a new state of it is a new object.
class ZELKOBASEMAPS_EXPORT RecordMapData
{
public:
    using KeyType = QString;
    using RecordDataPtr = std::shared_ptr<ZELKO_XML::ZELKO_RecordData>;

    /// The ID of the record; empty, which is no key, without a record.
    virtual QString GetKey() const;

    RecordMapData();
    explicit RecordMapData(RecordDataPtr record);
    RecordMapData(const RecordMapData& other);
    RecordMapData(RecordMapData&& other) noexcept;
    RecordMapData& operator=(const RecordMapData& other);
    RecordMapData& operator=(RecordMapData&& other) noexcept;
    virtual ~RecordMapData();

    /// The record. Null is legal: the key is known, but no data of it.
    const RecordDataPtr& GetRecordData() const { return m_record; }

    /// Compares the records, not the pointers.
    bool operator==(const RecordMapData& other) const;

private:
    RecordDataPtr m_record;
};

/// How an item stands in a command: its size in four bytes, machine order, then the record's binary form, which is left
/// out for an item without a record.
class ZELKOBASEMAPS_EXPORT RecordMapData_ItemFormat
{
public:
    static std::string toStandardString(const RecordMapData& item);

    /// Appends what `toStandardString` gives.
    static void appendTo(std::string& out, const RecordMapData& item);

    /// Have the processor fetch from memory the record, and some time later its texts.
    static void fetch(const RecordMapData& item);
    static void fetchContent(const RecordMapData& item);

    /// Reads an item of which the stream is known to hold the announced size and advances the stream behind it. False
    /// for bytes that are not exactly one record; `item` is as before then.
    static bool fromCharStream(const char** stream, RecordMapData& item);

    /// Name and ID in one line; empty without a record.
    static QString GetString(const RecordMapData& item);
};

/// Names the text form of the item type; records have none but RecordMapData_ItemFormat::GetString.
struct RecordMapData_TextAdapter
{};

} // namespace zelko::recordmap
