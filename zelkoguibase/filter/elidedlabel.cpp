#include <zelkoguibase/filter/elidedlabel.h>

#include <QEvent>

namespace ZelkoGUI::Filter {

EnumerationFilterWidgetBase::ElidedLabel::ElidedLabel(int minimumChars, QWidget* parent)
    : QLabel(parent)
    , m_minimumChars(minimumChars)
{
    setTextFormat(Qt::PlainText);
    keepMinimumWidth();
}

EnumerationFilterWidgetBase::ElidedLabel::~ElidedLabel() = default;

void EnumerationFilterWidgetBase::ElidedLabel::keepMinimumWidth()
{
    setMinimumWidth(fontMetrics().averageCharWidth() * m_minimumChars);
}

void EnumerationFilterWidgetBase::ElidedLabel::setText(const QString& text, const QString& longText)
{
    m_text = text;
    m_longText = longText.isEmpty() ? text : longText;
    setAccessibleName(text);
    showText();
}

void EnumerationFilterWidgetBase::ElidedLabel::showText()
{
    const int room = contentsRect().width();
    const bool fits = fontMetrics().horizontalAdvance(m_text) <= room;
    QLabel::setText(fits ? m_text : fontMetrics().elidedText(m_text, Qt::ElideRight, room));
    setToolTip(fits ? QString() : m_longText);
}

bool EnumerationFilterWidgetBase::ElidedLabel::event(QEvent* event)
{
    const bool handled = QLabel::event(event);
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::FontChange) {
        keepMinimumWidth();
        showText();
    }
    return handled;
}

void EnumerationFilterWidgetBase::ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    showText();
}

} // namespace ZelkoGUI::Filter
