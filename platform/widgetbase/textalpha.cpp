#include <widgetbase/textalpha.h>

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QWidget>

namespace guiHelper {

namespace {

constexpr QPalette::ColorGroup groups[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

} // namespace

TextAlpha::TextAlpha(QWidget* widget, int alpha)
    : QObject(widget)
    , m_widget(widget)
    , m_alpha(alpha)
{
    widget->installEventFilter(this);
    followParent();
    look();
}

TextAlpha::~TextAlpha() = default;

void TextAlpha::setAlpha(int alpha)
{
    m_alpha = alpha;
    apply();
}

// A widget whose own colours stay is not told that those around it change.
void TextAlpha::followParent()
{
    if (m_parent) {
        m_parent->removeEventFilter(this);
    }
    m_parent = m_widget->parentWidget();
    if (m_parent) {
        m_parent->installEventFilter(this);
    }
}

// The parent is told before its children have its colours.
bool TextAlpha::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == m_widget && type == QEvent::ParentChange) {
        followParent();
    }
    if (watched == m_widget && !m_isApplying &&
        (type == QEvent::PaletteChange || type == QEvent::ApplicationPaletteChange || type == QEvent::ParentChange)) {
        look();
    } else if (watched == m_parent && type == QEvent::PaletteChange) {
        QMetaObject::invokeMethod(this, &TextAlpha::look, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

// A colour that is set and is not the one that was set here is somebody else's wish.
void TextAlpha::look()
{
    const QPalette palette = m_widget->palette();
    if (!isOwn(QPalette::Active, QPalette::Text)) {
        m_given.reset();
    } else if (palette.color(QPalette::Active, QPalette::Text) != m_applied.color(QPalette::Active, QPalette::Text)) {
        m_given = palette;
    }
    apply();
}

// What the widget would look like by those around it.
QPalette TextAlpha::around() const
{
    const QWidget* const parent = m_widget->isWindow() ? nullptr : m_widget->parentWidget();
    return parent ? parent->palette() : QPalette();
}

bool TextAlpha::isOwn(QPalette::ColorGroup group, QPalette::ColorRole role) const
{
    const QPalette palette = m_widget->palette();
    const QPalette others = around();
    return palette.isBrushSet(group, role) &&
           (!others.isBrushSet(group, role) || others.brush(group, role) != palette.brush(group, role));
}

// Only what is the widget's own is set: whatever else was set would no longer follow those around it. Group by group:
// one colour for all of them would take the look of a disabled field away.
void TextAlpha::apply()
{
    const QScopedValueRollback applying(m_isApplying, true);
    const QPalette others = around();
    QPalette changed;
    for (const QPalette::ColorGroup group : groups) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            const auto eachRole = static_cast<QPalette::ColorRole>(role);
            if (eachRole != QPalette::Text && isOwn(group, eachRole)) {
                changed.setBrush(group, eachRole, m_widget->palette().brush(group, eachRole));
            }
        }
        const bool isSetAround = others.isBrushSet(group, QPalette::Text);
        const QPalette usual = isSetAround ? others : QApplication::palette(m_widget);
        QColor color = m_given.value_or(usual).color(group, QPalette::Text);
        color.setAlpha(m_alpha);
        changed.setColor(group, QPalette::Text, color);
    }
    m_applied = changed;
    m_widget->setPalette(changed);
}

} // namespace guiHelper
