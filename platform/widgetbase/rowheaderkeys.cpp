#include <widgetbase/rowheaderkeys.h>

#include <QHeaderView>
#include <QKeyEvent>
#include <QTableView>

#include <algorithm>

namespace guiHelper {

RowHeaderKeys::RowHeaderKeys(QTableView* view)
    : QObject(view)
    , m_view(view)
{
    view->installEventFilter(this);
}

RowHeaderKeys::~RowHeaderKeys() = default;

// -1 for a key that presses none.
int RowHeaderKeys::pressedSection(const QKeyEvent& key) const
{
    const int last = m_view->verticalHeader()->count() - 1;
    if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        return -1;
    }
    switch (key.key()) {
    case Qt::Key_Insert:
        return last;
    case Qt::Key_Delete:
        return m_view->currentIndex().row() < last ? m_view->currentIndex().row() : -1;
    default:
        return -1;
    }
}

// What is typed, or added, in the last row is to be seen.
void RowHeaderKeys::press(int section)
{
    if (section == m_view->verticalHeader()->count() - 1) {
        m_view->setCurrentIndex(m_view->model()->index(section, std::max(m_view->currentIndex().column(), 0)));
    }
    Q_EMIT m_view->verticalHeader()->sectionClicked(section);
}

// A shortcut of the window on one of these keys would have it before the table.
bool RowHeaderKeys::eventFilter(QObject* watched, QEvent* event)
{
    const bool isShortcut = event->type() == QEvent::ShortcutOverride;
    if (!isShortcut && event->type() != QEvent::KeyPress) {
        return QObject::eventFilter(watched, event);
    }
    const int section = pressedSection(*static_cast<QKeyEvent*>(event));
    if (section < 0) {
        return false;
    }
    event->accept();
    if (!isShortcut) {
        press(section);
    }
    return true;
}

} // namespace guiHelper
