#include <console/widgets/roomystyle.h>

#include <QPainter>
#include <QStyleOptionHeader>
#include <QWidget>

#include <algorithm>

namespace ZelkoConsole {
namespace {

constexpr int rowMargin = 8; // above and below together
constexpr float restingSaturation = 0.2F;

// The row of a table or tree, or a cell of it, when the keys go somewhere else.
bool isResting(QStyle::PrimitiveElement element, const QWidget* widget)
{
    const bool isSelection = element == QStyle::PE_PanelItemViewRow || element == QStyle::PE_PanelItemViewItem;
    return isSelection && widget && !widget->hasFocus();
}

void drawFocus(const QStyleOption& option, QPainter& painter)
{
    const bool selected = option.state & QStyle::State_Selected;
    QColor color = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight);
    color.setAlphaF(selected ? 0.6F : 1.0F);
    painter.setPen(color);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
}

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
    const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element == PE_FrameFocusRect) {
        drawFocus(*option, *painter);
    } else if (item && isResting(element, widget)) {
        QStyleOptionViewItem resting(*item);
        resting.palette.setColor(QPalette::Highlight, restingHighlight(item->palette));
        QProxyStyle::drawPrimitive(element, &resting, painter, widget);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

QColor RoomyStyle::restingHighlight(const QPalette& palette)
{
    const QColor color = palette.color(QPalette::Highlight);
    return QColor::fromHslF(std::max(0.0F, color.hslHueF()), color.hslSaturationF() * restingSaturation,
                            color.lightnessF());
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
