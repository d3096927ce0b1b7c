#pragma once

#include <zelkobase/data/recordextent.h>

#include <QString>

#include <memory>
#include <optional>

class QObject;

namespace ZELKO_XML {
class ZELKO_RecordData;
}

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

/// Which record it is whose bookmarks are shown, and the record list that has it. The list is not owned; whoever set it
/// takes it away when it goes.
class BookmarkRecord
{
public:
    using List = ZelkoCommon::AbstractRecordListModel;
    using Data = ZELKO_XML::ZELKO_RecordData;

    /// Empty IDs for no record. That of the device is only kept.
    void setIDs(const QString& recordID, const QString& deviceID);
    const QString& recordID() const { return m_recordID; }
    const QString& deviceID() const { return m_deviceID; }

    /// Looks the record up in `list` from now on; null for in none. True if it is another list than before: `follower`
    /// then hears nothing more of that one, and is not connected to this one yet.
    bool lookIn(List* list, QObject* follower);

    /// The record as the list has it now; null without a list, and if it is not there.
    std::shared_ptr<const Data> data() const;

    /// From when to when a record goes; twice 0 for null.
    static ZELKO_XML::RecordExtent extent(const Data* record);

    /// The same for a record that has an end which a bookmark can lie behind, and nothing for one that goes on.
    static std::optional<ZELKO_XML::RecordExtent> limits(const Data* record);

private:
    List* m_list = nullptr;
    QString m_recordID;
    QString m_deviceID;
};

} // namespace ZelkoGUI
