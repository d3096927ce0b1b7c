#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QWidget>

class QTableView;

namespace guiHelper {
class QHeaderViewColumnHandler;
}

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

class HistoryModel;

/// The comments on one record in a table whose vertical header has the buttons: it deletes a comment, has a new one
/// typed in the last row, and adds it. With the keyboard Delete and Insert do so. The widths of the columns are kept in
/// the user's configuration.
///
/// Nothing is changed here: the signals ask for it, and the table shows it when the record comes back changed. What is
/// being typed stays while the list changes, and goes with the record. The record model is not owned and may go first.
/// GUI thread.
class ZELKOGUIBASE_EXPORT HistoryWidget : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryWidget(QWidget* parent = nullptr);
    HistoryWidget(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model, QWidget* parent = nullptr);
    ~HistoryWidget() override;

    /// See HistoryModel::setRecord: with the ID that is shown already nothing happens.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model);
    void resetRecord();

Q_SIGNALS:
    void si_addHistoryEntry(QString recordID, QString entry);

    /// The comment is the one of that time, in microseconds since the epoch.
    void si_deleteHistoryEntry(QString recordID, quint64 timestamp);

private Q_SLOTS:
    void sl_addHistory(const QString& entry);
    void sl_deleteHistory(quint64 timestamp);

private:
    QTableView* createView();
    QWidget* createCheckBox();

    HistoryModel* const m_model;
    guiHelper::QHeaderViewColumnHandler* m_columnHandler = nullptr;
};

} // namespace ZelkoGUI
