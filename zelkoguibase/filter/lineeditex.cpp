#include <zelkoguibase/filter/lineeditex.h>

#include <widgetbase/textalpha.h>

#include <QEvent>

namespace ZelkoGUI::Filter {
namespace {

constexpr int paleAlpha = 150;
constexpr int fullAlpha = 255;
constexpr int roomBesideHint = 10;

} // namespace

TextFilterWidget::LineEditEx::LineEditEx(const QString& hint, QWidget* parent)
    : QLineEdit(parent)
    , m_hintText(hint)
    // The colour of the palette, and not plain black: a hint must be legible on a dark field, too.
    , m_colour(new guiHelper::TextAlpha(this, paleAlpha))
{
    showText(false);
    installEventFilter(this);
    connect(this, &QLineEdit::textEdited, this, &LineEditEx::setText);
}

TextFilterWidget::LineEditEx::~LineEditEx() = default;

QSize TextFilterWidget::LineEditEx::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_hintText) + roomBesideHint, 0};
}

void TextFilterWidget::LineEditEx::showText(bool withFocus)
{
    const QString shown = !withFocus && m_realText.isEmpty() ? m_hintText : m_realText;
    if (text() != shown) {
        QLineEdit::setText(shown);
    }
}

bool TextFilterWidget::LineEditEx::eventFilter(QObject* watched, QEvent* event)
{
    const bool enters = event->type() == QEvent::FocusIn;
    if (watched == this && (enters || event->type() == QEvent::FocusOut)) {
        m_colour->setAlpha(enters ? fullAlpha : paleAlpha);
        showText(enters);
    }
    return false;
}

void TextFilterWidget::LineEditEx::setText(const QString& text)
{
    if (m_realText != text) {
        m_realText = text;
        showText(hasFocus());
    }
}

void TextFilterWidget::LineEditEx::resetText()
{
    setText(QString());
}

// A drop needs no focus, and would otherwise go into the midst of the hint.
void TextFilterWidget::LineEditEx::dropEvent(QDropEvent* event)
{
    showText(true);
    QLineEdit::dropEvent(event);
    showText(hasFocus());
}

} // namespace ZelkoGUI::Filter
