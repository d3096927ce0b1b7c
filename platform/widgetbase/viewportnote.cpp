#include <widgetbase/viewportnote.h>

#include <QAbstractScrollArea>
#include <QEvent>

namespace guiHelper {

// Over the viewport and not in it, which would scroll it with the columns.
ViewportNote::ViewportNote(QAbstractScrollArea* view)
    : QLabel(view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setForegroundRole(QPalette::Text); // on the base colour of the view
    setGeometry(view->viewport()->geometry());
    view->viewport()->installEventFilter(this);
    keepMargin();
    hide();
}

ViewportNote::~ViewportNote() = default;

void ViewportNote::keepMargin()
{
    setMargin(fontMetrics().height());
}

void ViewportNote::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        keepMargin();
    }
}

bool ViewportNote::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        setGeometry(qobject_cast<QWidget*>(watched)->geometry());
    }
    return QLabel::eventFilter(watched, event);
}

} // namespace guiHelper
