#include "historyediting_p.h"

#include <zelkoguibase/history/historymodel.h>

#include <QScrollBar>
#include <QTableView>

#include <algorithm>

namespace ZelkoGUI {

// The view has heard of the reset before, since it was connected before.
HistoryEditing::HistoryEditing(HistoryModel* model, QTableView* view)
    : QObject(view)
    , m_model(model)
    , m_view(view)
{
    connect(model, &HistoryModel::modelAboutToBeReset, this, &HistoryEditing::remember);
    connect(model, &HistoryModel::modelReset, this, &HistoryEditing::restore);
}

HistoryEditing::~HistoryEditing() = default;

QModelIndex HistoryEditing::newText() const
{
    return m_model->index(m_model->rowCount() - 1, HistoryModel::TextColumn);
}

// Null while it is not open.
QLineEdit* HistoryEditing::editor() const
{
    return qobject_cast<QLineEdit*>(m_view->indexWidget(newText()));
}

void HistoryEditing::remember()
{
    const QModelIndex current = m_view->currentIndex();
    m_recordID = m_model->recordID();
    m_row = current.row();
    m_column = current.column();
    m_isInNewRow = current.isValid() && current.row() == m_model->rowCount() - 1;
    m_scrolled = m_view->verticalScrollBar()->value();
    const QLineEdit* const open = editor();
    m_isEdited = open != nullptr;
    m_text = open ? open->text() : QString();
    m_cursor = open ? open->cursorPosition() : 0;
}

void HistoryEditing::restore()
{
    if (m_model->recordID() != m_recordID || m_model->rowCount() == 0) {
        return;
    }
    if (m_row >= 0) {
        restoreCurrent();
    }
    if (m_isEdited) {
        restoreEditor();
    }
}

// Behind a comment that was deleted the next one is the current one. The cell may be out of sight, where it stays.
void HistoryEditing::restoreCurrent()
{
    const int last = m_model->rowCount() - 1;
    m_view->setCurrentIndex(m_model->index(m_isInNewRow ? last : std::min(m_row, last), m_column));
    m_view->verticalScrollBar()->setValue(m_scrolled);
}

void HistoryEditing::restoreEditor()
{
    m_view->setCurrentIndex(newText());
    m_view->edit(newText());
    if (QLineEdit* const open = editor()) {
        open->setText(m_text);
        open->setCursorPosition(m_cursor);
    }
}

} // namespace ZelkoGUI
