#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QAbstractTableModel>

#include <memory>

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

/// The comments on one record as a table of times and texts, in the order of the record, with a row behind the last one
/// in which a new comment is typed. The vertical header of each row shows what a click on it does.
///
/// The model changes no record: it emits what is to be added or deleted, and shows what became of it when the record
/// changes in the record model. A comment that was written stays as it is; it can only be deleted.
///
/// There are no rows and no titles at all without a record: with an empty ID, a null record model, or one that did not
/// have the record when it last told of a change. What was typed into the last row, and not sent, stays while the list
/// changes, and goes with the record.
///
/// GUI thread only. The record model is not owned and may go first.
class ZELKOGUIBASE_EXPORT HistoryModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int {
        TimeColumn, ///< local time
        TextColumn,
        ColumnCount
    };

    explicit HistoryModel(QObject* parent = nullptr);
    ~HistoryModel() override;

    /// Shows the comments on another record. With the ID that is shown already nothing happens, whatever the model.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model);
    void resetRecord();

    /// Empty for no record; also from the moment on in which the record was deleted.
    QString recordID() const;

    /// Whether a text is sent as soon as it is edited in, and not by a click on the header of its row; not at first.
    bool addTextImmediately() const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Takes the text of the new comment only.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    /// The comment, never an empty one, is to be added to the record.
    void si_addHistoryEntry(QString entry);

    /// The comment of that time, in microseconds since the epoch, is to be deleted. Once for each row, until the list
    /// is read anew.
    void si_removeHistoryEntry(quint64 timestamp);

    /// The user is to type a text into that cell.
    void si_edit(QModelIndex index);

public Q_SLOTS:
    /// Deletes the comment of that section. In the last one, sends the new comment, or has it typed if it is empty.
    /// Nothing for any other section.
    void sl_verticalHeaderClicked(int section);

    void sl_addTextImmediately(bool immediately);

private Q_SLOTS:
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
