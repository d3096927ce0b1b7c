#include <zelkoguibase/recordlist/recordsearchlineedit.h>

#include <widgetbase/textalpha.h>

#include <QEvent>

namespace {

constexpr int fixedWidth = 250;
constexpr int paleAlpha = 150;
constexpr int fullAlpha = 255;

} // namespace

RecordSearchLineEdit::RecordSearchLineEdit(QWidget* parent)
    : QLineEdit(parent)
{
    setObjectName(QStringLiteral("RecordPanelSearchLineEdit"));
    setFixedWidth(fixedWidth);
    setToolTip(tr("Search for a record name"));
    setAccessibleName(toolTip());
    setText(invitation());
    m_colour = new guiHelper::TextAlpha(this, paleAlpha);
    installEventFilter(this);
}

RecordSearchLineEdit::~RecordSearchLineEdit() = default;

QString RecordSearchLineEdit::invitation()
{
    return tr("Search record name...");
}

bool RecordSearchLineEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == this && event->type() == QEvent::FocusIn) {
        enter();
    } else if (watched == this && event->type() == QEvent::FocusOut) {
        leave();
    }
    return QLineEdit::eventFilter(watched, event);
}

// Somebody who enters the very text of the invitation has entered nothing.
void RecordSearchLineEdit::enter()
{
    m_colour->setAlpha(fullAlpha);
    if (text() == invitation()) {
        clear();
    }
}

void RecordSearchLineEdit::leave()
{
    m_colour->setAlpha(paleAlpha);
    if (text().isEmpty()) {
        setText(invitation());
    }
}
