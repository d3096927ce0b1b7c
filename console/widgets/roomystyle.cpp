#include <console/widgets/roomystyle.h>

#include <QPainter>
#include <QStyleOptionHeader>
#include <QWidget>

namespace ZelkoConsole {
namespace {

constexpr int rowMargin = 8; // above and below together

} // namespace

void RoomyStyle::apply(QWidget* view)
{
    auto* const style = new RoomyStyle;
    style->setParent(view);
    view->setStyle(style);
}

int RoomyStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    return metric == PM_FocusFrameHMargin ? sideMargin : QProxyStyle::pixelMetric(metric, option, widget);
}

void RoomyStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    if (element != PE_FrameFocusRect) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const bool selected = option->state & State_Selected;
    QColor color = option->palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight);
    color.setAlphaF(selected ? 0.6F : 1.0F);
    painter->setPen(color);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}

void RoomyStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const
{
    const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    if (element != CE_HeaderLabel || !header) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionHeader roomy(*header);
    const int more = cellMargin() - pixelMetric(PM_HeaderMargin, option, widget);
    roomy.rect.adjust(more, 0, -more, 0);
    QProxyStyle::drawControl(element, &roomy, painter, widget);
}

QSize RoomyStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const
{
    const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
    const bool isRow = widget && (type == CT_ItemViewItem || type == CT_HeaderSection);
    return isRow ? wanted.expandedTo(QSize(0, rowHeight(widget))) : wanted;
}

int RoomyStyle::rowHeight(const QWidget* view)
{
    return view->fontMetrics().height() + rowMargin;
}

} // namespace ZelkoConsole
