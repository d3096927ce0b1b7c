#pragma once

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <memory>

namespace ZelkoGUI {

/// The record map of a device as a table: the list of its recordings, which follows the map from notification to
/// notification.
///
/// Rows stand in the order in which records reached the model. A record is never copied: map, model and readers share
/// it.
///
/// What one notification of the map brings is worked off in this order: changes of known records as they are read, then
/// one insertion of all new records, then the removals, in runs of adjacent rows from the last to the first. A
/// notification that folds a removal of a record with a later set of the same one ends with the removal; so whoever
/// folds notifications ends the fold between the two. A model that fell behind the map's log reads the whole map
/// instead and resets.
///
/// Changes that slots of this model's signals make to the map are worked off when those that are under way are done.
/// The slots may also connect and disconnect the model, but not destroy it.
///
/// GUI thread, as the tree's.
class ZELKOGUIBASE_EXPORT RecordItemMapModel : public ZelkoCommon::AbstractRecordListModel
{
    Q_OBJECT

public:
    /// A model without a map, and so without rows.
    explicit RecordItemMapModel(QObject* parent);

    /// As above, followed by `connect(path)`.
    RecordItemMapModel(const QString& path, QObject* parent);

    ~RecordItemMapModel() override;

    /// Disconnects, then follows the record map at `path` of Tree::Instance(), whose log is made to keep 250 changes.
    /// The rows are there on return. False if nothing, or something else, stands there: the model is not connected then
    /// and does not wait for the map to come.
    bool connect(const QString& path);

    /// Whether the model follows a map. It stops by itself, with no rows, when the map is deleted.
    bool connected() const;

    /// The path of the map, empty if not connected.
    const QString connectionPath() const;

    /// Drops all rows and lets go of the map.
    void disconnect();

    std::shared_ptr<ZELKO_XML::ZELKO_RecordData> recordData(int row) const override;
    QString recordID(int row) const override;
    int recordCount() const override;

protected:
    int recordRow(const QString& recordID) const override;
    QVariant cell(int row, Column column, int role) const override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
