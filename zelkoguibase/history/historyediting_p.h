#pragma once

#include <QLineEdit>
#include <QObject>
#include <QString>

class QTableView;

namespace ZelkoGUI {

class HistoryModel;

/// What a user is about in a table of comments stays while the list is read anew: the current cell, how far the table
/// is scrolled, and the editor of the new comment with what was typed into it. Another record begins afresh.
///
/// A record that is being recorded changes all the time, and with each change the table would close its editor.
class HistoryEditing final : public QObject
{
    Q_OBJECT

public:
    /// `view` shows `model` already; both are not null and live as long as this.
    HistoryEditing(HistoryModel* model, QTableView* view);
    ~HistoryEditing() override;

private:
    void remember();
    void restore();
    void restoreCurrent();
    void restoreEditor();
    QModelIndex newText() const;
    QLineEdit* editor() const;

    HistoryModel* const m_model;
    QTableView* const m_view;
    QString m_recordID;
    int m_row = -1; // of the current cell; -1 if there is none
    int m_column = 0;
    bool m_isInNewRow = false;
    int m_scrolled = 0;
    bool m_isEdited = false;
    QString m_text;
    int m_cursor = 0;
};

} // namespace ZelkoGUI
