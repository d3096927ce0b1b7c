#pragma once

#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/models/zelkobasemodels_export.h>

#include <QAbstractTableModel>

#include <memory>

namespace ZelkoCommon {

class KeptCells;

/// A table of records, one row each, whatever they come from. A derived class supplies the records and emits the
/// signals; this one says what stands in the columns. Sorting and filtering are the business of a proxy.
///
/// `data()` reads what is there and never blocks. Its roles:
///
/// | role                     | content                                                                           |
/// |--------------------------|-----------------------------------------------------------------------------------|
/// | `Qt::DisplayRole`        | text for people: units, local times, the words of enumerations; empty if not known |
/// | `Qt::TextAlignmentRole`  | quantities stand to the right, their headers too; nothing for other columns       |
/// | `SortRole`               | a number or a text to sort by                                                     |
/// | `ValueRole`              | the typed value that filters read, see `Column`                                   |
///
/// A row without record data has nothing but its ID to show.
///
/// What stands in a row is taken to be the same until a signal of the model says otherwise, so a record in the list is
/// not changed in place, and neither are the model's signals blocked, nor all that is connected to them disconnected.
/// GUI thread only.
class ZELKOBASEMODELS_EXPORT AbstractRecordListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using RecordData = ZELKO_XML::ZELKO_RecordData;
    using RecordDataPtr = std::shared_ptr<RecordData>;

    /// The columns with the type that `ValueRole` gives. Frequency, bandwidth and sample rate are those of the last
    /// entry of the record's index, 0 if it has none.
    enum Column : int {
        NameColumn,       ///< QString
        SizeColumn,       ///< double, bytes
        StartTimeColumn,  ///< QDateTime, to the millisecond
        StopTimeColumn,   ///< QDateTime, to the millisecond
        DurationColumn,   ///< QTime: stop less start time; of 24 hours and more, what is left of whole days
        DataRateColumn,   ///< ZELKO_RecordData::DataRate
        DataFormatColumn, ///< ZELKO_RecordData::DataFormat
        RecordIDColumn,   ///< QString
        StatusColumn,     ///< ZELKO_RecordData::RecordStatus
        FrequencyColumn,  ///< double, hertz
        BandwidthColumn,  ///< double, hertz
        SampleRateColumn, ///< double, hertz
        DeletableColumn,  ///< bool
        InterfaceColumn,  ///< ZELKO_RecordData::Interface
        ColumnCount
    };

    /// The numbers stand in saved filters, so they are fixed. Whoever asks for `Qt::UserRole` and the one behind it,
    /// which once had these numbers, gets the same.
    enum Role : int { SortRole = 32, ValueRole = 33 };

    explicit AbstractRecordListModel(QObject* parent = nullptr);
    ~AbstractRecordListModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Whether the list has a row of that ID.
    bool hasRecord(const QString& recordID) const;

    /// The record of that ID; null if there is no such row, or no data for it.
    RecordDataPtr getRecordData(const QString& recordID) const;

    /// The ID of the row of an index of this model, whatever its column; empty for an invalid index.
    QString getRecordID(const QModelIndex& index) const;

    /// The index of a record's name; invalid if there is no such row.
    QModelIndex recordIndex(const QString& recordID) const;

Q_SIGNALS:
    /// The record came to the list or its data changed; after the row notification.
    void si_recordChanged(QString recordID);

    /// The record left the list; after the row notification. Not emitted when all rows go at once.
    void si_recordDeleted(QString recordID);

    /// Follows si_recordDeleted for a record that was being recorded.
    void si_recordDeletedWhileRecording(QString recordID);

    /// All rows went, or were replaced; after the model reset.
    void si_allRecordsChanged();

    /// The record's status changed; follows si_recordChanged or si_allRecordsChanged. The old status of a record that
    /// is new to the list counts as Finished.
    void si_recordStatusChanged(QString recordID, ZELKO_XML::ZELKO_RecordData::RecordStatus newStatus,
                                ZELKO_XML::ZELKO_RecordData::RecordStatus oldStatus);

protected:
    /// The row of a record, -1 if there is none. This one searches; a list of some length has something better.
    virtual int recordRow(const QString& recordID) const;

    /// What stands in a cell of an existing row, for a role that has content. This one asks `recordData`; a model that
    /// holds its records need not share one with each cell that a sort or a filter looks at.
    virtual QVariant cell(int row, Column column, int role) const;

    /// What stands in the cell of a record.
    static QVariant cellOf(const RecordData& record, Column column, int role);

    /// What stands in the cell of a row without record data.
    QVariant cellWithoutData(int row, Column column) const;

public:
    /// The data of a row; null outside of the list, and where no data of the record is known.
    virtual std::shared_ptr<ZELKO_XML::ZELKO_RecordData> recordData(int row) const = 0;

    /// The ID of a row; empty outside of the list.
    virtual QString recordID(int row) const = 0;

    /// Number of rows.
    virtual int recordCount() const = 0;

private:
    QVariant existingCell(int row, Column column, int role) const;
    void keepUpToDate(KeptCells& cells);

    const std::unique_ptr<KeptCells> m_sortKeys;
    const std::unique_ptr<KeptCells> m_values;
};

} // namespace ZelkoCommon
