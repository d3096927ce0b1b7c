#include <console/records/emptystatenote.h>

#include <QAbstractItemView>
#include <QPainter>

namespace ZelkoConsole {

EmptyStateNote::EmptyStateNote(QAbstractItemView* view)
    : guiHelper::ViewportNote(view)
{
    setObjectName(QStringLiteral("emptyState"));
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

void EmptyStateNote::paintEvent(QPaintEvent*)
{
    if (!m_state.text.isEmpty()) {
        QPainter painter(this);
        paintEmptyState(painter, rect(), m_state, palette());
    }
}

} // namespace ZelkoConsole
