#include "recorddialogs_p.h"

#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

namespace ZelkoGUI {

namespace {

constexpr int forBookmarks = EditRecordDialog::OptionEditBookmarks | EditRecordDialog::OptionReplayBar |
                             EditRecordDialog::OptionRequireRecordName | EditRecordDialog::OptionRecordInfo;
constexpr int forCopy = EditRecordDialog::OptionCopyRecord | EditRecordDialog::OptionReplayBar |
                        EditRecordDialog::OptionRequireRecordName | EditRecordDialog::OptionRecordInfo;
constexpr int forAll = 255; // whatever options there will be

void bringToFront(QWidget& window)
{
    if (window.isMinimized()) {
        window.showNormal();
    }
    window.show();
    window.raise();
    window.activateWindow();
}

template <typename Dialog>
void empty(Dialog* dialog)
{
    if (dialog) {
        dialog->resetRecord();
        dialog->hide();
    }
}

} // namespace

RecordDialogs::RecordDialogs(ZelkoServerGUIController* controller)
    : m_controller(controller)
{}

RecordDialogs::~RecordDialogs()
{
    delete m_history;
    delete m_bookmarks;
    delete m_copy;
    delete m_edit;
}

void RecordDialogs::showHistory(const QString& recordID)
{
    if (!m_history) {
        makeHistory();
    }
    m_history->setRecord(recordID, m_controller->recordListModel());
    bringToFront(*m_history);
}

void RecordDialogs::makeHistory()
{
    m_history = new HistoryDialog(m_controller->dialogParent());
    QObject::connect(m_history, &HistoryDialog::si_addHistoryEntry, m_controller,
                     &ZelkoServerGUIController::sl_addHistoryEntry);
    QObject::connect(m_history, &HistoryDialog::si_deleteHistoryEntry, m_controller,
                     &ZelkoServerGUIController::sl_deleteHistoryEntry);
}

void RecordDialogs::showBookmarks(const QString& recordID)
{
    if (!m_bookmarks) {
        m_bookmarks = makeEdit(forBookmarks);
        m_bookmarks->setObjectName(QStringLiteral("EditBookmarksDialog"));
        m_bookmarks->setWindowTitle(ZelkoServerGUIController::tr("Edit Bookmarks"));
    }
    show(m_bookmarks, recordID);
}

void RecordDialogs::showCopy(const QString& recordID)
{
    if (!m_copy) {
        m_copy = makeEdit(forCopy);
        m_copy->setObjectName(QStringLiteral("CopyRecordDialog"));
        m_copy->setWindowTitle(ZelkoServerGUIController::tr("Copy Record"));
    }
    show(m_copy, recordID);
}

void RecordDialogs::showEdit(const QString& recordID)
{
    if (!m_edit) {
        m_edit = makeEdit(forAll);
    }
    show(m_edit, recordID);
}

// The active device is meant: the windows are emptied before there is another one.
EditRecordDialog* RecordDialogs::makeEdit(int options)
{
    auto* const dialog = new EditRecordDialog(EditRecordDialog::Options(QFlag(options)), m_controller->dialogParent());
    QObject::connect(
        dialog, &EditRecordDialog::si_copyRecord, m_controller,
        [controller = m_controller](const QString& recordID, quint64 start, quint64 stop, const QString& name) {
            controller->sl_copyRecord(recordID, start, stop, name);
        });
    QObject::connect(dialog, &EditRecordDialog::si_setBookmarkEntries, m_controller,
                     &ZelkoServerGUIController::sl_setBookmarkEntries);
    return dialog;
}

// The record was asked for anew a moment ago: what is edited before it has come would be edited in vain.
void RecordDialogs::show(EditRecordDialog* dialog, const QString& recordID)
{
    dialog->setRecord(recordID, m_controller->recordListModel(), true, QString());
    bringToFront(*dialog);
}

void RecordDialogs::reset()
{
    empty(m_history.data());
    empty(m_bookmarks.data());
    empty(m_copy.data());
    empty(m_edit.data());
}

} // namespace ZelkoGUI
