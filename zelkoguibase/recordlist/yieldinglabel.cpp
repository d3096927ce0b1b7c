#include "yieldinglabel_p.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace ZelkoGUI {

namespace {

constexpr int fewestCharacters = 12;

} // namespace

YieldingLabel::YieldingLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

YieldingLabel::~YieldingLabel() = default;

QSize YieldingLabel::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return {std::min(whole.width(), fontMetrics().averageCharWidth() * fewestCharacters), whole.height()};
}

QString YieldingLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

// Names come from outside, and a tip that looks like a document is shown as one.
bool YieldingLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && shownText() != text()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           QStringLiteral("<qt>%1</qt>").arg(text().toHtmlEscaped()), this);
        return true;
    }
    return QLabel::event(event);
}

void YieldingLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          shownText(), foregroundRole());
}

} // namespace ZelkoGUI
