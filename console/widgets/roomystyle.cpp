#include <console/widgets/roomystyle.h>

#include <QStyleOptionHeader>
#include <QWidget>

namespace ZelkoConsole {
namespace {

constexpr int sideMargin = 6;
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

void RoomyStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const
{
    const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(option);
    if (element != CE_HeaderLabel || !header) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionHeader roomy(*header);
    const int more = sideMargin - pixelMetric(PM_HeaderMargin, option, widget);
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
