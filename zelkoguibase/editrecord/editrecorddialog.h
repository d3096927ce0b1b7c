#pragma once

#include <zelkobase/data/bookmarkentry.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QDialog>
#include <QFlags>
#include <QVector>

class QDialogButtonBox;
class QTableView;

namespace guiHelper {
class ElidedLabel;
}

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

class BookmarkModel;
class CopyRecordWidget;
class ReplayBarWidget;

/// A window on one record, made of the parts that its options name: to edit the bookmarks of the record, to copy a part
/// of it, or for both. It changes nothing itself; whoever has a controller connects the two signals to it.
///
/// A record that is deleted leaves the window empty, without a word. The record model is not owned and may go first.
/// GUI thread.
class ZELKOGUIBASE_EXPORT EditRecordDialog : public QDialog
{
    Q_OBJECT

public:
    enum enOption {
        OptionCopyRecord = 1,        ///< a part of the record can be copied
        OptionEditBookmarks = 2,     ///< there is a table of bookmarks, and they can be edited; otherwise nowhere
        OptionReplayBar = 4,         ///< the record is shown on an axis of time
        OptionRequireRecordName = 8, ///< a copy needs a name
        OptionRecordInfo = 16        ///< the name of the record is shown
    };
    Q_DECLARE_FLAGS(Options, enOption)

    /// Empty at first.
    explicit EditRecordDialog(const QFlags<enOption>& options, QWidget* parent = nullptr);
    ~EditRecordDialog() override;

    /// Shows a record of that model; nothing with an empty ID, a null model, or one without that record. The bookmarks
    /// can be edited at once, or with `delayed` when BookmarkModel::UnlockDelay is over. The device's ID comes back
    /// with si_setBookmarkEntries.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model, bool delayed,
                   const QString& deviceID);
    void resetRecord();

    /// Whether bookmarks that were changed and not sent are asked about when the window is closed; so at first. They
    /// are forgotten otherwise.
    void setPromptUnsavedChanged(bool prompt);
    bool promptUnsavedChanged() const;

    /// Lives as long as the dialog.
    BookmarkModel* bookmarkModel() const;

public Q_SLOTS:
    /// Both close the window, unless the user wants it to stay open when he is asked about his changes.
    void accept() override;
    void reject() override;

Q_SIGNALS:
    /// What lies between two positions of the recording is wanted as a record of that name.
    void si_copyRecord(QString recordId, quint64 start, quint64 stop, QString recordName);

    /// The bookmarks are to be stored with the record.
    void si_setBookmarkEntries(QString recordId, QVector<ZELKO_XML::BookmarkEntry> bookmarks, QString deviceID);

private Q_SLOTS:
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();

private:
    void createParts(Options options);
    QTableView* createTable();
    void createReplayBar();
    void createCopyWidget(bool allowEmptyName);
    QDialogButtonBox* createButtonBox();
    void addEditButtons(QDialogButtonBox& box);
    void layOut(QTableView* table, QDialogButtonBox* buttons);
    void follow(ZelkoCommon::AbstractRecordListModel* model);
    void updateRecordData();
    bool mayClose();

    BookmarkModel* const m_bookmarkModel;
    ReplayBarWidget* m_replayBar = nullptr;
    CopyRecordWidget* m_copyWidget = nullptr;
    guiHelper::ElidedLabel* m_recordInfoLabel = nullptr;
    ZelkoCommon::AbstractRecordListModel* m_recordModel = nullptr;
    QString m_recordID;
    bool m_promptUnsavedChanged = true;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(EditRecordDialog::Options)

} // namespace ZelkoGUI
