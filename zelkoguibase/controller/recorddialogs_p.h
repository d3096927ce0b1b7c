#pragma once

#include <QPointer>

class QWidget;

namespace ZelkoGUI {

class EditRecordDialog;
class HistoryDialog;
class ZelkoServerGUIController;

/// The windows on a record of a device that its controller keeps: the comments, and the edit window in its three uses.
/// Each is made on its first use, with the parent of that moment, and then shows one record after the other; if it went
/// with its parent, it is made again. What they ask for goes to the controller.
class RecordDialogs
{
public:
    /// The controller is not null and outlives this.
    explicit RecordDialogs(ZelkoServerGUIController* controller);
    ~RecordDialogs();
    RecordDialogs(const RecordDialogs&) = delete;
    RecordDialogs& operator=(const RecordDialogs&) = delete;

    /// Each shows a record of the controller's list, in front of all other windows.
    void showHistory(const QString& recordID);
    void showBookmarks(const QString& recordID);
    void showCopy(const QString& recordID);
    void showEdit(const QString& recordID);

    /// Takes the record away from those that there are, and hides them.
    void reset();

private:
    void makeHistory();
    EditRecordDialog* makeEdit(int options);
    void show(EditRecordDialog* dialog, const QString& recordID);

    ZelkoServerGUIController* const m_controller;
    QPointer<HistoryDialog> m_history;
    QPointer<EditRecordDialog> m_bookmarks;
    QPointer<EditRecordDialog> m_copy;
    QPointer<EditRecordDialog> m_edit;
};

} // namespace ZelkoGUI
