#include <widgetbase/elidedlabel.h>

#include <widgetbase/plaintooltip.h>

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace guiHelper {

namespace {

QString asMarkup(const QString& toolTip)
{
    return Qt::mightBeRichText(toolTip) ? toolTip : Qt::convertFromPlainText(toolTip, Qt::WhiteSpaceNormal);
}

} // namespace

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
}

ElidedLabel::~ElidedLabel() = default;

void ElidedLabel::setElideMode(Qt::TextElideMode mode)
{
    m_mode = mode;
    update();
}

void ElidedLabel::setFewestCharacters(int count)
{
    m_fewestCharacters = count;
    updateGeometry();
}

QSize ElidedLabel::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return {std::min(whole.width(), m_fewestCharacters * fontMetrics().averageCharWidth()), whole.height()};
}

bool ElidedLabel::isElided() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

// A tool tip that was set may be markup, next to which the text has to be some as well.
QString ElidedLabel::wholeToolTip() const
{
    if (toolTip().isEmpty()) {
        return plainToolTip(text());
    }
    if (Qt::mightBeRichText(text()) || Qt::mightBeRichText(toolTip())) {
        return Qt::convertFromPlainText(text(), Qt::WhiteSpaceNormal) + asMarkup(toolTip());
    }
    return text() + QLatin1Char('\n') + toolTip();
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && isElided()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), wholeToolTip(), this, rect());
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), m_mode, contentsRect().width());
    const auto side = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    style()->drawItemText(&painter, contentsRect(), side, palette(), isEnabled(), shown, foregroundRole());
}

} // namespace guiHelper
