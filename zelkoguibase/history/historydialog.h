#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QDialog>

namespace guiHelper {
class ElidedLabel;
}

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

class HistoryWidget;

/// The window of the comments on one record: the table, and the name of the record. It changes nothing itself; whoever
/// has a controller connects the two signals to it.
///
/// A record that is deleted while the window is open is told to the user, and the window is empty from then on. The
/// record model is not owned and may go first. GUI thread.
class ZELKOGUIBASE_EXPORT HistoryDialog : public QDialog
{
    Q_OBJECT

public:
    /// Empty at first.
    explicit HistoryDialog(QWidget* parent = nullptr);
    ~HistoryDialog() override;

    /// Shows a record of that model. The table keeps its model if it shows a record of that ID already.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model);
    void resetRecord();

Q_SIGNALS:
    void si_addHistoryEntry(QString recordID, QString entry);

    /// The comment is the one of that time, in microseconds since the epoch.
    void si_deleteHistoryEntry(QString recordID, quint64 timestamp);

private Q_SLOTS:
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();

private:
    void createParts();
    void follow(ZelkoCommon::AbstractRecordListModel* model);
    void showOnLabel(const QString& name, const QString& toolTip);

    ZelkoCommon::AbstractRecordListModel* m_recordModel = nullptr;
    HistoryWidget* m_widget = nullptr;
    guiHelper::ElidedLabel* m_recordLabel = nullptr;
    QString m_recordID;
};

} // namespace ZelkoGUI
