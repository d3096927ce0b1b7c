#pragma once

#include <observerbase/singleshot.h>
#include <zelkobase/data/bookmarkentry.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QAbstractTableModel>
#include <QDateTime>
#include <QVector>

#include <chrono>
#include <memory>

class VCReplayBar;

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

/// The bookmarks of one record while a user looks at them or edits them: a table of times and texts, with a row behind
/// the last bookmark that has none and whose vertical header offers to add one.
///
/// The model says whether the list may be edited, and whether it is the one that the recorder has. It talks to no
/// recorder: it emits si_updateBookmarks, and sees what became of it when the record changes in the record model. Times
/// are microseconds since the epoch; views see them as local time to the millisecond.
///
/// | state                | the list                                                | editable |
/// |----------------------|---------------------------------------------------------|----------|
/// | `SynchNoRecord`      | is empty: there is no record                            | no       |
/// | `SynchInSync`        | is that of the record                                   | yes      |
/// | `SynchLocalChange`   | was changed here, and was not sent                      | yes      |
/// | `SynchExternalChange`| stands as it was while that of the record has changed   | yes      |
/// | `SynchPending`       | follows the record; a read-only model never leaves this | no       |
///
/// GUI thread only. The record model and the bars are not owned and may go first.
class ZELKOGUIBASE_EXPORT BookmarkModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using Entry = ZELKO_XML::BookmarkEntry;
    using Entries = QVector<ZELKO_XML::BookmarkEntry>;

    enum enSynchState {
        SynchNoRecord = 0,
        SynchInSync = 1,
        SynchLocalChange = 2,
        SynchExternalChange = 3,
        SynchPending = 4
    };
    Q_ENUM(enSynchState)

    enum Column : int {
        TimeColumn, ///< edited as QDateTime
        TextColumn, ///< edited as QString
        ColumnCount
    };

    /// How long a list that was sent, or a record that was set with `delayed`, keeps the model locked.
    static constexpr std::chrono::milliseconds UnlockDelay{2000};

    using SingleShot = Vorn::SingleShot;

    explicit BookmarkModel(bool readOnly, QObject* parent = nullptr);
    ~BookmarkModel() override;

    // The record

    /// Shows the bookmarks of a record, or none with an empty ID, a null model, or one without that record. The list
    /// can be edited at once, or with `delayed` in UnlockDelay. The IDs come back with si_updateBookmarks.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model, bool delayed,
                   const QString& deviceID);

    void resetRecord();

    /// Keeps the list equal to a BookmarkItemMap at `path` of the client's tree, which is made if it is not there and
    /// emptied if it is. A map that it was kept equal to before stays as it is.
    void createItemMap(const QString& path);

    /// Replaces the timer behind the delays, so that a test need not wait. QTimer's is there from the start.
    void setSingleShot(SingleShot singleShot);

    // Replay bars

    /// The bar on which the bookmarks are edited; null for none. The one before keeps what it shows.
    void connectVCReplayBar(VCReplayBar* bar);

    /// A bar that shows the bookmarks and lets nobody edit them. Null, the bar on which they are edited, and one that
    /// is there already are passed over.
    void connectAdditionalReplayBar(VCReplayBar* bar);

    /// The bar keeps what it shows. Null takes all of them away.
    void disconnectAdditionalReplayBar(VCReplayBar* bar);
    void disconnectAllAdditionReplayBars();

    // What is there

    enSynchState getSynchState() const;
    bool readOnly() const;

    /// The time limits of the record to the millisecond; the epoch without a record.
    QDateTime minDateTime() const;
    QDateTime maxDateTime() const;

    int entryCount() const;
    const Entries& entries() const;

    /// Of a row below entryCount(), which is not checked.
    const Entry& entry(int row) const;

    /// Whether the times ascend from row to row and none comes twice; so in an empty list.
    bool normalized() const;

    /// Whether a bookmark lies outside the record. Never of a record that is not finished, whose end is not known.
    bool timesOutOfRange() const;

    // Changing the list, for others than views. Refused while the list is not editable

    /// Behind the last bookmark. The new row, or -1.
    int appendEntry(const Entry& entry);

    /// False as well for a row that has no bookmark.
    bool removeEntry(int row);
    bool changeEntry(int row, const Entry& entry);

    /// A model reset, whether the list differs or not.
    bool setEntries(const Entries& entries);
    bool clear();

    // Conversions

    /// Local time; the microseconds below the millisecond are lost.
    static QDateTime datetimeFromEntry(quint64 timestamp);
    static QDateTime datetimeFromEntry(const Entry& entry);

    /// Microseconds; 0 for an invalid time and for one before the epoch.
    static quint64 toBookmarkEntry(const QDateTime& time);

    // QAbstractTableModel

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Nothing for the row behind the last bookmark.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// A vertical header shows what a click on it does, and nothing while the list is not editable.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// True also where a time outside of the record is refused: the row shows its old one then.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    void si_synchStateChanged(ZelkoGUI::BookmarkModel::enSynchState state);

    /// The list is to be stored with the record; normalized, which the list of the model need not be.
    void si_updateBookmarks(QString recordID, QVector<ZELKO_XML::BookmarkEntry> bookmarks, QString deviceID);

    /// These two come, in this order, after whatever may have changed the answer, also if it is the same as before. The
    /// range of the record may change under the rows without a change of theirs: an editor that is open keeps what was
    /// typed.
    void si_normalizedChanged(bool normalized);
    void si_timestampsOutOfRange(bool outOfRange);

public Q_SLOTS:
    /// Sends a list that was changed, and locks the model for UnlockDelay; nothing in any other state. The list is kept
    /// until the record changes: what the recorder made of it is taken if that comes while the model is locked.
    void sl_synchronize();

    /// Takes the list of the record at once, whatever was changed here.
    void sl_reset();

    /// Removes the bookmark of that section, or adds one in a section behind the last: at the time given to
    /// sl_setNewBookmarkTime, or at the start of the record if that lies outside, and without a text.
    void sl_verticalHeaderClicked(int section);

    /// Where the next bookmark comes to stand, in microseconds.
    void sl_setNewBookmarkTime(quint64 time);

    /// Puts a list that was changed into order, bookmarks of the same time joined; any other stays as it is.
    void sl_normalize();

    /// Removes the bookmarks outside the record from a list that is editable.
    void sl_removeOutOfRange();

private Q_SLOTS:
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();
    void sl_replayBarBookmarksChanged();
    void sl_resetSynchState();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
