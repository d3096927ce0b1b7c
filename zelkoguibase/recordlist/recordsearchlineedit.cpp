#include <zelkoguibase/recordlist/recordsearchlineedit.h>

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
    setTextAlpha(paleAlpha);
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
    setTextAlpha(fullAlpha);
    if (text() == invitation()) {
        clear();
    }
}

void RecordSearchLineEdit::leave()
{
    setTextAlpha(paleAlpha);
    if (text().isEmpty()) {
        setText(invitation());
    }
}

// Group by group: one colour for all of them would take the look of a disabled field away.
void RecordSearchLineEdit::setTextAlpha(int alpha)
{
    QPalette changed = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor color = changed.color(group, QPalette::Text);
        color.setAlpha(alpha);
        changed.setColor(group, QPalette::Text, color);
    }
    setPalette(changed);
}
