#include <console/records/emptystatenote.h>

#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>

namespace ZelkoConsole {

// Over the viewport and not in it, which would scroll it with the columns.
EmptyStateNote::EmptyStateNote(QAbstractItemView* view)
    : QWidget(view)
{
    setObjectName(QStringLiteral("emptyState"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(view->viewport()->geometry());
    view->viewport()->installEventFilter(this);
    hide();
}

EmptyStateNote::~EmptyStateNote() = default;

void EmptyStateNote::setState(const EmptyState& state)
{
    if (m_state != state) {
        m_state = state;
        setAccessibleName(state.text);
        update();
    }
}

bool EmptyStateNote::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        setGeometry(qobject_cast<QWidget*>(watched)->geometry());
    }
    return QWidget::eventFilter(watched, event);
}

void EmptyStateNote::paintEvent(QPaintEvent*)
{
    if (!m_state.text.isEmpty()) {
        QPainter painter(this);
        paintEmptyState(painter, rect(), m_state, palette());
    }
}

} // namespace ZelkoConsole
